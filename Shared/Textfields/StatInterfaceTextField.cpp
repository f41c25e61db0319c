#include "Shared/Textfields/StatInterfaceTextField.h"

#include <utility>

#include "Shared/Views/DropdownTheme.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr std::int64_t kTextSize = 12, kAlternateSize = 10;
constexpr double kRoundingSlack = 1;  // columns are cut to whole points, which cuts off no letter

}  // namespace

StatInterfaceTextField::StatInterfaceTextField(const Rect& frame) : View(frame) {}

void StatInterfaceTextField::setStringValue(std::optional<std::string_view> text) {
    const std::string_view shown = text.value_or("");
    if (shown == stringValue_)
        return;
    stringValue_ = shown;
    setNeedsDisplay();
}

Colour StatInterfaceTextField::defaultColor() const { return kBlack; }

void StatInterfaceTextField::resetColor() {
    setTextColor(defaultColor());
    if (std::optional<Painting::Font> font = defaultFont())
        setFont(*std::move(font));
}

void StatInterfaceTextField::updateColors() {
    resetColor();
    normalColor_ = defaultColor();
}

void StatInterfaceTextField::setNormalTextColor(const Colour& colour) {
    normalColor_ = colour;
    if (!menuItemHighlighted_)
        setTextColor(colour);
}

void StatInterfaceTextField::setMenuItemHighlighted(bool highlighted) {
    if (highlighted == menuItemHighlighted_)
        return;
    menuItemHighlighted_ = highlighted;
    setTextColor(highlighted ? kWhite : normalColor_);
}

void StatInterfaceTextField::setFont(Painting::Font font) {
    if (font == attributes_.font)
        return;
    attributes_.font = std::move(font);
    setNeedsDisplay();
}

void StatInterfaceTextField::setTextColor(const Colour& colour) {
    if (colour == attributes_.colour)
        return;
    attributes_.colour = colour;
    setNeedsDisplay();
}

void StatInterfaceTextField::setAlignment(Painting::Alignment alignment) {
    attributes_.alignment = alignment;
    setNeedsDisplay();
}

void StatInterfaceTextField::setTruncatesTail(bool truncates) {
    attributes_.overflow =
        truncates ? Painting::Overflow::truncateTail : Painting::Overflow::visible;
    setNeedsDisplay();
}

void StatInterfaceTextField::draw(Painting::Context& context) {
    Rect rect = bounds();
    if (attributes_.alignment == Painting::Alignment::left)
        rect.width += kRoundingSlack;
    context.drawText(stringValue_, rect, attributes_);
}

Colour StatInterfaceTextFieldLabel::defaultColor() const { return themed(grey(0.49), grey(0.58)); }

std::optional<Painting::Font> StatInterfaceTextFieldLabel::defaultFont() const {
    return alternateFont() ? vtrMediumFont(kAlternateSize) : vtrNormalFont(kTextSize);
}

Colour StatInterfaceTextFieldValue::defaultColor() const {
    return themed(grey(0.247), grey(0.788));
}

std::optional<Painting::Font> StatInterfaceTextFieldValue::defaultFont() const {
    if (alternateFont())
        return vtrMediumFont(kAlternateSize);
    return bold() && dropdownTheme() != 1 ? vtrBoldFont(kTextSize) : vtrNormalFont(kTextSize);
}

Colour StatInterfaceTextFieldHeader::defaultColor() const {
    return themed(grey(0.247), grey(0.788));
}

}  // namespace vantor::inline VANTOR_MODULE
