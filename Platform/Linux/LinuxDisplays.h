#pragma once

#include <memory>

#include "Platform/Displays.h"

namespace vantor {

class DeviceMonitor;
class LinuxMainQueue;
class LinuxRegistry;

/// The displays that show a picture, by their plugs; numbered from 1. Who asks for the
/// notifications makes the listening begin.
class LinuxDisplays final : public Displays {
public:
    /// Both outlive it.
    LinuxDisplays(LinuxMainQueue& queue, LinuxRegistry& registry);
    ~LinuxDisplays() override;

    /// The system has told of a device.
    void devicesChanged();

    std::vector<Screen> screens() override;
    NotificationCenter& notificationCenter() noexcept override;

private:
    LinuxMainQueue& queue_;
    LinuxRegistry& registry_;
    NotificationCenter center_;
    std::unique_ptr<DeviceMonitor> monitor_;
};

}  // namespace vantor
