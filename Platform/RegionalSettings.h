#pragma once

#include <string>
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
};

}  // namespace vantor
