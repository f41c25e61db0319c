#include <algorithm>
#include <cmath>

#include "Shared/VTRImageCache.h"
#include "Shared/VTRPreferences.h"
#include "Shared/Views/VTRMenuExtraContentView.h"

// The graph kinds of the bar. All of them paint in the band from 2 to 20 of the item's 22 points.

namespace vantor::inline VANTOR_MODULE {
namespace {

using Painting::Context;
using Records = std::span<const menubar_graph_sample>;

constexpr double kTileBottom = 2, kTileHeight = 18, kTileCap = 4;
constexpr double kGraphBottom = 3, kGraphHeight = 16;
constexpr std::int64_t kVerticalTileWidth = 9, kCombinedBarStep = 6, kCombinedBarWidth = 5;
constexpr std::int64_t kDotAnswer = 11;

/// One background for each state of the bar.
struct BackgroundNames {
    std::string_view lightHighlight, dark, darkPanel, light;
};
constexpr BackgroundNames kTiles{"menubar-graph-darkmode-black", "menubar-graph-darkmode",
                                 "menubar-graph-dark", "menubar-graph-light"};
constexpr BackgroundNames kPies{"menubar-piegraph-darkmode-black", "menubar-piegraph-darkmode",
                                "menubar-piegraph-dark", "menubar-piegraph-light"};
constexpr BackgroundNames kDotsOff{"menubar-network-dot-off-darkmode-black",
                                   "menubar-network-dot-off-darkmode",
                                   "menubar-network-dot-off-dark",
                                   "menubar-network-dot-off-light"};
constexpr BackgroundNames kArrowsUpOff{"menubar-network-arrowup-off-darkmode-black",
                                       "menubar-network-arrowup-off-darkmode",
                                       "menubar-network-arrowup-off-dark",
                                       "menubar-network-arrowup-off-light"};
constexpr BackgroundNames kArrowsDownOff{"menubar-network-arrowdown-off-darkmode-black",
                                         "menubar-network-arrowdown-off-darkmode",
                                         "menubar-network-arrowdown-off-dark",
                                         "menubar-network-arrowdown-off-light"};

struct Background {
    std::string_view name;
    double alpha;
};

Background backgroundFor(const BackgroundNames& names, const BarState& bar, double alpha) {
    if (bar.isLightHighlight())
        return {names.lightHighlight, alpha};
    if (bar.isMenubarDark)
        return {names.dark, alpha};
    if (VTRIntegerForKey("MenubarTheme") == 1)
        return {names.darkPanel, 1};
    return {names.light, alpha};
}

void drawBackground(Context& context, const BackgroundNames& names, const BarState& bar,
                    double alpha, Point point) {
    const Background background = backgroundFor(names, bar, alpha);
    if (const auto image = VTRImageNamed(background.name))
        context.drawImage(*image, point, background.alpha);
}

double valueOf(Records records, const GraphDictionary& graph) noexcept {
    const auto slot = std::min(static_cast<std::size_t>(std::max(graph.index, 0)), kGraphSlots - 1);
    return records.empty() ? 0 : records.front().graphValues[slot];
}

double valueAt(const menubar_graph_sample& record, const GraphDictionary& graph) noexcept {
    return valueOf(Records(&record, 1), graph);
}

/// In points, as the user has it; cut where sums of such widths would run over.
std::int64_t historyWidth(const MenuExtraConfig& config) {
    constexpr std::int64_t kWidest = std::int64_t{1} << 40;
    return std::clamp(VTRIntegerForKey(config.historyGraphWidth), -kWidest, kWidest);
}

double asDouble(std::int64_t number) noexcept { return static_cast<double>(number); }

/// Any load at all shows one point.
double verticalBarHeight(double value) noexcept {
    const double height = std::floor(kGraphHeight * value);
    return value > 0 && height == 0 ? 1 : height;
}

double combinedBarHeight(double value) noexcept { return std::ceil(kGraphHeight * value); }

/// The degrees at which a slice begins that grows clockwise from twelve o'clock.
double pieStart(double value) noexcept {
    const float sweep = std::ceil(static_cast<float>(value) * 360.0F);
    return sweep > 359 ? 91 : 360 - static_cast<double>(sweep) + 90;
}

/// The part of the band that a graph stands in.
Rect bandOf(const GraphDictionary& graph, Rect band) noexcept {
    if (graph.frame) {
        band.y = graph.frame->y;
        band.height = graph.frame->height;
    }
    return band;
}

double narrowed(double value) noexcept { return static_cast<double>(static_cast<float>(value)); }

}  // namespace

void VTRMenuExtraContentView::drawTile(Context& context, std::int64_t offset,
                                       std::int64_t width) const {
    const Background background = backgroundFor(kTiles, barState(), static_cast<double>(alpha()));
    if (const auto tile =
            VTRImageCache::sharedCache().imageWithLeftCap(background.name, kTileCap))
        tile->drawInRect(context, {asDouble(offset), kTileBottom, asDouble(width), kTileHeight},
                         background.alpha);
}

void VTRMenuExtraContentView::fillWithInk(Context& context, const GraphDictionary& graph,
                                          GraphKind kind) {
    const GraphInk ink = inkForGraph(graph, kind, barState());
    if (const auto* const colour = std::get_if<Colour>(&ink))
        context.fill(path_, *colour);
    else if (const auto* const gradient = std::get_if<Painting::Gradient>(&ink))
        context.fill(path_, *gradient);
    else
        context.fill(path_);
}

std::int64_t VTRMenuExtraContentView::drawPieGraphWithOffset(Context& context,
                                                             std::int64_t offset,
                                                             SampleSources collectors) {
    constexpr double kRadius = 8, kTwelveOClock = 90;
    drawBackground(context, kPies, barState(), static_cast<double>(alpha()),
                   {asDouble(offset), kTileBottom});
    drawGraphWithBlock(1, config_.pieGraphs, collectors,
                       [&](Records records, const GraphDictionary& graph) {
                           const Point centre{asDouble(offset) + 9, 11};
                           path_.clear();
                           path_.addArc(centre, kRadius, pieStart(valueOf(records, graph)),
                                        kTwelveOClock);
                           path_.lineTo(centre);
                           fillWithInk(context, graph, GraphKind::pie);
                       });
    return 18 + kGap;
}

std::int64_t VTRMenuExtraContentView::drawVerticalGraphWithOffset(Context& context,
                                                                  std::int64_t offset,
                                                                  SampleSources collectors,
                                                                  std::string_view key) {
    drawTile(context, offset, kVerticalTileWidth);
    const Graphs& graphs = key.empty() ? config_.verticalGraphs : config_.graphsByKey[key];
    drawGraphWithBlock(1, graphs, collectors, [&](Records records, const GraphDictionary& graph) {
        const Painting::StateSaver saved(context);
        const Rect bar{asDouble(offset) + 1, kGraphBottom, 7,
                       verticalBarHeight(valueOf(records, graph))};
        context.clip(Rect{bar.x, bar.y, bar.width, kGraphHeight});
        path_.clear();
        path_.addRect(bar);
        fillWithInk(context, graph, GraphKind::other);
    });
    return kVerticalTileWidth + kGap;
}

std::int64_t VTRMenuExtraContentView::drawCombinedVerticalGraphWithOffset(
    Context& context, std::int64_t offset, SampleSources collectors) {
    const auto width = static_cast<std::int64_t>(collectors.size()) * kCombinedBarStep + 1;
    drawTile(context, offset, width);
    std::int64_t left = offset + 1;
    for (std::size_t index = 0; index < collectors.size(); ++index, left += kCombinedBarStep)
        drawGraphWithBlock(
            1, config_.verticalGraphs, collectors.subspan(index, 1),
            [&](Records records, const GraphDictionary& graph) {
                const Painting::StateSaver saved(context);
                const Rect bar{asDouble(left), kGraphBottom, asDouble(kCombinedBarWidth),
                               combinedBarHeight(valueOf(records, graph))};
                context.clip(Rect{bar.x, bar.y, bar.width, kGraphHeight});
                path_.clear();
                path_.addRect(bar);
                fillWithInk(context, graph, GraphKind::other);
            });
    return width + kGap;
}

bool VTRMenuExtraContentView::paintsHistoryBackground() const {
    return config_.historyGraphBackground.empty() || VTRBoolForKey(config_.historyGraphBackground);
}

/// One column a sample, the newest at the right. Columns older than what a ring holds lie on the
/// base line, and so does a column without data.
void VTRMenuExtraContentView::outlineHistory(Records records, const GraphDictionary& graph,
                                             const Rect& rect, std::int64_t width) {
    const double base = graph.flip ? rect.y + rect.height : rect.y;
    const auto known = static_cast<std::int64_t>(records.size());
    path_.clear();
    path_.moveTo({rect.x, rect.y});
    const std::int64_t first = std::max<std::int64_t>(0, width - 1 - known);
    if (first > 0)
        path_.lineTo({rect.x + asDouble(first - 1), base});
    for (std::int64_t column = first; column < width - 1; ++column) {
        const menubar_graph_sample& record = records[static_cast<std::size_t>(width - 2 - column)];
        // A flipped series is defined as a line along its base.
        const double height = graph.flip ? 0 : valueAt(record, graph) * rect.height;
        const double y = record.empty != 0 ? base : narrowed(height + base);
        path_.lineTo({rect.x + asDouble(column), y});
    }
    path_.lineTo({rect.x + asDouble(width - 1), base});
    path_.lineTo({rect.x, base});
    path_.close();
}

std::int64_t VTRMenuExtraContentView::drawHistoryGraphWithOffset(Context& context,
                                                                 std::int64_t offset,
                                                                 SampleSources collectors) {
    const std::int64_t width = historyWidth(config_);
    if (paintsHistoryBackground())
        drawTile(context, offset, width);
    drawGraphWithBlock(
        width, config_.historyGraphs, collectors,
        [&](Records records, const GraphDictionary& graph) {
            const Painting::StateSaver saved(context);
            const Rect rect = bandOf(graph, {asDouble(offset) + 1, kGraphBottom,
                                             asDouble(width) - 2, kGraphHeight});
            if (rect.width <= 0)
                return;
            context.clip(rect);
            outlineHistory(records, graph, rect, width);
            fillWithInk(context, graph, GraphKind::other);
        });
    return width + kGap;
}

/// Like a history, for a graph that holds a part of the band, standing up or hanging down. Whether
/// it is a line rather than a filled shape.
bool VTRMenuExtraContentView::outlinePart(Records records, const GraphDictionary& graph,
                                          std::int64_t offset, std::int64_t width) {
    const Rect band = bandOf(graph, {asDouble(offset) + 1, 4, asDouble(width) - 2, 15});
    const bool isLine = graph.defaultStroke.has_value();
    const double direction = graph.flip ? -1 : 1;
    const double base = band.y + (graph.flip ? band.height : 0) - (isLine ? 1 : 0);
    const auto heightOf = [&](const menubar_graph_sample& record) {
        const double value = valueAt(record, graph);
        const double least = isLine ? 0 : record.empty == 0 && value > 0 ? 2 : 1;
        const double height = record.empty != 0 ? 0 : value * band.height;
        return std::min(std::max(height, least), band.height);
    };
    const auto known = static_cast<std::int64_t>(records.size());
    const std::int64_t first = std::max<std::int64_t>(0, width - 1 - known);
    path_.clear();
    if (!isLine)
        path_.moveTo({band.x + asDouble(first), base});
    for (std::int64_t column = first; column < width - 1; ++column) {
        const menubar_graph_sample& record = records[static_cast<std::size_t>(width - 2 - column)];
        const Point point{band.x + asDouble(column),
                          narrowed(base + direction * heightOf(record))};
        if (path_.isEmpty())
            path_.moveTo(point);
        else
            path_.lineTo(point);
    }
    if (!isLine) {
        path_.lineTo({band.x + asDouble(width - 1), base});
        path_.close();
    }
    return isLine;
}

std::int64_t VTRMenuExtraContentView::drawMultipleHistoryGraphWithOffset(
    Context& context, std::int64_t offset, SampleSources collectors) {
    const std::int64_t width = historyWidth(config_);
    if (paintsHistoryBackground())
        drawTile(context, offset, width);
    drawGraphWithBlock(width, config_.historyGraphs, collectors,
                       [&](Records records, const GraphDictionary& graph) {
                           if (width <= 2)
                               return;
                           const Painting::StateSaver saved(context);
                           context.clip(Rect{asDouble(offset) + 1, kGraphBottom,
                                             asDouble(width) - 2, kGraphHeight});
                           if (outlinePart(records, graph, offset, width))
                               context.stroke(path_, strokeColorForGraph(graph), 1);
                           else
                               fillWithInk(context, graph, GraphKind::other);
                       });
    return width + kGap;
}

std::int64_t VTRMenuExtraContentView::drawDotWithOffset(Context& context, std::int64_t offset,
                                                        SampleSources collectors,
                                                        std::string_view key) {
    const auto entry = config_.dotItems.find(key);
    if (entry == config_.dotItems.end() || (entry->second.type != 1 && entry->second.type != 2))
        return 0;
    const DotItem& item = entry->second;
    const bool isDot = item.type == 1;
    const Point lowerLeft{asDouble(offset), item.offset + 1.0};
    if (sumOfNewestSamples(collectors, item.keys, item.divideByCollectors) <
        asDouble(item.threshold)) {
        const BackgroundNames& names = isDot ? kDotsOff : item.up ? kArrowsUpOff : kArrowsDownOff;
        drawBackground(context, names, barState(), static_cast<double>(alpha()), lowerLeft);
        return kDotAnswer;
    }
    path_.clear();
    if (isDot) {
        path_.addOval({lowerLeft.x, lowerLeft.y, 7, 7});
    } else {
        const double base = lowerLeft.y + (item.up ? 0 : 7), tip = lowerLeft.y + (item.up ? 7 : 0);
        path_.moveTo({lowerLeft.x, base});
        path_.lineTo({lowerLeft.x + 3.5, tip});
        path_.lineTo({lowerLeft.x + 7, base});
        path_.close();
    }
    GraphDictionary colours;
    colours.custom = item.custom;
    colours.defaultColor = item.defaultColor;
    context.fill(path_, fillColorForGraph(colours));
    const std::string_view on = isDot     ? "menubar-network-dot-on"
                                : item.up ? "menubar-network-arrowup-on"
                                          : "menubar-network-arrowdown-on";
    if (const auto image = VTRImageNamed(on))
        context.drawImage(*image, lowerLeft);
    return kDotAnswer;
}

std::int64_t VTRMenuExtraContentView::drawLabel(Context& context, std::int64_t offset) {
    constexpr std::int64_t kLabelAnswer = 12;
    const bool white = barState().isInkWhite(skinColor);
    if (const auto image = VTRImageNamed(white ? config_.labelWhite : config_.label))
        context.drawImage(*image, Point{asDouble(offset), kTileBottom});
    return kLabelAnswer;
}

}  // namespace vantor::inline VANTOR_MODULE
