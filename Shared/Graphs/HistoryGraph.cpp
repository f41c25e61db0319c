#include "Shared/Graphs/HistoryGraph.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "Painting/Image.h"
#include "Shared/Graphs/GraphTooltip.h"
#include "Shared/Graphs/HistoryGraphLines.h"
#include "Shared/ProcessContext.h"
#include "Shared/VTRImageCache.h"
#include "Shared/VTRPreferenceFunctions.h"
#include "Shared/VTRTranslations.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kLabelImageWidth = 14;
constexpr double kFrameWidth = 3;  // of a graph's width, what its frame takes
constexpr double kLeftEdge = 2, kLowerEdge = 2;
constexpr double kAroundColumns = 5;  // of a graph's height, what its frame takes
constexpr std::size_t kJoin = 2;      // columns beside new ones that are painted with them
constexpr std::size_t kNothingPainted = std::numeric_limits<std::size_t>::max();
constexpr double kTagHeight = 14, kTagRadius = 3, kTagMargin = 9;
constexpr Colour kCenterLine{1, 1, 1, 0.15}, kTagGround{0, 0, 0, 0.5};

/// By storage mode.
constexpr std::string_view kRanges[] = {"5 Mins",  "Hour",    "24 Hours", "7 Days",
                                        "30 Days", "90 Days", "180 Days", "365 Days"};

template <class Values>
bool containsValue(const Values& values, std::int64_t value) {
    return std::ranges::find(values, value) != values.end();
}

/// How high the newest `count` columns reach, with the tips of their lines; all of `height` where
/// a series stands elsewhere than at the lower edge.
double shownHeight(const HistoryGraphConfig& config, const HistoryColumns& columns,
                   std::size_t count, double height) noexcept {
    constexpr double kTip = 6;
    double greatest = 0;
    for (const HistorySeries& series : config.graphs) {
        if (!series.flip || series.frame)
            return height;
        for (std::size_t index = 0; index < count; ++index)
            greatest = std::max(greatest, columns.value(series.index, index));
    }
    return std::ceil(std::min(kLowerEdge + greatest * (height - kAroundColumns) + kTip, height));
}

}  // namespace

/// What a paint changes in the picture that is kept, in columns.
struct HistoryGraph::Strip {
    std::size_t moved;      // to the left by so many
    std::size_t repainted;  // from the newest on
};

HistoryGraph::HistoryGraph(const Rect& frame, HistoryGraphConfig config)
    : View(frame), config_(std::move(config)) {
    NotificationCenter& center = ProcessContext::current().ports().localNotifications;
    clearCacheNotification_ =
        center.observe("HISTORYGRAPH_CLEAR_CPU", [this](const Notification&) { clearCache(); });
    shutdown_ =
        center.observe("HISTORYGRAPH_SHUTDOWN_CPU", [this](const Notification&) { cleanup(); });
}

HistoryGraph::~HistoryGraph() = default;

void HistoryGraph::setCollector(const StatSamples* collector) {
    collector_ = collector != nullptr ? collector->handle() : WeakHandle<const StatSamples>();
    clearCache();
}

void HistoryGraph::setCollectors(const std::vector<const StatSamples*>& collectors) {
    usesCollectors_ = !collectors.empty();
    collectors_.clear();
    for (const StatSamples* const collector : collectors)
        collectors_.push_back(collector->handle());
    clearCache();
}

void HistoryGraph::setLabelImage(std::shared_ptr<const Painting::Image> image) {
    labelImage_ = std::move(image);
    setNeedsDisplay();
}

void HistoryGraph::clearCache() {
    image_.reset();
    lastWidth_ = 0;
    hasColumns_ = false;
    peaks_.fill(0);
    peak_ = 1;
    low_ = 0;
}

void HistoryGraph::cleanup() {
    setCollector(nullptr);
    setCollectors({});
    // The observer itself stays until the graph goes: a centre may be telling it right now.
}

std::optional<std::string> HistoryGraph::range() const {
    const bool named = storageMode_ >= (forceLabel_ ? 0 : 1) &&
                       storageMode_ < static_cast<std::int64_t>(std::size(kRanges));
    if (!named)
        return std::nullopt;
    return VTRLocalizedString(kRanges[storageMode_], {}, "general");
}

