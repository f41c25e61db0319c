#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace vantor {

/// Percent of the time.
struct ProcessorShares {
    double user = 0, system = 0, nice = 0;
    double used() const noexcept { return user + system + nice; }
    bool operator==(const ProcessorShares&) const = default;
};

/// What was measured over some time. A moment without a point is a gap.
struct UsageHistory {
    struct Point {
        double time = 0;  // seconds since 1970
        double used = 0;  // percent
    };
    double newestTime = 0;      // up to which it reaches; 0 before the first measurement
    std::vector<Point> points;  // newest first
};

/// All that the text face shows.
struct TextFigures {
    double time = 0;                      // seconds since 1970
    std::optional<ProcessorShares> mean;  // of all cores; nothing before the first measurement
    std::vector<ProcessorShares> cores;   // by logical CPU
    std::optional<std::array<double, 3>> loads;  // over 1, 5 and 15 minutes
    std::int32_t tasks = 0, threads = 0;
    UsageHistory tenMinutes, hour;
};

}  // namespace vantor
