#include "Shared/VTRMenuItemComboBuilders.h"

#include <algorithm>
#include <cmath>

#include "Shared/VTRMenuItemControls.h"
#include "Shared/Views/DropdownTheme.h"
#include "Shared/Views/ImageView.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kLegendTextInset = 22;
constexpr double kMargins = 18;        // of a row of given width, what its columns leave
constexpr double kComboRoom = 36;      // of a row that fits its columns
constexpr double kLegendRoom = 55;     // the same with a dot
constexpr double kLegendMargins = 32;  // of a legend row, what label and value leave
constexpr double kEmptyColumn = 20;
constexpr double kLabelRoom = 10, kSharedInset = 10;

/// The widths of a row and of its two columns.
struct Columns {
    double row, label, value;
};

double valueColumn(std::string_view value) noexcept {
    const double width = columnWidth(value);
    return width == 0 ? kEmptyColumn : width;
}

Columns columnsFor(std::string_view label, std::string_view value, double width) noexcept {
    if (width == 0) {
        const double labelWidth = columnWidth(label), valueWidth = valueColumn(value);
        return {labelWidth + valueWidth + kComboRoom, labelWidth, valueWidth};
    }
    if (value.empty()) {
        const double labelWidth = columnWidth(label);
        return {width, labelWidth, width - kMargins - labelWidth};
    }
    const double valueWidth = columnWidth(value);
    return {width, width - kMargins - valueWidth, valueWidth};
}

void addLabel(VTRMenuItem& item, double x, double width, std::string_view text) {
    const double height = item.anyView()->frame().height;
    item.label = addField<StatInterfaceTextFieldLabel>(item, {x, textY(height), width, height},
                                                       text, {.truncatesTail = true});
}

/// Ends at the inset of values, from the right edge.
void addValue(VTRMenuItem& item, double width, std::string_view text, Resizing resizing) {
    const Size size = item.anyView()->frame().size();
    item.field = addField<StatInterfaceTextFieldValue>(
        item, {size.width - kValueInset - width, textY(size.height), width, size.height}, text,
        {.resizing = resizing, .alignment = Painting::Alignment::right});
}

void fillCombo(VTRMenuItem& item, const Columns& columns, std::string_view label,
               std::string_view value) {
    addLabel(item, kTextInset, columns.label, label);
    addValue(item, columns.value, value, Resizing::leftMargin | Resizing::width);
}

void addLegend(VTRMenuItem& item, double x, std::int64_t tag, Resizing resizing) {
    item.legend = addControl<DotImageView>(item, {x, 3, 9, 10}, resizing);
    item.legend->setTag(tag);
    item.legend->updateImage();
}

double textWidth(const StatInterfaceTextField& field) noexcept {
    return widthOfText(field.stringValue(), field.font());
}

double cutTextWidth(const std::shared_ptr<StatInterfaceTextField>& field) noexcept {
    return field ? std::trunc(textWidth(*field)) : 0;
}

double labelLeft(const VTRMenuItem& item) noexcept {
    return item.label ? item.label->frame().x : 0;
}

/// Keeps the height and the upper edge.
void setAcross(View* view, double x, double width) {
    if (view != nullptr)
        view->setFrame({x, view->frame().y, width, view->frame().height});
}

void setWidth(View* view, double width) {
    if (view != nullptr)
        setAcross(view, view->frame().x, width);
}

}  // namespace

std::shared_ptr<VTRMenuItem> createComboTextMenuItem(std::string_view label, std::string_view value,
                                                     int width, int height) {
    const Columns columns = columnsFor(label, value, width);
    auto item = createRow({columns.row, static_cast<double>(height)});
    fillCombo(*item, columns, label, value);
    return item;
}