std::optional<std::string> HistoryGraph::tooltipAt(Point point) const {
    const double right = cutWidth() - kLeftEdge;
    if (!hasColumns_ || point.x < kLeftEdge || point.x >= right || point.y < 0 ||
        point.y >= frame().height)
        return std::nullopt;
    const auto column = static_cast<std::size_t>(std::ceil(right - point.x) - 1);
    if (column >= columnCount())
        return std::nullopt;
    return tooltipText(columns_.time(column), storageMode_,
                       columns_.isGap(column) ? "" : valueText(column));
}

double HistoryGraph::cutWidth() const noexcept {
    return std::trunc(frame().width) - (labelImage_ ? kLabelImageWidth : 0);
}

std::size_t HistoryGraph::columnCount() const noexcept {
    const double columns =
        std::trunc(frame().width - kFrameWidth) - (labelImage_ ? kLabelImageWidth : 0);
    return static_cast<std::size_t>(
        std::clamp(columns, 0.0, static_cast<double>(HistoryColumns::kColumns)));
}

bool HistoryGraph::calculatePeak() {
    peak_ = 1;
    low_ = 0;
    return false;
}

void HistoryGraph::viewDidMoveToWindow() {
    if (window() != nullptr && config_.useCache)
        prepareToDraw(lastScale_);
}

/// Brings columns and picture up to date.
void HistoryGraph::prepareToDraw(double scale) {
    if (config_.useCache && lastWidth_ != static_cast<float>(cutWidth())) {
        clearCache();
        lastWidth_ = static_cast<float>(cutWidth());
    }
    sources_.clear();
    for (const auto& collector : collectors_)
        if (const StatSamples* const source = collector.get())
            sources_.push_back(source);
    if (const StatSamples* const source = collector_.get(); source && !usesCollectors_)
        sources_.push_back(source);
    if (!std::exchange(hasColumns_, true)) {
        std::size_t values = 0;
        for (const StatSamples* const source : sources_)
            values = std::max(values, source->sampleValueCount());
        columns_.clear(values);
    }
    const HistoryUpdate update = columns_.update(
        latestSampleID_, sources_,
        static_cast<StorageType>(storageIndex(static_cast<int>(storageMode_))), useAllSamples_);

    // A picture for another screen is of no use, nor is one that would move by half a pixel.
    const bool whole = !config_.useCache || scale != lastScale_ || scale != std::trunc(scale);
    lastScale_ = scale;
    if (whole)
        image_.reset();
    const std::size_t count = columnCount();
    const Strip strip{update.added, update.added + (update.merged ? 1 : 0) + kJoin};
    scaleColumns(count, image_ ? strip.repainted + kJoin : kNothingPainted);
    if (config_.dynamicPeak && rescaleColumns(count))
        image_.reset();
    renewImage(strip, scale);
}

void HistoryGraph::scaleColumns(std::size_t count, std::size_t paintedFrom) {
    for (const HistorySeries& series : config_.graphs)
        columns_.scale(series, count, paintedFrom);
}

/// Whether all of it is to be painted again.
bool HistoryGraph::rescaleColumns(std::size_t count) {
    const bool changed = calculatePeak();
    const bool individual = config_.individualPeaks ||
                            (!config_.individualPeakPreference.empty() &&
                             containsValue(config_.individualPeakValues,
                                           VTRIntegerForKey(config_.individualPeakPreference)));
    std::array<double, kGraphSlots> peaks;
    peaks.fill(peak_);
    columns_.rescale(count, individual ? peaks_ : peaks, low_);
    if (changed)
        columns_.forgetPainted(count);
    return changed;
}

void HistoryGraph::renewImage(const Strip& strip, double scale) {
    const Size size{frame().width - (labelImage_ ? kLabelImageWidth : 0), frame().height};
    const double right = std::max(cutWidth() - kFrameWidth, 0.0);
    const auto left = right - static_cast<double>(strip.repainted);
    const bool moves = image_ && image_->size() == size && left > kLeftEdge;
    if (!moves)
        image_.emplace(size, scale);
    // At the frame's inner edge.
    Rect clip{kLeftEdge, 2, cutWidth() - 4, frame().height - kAroundColumns};
    if (!moves)
        return drawGraphs(clip, columnCount());
    const auto pixels = [scale](double points) { return static_cast<int>(points * scale); };
    image_->scrollLeft(pixels(static_cast<double>(strip.moved)), pixels(kLeftEdge), pixels(left));
    clip.width -= left - clip.x;
    clip.x = left;
    drawGraphs(clip, std::min(columnCount(), strip.repainted + kJoin + 1));
}

