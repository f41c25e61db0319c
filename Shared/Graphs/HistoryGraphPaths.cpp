#include "Shared/Graphs/HistoryGraphPaths.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr float kLeastHeight = 2;

// A shape of upright and level edges alone is rasterised in another way, whose soft edges come out
// a shade different. A part of a graph may be one where the whole isn't, and the two must come out
// alike: each path has an edge aslant where nobody sees it, behind its oldest column.
constexpr double kSlant = 1, kOutOfSight = 4;

/// Above the lower edge of the rectangle, in points.
double heightOf(const HistoryColumns& columns, std::size_t slot, std::size_t index,
                const Rect& rect) {
    const auto height = static_cast<float>(columns.value(slot, index) * rect.height);
    const bool raised = height < kLeastHeight && columns.state(index) == ColumnState::data;
    return static_cast<double>(raised ? kLeastHeight : height);
}

}  // namespace

void fillPath(Painting::Path& path, const HistoryColumns& columns, std::size_t slot,
              const Rect& rect, std::size_t count, Gaps gaps) {
    path.clear();
    bool afterGap = true;
    for (std::size_t index = 0; index < count; ++index) {
        const double left = rect.x + static_cast<double>(index);
        const double top = rect.y + heightOf(columns, slot, index, rect);
        const bool gap = columns.state(index) == ColumnState::gap;
        if (path.isEmpty())
            path.moveTo({rect.x, gaps == Gaps::breakDown ? rect.y : top});
        if (gaps == Gaps::breakDown) {
            if (!afterGap && gap)
                path.lineTo({left, rect.y});
            if (afterGap)
                path.lineTo({left, top});
            afterGap = gap;
        }
        path.lineTo({left + 1, top});
    }
    if (path.isEmpty())
        return;
    path.lineTo({rect.x + static_cast<double>(count) + kSlant, rect.y});
    path.lineTo({rect.x, rect.y});
    path.close();
}

void strokePath(Painting::Path& path, const HistoryColumns& columns, std::size_t slot,
                const Rect& rect, std::size_t count) {
    path.clear();
    bool drawing = false;
    for (std::size_t index = 0; index < count; ++index) {
        const double left = rect.x + static_cast<double>(index);
        const double top = rect.y + heightOf(columns, slot, index, rect);
        const bool has = columns.state(index) == ColumnState::data;
        if (has && !drawing)
            path.moveTo({left, top});
        if (has)
            path.lineTo({left + 1, top});
        drawing = has;
    }
    const double behind = rect.x + static_cast<double>(count) + kOutOfSight;
    path.moveTo({behind, rect.y});
    path.lineTo({behind + kSlant, rect.y + kSlant});
}

}  // namespace vantor::inline VANTOR_MODULE
