#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantor {

/// Port: the user's regional settings. Any thread.
class RegionalSettings {
public:
    virtual ~RegionalSettings() = default;
    virtual bool usesMetricSystem() const = 0;
    /// How a time without seconds is written, in date pattern letters: "HH:mm", "h:mm a".
    virtual std::string shortTimeFormat() const = 0;
    /// The languages that the user reads, best first, such as "de_AT" or "zh-Hans". None where
    /// the user has no wish.
    virtual std::vector<std::string> preferredLanguages() const = 0;
    /// A moment in the letters of a date pattern such as "EEEE d MMM, h:mm a", in the words of
    /// `locale`, or of the user's own without one. `localSeconds` is what the clocks around the
    /// user show, as seconds since 1970.
    virtual std::string dateText(double localSeconds, std::string_view pattern,
                                 const std::optional<std::string>& locale) const = 0;
};

}  // namespace vantor
