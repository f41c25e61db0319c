#include "Platform/Linux/LinuxDisplays.h"

#include "Platform/Linux/DeviceMonitor.h"
#include "Platform/Linux/LinuxRegistry.h"

namespace vantor {
namespace {

constexpr double kCentimetresPerInch = 2.54;

double perInch(std::uint32_t pixels, std::uint32_t centimetres) noexcept {
    return pixels / (centimetres / kCentimetresPerInch);
}

Screen screenOf(const GraphicsView::Display& display, std::uint32_t number) {
    const auto& [connector, object] = display;
    const EDID edid = connector.edid.value_or(EDID{});
    const auto width = connector.widthPixels != 0 ? connector.widthPixels : edid.widthPixels;
    const auto height = connector.heightPixels != 0 ? connector.heightPixels : edid.heightPixels;
    Screen screen{.number = number,
                  .location = object->path(),
                  .productNames = {},
                  .resolution = {},
                  .size = {}};
    if (const std::string* const name = object->property("DisplayProductName").text())
        screen.productNames.emplace_back("en", *name);
    if (width != 0 && height != 0)
        screen.size = Size{static_cast<double>(width), static_cast<double>(height)};
    if (screen.size && edid.widthCentimetres != 0 && edid.heightCentimetres != 0)
        screen.resolution =
            Size{perInch(width, edid.widthCentimetres), perInch(height, edid.heightCentimetres)};
    return screen;
}

}  // namespace

LinuxDisplays::LinuxDisplays(LinuxMainQueue& queue, LinuxRegistry& registry)
    : queue_(queue), registry_(registry) {}

LinuxDisplays::~LinuxDisplays() = default;

void LinuxDisplays::devicesChanged() {
    registry_.noteChanged();
    center_.post(kDisplaysReconfigured);
}

std::vector<Screen> LinuxDisplays::screens() {
    std::vector<Screen> screens;
    for (const GraphicsView& graphics : registry_.graphics())
        for (const GraphicsView::Display& display : graphics.displays)
            if (display.connector.isDriven)
                screens.push_back(
                    screenOf(display, static_cast<std::uint32_t>(screens.size() + 1)));
    return screens;
}

NotificationCenter& LinuxDisplays::notificationCenter() noexcept {
    if (!monitor_)
        monitor_ = DeviceMonitor::create(queue_, [this] { devicesChanged(); });
    return center_;
}

}  // namespace vantor
