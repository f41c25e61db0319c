#include "Shared/VTRMenuItemGraphBuilders.h"

#include <array>
#include <cmath>

#include <fmt/format.h>

#include "Shared/Graphs/BarGraph.h"
#include "Shared/VTRMenuItemBuilders.h"
#include "Shared/VTRMenuItemControls.h"
#include "Shared/VTRMenuItemHeaderBuilders.h"
#include "Shared/VTRTranslations.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kGraphInset = 10;
constexpr Size kHistoryRow{324, 84};
constexpr Rect kHistoryGraph{kGraphInset, kGraphInset, 304, 70};
constexpr int kHistoryWidth = 324;
constexpr std::int64_t kHighGraph = 1;
/// By scale, from 1.
constexpr std::array<std::string_view, 3> kScales{"LAST HOUR", "LAST 24 HOURS", "LAST 7 DAYS"};

void addBar(VTRMenuItem& item, double y) {
    item.graph = addControl<BarGraph>(
        item, {kGraphInset, y, item.view()->frame().width - 2 * kGraphInset, BarGraph::kHeight},
        Resizing::width);
}

void addGraph(VTRMenuItem& item, std::shared_ptr<HistoryGraph> graph) {
    item.view()->addSubview(graph);
    item.historyGraph = std::move(graph);
}

void addBottom(VTRMenuItem& stack) {
    stack.addSubMenuItem(createFillerItem(nullptr, "", VTRMakeSize(225, 5)), "filler-bottom");
}

std::shared_ptr<VTRMenuItem> createScale(GraphClass graphClass, std::int64_t index,
                                         const StatSamples* collector) {
    auto item = createRow(kHistoryRow);
    addGraph(*item, graphClass(kHistoryGraph));
    HistoryGraph& graph = *item->historyGraph;
    graph.setSizeType(kHighGraph);
    graph.setStorageMode(index);
    graph.setUseAllSamples(true);
    graph.setBreakStroke(true);
    graph.setCollector(collector);
    return item;
}

}  // namespace

std::shared_ptr<VTRMenuItem> createBarGraphItem(int width, int height) {
    const Size size{static_cast<double>(width), static_cast<double>(height)};
    auto item = createRow(size);
    addBar(*item, std::floor((size.height - BarGraph::kHeight) / 2));
    return item;
}

std::shared_ptr<VTRMenuItem> createBarGraphItem2(const Rect& rect, double y) {
    auto item = createRow(rect.size());
    addBar(*item, y);
    return item;
}

std::shared_ptr<VTRMenuItem> createBarGraphItemWithLabel(std::string_view label, int width,
                                                         int height, int barWidth) {
    const double row = width, high = height, bar = barWidth;
    auto item = createRow({row, high});
    item->label = addField<StatInterfaceTextFieldLabel>(
        *item, {kTextInset, std::ceil(high - kTextRowHeight) / 2, row - 130, high}, label,
        {.resizing = Resizing::width});
    item->graph = addControl<BarGraph>(
        *item,
        {row - kGraphInset - bar, std::floor(high - BarGraph::kHeight) / 2, bar, BarGraph::kHeight},
        Resizing::leftMargin);
    return item;
}

std::shared_ptr<VTRMenuItem> createHistoryGraph(GraphClass graphClass, const Rect& rect) {
    const double width = rect.x, graphHeight = rect.y, above = rect.width, below = rect.height;
    auto item = createRow({width, graphHeight + above + below});
    addGraph(*item, graphClass({kGraphInset, above, width - 2 * kGraphInset, graphHeight}));
    item->historyGraph->setResizing(Resizing::width);
    return item;
}

std::shared_ptr<VTRMenuItem> createHistoryGraphs(GraphClass graphClass, int count, int firstIndex,
                                                 const StatSamples* collector) {
    auto stack = createMenuItem();
    for (std::int64_t index = firstIndex; index < std::int64_t{firstIndex} + count; ++index) {
        stack->addSubMenuItem(
            createHeaderItem(nullptr, "", historyLabelForIndex(index), kHistoryWidth),
            fmt::format("header-{}", index));
        stack->addSubMenuItem(createScale(graphClass, index, collector),
                              fmt::format("graph-{}", index));
    }
    addBottom(*stack);
    return stack;
}

std::shared_ptr<VTRMenuItem> createGraphs(GraphClass graphClass,
                                          const std::vector<const StatSamples*>& collectors,
                                          const Rect& rect) {
    auto stack = createMenuItem();
    for (std::size_t index = 0; index < collectors.size(); ++index) {
        auto item = createHistoryGraph(graphClass, rect);
        item->historyGraph->setStorageMode(0);
        item->historyGraph->setCollector(collectors[index]);
        stack->addSubMenuItem(item, fmt::format("graph-{}", index));
    }
    addBottom(*stack);
    return stack;
}

std::string historyLabelForIndex(std::int64_t index) {
    if (index < 1 || index > static_cast<std::int64_t>(kScales.size()))
        return {};
    return VTRLocalizedString(kScales[static_cast<std::size_t>(index - 1)], {}, "common");
}

}  // namespace vantor::inline VANTOR_MODULE
