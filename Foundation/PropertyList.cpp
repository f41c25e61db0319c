#include "Foundation/PropertyList.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <iterator>
#include <memory>
#include <span>
#include <type_traits>

#include <fmt/format.h>
#include <plist/plist.h>

#include "Foundation/NumberText.h"
#include "Foundation/PropertyListTree.h"

namespace vantor {
namespace {

constexpr int kDeepest = 128;
constexpr std::string_view kXMLHead = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                                      "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                                      "<plist version=\"1.0\">\n";

// --- Reading -----------------------------------------------------------------------------------

/// The text between a node's own tags. The library's readings don't tell a negative integer from
/// a large unsigned one, and hold a date in 32 bits; its XML form has both right.
std::string elementText(plist_t node) {
    char* text = nullptr;
    std::uint32_t length = 0;
    plist_to_xml(node, &text, &length);
    const CText owned(text);
    const std::string_view xml(text == nullptr ? "" : text, text == nullptr ? 0 : length);
    const auto close = xml.rfind("</", xml.rfind("</plist>") - 1);
    const auto open = xml.rfind('>', close);
    if (close == xml.npos || open == xml.npos)
        return {};
    return std::string(xml.substr(open + 1, close - open - 1));
}

PropertyValue integerOf(plist_t node) {
    std::uint64_t bits = 0;
    plist_get_uint_val(node, &bits);
    const auto integer = static_cast<std::int64_t>(bits);
    if (integer >= 0 || elementText(node).starts_with('-'))
        return integer;
    return bits;
}

PropertyValue realOf(plist_t node) {
    double real = 0;
    plist_get_real_val(node, &real);
    return real;
}

PropertyValue booleanOf(plist_t node) {
    std::uint8_t boolean = 0;
    plist_get_bool_val(node, &boolean);
    return boolean != 0;
}

PropertyValue textOf(plist_t node) {
    std::uint64_t length = 0;
    const char* const text = plist_get_string_ptr(node, &length);
    return text == nullptr ? std::string{} : std::string(text, length);
}

PropertyValue dataOf(plist_t node) {
    std::uint64_t length = 0;
    const char* const data = plist_get_data_ptr(node, &length);
    if (data == nullptr)
        return PropertyValue::Data{};
    const auto bytes = std::as_bytes(std::span(data, length));
    return PropertyValue::Data(bytes.begin(), bytes.end());
}

/// "YYYY-MM-DDTHH:MM:SSZ", the year in as many digits as it has.
PropertyValue dateOf(plist_t node) {
    const std::string text = elementText(node);
    const auto yearEnd = text.find('-', 1);
    if (yearEnd == text.npos || text.size() < yearEnd + 15)
        return {};
    const auto part = [&](std::size_t at) {
        return static_cast<unsigned>(
            leadingInteger(std::string_view(text).substr(yearEnd + at, 2)));
    };
    using namespace std::chrono;
    const year_month_day day{year(static_cast<int>(leadingInteger(text))), month(part(1)),
                             std::chrono::day(part(4))};
    if (!day.ok())
        return {};
    const auto time = sys_days(day) + hours(part(7)) + minutes(part(10)) + seconds(part(13));
    return PropertyValue::Date{static_cast<double>(time.time_since_epoch().count())};
}

std::optional<PropertyValue> valueOf(plist_t node, int depth);

std::optional<PropertyValue> arrayOf(plist_t node, int depth) {
    plist_array_iter position = nullptr;
    plist_array_new_iter(node, &position);
    const std::unique_ptr<void, CFree> owned(position);
    PropertyValue::Array array;
    plist_t item = nullptr;
    while (plist_array_next_item(node, position, &item), item != nullptr) {
        auto value = valueOf(item, depth);
        if (!value)
            return std::nullopt;
        array.push_back(*std::move(value));
    }
    return array;
}

std::optional<PropertyValue> dictionaryOf(plist_t node, int depth) {
    plist_dict_iter position = nullptr;
    plist_dict_new_iter(node, &position);
    const std::unique_ptr<void, CFree> owned(position);
    PropertyValue::Dictionary dictionary;
    for (;;) {
        char* key = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, position, &key, &item);
        const CText ownedKey(key);
        if (key == nullptr || item == nullptr)
            return dictionary;
        auto value = valueOf(item, depth);
        if (!value)
            return std::nullopt;
        dictionary.insert_or_assign(key, *std::move(value));
    }
}

/// Nothing where the list is nested too deep; a value that is nothing for a kind that has none
/// here, such as the references of a keyed archive.
std::optional<PropertyValue> valueOf(plist_t node, int depth) {
    if (depth > kDeepest)
        return std::nullopt;
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN:
        return booleanOf(node);
    case PLIST_UINT:
        return integerOf(node);
    case PLIST_REAL:
        return realOf(node);
    case PLIST_STRING:
        return textOf(node);
    case PLIST_DATA:
        return dataOf(node);
    case PLIST_DATE:
        return dateOf(node);
    case PLIST_ARRAY:
        return arrayOf(node, depth + 1);
    case PLIST_DICT:
        return dictionaryOf(node, depth + 1);
    default:
        return PropertyValue{};
    }
}

