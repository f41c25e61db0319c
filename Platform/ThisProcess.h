#pragma once

#include <cstdint>
#include <string>

namespace vantor {

/// Port: the process that the program runs in, and its threads. Any thread.
class ThisProcess {
public:
    virtual ~ThisProcess() = default;
    /// The host's name, where the program is a plug-in; "" where it can't be had.
    virtual std::string name() const = 0;
    /// The caller's thread, as the system's tools name it.
    virtual std::uint32_t threadID() const noexcept = 0;
    virtual std::string threadName() const = 0;
};

}  // namespace vantor
