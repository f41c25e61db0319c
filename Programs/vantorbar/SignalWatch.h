#pragma once

#include <functional>
#include <vector>

#include "Platform/Linux/Descriptor.h"
#include "Platform/Linux/LinuxMainQueue.h"

namespace vantor {

/// Tells of signals on the main queue. At most one at a time.
/// What asks the program to end does so only once: the second time it ends there and then.
/// A broken pipe becomes an error of the write. Programs that we start know nothing of all this.
class SignalWatch {
public:
    using Heard = std::function<void(int signal)>;

    /// Throws std::system_error where the kernel has no descriptor left.
    SignalWatch(LinuxMainQueue& queue, const std::vector<int>& signals, Heard heard);
    ~SignalWatch();
    SignalWatch(const SignalWatch&) = delete;
    SignalWatch& operator=(const SignalWatch&) = delete;

    /// Readable while a signal waits to be told.
    int descriptor() const noexcept { return readEnd_.get(); }

private:
    void tell(const Heard& heard);

    Descriptor readEnd_, writeEnd_;
    std::vector<int> signals_;
    LinuxMainQueue::Watch watch_;
};

/// Whether a signal is one that asks a program to end.
bool asksToEnd(int signal) noexcept;

}  // namespace vantor
