#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vantor {

/// What a program has used of a graphics processor, by the text that the kernel writes for the
/// descriptor that it has open.
struct DRMClientFigures {
    // i915 names its engines by what they do, xe by their classes.
    static constexpr std::array<std::string_view, 10> kEngines{
        "render", "copy", "video", "video-enhance", "compute", "rcs", "bcs", "vcs", "vecs", "ccs"};
    struct Engine {
        std::uint64_t nanoseconds = 0, cycles = 0, totalCycles = 0;
        std::uint64_t capacity = 1;  // engines of that name
    };

    std::string_view address;  // of the device
    std::uint64_t client = 0;
    std::array<Engine, kEngines.size()> engines;
    std::uint64_t systemBytes = 0, localBytes = 0;  // resident
};

/// Lines that aren't understood count as absent. `text` outlives the result.
DRMClientFigures drmClientFiguresOf(std::string_view text) noexcept;

/// The busiest engine's share of `seconds` between two texts of one client, each in percent,
/// added to `into`.
void addEngineLoads(const DRMClientFigures& before, const DRMClientFigures& after, double seconds,
                    std::array<double, DRMClientFigures::kEngines.size()>& into) noexcept;

}  // namespace vantor
