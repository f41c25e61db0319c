#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "Foundation/Colour.h"
#include "Foundation/Geometry.h"
#include "Shared/Views/MenuExtraConfig.h"

namespace vantor::inline VANTOR_MODULE {

// What a history graph of the dropdown shows, as plain values. All texts are literals; a
// "preference key" is read anew at each paint.

/// One series, painted over those before it.
struct HistorySeries {
    std::size_t index = 0;            // the slot of the scaled series, 0 to 17
    std::vector<std::size_t> keys{};  // the collector's values whose sum is the series
    std::optional<float> divide{};
    std::optional<std::size_t> peakIndex{};         // further divided by max(1, that value)
    std::vector<PreferenceCondition> conditions{};  // all must hold, or it isn't painted
    bool flip = true;                               // false hangs it from the upper edge
    std::optional<Rect> frame{};                    // its x, y and height replace the graph's
    std::optional<Colour> fillColor{}, strokeColor{};
    std::optional<std::int64_t> storageModeLimit{};  // not painted at coarser scales
    double strokeWidth = 1;                          // kept, but lines are 1 wide
};

/// All of it.
struct HistoryGraphConfig {
    std::vector<HistorySeries> graphs{};
    bool useCache = false;     // what was painted is kept and moves on
    bool dynamicPeak = false;  // scaled by the graph's own peak and low
    bool individualPeaks = false;
    std::string_view individualPeakPreference{};  // "" for none
    std::vector<std::int64_t> individualPeakValues{};
    bool drawCenterLine = false;
    bool drawCenterLinePreference = false;  // the line depends on "Network_GraphMode"
    std::vector<std::int64_t> drawCenterLineValues{};
};

}  // namespace vantor::inline VANTOR_MODULE
