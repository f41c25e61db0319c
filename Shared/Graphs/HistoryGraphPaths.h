#pragma once

#include <cstddef>

#include "Foundation/Geometry.h"
#include "Painting/Path.h"
#include "Shared/Graphs/HistoryColumns.h"

namespace vantor::inline VANTOR_MODULE {

// The outlines of a history graph's series, one column a point, the newest at the left of `rect`:
// whoever paints them mirrors the coordinates.
// Shape: `path` is emptied first and keeps its room.

enum class Gaps { bridge, breakDown };

/// The newest `count` columns as an area on the lower edge of `rect`. A column with data is at
/// least 2 points high. With `breakDown` the area falls to its base line at a gap.
void fillPath(Painting::Path& path, const HistoryColumns& columns, std::size_t slot,
              const Rect& rect, std::size_t count, Gaps gaps);

/// A line over each run of columns with data that aren't painted yet.
void strokePath(Painting::Path& path, const HistoryColumns& columns, std::size_t slot,
                const Rect& rect, std::size_t count);

}  // namespace vantor::inline VANTOR_MODULE
