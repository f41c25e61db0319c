#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

#include "Foundation/Geometry.h"

namespace vantor::inline VANTOR_MODULE {

// What a module shows in the bar, as plain values: painters know nothing of what they show.
// All texts are literals; a "preference key" is read anew at each paint.

/// A preference, and the integer that it must have.
struct PreferenceCondition {
    std::string_view key;
    std::int64_t value;
};

/// Where the colour of a graph comes from when the user picks one.
struct CustomColour {
    std::string_view override_;  // preference key: 1 takes the custom colour; "" never
    std::string_view colorKey;   // preference key
};

/// One painted series.
struct GraphDictionary {
    int index = 0;          // the slot of the scaled series, 0 to 17
    std::vector<int> keys;  // the collector's values whose sum is the series
    std::optional<double> divide;
    std::optional<int> peakIndex;  // further divided by max(1, that value)
    bool dynamicPeak = false;      // scaled by the peak of the samples in view
    std::vector<int> peakIndexes;  // the values over which that peak is taken
    bool individualPeaks = false;  // its own peak in place of theirs
    std::vector<PreferenceCondition> conditions;  // all must hold, or it isn't painted
    CustomColour custom;
    std::optional<int> defaultColor;   // painted flat, a number of the palette
    bool gradient = false;             // painted with the skin's gradient
    std::optional<int> defaultStroke;  // painted as a line, a number of the palette
    bool flip = false;                 // stands on the upper edge
    std::optional<Rect> frame;         // its y and height replace those of the graph
};

enum class TextType { percentage = 0, formatted = 1, fromConfig = 2, small = 3, large = 4 };
enum class TextAlignment { left = 0, right = 1, centre = 2 };

/// A value shown as text.
struct TextItem {
    int type = 0;  // a TextType; any other number shows nothing
    std::vector<int> keys;
    bool divideByCollectors = false;   // present: the sum is NOT divided by their number
    std::string_view format;           // type 1: printf's
    std::optional<int> formatNumber;   // types 3 and 4: which formatter
    std::string_view stringKey;        // an entry of the view's texts
    std::string_view string;           // what type 3 falls back to
    std::string_view font;             // preference key: points
    std::string_view color;            // preference key
    std::string_view shadow;           // preference key; "" casts none
    std::string_view boldKey;          // preference key; type 3
    int alignment = 0;                 // type 3: a TextAlignment
    int width = 0;                     // type 3: points; 0 follows the text
    int offset = 0;                    // type 3: the text's lower edge
};

/// A dot or an arrow that lights up.
struct DotItem {
    int type = 1;  // 1 a dot, 2 an arrow; any other number shows nothing
    std::vector<int> keys;
    bool divideByCollectors = false;
    std::int64_t threshold = 0;
    bool up = false;
    int offset = 0;
    CustomColour custom;
    std::optional<int> defaultColor;
};

using Graphs = std::vector<GraphDictionary>;

/// All of it.
struct MenuExtraConfig {
    Graphs historyGraphs, verticalGraphs, pieGraphs;
    std::map<std::string_view, Graphs> graphsByKey;
    std::string_view historyGraphWidth;       // preference key: points
    std::string_view historyGraphBackground;  // preference key; "" always paints it
    std::string_view label, labelWhite;       // image names
    std::map<std::string_view, TextItem> textItems;
    std::map<std::string_view, DotItem> dotItems;
};

}  // namespace vantor::inline VANTOR_MODULE
