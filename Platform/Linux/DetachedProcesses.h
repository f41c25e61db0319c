#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

#include "Platform/Linux/Descriptor.h"
#include "Platform/Linux/LinuxMainQueue.h"

namespace vantor {

/// Starts programs that go their own way: in a session of their own, with none of our
/// descriptors and signal settings, and with nothing to read or write. Their ends are collected
/// on the main queue, so that none stays behind as a zombie; those that outlive us stay.
/// Thread: main queue only.
class DetachedProcesses {
public:
    explicit DetachedProcesses(LinuxMainQueue& queue) noexcept : queue_(queue) {}
    /// The first argument is the program's file. False where it can't be started.
    bool start(std::vector<std::string> arguments);

private:
    struct Child {
        pid_t process;
        Descriptor descriptor;
        LinuxMainQueue::Watch watch;
    };

    void collectWhenItEnds(pid_t process);
    void collect(pid_t process);

    LinuxMainQueue& queue_;
    std::vector<Child> children_;
};

}  // namespace vantor
