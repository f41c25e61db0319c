#include "Shared/Buttons/StatInterfaceMenuButton.h"

#include "Shared/Views/DropdownTheme.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kTitleInset = 8;  // where the rows' other texts begin
constexpr double kTitleRoom = 20;  // of the button's width, what the title leaves

}  // namespace

void StatInterfaceMenuButton::setTitle(std::string_view title) {
    title_ = title;
    setNeedsDisplay();
}

void StatInterfaceMenuButton::setMenuItemHighlighted(bool highlighted) {
    if (highlighted == highlighted_)
        return;
    highlighted_ = highlighted;
    setNeedsDisplay();
}

void StatInterfaceMenuButton::mouseUp(std::int64_t eventNumber) {
    if (eventNumber == lastEventNumber_ && action_)
        action_(*this);
}

void StatInterfaceMenuButton::draw(Painting::Context& context) {
    const bool white = action_ && highlighted_;
    Rect rect = bounds();
    rect.x = kTitleInset;
    rect.width -= kTitleRoom;
    context.drawText(
        title_, rect,
        {.font = vtrNormalFont(12), .colour = white ? kWhite : themed(grey(0.49), grey(0.58))});
}

}  // namespace vantor::inline VANTOR_MODULE
