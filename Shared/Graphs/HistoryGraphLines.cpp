#include "Shared/Graphs/HistoryGraphLines.h"

#include <algorithm>

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr float kLeastHeight = 2, kGreatestHeight = 100'000;

/// Above the base line, in points.
double heightOf(const HistoryColumns& columns, std::size_t slot, std::size_t index,
                const HistoryPlace& place) noexcept {
    const auto height = static_cast<float>(columns.value(slot, index) * place.rect.height);
    const bool raised = height < kLeastHeight && columns.state(index) == ColumnState::data;
    return static_cast<double>(raised ? kLeastHeight
                                      : std::clamp(height, -kGreatestHeight, kGreatestHeight));
}

/// What the edge comes from at the newer side of a column.
double startOf(const HistoryColumns& columns, std::size_t slot, std::size_t index,
               const HistoryPlace& place, Gaps gaps) noexcept {
    const auto isGap = [&](std::size_t column) {
        return columns.state(column) == ColumnState::gap;
    };
    if (index == 0 || (gaps == Gaps::breakDown && isGap(index - 1)))
        return heightOf(columns, slot, index, place);
    if (gaps == Gaps::breakDown && isGap(index))
        return 0;
    return heightOf(columns, slot, index - 1, place);
}

}  // namespace

void edgeLine(std::vector<Point>& line, const HistoryColumns& columns, std::size_t slot,
              const HistoryPlace& place, std::size_t count, Gaps gaps) {
    line.clear();
    for (std::size_t index = count; index-- > 0;) {
        const auto column = static_cast<double>(index);
        line.push_back(place.at(column + 1, heightOf(columns, slot, index, place)));
        line.push_back(place.at(column, startOf(columns, slot, index, place, gaps)));
    }
}

void runLine(std::vector<Point>& line, const HistoryColumns& columns, std::size_t slot,
             const HistoryPlace& place, std::size_t& count) {
    line.clear();
    const auto hasData = [&] { return columns.state(count - 1) == ColumnState::data; };
    while (count > 0 && !hasData())
        --count;
    for (; count > 0 && hasData(); --count) {
        const double height = heightOf(columns, slot, count - 1, place);
        line.push_back(place.at(static_cast<double>(count), height));
    }
    if (!line.empty())
        line.push_back(place.at(static_cast<double>(count), heightOf(columns, slot, count, place)));
}

}  // namespace vantor::inline VANTOR_MODULE
