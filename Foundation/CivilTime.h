#pragma once

#include <cstdint>
#include <optional>

namespace vantor {

/// A moment as calendars and clocks show it.
struct CivilTime {
    int year = 1970;
    unsigned month = 1, day = 1;
    unsigned hour = 0, minute = 0, second = 0, millisecond = 0;
    bool operator==(const CivilTime&) const = default;
};

/// `time` is seconds since 1970, `secondsFromGMT` what the place is ahead of GMT. Milliseconds are
/// cut off from whole microseconds, which is as fine as a double tells. Only the years 1 to 9999
/// can be shown: what lies outside comes out as the nearest of them.
CivilTime civilTime(double time, std::int32_t secondsFromGMT = 0) noexcept;

/// Seconds since 1970 of a moment in GMT; nothing where there is no such day or time.
std::optional<std::int64_t> secondsOf(const CivilTime& time) noexcept;

/// The year that the week of this day is counted in, which near its ends isn't always the day's.
int weekYear(const CivilTime& time) noexcept;

}  // namespace vantor
