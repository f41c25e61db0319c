#pragma once

#include <optional>
#include <span>
#include <vector>

#include "Platform/ProcessSource.h"

namespace vantor {

/// All processes at one time.
struct ProcessesReading {
    std::vector<ProcessReading> processes;  // by rising number
    double time = 0;                        // when it began, in seconds of the monotonic clock
    std::uint64_t ticksSinceBoot = 0;       // at the same moment
};

/// A process's part of one processor, in percent; nothing where two readings don't tell it.
using ProcessShare = std::optional<double>;

/// Percent of the time between two readings of one process; nothing when no time has passed.
/// Counts that fell are no use at all.
ProcessShare shareBetween(const ProcessReading& before, const ProcessReading& after,
                          double ticksPerSecond) noexcept;

/// Fills one share for each process of `after`. One that was born between the readings has spent
/// all its ticks there; of one that was missed by the earlier reading nothing is known.
void sharesBetween(const ProcessesReading& before, const ProcessesReading& after,
                   double ticksPerSecond, std::vector<ProcessShare>& into);

}  // namespace vantor
