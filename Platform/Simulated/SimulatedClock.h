#pragma once

#include "Platform/Clock.h"
#include "Platform/Simulated/SimulatedMainQueue.h"

namespace vantor::simulated {

/// The queue's time, and a wall clock that can be set apart from it.
class SimulatedClock final : public Clock {
public:
    explicit SimulatedClock(const SimulatedMainQueue& queue) noexcept : queue_(queue) {}

    void step(double seconds) noexcept { offset_ += seconds; }

    double now() const noexcept override { return queue_.now() + offset_; }
    double monotonic() const noexcept override { return queue_.now(); }

private:
    const SimulatedMainQueue& queue_;
    double offset_ = 0;
};

}  // namespace vantor::simulated
