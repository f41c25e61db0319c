#include "Platform/Linux/DeviceMonitor.h"

#include <new>
#include <utility>

#include <systemd/sd-device.h>
#include <systemd/sd-event.h>

namespace vantor {

DeviceMonitor::DeviceMonitor(Changed changed) noexcept : changed_(std::move(changed)) {}

DeviceMonitor::~DeviceMonitor() {
    watch_.end();
    sd_device_monitor_unref(monitor_);
    sd_event_unref(event_);
}

std::unique_ptr<DeviceMonitor> DeviceMonitor::create(LinuxMainQueue& queue,
                                                     Changed changed) noexcept {
    try {
        std::unique_ptr<DeviceMonitor> monitor(new DeviceMonitor(std::move(changed)));
        return monitor->start(queue) ? std::move(monitor) : nullptr;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

bool DeviceMonitor::start(LinuxMainQueue& queue) {
    const auto told = [](sd_device_monitor*, sd_device*, void* self) {
        static_cast<DeviceMonitor*>(self)->hasNews_ = true;
        return 0;
    };
    const bool starts =
        sd_event_new(&event_) >= 0 && sd_device_monitor_new(&monitor_) >= 0 &&
        sd_device_monitor_filter_add_match_subsystem_devtype(monitor_, "drm", nullptr) >= 0 &&
        sd_device_monitor_filter_add_match_subsystem_devtype(monitor_, "pci", nullptr) >= 0 &&
        sd_device_monitor_attach_event(monitor_, event_) >= 0 &&
        sd_device_monitor_start(monitor_, told, this) >= 0;
    const int descriptor = starts ? sd_event_get_fd(event_) : -1;
    if (descriptor < 0)
        return false;
    watch_ = queue.watch(descriptor, POLLIN, [this](short) { takeNews(); });
    return true;
}

/// All that is there by now, but not for ever.
void DeviceMonitor::takeNews() {
    constexpr int kMostAtOnce = 256;
    hasNews_ = false;
    int left = kMostAtOnce;
    while (left-- > 0 && sd_event_run(event_, 0) > 0) {
    }
    if (std::exchange(hasNews_, false))
        changed_();
}

}  // namespace vantor
