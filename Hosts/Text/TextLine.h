#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "Hosts/Text/TerminalShape.h"

namespace vantor {

/// What a piece of text is for; how it then looks is the terminal's affair.
enum class Ink : std::uint8_t { plain, strong, dim, user, system, nice, graph };

/// One line on its way to a terminal: text with colour changes, and the columns that it takes.
/// Colours are switched only where they change, and off at the end.
/// Shape:  at most `limit` columns; what would be past them is cut off. Keeps its memory over
///         `start`, so that a line drawn again doesn't allocate.
class TextLine {
public:
    void start(ColourDepth colours, std::size_t limit) noexcept;
    /// `columns` is what the text takes on screen: its bytes, or fewer.
    void add(Ink ink, std::string_view text, std::size_t columns);
    void add(Ink ink, std::string_view ascii) { add(ink, ascii, ascii.size()); }
    /// One column, with `behind` as the colour behind the glyph.
    void addCell(Ink ink, Ink behind, std::string_view glyph);
    void addSpace(std::size_t columns);
    /// Blanks up to a column; nothing where the line is there already.
    void padTo(std::size_t column);
    void finish();

    std::size_t columns() const noexcept { return columns_; }
    const std::string& text() const noexcept { return text_; }

private:
    std::size_t room() const noexcept { return limit_ - columns_; }
    void switchTo(Ink ink, Ink behind);

    std::string text_;
    std::size_t columns_ = 0, limit_ = 0;
    ColourDepth colours_ = ColourDepth::none;
    Ink ink_ = Ink::plain, behind_ = Ink::plain;
};

}  // namespace vantor
