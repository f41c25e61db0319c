#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vantor {

/// One process as the kernel counts it. Its number and its start together are its identity: a
/// number is used again, and later.
struct ProcessReading {
    std::int32_t id = 0, parent = 0, session = 0;
    bool isKernelThread = false;
    std::uint64_t startTicks = 0;  // from boot to its start
    std::uint64_t ticks = 0;       // that it has spent on processors, in its own and the kernel's
                                   // code
    double time = 0;               // of this reading, in seconds of the monotonic clock
    // The kernel's name for it, which is cut at 15 bytes; a thread of the kernel may have more.
    std::array<char, 64> nameBytes{};
    std::size_t nameSize = 0;

    std::string_view name() const noexcept { return {nameBytes.data(), nameSize}; }
    bool isSameProcess(const ProcessReading& other) const noexcept {
        return id == other.id && startTicks == other.startTicks;
    }
};

/// Stands for the application that processes were started as parts of: the same for all of them.
enum class ApplicationID : std::uint64_t { none = 0 };

/// Port: the processes of this machine, those that we may see. One thread at a time; reads
/// kernel files, and opens nothing that is private to a process.
class ProcessSource {
public:
    virtual ~ProcessSource() = default;
    /// The kernel's ticks, of which all counts here are made.
    virtual double ticksPerSecond() const noexcept = 0;
    /// What `startTicks` of a process that starts now would be.
    virtual std::uint64_t ticksSinceBoot() const noexcept = 0;
    /// Replaces `into` with all processes by rising number. False, and `into` empty, where there
    /// is no reading. A process that ends meanwhile may be missing.
    [[nodiscard]] virtual bool read(std::vector<ProcessReading>& into) = 0;
    /// The text that a person knows the process by, in readable letters.
    virtual std::string displayName(const ProcessReading& process) = 0;
    /// `none` where it isn't known to be part of one.
    virtual ApplicationID application(const ProcessReading& process) = 0;
};

}  // namespace vantor
