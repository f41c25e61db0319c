#include "Foundation/PropertyValue.h"

#include <cmath>
#include <limits>
#include <type_traits>

#include <fmt/format.h>

#include "Foundation/NumberText.h"

namespace vantor {
namespace {

std::int64_t cutToInteger(double value) noexcept {
    using Limits = std::numeric_limits<std::int64_t>;
    if (std::isnan(value))
        return 0;
    if (value >= 0x1p63)
        return Limits::max();
    return value < -0x1p63 ? Limits::min() : static_cast<std::int64_t>(value);
}

bool textIsTrue(std::string_view text) noexcept {
    auto at = text.find_first_not_of(" \t\r\n");
    if (at == std::string_view::npos)
        return false;
    if (text[at] == '+' || text[at] == '-')
        ++at;
    while (at < text.size() && text[at] == '0')
        ++at;
    return at < text.size() && std::string_view("YyTt123456789").find(text[at]) != text.npos;
}

template <class Kind>
constexpr bool isArithmetic = std::is_arithmetic_v<Kind>;

}  // namespace

bool PropertyValue::boolValue() const noexcept {
    return std::visit(
        [](const auto& value) {
            using Kind = std::remove_cvref_t<decltype(value)>;
            if constexpr (isArithmetic<Kind>)
                return value != Kind{};
            else if constexpr (std::is_same_v<Kind, std::string>)
                return textIsTrue(value);
            else
                return false;
        },
        storage_);
}

std::int64_t PropertyValue::integerValue() const noexcept {
    return std::visit(
        [](const auto& value) -> std::int64_t {
            using Kind = std::remove_cvref_t<decltype(value)>;
            if constexpr (std::is_floating_point_v<Kind>)
                return cutToInteger(value);
            else if constexpr (isArithmetic<Kind>)
                return static_cast<std::int64_t>(value);
            else if constexpr (std::is_same_v<Kind, std::string>)
                return leadingInteger(value);
            else
                return 0;
        },
        storage_);
}

double PropertyValue::doubleValue() const noexcept {
    return std::visit(
        [](const auto& value) -> double {
            using Kind = std::remove_cvref_t<decltype(value)>;
            if constexpr (isArithmetic<Kind>)
                return static_cast<double>(value);
            else if constexpr (std::is_same_v<Kind, std::string>)
                return leadingNumber(value);
            else
                return 0;
        },
        storage_);
}

std::string PropertyValue::stringValue() const {
    return std::visit(
        [](const auto& value) -> std::string {
            using Kind = std::remove_cvref_t<decltype(value)>;
            if constexpr (std::is_same_v<Kind, bool>)
                return value ? "1" : "0";
            else if constexpr (isArithmetic<Kind>)
                return fmt::format("{}", value);
            else if constexpr (std::is_same_v<Kind, std::string>)
                return value;
            else
                return {};
        },
        storage_);
}

bool isEqualToString(const PropertyValue& number, std::string_view text) {
    return number.isNumber() && number.stringValue() == text;
}

}  // namespace vantor
