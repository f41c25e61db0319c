#include "Shared/VTRMenuItemControls.h"

#include <cmath>

#include "Shared/Views/DropdownTheme.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr std::int64_t kMeasuringFont = 12;
constexpr double kTextRoom = 10;

std::shared_ptr<StatInterfaceFlippedView> createContainer(Size size) {
    auto container = StatInterfaceView::initContainerWithFrame<StatInterfaceFlippedView>(
        {0, 0, size.width, size.height});
    container->setHighlightable(true);
    container->setResizing(Resizing::width);
    return container;
}

}  // namespace

double textY(double height) noexcept {
    return std::trunc((std::trunc(height) - kTextRowHeight) / 2);
}

double measuredWidth(std::string_view text) noexcept {
    return widthOfText(text, vtrBoldFont(kMeasuringFont));
}

double columnWidth(std::string_view text) noexcept {
    return std::trunc(measuredWidth(text) + kTextRoom);
}

std::shared_ptr<VTRMenuItem> createRow(Size size) {
    auto item = std::make_shared<VTRMenuItem>();
    item->setView(createContainer(size));
    return item;
}

std::shared_ptr<VTRMenuItem> createStackedRow(Size size) {
    auto item = std::make_shared<VTRMenuItem>();
    item->setAlternateView(createContainer(size));
    item->alternateView()->setBackgroundDisabled(true);
    return item;
}

void applyStyle(StatInterfaceTextField& field, const FieldStyle& style) {
    field.setResizing(style.resizing);
    field.setAlignment(style.alignment);
    field.setTruncatesTail(style.truncatesTail);
    field.setBold(style.bold);
    field.setAlternateFont(style.alternateFont);
    field.updateColors();
}

}  // namespace vantor::inline VANTOR_MODULE
