#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace vantor {

/// Ticks that one logical CPU has spent since boot, a hundredth of a second each. The counters
/// wrap at 32 bits and otherwise never fall.
struct ProcessorTicks {
    std::uint32_t user = 0, system = 0, idle = 0, nice = 0;
    bool operator==(const ProcessorTicks&) const = default;
};

/// What of all CPUs' ticks was spent on something that the four states don't tell apart, over all
/// that were spent; since an unknown start, never falling.
struct ProcessorWaits {
    std::uint64_t iowait = 0;  // of idle: waiting for a disk
    std::uint64_t steal = 0;   // of system: taken by other virtual machines
    std::uint64_t all = 0;
    bool operator==(const ProcessorWaits&) const = default;
};

struct ProcessCounts {
    std::int32_t tasks = 0, threads = 0;
};

/// Port: the kernel's processor counters. Main queue only (and the start-up work before the
/// first tick); doesn't block. Reading doesn't allocate.
class ProcessorCounters {
public:
    virtual ~ProcessorCounters() = default;
    /// How many CPUs the counters cover. Stays the same for the life of the program.
    virtual std::size_t cpuCount() const noexcept = 0;
    /// What the machine says of itself, 0 where it doesn't: CPUs, logical and physical cores.
    virtual std::int64_t configuredCPUs() const noexcept = 0;
    virtual std::int64_t logicalCores() const noexcept = 0;
    virtual std::int64_t physicalCores() const noexcept = 0;
    /// Fills one entry per CPU, threads of one core side by side; a CPU that is offline stands
    /// still. Where there is no reading, `into` stays untouched and the result is false.
    virtual bool readTicks(std::span<ProcessorTicks> into) noexcept = 0;
    virtual ProcessCounts readProcessCounts() noexcept = 0;
    /// As of the last reading of the ticks; all 0 where the machine doesn't tell.
    virtual ProcessorWaits waits() const noexcept { return {}; }
};

}  // namespace vantor