void HistoryGraph::drawGraphs(const Rect& clip, std::size_t count) {
    for (const HistorySeries& series : config_.graphs)
        if (isPainted(series))
            drawSeries(clip, series, count);
}

bool HistoryGraph::isPainted(const HistorySeries& series) const {
    if (series.storageModeLimit && storageMode_ > *series.storageModeLimit)
        return false;
    return std::ranges::all_of(series.conditions, [](const PreferenceCondition& condition) {
        return VTRIntegerForKey(condition.key) == condition.value;
    });
}

void HistoryGraph::drawSeries(const Rect& clip, const HistorySeries& series, std::size_t count) {
    HistoryPlace place{.rect = {kLeftEdge, kLowerEdge, 0, frame().height - kAroundColumns},
                       .width = cutWidth(),
                       .height = frame().height,
                       .hangs = !series.flip};
    if (series.frame)
        place.rect = *series.frame;
    if (series.fillColor) {
        edgeLine(line_, columns_, series.index, place, count,
                 breakStroke_ ? Gaps::breakDown : Gaps::bridge);
        const Point base[]{place.at(static_cast<double>(count), 0), place.at(0, 0)};
        bands_.fillBetween(*image_, clip, line_, base, *series.fillColor);
    }
    if (!series.strokeColor)
        return;
    while (count > 0) {
        runLine(line_, columns_, series.index, place, count);
        bands_.stroke(*image_, clip, line_, 1, *series.strokeColor);
    }
}

void HistoryGraph::draw(Painting::Context& context) {
    drawBackground(context);
    drawCenterLine(context);
    prepareToDraw(context.scale());
    if (image_) {
        // What is empty of the picture costs as much as what isn't.
        const Painting::StateSaver saved(context);
        if (!context.isFlipped())
            context.clip(Rect{0, 0, frame().width,
                              shownHeight(config_, columns_, columnCount(), frame().height)});
        context.drawImage(*image_, Point{0, 0});
    }
    if (labelImage_)
        context.drawImage(*labelImage_, Point{frame().width - kLabelImageWidth, 0});
}

/// Stretching a picture takes longer than all the rest of a paint, so the result is kept.
void HistoryGraph::drawBackground(Painting::Context& context) {
    if (!ground_ || ground_->size() != frame().size() || ground_->scale() != context.scale())
        renewGround(context.scale());
    if (ground_)
        context.drawImage(*ground_, Point{0, 0});
}

/// There is none without its artwork, which may come later.
void HistoryGraph::renewGround(double scale) {
    ground_.reset();
    VTRImageCache& cache = VTRImageCache::sharedCache();
    const auto artwork = sizeType_ == 1 ? cache.imageWithLeftCap("stats-historygrapharea-69", 45)
                                        : cache.imageWithLeftCap("stats-historygrapharea-49", 35);
    if (artwork == nullptr)
        return;
    Painting::Context context = ground_.emplace(frame().size(), scale).context();
    artwork->drawInRect(context, bounds());
}

bool HistoryGraph::wantsCenterLine() const {
    return config_.drawCenterLine ||
           (config_.drawCenterLinePreference &&
            containsValue(config_.drawCenterLineValues, VTRIntegerForKey("Network_GraphMode")));
}

void HistoryGraph::drawCenterLine(Painting::Context& context) const {
    if (wantsCenterLine())
        context.fill(Rect{kLeftEdge, std::trunc(frame().height / 2), cutWidth() - 4, 1},
                     kCenterLine);
}

void HistoryGraph::drawMinimumString(Painting::Context& context, std::string_view text) {
    drawString(context, text, {0, 1});
}

void HistoryGraph::drawMaximumString(Painting::Context& context, std::string_view text) {
    drawString(context, text, {0, frame().height - kTagHeight});
}

void HistoryGraph::drawString(Painting::Context& context, std::string_view text, Point atPoint) {
    const Painting::TextAttributes attributes{.font = {.size = 9}, .colour = kWhite};
    const double width = Painting::sizeOfText(text, attributes).width;
    path_.clear();
    path_.addRoundedRect({atPoint.x, atPoint.y, width + kTagMargin, kTagHeight}, kTagRadius);
    context.fill(path_, kTagGround);
    context.drawText(text, Point{atPoint.x + 4, atPoint.y + 1}, attributes);
}

}  // namespace vantor::inline VANTOR_MODULE
