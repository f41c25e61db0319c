#pragma once

#include <functional>
#include <memory>

#include "Platform/Linux/LinuxMainQueue.h"

struct sd_device_monitor;
struct sd_event;

namespace vantor {

/// Listens to what the system tells of plugs and graphics processors that come, go or change.
/// Thread: that of the main queue.
class DeviceMonitor {
public:
    using Changed = std::function<void()>;

    /// Null where the system tells nothing, as in most containers. What comes in one go is told
    /// once.
    static std::unique_ptr<DeviceMonitor> create(LinuxMainQueue& queue, Changed changed) noexcept;
    ~DeviceMonitor();
    DeviceMonitor(const DeviceMonitor&) = delete;
    DeviceMonitor& operator=(const DeviceMonitor&) = delete;

private:
    explicit DeviceMonitor(Changed changed) noexcept;
    bool start(LinuxMainQueue& queue);
    void takeNews();

    Changed changed_;
    sd_event* event_ = nullptr;
    sd_device_monitor* monitor_ = nullptr;
    bool hasNews_ = false;
    LinuxMainQueue::Watch watch_;
};

}  // namespace vantor
