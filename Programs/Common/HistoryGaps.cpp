#include "Programs/Common/HistoryGaps.h"

#include <optional>

namespace vantor {
namespace {

/// Samples stand on a grid; more than this part of a slot isn't the clock's drift.
constexpr double kMissedSlots = 1.5;

}  // namespace

std::vector<HistoryGap> gapsOf(std::span<const HistoryRow> rows, double interval) {
    std::vector<HistoryGap> gaps;
    std::optional<double> before;
    bool inGap = false;
    const auto extend = [&](double first, double last) {
        if (inGap)
            gaps.back().last = last;
        else
            gaps.push_back({first, last});
        inGap = true;
    };
    for (const HistoryRow& row : rows) {
        if (before && row.time - *before > kMissedSlots * interval)
            extend(*before + interval, row.time - interval);
        if (row.empty)
            extend(row.time, row.time);
        else
            inGap = false;
        before = row.time;
    }
    return gaps;
}

}  // namespace vantor
