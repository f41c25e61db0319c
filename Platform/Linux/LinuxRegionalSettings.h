#pragma once

#include <string_view>

#include "Platform/Linux/Environment.h"
#include "Platform/RegionalSettings.h"

namespace vantor {

/// The regional settings of one locale of the C library, LC_MEASUREMENT and LC_TIME, and the
/// languages that the environment names. They are read once, at construction, and from the locale
/// itself: the process's own, which a host may set as it likes, is neither asked nor changed.
/// Errors: a locale that isn't installed reads as "C", which is metric and writes 24 hours.
class LinuxRegionalSettings final : public RegionalSettings {
public:
    /// "" means what the environment says: LC_ALL, else the category's own variable, else LANG.
    explicit LinuxRegionalSettings(const char* localeName = "",
                                   const Environment& environment = processEnvironment());
    bool usesMetricSystem() const override { return metric_; }
    std::string shortTimeFormat() const override { return shortTimeFormat_; }
    std::vector<std::string> preferredLanguages() const override { return preferredLanguages_; }
    std::string dateText(double localSeconds, std::string_view pattern,
                         const std::optional<std::string>& locale) const override;

private:
    bool metric_;
    std::string shortTimeFormat_;
    std::vector<std::string> preferredLanguages_;
    std::string timeLocale_;  // by LC_TIME
};

/// The pattern for a time without seconds that goes with a strftime format, by the first hour in
/// it: "%I", "%l" or "%r" give "h:mm a"; "%k", "%-H" or "%_H" give "H:mm"; all others "HH:mm".
std::string shortTimeFormatFor(std::string_view strftimeFormat);

/// The languages in which messages are wanted, as gettext orders them: that of LC_ALL, else
/// LC_MESSAGES, else LANG; in its place, unless it is "C", the list in LANGUAGE. "C" and "POSIX"
/// are no language, and what follows them in the list is never asked for.
std::vector<std::string> preferredLanguagesIn(const Environment& environment);

}  // namespace vantor
