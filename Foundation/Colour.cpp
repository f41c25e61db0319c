#include "Foundation/Colour.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

#include <fmt/format.h>

#include "Foundation/NumberText.h"

namespace vantor {
namespace {

/// The nearest number in single precision, which is never infinite.
float narrowed(double number) noexcept {
    constexpr double kLargest = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(number, -kLargest, kLargest));
}

}  // namespace

std::string stringFromColor(const Colour& colour) {
    return fmt::format("{:.2f} {:.2f} {:.2f} {:.2f}", colour.red, colour.green, colour.blue,
                       colour.alpha);
}

std::optional<Colour> colorFromString(const PropertyValue& value) {
    if (value.text() == nullptr)
        return std::nullopt;
    std::string_view rest = *value.text();
    std::array<float, 4> parts{};
    for (std::size_t part = 0; part < parts.size(); ++part) {
        const auto blank = rest.find(' ');
        const bool last = part + 1 == parts.size();
        if ((blank == std::string_view::npos) != last)
            return std::nullopt;
        parts[part] = narrowed(leadingNumber(rest.substr(0, blank)));
        rest.remove_prefix(last ? rest.size() : blank + 1);
    }
    return Colour{parts[0], parts[1], parts[2], parts[3]};
}

}  // namespace vantor
