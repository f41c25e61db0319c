#pragma once

#include <array>
#include <cstdint>

namespace vantor {

/// Runnable tasks over the last one, five and fifteen minutes, in fixed point: a figure is
/// `fixed` over `scale`.
struct FixedLoads {
    std::array<std::uint32_t, 3> fixed{};
    std::uint32_t scale = 1;
};

/// Port: the kernel's load averages. Main queue only; doesn't block.
class LoadAverages {
public:
    virtual ~LoadAverages() = default;
    /// The last good reading where the kernel gives none.
    virtual FixedLoads readLoads() noexcept = 0;
};

}  // namespace vantor
