#include "Shared/Views/StatInterfaceActionView.h"

#include <utility>

#include "Shared/Views/DropdownTheme.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kTextInset = 8, kTextHeight = 15, kTextRoom = 30;
constexpr Colour kActive{0.224, 0.22, 0.333, 1}, kInactive{0.451, 0.451, 0.502, 1};

}  // namespace

void StatInterfaceActionView::setTitle(std::string_view title) {
    title_ = title;
    setNeedsDisplay();
}

void StatInterfaceActionView::setAction(std::function<void()> action) {
    action_ = std::move(action);
    setNeedsDisplay();
}

void StatInterfaceActionView::mouseUp(std::int64_t) {
    if (action_)
        action_();
}

Colour StatInterfaceActionView::ink() const {
    if (action_ && menuItemHighlighted())
        return kWhite;
    return action_ ? themed(kActive, grey(0.984)) : themed(kInactive, grey(0.475));
}

void StatInterfaceActionView::draw(Painting::Context& context) {
    StatInterfaceView::draw(context);
    const bool showsBold = bold_ && dropdownTheme() != 1;
    context.drawText(
        title_,
        {kTextInset, (frame().height - kTextHeight) / 2, frame().width - kTextRoom, kTextHeight},
        {.font = showsBold ? vtrBoldFont(12) : vtrNormalFont(12), .colour = ink()});
}

}  // namespace vantor::inline VANTOR_MODULE