// --- Writing -----------------------------------------------------------------------------------

// The library would write an integer above 2^63 as a negative one and has no call that takes it
// as what it is, so the XML is our own.

std::string escaped(std::string_view text) {
    std::string xml;
    xml.reserve(text.size());
    for (const char letter : text) {
        if (letter == '&')
            xml += "&amp;";
        else if (letter == '<')
            xml += "&lt;";
        else if (letter == '>')
            xml += "&gt;";
        else if (letter == '\r')
            xml += "&#13;";  // a bare one reads as a line feed
        else if (static_cast<unsigned char>(letter) >= ' ' || letter == '\n' || letter == '\t')
            xml += letter;  // XML has no way to hold the other control characters
    }
    return xml;
}

std::string base64(const PropertyValue::Data& data) {
    static constexpr std::string_view kDigits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t at = 0; at < data.size(); at += 3) {
        const std::size_t bytes = std::min<std::size_t>(3, data.size() - at);
        std::uint32_t group = 0;
        for (std::size_t byte = 0; byte < 3; ++byte)
            group =
                group << 8 | (byte < bytes ? std::to_integer<std::uint32_t>(data[at + byte]) : 0);
        for (std::size_t digit = 0; digit < 4; ++digit)
            text += digit <= bytes ? kDigits[group >> (18 - 6 * digit) & 63] : '=';
    }
    return text;
}

std::string realText(double real) {
    if (std::isnan(real))
        return "nan";
    if (std::isinf(real))
        return real > 0 ? "+infinity" : "-infinity";
    return fmt::format("{}", real);  // the shortest text that reads back as the same number
}

std::string dateText(PropertyValue::Date date) {
    using namespace std::chrono;
    constexpr double kFirst = -62135596800, kLast = 253402300799;  // years 1 to 9999
    const double whole = std::isnan(date.seconds) ? 0 : std::floor(date.seconds);
    const sys_seconds time{seconds(static_cast<std::int64_t>(std::clamp(whole, kFirst, kLast)))};
    const auto midnight = floor<days>(time);
    const year_month_day day(midnight);
    const hh_mm_ss clock(time - midnight);
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", static_cast<int>(day.year()),
                       static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()),
                       clock.hours().count(), clock.minutes().count(), clock.seconds().count());
}

class XMLWriter {
public:
    void write(const PropertyValue& value) {
        std::visit([this](const auto& stored) { writeKind(stored); }, value.storage());
    }
    std::string take() { return std::move(xml_); }

private:
    template <class Kind>
    void writeKind(const Kind& value) {
        if constexpr (std::is_same_v<Kind, bool>)
            line("<{}/>", value ? "true" : "false");
        else if constexpr (std::is_floating_point_v<Kind>)
            line("<real>{}</real>", realText(value));
        else if constexpr (std::is_integral_v<Kind>)
            line("<integer>{}</integer>", value);
        else if constexpr (std::is_same_v<Kind, std::string>)
            line("<string>{}</string>", escaped(value));
        else if constexpr (std::is_same_v<Kind, PropertyValue::Data>)
            line("<data>{}</data>", base64(value));
        else if constexpr (std::is_same_v<Kind, PropertyValue::Date>)
            line("<date>{}</date>", dateText(value));
    }

    void writeKind(const PropertyValue::Array& array) {
        line("<array>");
        ++indent_;
        for (const PropertyValue& value : array)
            write(value);
        --indent_;
        line("</array>");
    }

    void writeKind(const PropertyValue::Dictionary& dictionary) {
        line("<dict>");
        ++indent_;
        for (const auto& [key, value] : dictionary) {
            if (value.isNothing())
                continue;
            line("<key>{}</key>", escaped(key));
            write(value);
        }
        --indent_;
        line("</dict>");
    }

    template <class... Arguments>
    void line(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
        xml_.append(indent_, '\t');
        fmt::format_to(std::back_inserter(xml_), format, std::forward<Arguments>(arguments)...);
        xml_ += '\n';
    }

    std::string xml_{kXMLHead};
    std::size_t indent_ = 0;
};

}  // namespace

std::optional<PropertyValue> propertyListValue(std::string_view bytes) {
    const PropertyListTree tree(bytes);
    return tree.root() == nullptr ? std::nullopt : valueOf(tree.root(), 0);
}

std::string propertyListXML(const PropertyValue& value) {
    XMLWriter writer;
    writer.write(value);
    return writer.take() + "</plist>\n";
}

}  // namespace vantor
