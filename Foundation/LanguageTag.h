#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace vantor {

/// A language as a locale or a folder of texts names it: "de", "zh-Hans", "zh_TW",
/// "de_AT.UTF-8@euro". What stands behind a dot or an at sign says nothing here.
/// Shape:  the language in small letters, the script as "Hans", the region in capitals or digits;
///         "" for what isn't told. Chinese always has a script: without a word, that of its region,
///         else the simplified one.
/// Errors: none; what names no language, such as "C" or "POSIX", has "" for it.
struct LanguageTag {
    std::string language, script, region;
    bool operator==(const LanguageTag&) const = default;
};

LanguageTag languageTag(std::string_view text);

/// Which of the `localizations` is for a user with those `preferences`, best first: for the first
/// preference that has any in its language and script, that of its very region, else that for no
/// region, else whatever there is. Nothing where no preference has one.
std::optional<std::string> preferredLocalization(std::span<const std::string> localizations,
                                                 std::span<const std::string> preferences);

}  // namespace vantor
