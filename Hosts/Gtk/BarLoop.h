#pragma once

#include <cstdint>
#include <vector>

#include "Hosts/Gtk/BarHost.h"
#include "Platform/Linux/LinuxMainQueue.h"

namespace vantor {

/// Has the main queue serve the bars' toolkit: one sleep waits for both, and a wake-up for one is
/// a wake-up for the other. Thread: main queue, which it ends before.
class BarLoop {
public:
    BarLoop(LinuxMainQueue& queue, BarToolkit& toolkit, BarHost& host) noexcept
        : queue_(queue), toolkit_(toolkit), host_(host) {}
    ~BarLoop() { cancelCall(); }
    BarLoop(const BarLoop&) = delete;
    BarLoop& operator=(const BarLoop&) = delete;

    /// Displays the item and lets the toolkit do what it has to. Belongs after each batch of
    /// calls: what they changed in the toolkit is waited for only from then on.
    /// Stops the queue where the display has ended.
    void serve();
    bool isDisplayLost() const noexcept { return toolkit_.isLost(); }

private:
    void display();
    void waitFor(const BarWait& wait);
    void watch(std::span<const pollfd> descriptors);
    void cancelCall() noexcept;

    LinuxMainQueue& queue_;
    BarToolkit& toolkit_;
    BarHost& host_;
    std::vector<pollfd> watched_;
    std::vector<LinuxMainQueue::Watch> watches_;
    MainQueue::CallID call_{};
    bool isCallDue_ = false;
};

}  // namespace vantor
