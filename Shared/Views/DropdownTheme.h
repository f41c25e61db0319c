#pragma once

#include <cstdint>
#include <string>

#include "Foundation/Colour.h"
#include "Painting/Text.h"
#include "Shared/VTRPreferenceFunctions.h"

namespace vantor::inline VANTOR_MODULE {

// What the controls of the dropdown share: its two themes, its blue, its fonts.

constexpr Colour grey(double white, double alpha = 1) noexcept {
    return {white, white, white, alpha};
}

/// One colour or the other, by the theme that the dropdown has now.
inline Colour themed(const Colour& light, const Colour& dark) {
    return dropdownTheme() == 1 ? dark : light;
}

/// What lies below all rows.
inline Colour menuBackground() { return themed(grey(0.98), grey(0.16)); }

inline constexpr Colour kHighlightLower{0.447, 0.612, 0.859, 1};
inline constexpr Colour kHighlightUpper{0.482, 0.749, 0.878, 1};

// The faces of the dropdown, at a size in points.
Painting::Font vtrNormalFont(std::int64_t size);
Painting::Font vtrMediumFont(std::int64_t size);
Painting::Font vtrBoldFont(std::int64_t size);

/// The width of a text in a font, not rounded; 0 for "".
double widthOfText(std::string_view text, const Painting::Font& font) noexcept;

}  // namespace vantor::inline VANTOR_MODULE
