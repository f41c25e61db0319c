#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "Foundation/YearlyZoneRule.h"

namespace vantor {

/// What one time zone is ahead of GMT, at any time. One that was only made is GMT itself.
class TimeZoneRules {
public:
    /// Reads a compiled zone file of any version; nothing where `bytes` aren't one.
    static std::optional<TimeZoneRules> fromZoneFile(std::string_view bytes);

    /// `time` is seconds since 1970.
    std::int32_t secondsFromGMT(std::int64_t time) const noexcept;

    struct Transition {
        std::int64_t time;
        std::int32_t offset;  // from then on
    };

private:
    std::int32_t firstOffset_ = 0;
    std::vector<Transition> transitions_;  // times rise
    std::optional<YearlyZoneRule> later_;  // after the last of them
};

}  // namespace vantor
