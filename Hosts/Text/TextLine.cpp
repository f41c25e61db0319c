#include "Hosts/Text/TextLine.h"

#include <algorithm>
#include <array>

namespace vantor {
namespace {

/// How an ink is switched on, by depth of colour; behind a glyph the same colour as background.
struct InkCodes {
    std::string_view basic, palette, direct;
    std::string_view basicBehind, paletteBehind, directBehind;
};

// Middling tones, which stand out from a dark background and from a light one.
constexpr std::array<InkCodes, 7> kInks{{
    {"", "", "", "", "", ""},
    {";1", ";1", ";1", "", "", ""},
    {";90", ";38;5;245", ";38;2;138;138;138", "", "", ""},
    {";34", ";38;5;68", ";38;2;82;139;214", ";44", ";48;5;68", ";48;2;82;139;214"},
    {";31", ";38;5;167", ";38;2;217;95;87", ";41", ";48;5;167", ";48;2;217;95;87"},
    {";33", ";38;5;178", ";38;2;207;163;54", ";43", ";48;5;178", ";48;2;207;163;54"},
    {";36", ";38;5;73", ";38;2;79;166;166", ";46", ";48;5;73", ";48;2;79;166;166"},
}};

std::string_view code(Ink ink, ColourDepth colours) noexcept {
    const InkCodes& codes = kInks[static_cast<std::size_t>(ink)];
    switch (colours) {
    case ColourDepth::none:
        return "";
    case ColourDepth::basic:
        return codes.basic;
    case ColourDepth::palette:
        return codes.palette;
    case ColourDepth::direct:
        return codes.direct;
    }
    return "";
}

std::string_view codeBehind(Ink ink, ColourDepth colours) noexcept {
    const InkCodes& codes = kInks[static_cast<std::size_t>(ink)];
    switch (colours) {
    case ColourDepth::none:
        return "";
    case ColourDepth::basic:
        return codes.basicBehind;
    case ColourDepth::palette:
        return codes.paletteBehind;
    case ColourDepth::direct:
        return codes.directBehind;
    }
    return "";
}

}  // namespace

void TextLine::start(ColourDepth colours, std::size_t limit) noexcept {
    text_.clear();
    columns_ = 0;
    limit_ = limit;
    colours_ = colours;
    ink_ = behind_ = Ink::plain;
}

void TextLine::add(Ink ink, std::string_view text, std::size_t columns) {
    const bool isASCII = columns == text.size();
    const std::size_t taken = std::min(columns, room());
    if (taken == 0 || (taken < columns && !isASCII))
        return;
    switchTo(ink, Ink::plain);
    text_ += isASCII ? text.substr(0, taken) : text;
    columns_ += taken;
}

void TextLine::addCell(Ink ink, Ink behind, std::string_view glyph) {
    if (room() == 0)
        return;
    switchTo(ink, behind);
    text_ += glyph;
    ++columns_;
}

void TextLine::addSpace(std::size_t columns) {
    const std::size_t taken = std::min(columns, room());
    if (taken > 0 && behind_ != Ink::plain)
        switchTo(Ink::plain, Ink::plain);
    text_.append(taken, ' ');
    columns_ += taken;
}

void TextLine::padTo(std::size_t column) { addSpace(column > columns_ ? column - columns_ : 0); }

void TextLine::finish() { switchTo(Ink::plain, Ink::plain); }

void TextLine::switchTo(Ink ink, Ink behind) {
    if ((ink == ink_ && behind == behind_) || colours_ == ColourDepth::none)
        return;
    ink_ = ink;
    behind_ = behind;
    text_ += "\x1b[0";
    text_ += code(ink, colours_);
    text_ += codeBehind(behind, colours_);
    text_ += 'm';
}

}  // namespace vantor
