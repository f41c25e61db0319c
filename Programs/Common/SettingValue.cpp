#include "Programs/Common/SettingValue.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "Foundation/Colour.h"
#include "Foundation/NumberText.h"
#include "Programs/Common/PropertyJSON.h"

namespace vantor {
namespace {

using Json = nlohmann::json;

constexpr int kDeepest = 32;
constexpr double kEnd = std::numeric_limits<double>::infinity();

// --- Bounds ------------------------------------------------------------------------------------

/// Outside `usual` a number has no sense that we know of; outside `possible` it has none at all.
struct Range {
    double from = -kEnd, to = kEnd;
    bool holds(double number) const noexcept { return number >= from && number <= to; }
};

struct Bounds {
    std::string_view keyPrefix, keySuffix;
    Range usual, possible;
};

constexpr Range kWholeNumber{-0x1p63, 0x1p63};

/// The first row that fits the key decides.
constexpr Bounds kBounds[] = {
    {"TimerFrequency", "", {0, 2}, kWholeNumber},
    {"MenubarSkinColor", "", {0, 8}, kWholeNumber},
    {"MenubarTheme", "", {0, 1}, kWholeNumber},
    {"DropdownTheme", "", {0, 1}, kWholeNumber},
    {"MenubarGraphOpacity", "", {0, 1}, {0, 1}},
    {"DropdownShowLauncher", "", {0, 1}, kWholeNumber},
    {"ProcessesCombine", "", {0, 1}, kWholeNumber},
    {"CPU_AppFormat", "", {0, 1}, kWholeNumber},
    {"CPU_CombineLogicalCores", "", {0, 1}, kWholeNumber},
    {"CPU_MenubarCombineCores", "", {0, 1}, kWholeNumber},
    {"", "Size", {8, 16}, {1, 200}},
    {"", "Width", {8, 400}, {1, 4000}},
};

Bounds boundsOf(std::string_view key) noexcept {
    for (const Bounds& row : kBounds)
        if (key.starts_with(row.keyPrefix) && key.ends_with(row.keySuffix))
            return row;
    return {};
}

ParsedSetting wrong(std::string expected) { return {{}, std::move(expected)}; }

ParsedSetting boundedNumber(std::string_view key, PropertyValue value) {
    const Bounds bounds = boundsOf(key);
    const double number = value.doubleValue();
    if (!bounds.possible.holds(number))
        return wrong(
            fmt::format("a number from {} to {}", bounds.possible.from, bounds.possible.to));
    if (!bounds.usual.holds(number))
        return {std::move(value), "",
                fmt::format("{} is usually {} to {}", key, bounds.usual.from, bounds.usual.to)};
    return {std::move(value), ""};
}

// --- Kinds -------------------------------------------------------------------------------------

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    for (char& letter : lower)
        if (letter >= 'A' && letter <= 'Z')
            letter = static_cast<char>(letter - 'A' + 'a');
    return lower;
}

std::optional<bool> flagOf(std::string_view text) {
    const std::string word = lowerCase(text);
    for (const std::string_view yes : {"true", "yes", "on", "1"})
        if (word == yes)
            return true;
    for (const std::string_view no : {"false", "no", "off", "0"})
        if (word == no)
            return false;
    return std::nullopt;
}

ParsedSetting parsedFlag(std::string_view text) {
    const std::optional<bool> flag = flagOf(text);
    return flag ? ParsedSetting{*flag, ""} : wrong("true or false");
}

/// Some flags are kept as the integers 0 and 1; their words do for them, too.
bool isFlagInAnInteger(std::string_view key) noexcept {
    static constexpr std::string_view kFlags[] = {"DropdownShowLauncher", "ProcessesCombine",
                                                  "CPU_CombineLogicalCores",
                                                  "CPU_MenubarCombineCores"};
    return std::ranges::find(kFlags, key) != std::end(kFlags);
}

ParsedSetting parsedInteger(std::string_view key, std::string_view text) {
    if (const auto flag = isFlagInAnInteger(key) ? flagOf(text) : std::nullopt)
        return {std::int64_t{*flag ? 1 : 0}, ""};
    const std::optional<std::int64_t> integer = wholeInteger(text);
    return integer ? boundedNumber(key, *integer) : wrong("a whole number");
}

/// One opacity has an integer for its default, but all of them are fractions.
bool isFraction(std::string_view key) noexcept { return key.starts_with("MenubarGraphOpacity"); }

ParsedSetting parsedReal(std::string_view key, std::string_view text) {
    const std::optional<double> real = wholeNumber(text);
    return real ? boundedNumber(key, *real) : wrong("a number");
}

std::vector<std::string_view> split(std::string_view text, char at) {
    std::vector<std::string_view> parts;
    for (auto end = text.find(at); end != text.npos; end = text.find(at)) {
        parts.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    parts.push_back(text);
    return parts;
}

std::optional<unsigned> hexDigit(char digit) noexcept {
    const auto at = std::string_view("0123456789abcdefABCDEF").find(digit);
    if (at == std::string_view::npos)
        return std::nullopt;
    return static_cast<unsigned>(at < 16 ? at : at - 6);
}

/// "#RRGGBB" or "#RRGGBBAA".
std::optional<Colour> hexColour(std::string_view text) {
    if (!text.starts_with('#') || (text.size() != 7 && text.size() != 9))
        return std::nullopt;
    std::array<double, 4> parts{0, 0, 0, 1};
    for (std::size_t part = 0; part < text.size() / 2; ++part) {
        const auto high = hexDigit(text[1 + 2 * part]), low = hexDigit(text[2 + 2 * part]);
        if (!high || !low)
            return std::nullopt;
        parts[part] = (*high * 16 + *low) / 255.0;
    }
    return Colour{parts[0], parts[1], parts[2], parts[3]};
}

/// Four numbers of 0 to 1 with single blanks between them.
bool isColourText(std::string_view text) {
    const auto parts = split(text, ' ');
    return parts.size() == 4 && std::ranges::all_of(parts, [](std::string_view part) {
               return Range{0, 1}.holds(wholeNumber(part).value_or(-1));
           });
}

ParsedSetting parsedColour(std::string_view text) {
    if (const auto colour = hexColour(text))
        return {stringFromColor(*colour), ""};
    if (isColourText(text))
        return {text, ""};
    return wrong("a colour: \"RED GREEN BLUE ALPHA\", each from 0 to 1, or #RRGGBB");
}

/// The bar's items by number. One that isn't known paints nothing, but harms nobody either.
ParsedSetting parsedModes(std::string_view key, std::string_view text) {
    static constexpr std::int64_t kModes[] = {0, 1, 2, 3, 4, 5, 6, 100};
    std::string unusual;
    for (const std::string_view part : split(text, ',')) {
        const std::optional<std::int64_t> mode = wholeInteger(part);
        if (!mode)
            return wrong("whole numbers with commas between them, such as \"100,0\"");
        if (std::ranges::find(kModes, *mode) == std::end(kModes))
            unusual = fmt::format("{} shows nothing for {}", key, *mode);
    }
    return {text, "", unusual};
}

ParsedSetting parsedText(std::string_view key, std::string_view text, const std::string& standard) {
    if (isColourText(standard))
        return parsedColour(text);
    if (key == "CPU_MenubarMode")
        return parsedModes(key, text);
    return {text, ""};
}

// --- JSON --------------------------------------------------------------------------------------

std::optional<PropertyValue> valueOf(const Json& json, int depth);

std::optional<PropertyValue> arrayOf(const Json& json, int depth) {
    PropertyValue::Array array;
    for (const Json& element : json) {
        auto value = valueOf(element, depth);
        if (!value)
            return std::nullopt;
        array.push_back(*std::move(value));
    }
    return array;
}

std::optional<PropertyValue> dictionaryOf(const Json& json, int depth) {
    PropertyValue::Dictionary dictionary;
    for (const auto& [key, element] : json.items()) {
        auto value = valueOf(element, depth);
        if (!value)
            return std::nullopt;
        dictionary.emplace(key, *std::move(value));
    }
    return dictionary;
}

/// Nothing for null, for which property lists have no value, and for what is nested too deep.
std::optional<PropertyValue> valueOf(const Json& json, int depth) {
    if (depth > kDeepest)
        return std::nullopt;
    switch (json.type()) {
    case Json::value_t::boolean:
        return json.get<bool>();
    case Json::value_t::number_integer:
        return json.get<std::int64_t>();
    case Json::value_t::number_unsigned: {
        const auto number = json.get<std::uint64_t>();
        constexpr auto kMost = std::uint64_t{std::numeric_limits<std::int64_t>::max()};
        return number <= kMost ? PropertyValue(static_cast<std::int64_t>(number))
                               : PropertyValue(number);
    }
    case Json::value_t::number_float:
        return json.get<double>();
    case Json::value_t::string:
        return json.get<std::string>();
    case Json::value_t::array:
        return arrayOf(json, depth + 1);
    case Json::value_t::object:
        return dictionaryOf(json, depth + 1);
    default:
        return std::nullopt;
    }
}

Json parsedJSON(std::string_view text) { return Json::parse(text, nullptr, false); }

ParsedSetting parsedContainer(std::string_view text, bool isList) {
    const Json json = parsedJSON(text);
    const bool fits = isList ? json.is_array() : json.is_object();
    if (auto value = fits ? valueOf(json, 0) : std::nullopt)
        return {*std::move(value), ""};
    return wrong(isList ? "a list as JSON, such as [\"a\", 1]"
                        : "a dictionary as JSON, such as {\"a\": 1}");
}

}  // namespace

ParsedSetting parsedSetting(std::string_view key, std::string_view text,
                            const PropertyValue& standard) {
    if (standard.as<bool>() != nullptr)
        return parsedFlag(text);
    if (standard.as<std::int64_t>() != nullptr && !isFraction(key))
        return parsedInteger(key, text);
    if (standard.isNumber())
        return parsedReal(key, text);
    if (standard.text() != nullptr)
        return parsedText(key, text, *standard.text());
    return parsedContainer(text, standard.array() != nullptr);
}

PropertyValue freelyParsedSetting(std::string_view text) {
    const Json json = parsedJSON(text);
    if (json.is_discarded() || json.is_string())
        return text;
    return valueOf(json, 0).value_or(text);
}

UsualRange usualRange(std::string_view key) noexcept {
    const Range usual = boundsOf(key).usual;
    return {usual.from, usual.to};
}

std::string settingText(const PropertyValue& value) {
    if (value.text() != nullptr)
        return *value.text();
    return jsonOfValue(value).dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace vantor
