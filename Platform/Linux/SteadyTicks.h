#pragma once

#include <array>
#include <cstdint>

#include "Platform/Linux/ProcStat.h"
#include "Platform/ProcessorCounters.h"

namespace vantor {

/// A counter of the kernel's that isn't trusted to go one way only.
///
/// Kernel counters step back in two ways. Some jitter by a tick or two, because they are sums of
/// times that are rounded, or read, one by one: such a counter stands still until the kernel's has
/// caught up, or the same ticks would count twice. Others start over, as idle time does when a CPU
/// is plugged in again or the machine wakes: waiting for those to catch up would take days, in
/// which the CPU would seem never to idle, so counting goes on from the new start. Leaps that the
/// port's 32 bits couldn't carry, as steal time makes when a virtual machine moves, aren't time
/// that passed: they are new starts, too.
class SteadyCounter {
public:
    /// A step back of up to a second is jitter.
    static constexpr std::uint64_t kJitterTicks = 100;
    static constexpr std::uint64_t kLargestStep = 0xFFFFFFFF;

    /// From here on `raw` of the kernel's counts as `value`.
    void startAt(std::uint64_t value, std::uint64_t raw) noexcept;
    void advanceTo(std::uint64_t raw) noexcept;
    std::uint64_t value() const noexcept { return value_; }

private:
    std::uint64_t value_ = 0;
    std::uint64_t raw_ = 0;  // the kernel's figure that `value_` stands for
};

/// The four counters of one CPU, made from the kernel's ten figures, and two that are parts of
/// them.
class SteadyTicks {
public:
    /// The kernel's own count since boot.
    void startAt(const ProcessorFigures& figures) noexcept;
    /// 0, for a CPU that turns up later: what it did before would be a spike.
    void startAtZero(const ProcessorFigures& figures) noexcept;
    void advanceTo(const ProcessorFigures& figures) noexcept;
    bool started() const noexcept { return started_; }
    /// All 0 before the start.
    ProcessorTicks ticks() const noexcept;
    void addTo(ProcessorWaits& waits) const noexcept;

private:
    // Those of `ProcessorTicks`, and then iowait and steal.
    std::array<SteadyCounter, 6> counters_;
    bool started_ = false;
};

}  // namespace vantor
