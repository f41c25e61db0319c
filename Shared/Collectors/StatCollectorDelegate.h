#pragma once

#include <optional>

namespace vantor::inline VANTOR_MODULE {

class StatCollector;

/// Who is told of a collector's samples.
class StatCollectorDelegate {
public:
    virtual ~StatCollectorDelegate() = default;
    /// `mode` is a row of the schedule: 0 after a measurement, 1 to 8 when that scale's tick was
    /// handled.
    virtual void collectorUpdatedForMode(StatCollector& collector, int mode) = 0;
    /// Asked before each measurement; nothing from a delegate that has no opinion.
    virtual std::optional<bool> collectorShouldUpdateStateForSequence(StatCollector& collector,
                                                                      int sequence) = 0;
};

}  // namespace vantor::inline VANTOR_MODULE
