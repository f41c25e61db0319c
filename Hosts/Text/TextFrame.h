#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "Hosts/Text/TerminalShape.h"
#include "Hosts/Text/TextBars.h"
#include "Hosts/Text/TextFigures.h"
#include "Hosts/Text/TextLine.h"

namespace vantor {

/// What a terminal shows at one moment, line by line.
/// Shape:  keeps its memory from one drawing to the next.
class TextFrame {
public:
    std::span<const TextLine> lines() const noexcept { return {lines_.data(), count_}; }

private:
    friend class FrameWriter;
    std::vector<TextLine> lines_;
    std::size_t count_ = 0;
    std::vector<HistoryColumn> columns_;  // of the history that is being drawn
};

/// Draws the figures for a terminal of that shape: the whole and its split, every core, and the
/// last ten minutes and the last hour. What has no room is left out from the bottom up; cores
/// that don't fit fold into a denser grid. Figures stand in fixed columns.
/// No line is wider than the terminal less one, so that none of them wraps.
void renderInto(TextFrame& frame, const TextFigures& figures, const TerminalShape& shape);
TextFrame render(const TextFigures& figures, const TerminalShape& shape);

/// The figures in one line of ASCII, for a terminal whose cursor can't be placed.
void renderSummary(TextLine& line, const TextFigures& figures);

}  // namespace vantor
