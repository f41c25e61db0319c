#pragma once

#include <cstdint>
#include <optional>

namespace vantor {

/// What a driver says of a graphics processor, in bytes and percent; nothing where it doesn't.
struct GPUFigures {
    std::optional<std::uint64_t> memoryTotal, memoryUsed;
    std::optional<std::uint64_t> sharedTotal, sharedUsed;  // of the machine's own memory
    std::optional<double> load;
};

/// Asks one graphics processor's driver. Whoever calls has made sure that it may be touched.
/// Thread: main queue. Reading doesn't block, and allocates nothing after the first few times.
class GPUReader {
public:
    virtual ~GPUReader() = default;
    /// `now` is of a monotonic clock.
    virtual GPUFigures read(double now) = 0;
};

}  // namespace vantor
