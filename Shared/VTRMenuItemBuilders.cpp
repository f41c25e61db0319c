#include "Shared/VTRMenuItemBuilders.h"

#include <cmath>
#include <utility>

#include "Shared/VTRMenuItemControls.h"
#include "Shared/Views/ImageView.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kLabelRoom = 20;  // beside a text that gives a row its width
constexpr double kIconRoom = 38;   // what a picture and the margins leave of a row
constexpr double kProcessColumn = 50;

Size sizeOf(int width, int height) noexcept {
    return {static_cast<double>(width), static_cast<double>(height)};
}

/// As wide as the text needs where no width is given.
Size fittingSize(std::string_view text, int width, int height) noexcept {
    Size size = sizeOf(width, height);
    if (width == 0)
        size.width = std::trunc(measuredWidth(text)) + kLabelRoom;
    return size;
}

/// The whole row from the text's inset on. It reaches over the right edge by that much.
Rect textFrame(Size size) noexcept {
    return {kTextInset, textY(size.height), size.width, size.height};
}

/// The two columns at the right of a process, of that kind of field.
template <class Field>
void addProcessColumns(VTRMenuItem& item, Size size, const FieldStyle& style) {
    const auto column = [&](double fromTheRight) {
        return addField<Field>(
            item, {size.width - fromTheRight, textY(size.height), kProcessColumn, size.height}, "",
            style);
    };
    item.field = column(kTextInset + 2 * kProcessColumn);
    item.value2 = column(kTextInset + kProcessColumn);
}

template <class Field>
std::shared_ptr<Field> bareField(Painting::Alignment alignment, const Rect& rect) {
    auto field = std::make_shared<Field>(rect);
    applyStyle(*field, {.resizing = Resizing::width, .alignment = alignment});
    return field;
}

}  // namespace

Rect VTRMakeRect(int a, int b, int c, int d) noexcept {
    return {static_cast<double>(a), static_cast<double>(b), static_cast<double>(c),
            static_cast<double>(d)};
}

Size VTRMakeSize(int a, int b) noexcept { return sizeOf(a, b); }

std::shared_ptr<VTRMenuItem> createMenuItem() { return createRow({kRowWidth, 0}); }

std::shared_ptr<VTRMenuItem> createFlippedMenuItem() {
    auto item = createMenuItem();
    item->view()->setHighlightable(false);
    return item;
}

std::shared_ptr<VTRMenuItem> createMenuItemWithView(std::shared_ptr<StatInterfaceView> view) {
    auto item = std::make_shared<VTRMenuItem>();
    item->setView(std::move(view));
    return item;
}

std::shared_ptr<VTRMenuItem> createLabelMenuItem(std::string_view text, int width, int height,
                                                 bool bold) {
    const Size size = fittingSize(text, width, height);
    auto item = createRow(size);
    item->label = addField<StatInterfaceTextFieldLabel>(
        *item, textFrame(size), text, {.resizing = Resizing::width, .bold = bold});
    return item;
}

std::shared_ptr<VTRMenuItem> createCenteredLabel(std::string_view text, int width, int height) {
    auto item = createLabelMenuItem(text, width, height, false);
    item->label->setAlignment(Painting::Alignment::centre);
    return item;
}

std::shared_ptr<VTRMenuItem> createTextMenuItem(std::string_view text, int width, int height,
                                                bool bold) {
    const Size size = fittingSize(text, width, height);
    auto item = createRow(size);
    // At the left, where a label begins: the field reaches over the right edge.
    item->field = addField<StatInterfaceTextFieldValue>(
        *item, textFrame(size), text, {.resizing = Resizing::width, .bold = bold});
    return item;
}

std::shared_ptr<VTRMenuItem> createTextMenuItem2(std::string_view text, bool bold,
                                                 const Rect& rect) {
    auto item = createRow(rect.size());
    item->field = addField<StatInterfaceTextFieldValue>(
        *item, {kTextInset, textY(rect.height), rect.width - kLabelRoom, rect.height}, text,
        {.alignment = Painting::Alignment::right, .bold = bold});
    return item;
}

std::shared_ptr<VTRMenuItem> createIconLabelMenuItem(std::string_view text, int width, int height,
                                                     bool bold) {
    const Size size = sizeOf(width, height);
    auto item = createRow(size);
    item->image1 = addControl<ImageView>(*item, {10, 2, 16, 16});
    item->label = addField<StatInterfaceTextFieldLabel>(
        *item, {28, textY(size.height), size.width - kIconRoom, size.height}, text,
        {.resizing = Resizing::width, .bold = bold});
    return item;
}

std::shared_ptr<VTRMenuItem> createRightIconLabelMenuItem(std::string_view text, int width,
                                                          int height, bool bold) {
    const Size size = sizeOf(width, height);
    auto item = createRow(size);
    item->image1 = addControl<ImageView>(*item, {size.width - 24, 2, 14, 14}, Resizing::leftMargin);
    item->label = addField<StatInterfaceTextFieldLabel>(
        *item, {kTextInset, textY(size.height), size.width - kIconRoom, size.height}, text,
        {.resizing = Resizing::width, .bold = bold});
    return item;
}

std::shared_ptr<VTRMenuItem> createDoubleProcessItem(int width, int height) {
    const Size size = sizeOf(width, height);
    auto item = createRow(size);
    item->label = addField<StatInterfaceTextFieldLabel>(
        *item, {kTextInset, textY(size.height), size.width - 124, size.height}, "",
        {.truncatesTail = true});
    addProcessColumns<StatInterfaceTextFieldValue>(*item, size, kValueAtTheRight);
    return item;
}

std::shared_ptr<VTRMenuItem> createProcessHeaderItem(int width, int height) {
    const Size size = sizeOf(width, height);
    auto item = createRow(size);
    FieldStyle style = kValueAtTheRight;
    style.alternateFont = true;
    addProcessColumns<StatInterfaceTextFieldLabel>(*item, size, style);
    return item;
}

std::shared_ptr<VTRMenuItem> createProcessImageHeaderItem(int width, int height) {
    const Size size = sizeOf(width, height);
    auto item = createRow(size);
    item->image1 = addControl<ImageView>(*item, {size.width - 18, 2, 10, 10}, Resizing::leftMargin);
    item->image2 = addControl<ImageView>(*item, {size.width - 38, 2, 10, 10}, Resizing::leftMargin);
    return item;
}

std::shared_ptr<StatInterfaceTextFieldValue> createValueField(Painting::Alignment alignment,
                                                              const Rect& rect) {
    return bareField<StatInterfaceTextFieldValue>(alignment, rect);
}

std::shared_ptr<StatInterfaceTextFieldLabel> createLabelField(Painting::Alignment alignment,
                                                              const Rect& rect) {
    return bareField<StatInterfaceTextFieldLabel>(alignment, rect);
}

}  // namespace vantor::inline VANTOR_MODULE
