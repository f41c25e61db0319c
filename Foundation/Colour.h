#pragma once

#include <optional>
#include <string>

#include "Foundation/PropertyValue.h"

namespace vantor {

/// Red, green, blue and alpha, 0 to 1, in the device's colour space.
struct Colour {
    double red = 0, green = 0, blue = 0, alpha = 1;
    bool operator==(const Colour&) const = default;
};

inline constexpr Colour kBlack{0, 0, 0, 1};
inline constexpr Colour kWhite{1, 1, 1, 1};

/// The text form of preferences: four numbers of two decimals, separated by single blanks.
std::string stringFromColor(const Colour& colour);

/// A colour from its text form, with any number of decimals, read in single precision; a part
/// that isn't a number is 0. Nothing where `value` isn't a text of exactly four parts.
std::optional<Colour> colorFromString(const PropertyValue& value);

}  // namespace vantor