std::shared_ptr<VTRMenuItem> createComboTextMenuItem2(std::string_view label,
                                                      std::string_view value, Container container,
                                                      int labelWidth, int valueWidth,
                                                      const Rect& rect) {
    Columns columns{rect.width, static_cast<double>(labelWidth), static_cast<double>(valueWidth)};
    if (labelWidth == 0)
        columns.label = columnWidth(label);
    if (valueWidth == 0)
        columns.value = columnWidth(value);
    if (columns.row == 0)
        columns.row = columns.label + columns.value + kComboRoom;
    const Size size{columns.row, rect.height};
    auto item = container == Container::alternateView ? createStackedRow(size) : createRow(size);
    fillCombo(*item, columns, label, value);
    return item;
}

std::shared_ptr<VTRMenuItem> createComboTextMenuItemWithLegend(std::string_view label,
                                                               std::string_view value, int width,
                                                               int height, std::int64_t legendTag) {
    const double rowWidth =
        width == 0 ? columnWidth(label) + valueColumn(value) + kLegendRoom : width;
    auto item = createStackedRow({rowWidth, static_cast<double>(height)});
    addLabel(*item, kLegendTextInset, rowWidth - 20, label);
    const double labelWidth = std::ceil(textWidth(*item->label)) + kLabelRoom;
    setWidth(item->label.get(), labelWidth);
    addValue(*item, std::trunc(rowWidth - kLegendMargins - labelWidth), value,
             Resizing::leftMargin);
    addLegend(*item, 10, legendTag, Resizing::none);
    return item;
}

std::shared_ptr<VTRMenuItem> createComboTextMenuItemWithLegend2(std::string_view label,
                                                                std::string_view value,
                                                                std::int64_t legendTag,
                                                                int labelWidth, int valueWidth,
                                                                const Rect& rect) {
    const double columns[]{static_cast<double>(labelWidth), static_cast<double>(valueWidth)};
    auto item = createStackedRow({columns[0] + columns[1] + kLegendRoom, rect.height});
    addLabel(*item, kLegendTextInset, columns[0], label);
    addValue(*item, columns[1], value, Resizing::leftMargin);
    addLegend(*item, 10, legendTag, Resizing::none);
    return item;
}

std::shared_ptr<VTRMenuItem> createMenuItemWithRightStatusDot(std::string_view label,
                                                              const Rect& rect) {
    const double labelWidth = columnWidth(label), y = textY(rect.height);
    auto item = createRow(rect.size());
    item->label = addField<StatInterfaceTextFieldLabel>(
        *item, {kTextInset, y, labelWidth, kTextRowHeight}, label, {});
    item->field = addField<StatInterfaceTextFieldValue>(
        *item, {labelWidth + 23, y, rect.width - labelWidth - 48, kTextRowHeight}, "",
        kValueAtTheRight);
    addLegend(*item, rect.width - 19, 1, Resizing::leftMargin);
    return item;
}

void resizeMenuItemToContent(VTRMenuItem& item, double minWidth) {
    StatInterfaceView* const view = item.anyView();
    if (view == nullptr)
        return;
    const double label = cutTextWidth(item.label), value = cutTextWidth(item.field);
    double width = std::max(std::trunc(labelLeft(item) + label + value + kValueInset), minWidth);
    if (view->frame().width > width)
        width = std::trunc(view->frame().width);
    setWidth(view, width);
    setWidth(item.label.get(), label);
    setAcross(item.field.get(), width - value - kValueInset, value);
}

double resizeMenuItems(std::span<const std::shared_ptr<VTRMenuItem>> items, double minWidth,
                       double valueWidth) {
    double label = 0, width = minWidth;
    for (const std::shared_ptr<VTRMenuItem>& item : items)
        label = std::max(label, cutTextWidth(item->label));
    for (const std::shared_ptr<VTRMenuItem>& item : items) {
        width = std::max(width, std::trunc(labelLeft(*item) + label + valueWidth + kSharedInset));
        setWidth(item->anyView(), width);
        setWidth(item->label.get(), label + kLabelRoom);
        setAcross(item->field.get(), width - kSharedInset - valueWidth, valueWidth);
    }
    return width;
}

double resizeMenuItem(const std::shared_ptr<VTRMenuItem>& item, double minWidth,
                      double valueWidth) {
    return resizeMenuItems({&item, 1}, minWidth, valueWidth);
}

}  // namespace vantor::inline VANTOR_MODULE
