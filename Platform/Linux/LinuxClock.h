#pragma once

#include <cstdint>

#include "Platform/Clock.h"

namespace vantor {

/// What `LinuxClock::monotonic` says, in nanoseconds.
std::int64_t monotonicNanoseconds() noexcept;

class LinuxClock final : public Clock {
public:
    double now() const noexcept override;
    double monotonic() const noexcept override;
};

}  // namespace vantor
