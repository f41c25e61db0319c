#pragma once

#include <cstdint>

namespace vantor {

/// Port: the time zone that the user lives in. Any thread.
class TimeZone {
public:
    virtual ~TimeZone() = default;
    /// What it is ahead of GMT at that time, seconds since 1970.
    virtual std::int32_t secondsFromGMT(double time) const noexcept = 0;
};

}  // namespace vantor
