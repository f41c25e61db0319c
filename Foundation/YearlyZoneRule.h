#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace vantor {

/// How a time zone goes on for ever: one offset, or two that take turns each year.
class YearlyZoneRule {
public:
    /// Reads "CET-1CEST,M3.5.0,M10.5.0/3" and its like; nothing where it isn't a rule.
    static std::optional<YearlyZoneRule> fromText(std::string_view text);

    /// `time` is seconds since 1970.
    std::int32_t secondsFromGMT(std::int64_t time) const noexcept;

    /// When in a year the clocks are set.
    struct Change {
        enum class Kind : std::uint8_t { dayWithoutLeapDay, day, weekday };
        Kind kind = Kind::day;
        int day = 0;                      // counted from 0; of a weekday from Sunday
        int month = 1, week = 1;          // of a weekday; week 5 is the last
        std::int32_t seconds = 2 * 3600;  // after midnight, by the clock before the change
    };

private:
    struct Summer {
        std::int32_t offset;
        std::array<Change, 2> changes;  // to summer time, and back
    };
    std::int32_t offset_ = 0;
    std::optional<Summer> summer_;
};

}  // namespace vantor
