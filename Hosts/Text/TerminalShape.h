#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vantor {

enum class Glyphs : std::uint8_t { ascii, unicode };
enum class ColourDepth : std::uint8_t { none, basic, palette, direct };
/// Whether the cursor can be placed; a terminal that can't only takes one line after another.
enum class Cursor : std::uint8_t { fixed, placed };

struct TerminalAbilities {
    Glyphs glyphs = Glyphs::ascii;
    ColourDepth colours = ColourDepth::none;
    Cursor cursor = Cursor::fixed;
    bool operator==(const TerminalAbilities&) const = default;
};

struct TerminalShape {
    std::size_t columns = 80, rows = 24;
    TerminalAbilities abilities;
    bool operator==(const TerminalShape&) const = default;
};

/// What a terminal says of itself by the environment's variables; "" where one isn't set.
struct TerminalEnvironment {
    std::string_view term, colorTerm, noColor, codeset;
};

TerminalAbilities terminalAbilities(const TerminalEnvironment& environment) noexcept;

}  // namespace vantor
