#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "Hosts/Text/TerminalShape.h"
#include "Hosts/Text/TextFigures.h"
#include "Hosts/Text/TextLine.h"

// Shares and histories as runs of glyphs.

namespace vantor {

/// How one part of a bar looks: in colour, or by glyph where there is none.
std::string_view partGlyph(Ink part, const TerminalAbilities& abilities) noexcept;
/// Stands for a moment without figures, and for the unused part of a bar.
std::string_view emptyGlyph(Glyphs glyphs) noexcept;

/// A bar of `width` columns for 100 percent, split into user, system and nice. Any load at all
/// shows. A share that isn't a number counts as 0.
void addSplitBar(TextLine& line, const ProcessorShares& shares, std::size_t width,
                 const TerminalAbilities& abilities);

/// One column high as the share; the lowest mark where it is 0.
void addMark(TextLine& line, double used, const TerminalAbilities& abilities);

/// What one column of a history stands for.
struct HistoryColumn {
    double sum = 0;
    int count = 0;  // 0 is a gap
    double mean() const noexcept { return sum / count; }
};

/// Sorts a history into the columns that are in `into`, the newest last, each `secondsAColumn`
/// wide. The columns' bounds are fixed moments, so that a graph moves by whole columns and
/// stands still in between.
void fillHistoryColumns(const UsageHistory& history, double secondsAColumn,
                        std::vector<HistoryColumn>& into);

/// Row `row`, counted from the bottom, of a graph `height` rows high.
void addGraphRow(TextLine& line, const std::vector<HistoryColumn>& columns, std::size_t row,
                 std::size_t height, Glyphs glyphs);

}  // namespace vantor
