#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Foundation/Colour.h"
#include "Foundation/Geometry.h"

namespace vantor::Painting {

enum class Weight : std::uint8_t { regular, medium, bold };

/// A font. Without a family it is the system's; one that the machine lacks is stood in for by its
/// nearest relative.
struct Font {
    double size = 13;
    Weight weight = Weight::regular;
    bool tabularDigits = false;  // all digits equally wide, so that a running number doesn't jitter
    std::string family{};
    bool operator==(const Font&) const = default;
};

/// The text again in another colour, below itself; without blur.
struct Shadow {
    Size offset{};  // to the right and upwards on the screen, in either kind of view
    Colour colour{};
    bool operator==(const Shadow&) const = default;
};

enum class Alignment : std::uint8_t { left, right, centre };

/// What happens to a text that is wider than its rectangle: it runs on, or it ends in "…".
enum class Overflow : std::uint8_t { visible, truncateTail };

struct TextAttributes {
    Font font{};
    Colour colour = kBlack;
    Alignment alignment = Alignment::left;
    std::optional<Shadow> shadow{};
    Overflow overflow = Overflow::visible;
    bool operator==(const TextAttributes&) const = default;
};

/// The width and the height of the text on one line, not rounded; for "" the height of the line.
/// The screen's scale, the locale and the desktop's font settings have no part in it. What isn't
/// UTF-8 counts as replacement characters, and only the first 1,024 characters count at all.
/// Thread: main.
Size sizeOfText(std::string_view text, const TextAttributes& attributes) noexcept;

}  // namespace vantor::Painting
