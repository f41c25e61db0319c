#include "Foundation/NumberText.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace vantor {
namespace {

std::string_view withoutLeadingBlanks(std::string_view text) noexcept {
    const auto first = text.find_first_not_of(" \t\r\n\v\f");
    return first == std::string_view::npos ? std::string_view{} : text.substr(first);
}

/// from_chars takes no plus sign; a number in a text may have one.
std::string_view withoutPlus(std::string_view text) noexcept {
    const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+';
    return plus ? text.substr(1) : text;
}

template <class Number>
std::optional<Number> whole(std::string_view text) noexcept {
    Number number{};
    const std::string_view digits = withoutPlus(text);
    const char* const end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, number);
    return result.ec == std::errc{} && result.ptr == end ? std::optional(number) : std::nullopt;
}

}  // namespace

std::int64_t leadingInteger(std::string_view text) noexcept {
    const std::string_view digits = withoutPlus(withoutLeadingBlanks(text));
    std::int64_t number = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (result.ec != std::errc::result_out_of_range)
        return number;
    using Limits = std::numeric_limits<std::int64_t>;
    return digits.front() == '-' ? Limits::min() : Limits::max();
}

double leadingNumber(std::string_view text) noexcept {
    const std::string_view digits = withoutPlus(withoutLeadingBlanks(text));
    double number = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    // "inf" and "nan" are words here, not numbers.
    return result.ec == std::errc{} && std::isfinite(number) ? number : 0;
}

std::optional<std::int64_t> wholeInteger(std::string_view text) noexcept {
    return whole<std::int64_t>(text);
}

std::optional<double> wholeNumber(std::string_view text) noexcept {
    const std::optional<double> number = whole<double>(text);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

}  // namespace vantor
