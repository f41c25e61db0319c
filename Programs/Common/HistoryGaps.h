#pragma once

#include <span>
#include <vector>

#include "Programs/Common/HistoryFileReader.h"

namespace vantor {

/// A stretch of time that nobody measured.
/// Units:  `first` and `last` are the times of its first and last slot on the scale's grid.
struct HistoryGap {
    double first = 0, last = 0;
    bool operator==(const HistoryGap&) const = default;
};

/// The gaps between samples that are `interval` seconds apart, oldest first: empty samples, and
/// times for which there is no row at all.
std::vector<HistoryGap> gapsOf(std::span<const HistoryRow> rows, double interval);

}  // namespace vantor
