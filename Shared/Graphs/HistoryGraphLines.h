#pragma once

#include <cstddef>
#include <vector>

#include "Foundation/Geometry.h"
#include "Shared/Graphs/HistoryColumns.h"

namespace vantor::inline VANTOR_MODULE {

/// Where a series stands on its picture.
/// Shape: `rect` counts x from the right edge, at `width`, since column 0 is the newest; its y
///        counts from the lower edge, at `height`, or from the upper edge where the series hangs.
struct HistoryPlace {
    Rect rect;
    double width, height;
    bool hangs = false;

    /// From the picture's upper left.
    Point at(double column, double above) const noexcept {
        const double y = rect.y + above;
        return {width - rect.x - column, hangs ? y : height - y};
    }
};

// The lines of a history graph's series, from the oldest column to the newest, in points from the
// upper left of its picture.
// Shape: `line` is emptied first and keeps its room.

enum class Gaps { bridge, breakDown };

/// The edge of the area over the newest `count` columns. A column with data is at least 2 points
/// high. With `breakDown` the area falls to its base line at a gap.
void edgeLine(std::vector<Point>& line, const HistoryColumns& columns, std::size_t slot,
              const HistoryPlace& place, std::size_t count, Gaps gaps);

/// The line over the oldest columns in a row, of the newest `count` of them, that have data and
/// aren't painted yet; `count` becomes how many are newer. Empty where there are no more.
void runLine(std::vector<Point>& line, const HistoryColumns& columns, std::size_t slot,
             const HistoryPlace& place, std::size_t& count);

}  // namespace vantor::inline VANTOR_MODULE
