#include "Platform/Linux/LinuxGraphicsControl.h"

#include <algorithm>

#include "Platform/Linux/LinuxRegistry.h"

namespace vantor {
namespace {

bool drivesScreens(const GraphicsView& graphics) noexcept {
    return std::ranges::any_of(graphics.displays,
                               [](const auto& display) { return display.connector.isDriven; });
}

}  // namespace

bool LinuxGraphicsControl::open() {
    const auto graphics = registry_.graphics();
    const auto integrated = std::ranges::count_if(graphics, &GraphicsView::isIntegrated);
    return integrated > 0 && integrated < std::ssize(graphics);
}

std::optional<std::int64_t> LinuxGraphicsControl::activeGPU() {
    std::optional<std::int64_t> active;
    for (const GraphicsView& graphics : registry_.graphics())
        if (drivesScreens(graphics) && active != kIntegrated)
            active = graphics.isIntegrated ? kIntegrated : kDiscrete;
    return active;
}

}  // namespace vantor
