#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/Geometry.h"
#include "Shared/Graphs/HistoryGraph.h"
#include "Shared/VTRMenuItem.h"

namespace vantor::inline VANTOR_MODULE {

// Rows with bars and history graphs.
// Units:  points of a flipped view.
// Thread: main.

std::shared_ptr<VTRMenuItem> createBarGraphItem(int width, int height);
/// As large as `rect`, the bar at that height.
std::shared_ptr<VTRMenuItem> createBarGraphItem2(const Rect& rect, double y);
/// The bar at the right, `barWidth` wide.
std::shared_ptr<VTRMenuItem> createBarGraphItemWithLabel(std::string_view label, int width,
                                                         int height, int barWidth);

/// Makes a graph of one kind with the frame that it is given.
using GraphClass = std::shared_ptr<HistoryGraph> (*)(const Rect& frame);

template <class Graph>
std::shared_ptr<HistoryGraph> makeGraph(const Rect& frame) {
    return std::make_shared<Graph>(frame);
}

/// The four numbers of `rect` are the row's width, the graph's height, and the margins above and
/// below it.
std::shared_ptr<VTRMenuItem> createHistoryGraph(GraphClass graphClass, const Rect& rect);
/// A stack of graphs, `count` scales from `firstIndex` on, each under its name. Without collector
/// they stay empty until they get one.
std::shared_ptr<VTRMenuItem> createHistoryGraphs(GraphClass graphClass, int count, int firstIndex,
                                                 const StatSamples* collector);
/// A stack of graphs of now, one a collector, as `createHistoryGraph` makes them.
std::shared_ptr<VTRMenuItem> createGraphs(GraphClass graphClass,
                                          const std::vector<const StatSamples*>& collectors,
                                          const Rect& rect);

template <class Graph>
std::shared_ptr<VTRMenuItem> createHistoryGraph(const Rect& rect) {
    return createHistoryGraph(makeGraph<Graph>, rect);
}
template <class Graph>
std::shared_ptr<VTRMenuItem> createHistoryGraphs(int count, int firstIndex,
                                                 const StatSamples* collector) {
    return createHistoryGraphs(makeGraph<Graph>, count, firstIndex, collector);
}
template <class Graph>
std::shared_ptr<VTRMenuItem> createGraphs(const std::vector<const StatSamples*>& collectors,
                                          const Rect& rect) {
    return createGraphs(makeGraph<Graph>, collectors, rect);
}

/// What the scales 1 to 3 are called, in the user's language; "" for any other.
std::string historyLabelForIndex(std::int64_t index);

}  // namespace vantor::inline VANTOR_MODULE
