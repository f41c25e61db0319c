#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "Platform/MainQueue.h"

namespace vantor::simulated {

/// A main queue in virtual time, which moves only when it is told to: code takes no time.
/// Delayed calls come `latency` late, as on a real run loop; calls without delay don't.
/// Units:  seconds since 1970, of a clock that nobody sets.
/// Thread: the test's.
class SimulatedMainQueue final : public MainQueue {
public:
    explicit SimulatedMainQueue(double start, double latencySeconds = 0.002) noexcept
        : now_(start), latency_(latencySeconds) {}

    double now() const noexcept { return now_; }
    /// Forward only. What falls due on the way stays queued until `runDueCalls`.
    void moveTo(double time) noexcept;
    /// When the next call falls due, if there is one.
    std::optional<double> nextDue() const noexcept;
    /// Runs what is due now, and what that makes due.
    void runDueCalls();
    /// Moves from due time to due time and runs what is due, up to and including `time`.
    void runUntil(double time);
    /// Forgets all calls: the process is gone.
    void clear() noexcept { calls_.clear(); }
    /// Somebody else has `task` called, at that time to the dot; it may be in the past.
    void at(double time, Task task) { add(time, std::move(task)); }

    void async(Task task) override;
    CallID after(double delaySeconds, Task task) override;
    void cancel(CallID call) noexcept override;
    bool isCurrent() const noexcept override { return true; }

private:
    struct Call {
        double due;
        std::uint64_t id;  // also the order in which calls were asked for
        Task task;
        bool comesAfter(const Call& other) const noexcept {
            return due != other.due ? due > other.due : id > other.id;
        }
    };
    CallID add(double due, Task task);

    double now_, latency_;
    std::uint64_t lastID_ = 0;
    std::vector<Call> calls_;  // a heap, the earliest first
};

}  // namespace vantor::simulated
