#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Platform/Linux/LinuxClock.h"
#include "Platform/Linux/LinuxMainQueue.h"
#include "Platform/SystemLog.h"

namespace vantor::test {

/// Keeps what is written.
class KeptLog final : public SystemLog {
public:
    void write(std::string_view text) noexcept override { lines.emplace_back(text); }
    std::vector<std::string> lines;
};

/// Serves `queue` until `isDone`, but no longer than that many seconds. Answers `isDone`.
template <class Condition>
bool runUntil(LinuxMainQueue& queue, Condition&& isDone, double maximumSeconds = 10) {
    const LinuxClock clock;
    const double end = clock.monotonic() + maximumSeconds;
    while (!isDone() && clock.monotonic() < end)
        queue.runOnce(0.02);
    return isDone();
}

}  // namespace vantor::test
