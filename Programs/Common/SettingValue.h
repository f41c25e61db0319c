#pragma once

#include <string>
#include <string_view>

#include "Foundation/PropertyValue.h"

namespace vantor {

/// What a text on the command line stands for.
struct ParsedSetting {
    PropertyValue value;    // nothing where the text isn't what the setting takes,
    std::string expected;   // which is then told here: "a whole number"
    std::string unusual{};  // why the value is odd, though it can be stored; or ""
};

/// Reads `text` as a value of the same kind as `standard`, which is the setting's default: flags
/// by their words, colours by components or as #RRGGBB, lists and dictionaries as JSON.
ParsedSetting parsedSetting(std::string_view key, std::string_view text,
                            const PropertyValue& standard);

/// The value for a setting of which nothing is known: what JSON takes for a number, a boolean, a
/// list or a dictionary is that; all else is a text.
PropertyValue freelyParsedSetting(std::string_view text);

/// The numbers that have a sense for a setting, as far as is known.
struct UsualRange {
    double from, to;
};
UsualRange usualRange(std::string_view key) noexcept;

/// In one line, as `parsedSetting` takes it.
std::string settingText(const PropertyValue& value);

}  // namespace vantor
