#include "Shared/External/SQLite/SQLFormat.h"

#include <array>
#include <cstdint>

namespace vantor::inline VANTOR_MODULE {
namespace {

template <class Integer>
PropertyValue integerAs(const PropertyValue& value) {
    return {static_cast<Integer>(value.integerValue())};
}
/// Narrowed to `Integer` and kept as an int, which binds alike.
template <class Integer>
PropertyValue shortAs(const PropertyValue& value) {
    return {std::int32_t{static_cast<Integer>(value.integerValue())}};
}
PropertyValue asItStands(const PropertyValue& value) { return value; }
PropertyValue asCharacter(const PropertyValue& value) {
    return value.text() != nullptr ? value.text()->substr(0, 1)
                                   : std::string(1, static_cast<char>(value.integerValue()));
}
PropertyValue asText(const PropertyValue& value) { return {value.stringValue()}; }
PropertyValue asDouble(const PropertyValue& value) { return {value.doubleValue()}; }
PropertyValue asFloat(const PropertyValue& value) { return {value.floatValue()}; }

struct Conversion {
    std::string_view letters;
    PropertyValue (*convert)(const PropertyValue& value);
};

constexpr std::array<Conversion, 18> kConversions{{
    {"@", asItStands},
    {"c", asCharacter},
    {"s", asText},
    {"d", integerAs<std::int32_t>},
    {"D", integerAs<std::int32_t>},
    {"i", integerAs<std::int32_t>},
    {"u", integerAs<std::uint32_t>},
    {"U", integerAs<std::uint32_t>},
    {"hi", shortAs<std::int16_t>},
    {"hu", shortAs<std::uint16_t>},
    {"qi", integerAs<std::int64_t>},
    {"qu", integerAs<std::uint64_t>},
    {"ld", integerAs<std::int64_t>},
    {"lu", integerAs<std::uint64_t>},
    {"lld", integerAs<std::int64_t>},
    {"llu", integerAs<std::uint64_t>},
    {"f", asDouble},
    {"g", asFloat},
}};

/// The conversion that `text` begins with, or null. None begins with another.
const Conversion* conversionAt(std::string_view text) {
    for (const Conversion& conversion : kConversions)
        if (text.starts_with(conversion.letters))
            return &conversion;
    return nullptr;
}

}  // namespace

void extractSQL(std::string_view sql, SQLArgumentList argumentsList, std::string& intoString,
                std::vector<PropertyValue>& arguments) {
    auto values = argumentsList.values;
    char last = 0;
    for (std::size_t at = 0; at < sql.size(); ++at) {
        const char current = sql[at];
        const Conversion* const conversion = last == '%' ? conversionAt(sql.substr(at)) : nullptr;
        if (conversion == nullptr) {
            // The first of two percent signs goes, the second stays; a NUL is never copied.
            if (current != 0 && (current != '%' || last == '%'))
                intoString += current;
            last = current;
            continue;
        }
        at += conversion->letters.size() - 1;
        last = sql[at];
        const bool isNull = current == '@' && !values.empty() && values.front().isNothing();
        intoString += isNull ? "NULL" : "?";
        if (!isNull && !values.empty())
            arguments.push_back(conversion->convert(values.front()));
        values = values.subspan(values.empty() ? 0 : 1);
    }
}

}  // namespace vantor::inline VANTOR_MODULE
