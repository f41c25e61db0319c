#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/NotificationCenter.h"
#include "Foundation/WeakHandle.h"
#include "Painting/BandPainter.h"
#include "Painting/ImageSurface.h"
#include "Painting/Path.h"
#include "Shared/Collectors/StatSamples.h"
#include "Shared/Graphs/HistoryColumns.h"
#include "Shared/Graphs/HistoryGraphConfig.h"
#include "Shared/Views/View.h"

namespace vantor::Painting {
class Image;
}

namespace vantor::inline VANTOR_MODULE {

/// A time series over one scale of a collector, a column a sample, the newest at the right.
/// It keeps a picture of the columns that it has painted: a new sample moves the picture to the
/// left and paints a narrow strip, so that a graph that somebody looks at costs little, and one
/// that nobody looks at nothing; it catches up at its next paint. A concrete graph names the
/// series, and the newest sample before each paint.
/// Shape:  up to HistoryColumns::kColumns columns; memory for them comes with the first paint.
/// Units:  points; one is taken at the left and two at the right by the frame.
/// Errors: none. Without collector, images or columns it paints what there is.
/// Thread: main.
class HistoryGraph : public View {
public:
    HistoryGraph(const Rect& frame, HistoryGraphConfig config);
    ~HistoryGraph() override;
    std::string_view className() const override { return "HistoryGraph"; }

    /// One source, or several that are added up, which win. Null or none for nobody.
    void setCollector(const StatSamples* collector);
    void setCollectors(const std::vector<const StatSamples*>& collectors);
    bool hasCollector() const noexcept { return collector_.get() != nullptr; }
    std::int64_t storageMode() const noexcept { return storageMode_; }
    void setStorageMode(std::int64_t mode) noexcept { storageMode_ = mode; }
    /// 1 for the graphs 70 points high, else the standard one.
    std::int64_t sizeType() const noexcept { return sizeType_; }
    void setSizeType(std::int64_t type) noexcept {
        sizeType_ = type;
        ground_.reset();
    }
    /// Two samples share a column, so that a whole scale fits.
    void setUseAllSamples(bool use) noexcept { useAllSamples_ = use; }
    /// A gap cuts the area down to its base line.
    void setBreakStroke(bool breaks) noexcept { breakStroke_ = breaks; }
    void setForceLabel(bool force) noexcept { forceLabel_ = force; }
    void setLabelImage(std::shared_ptr<const Painting::Image> image);

    double latestSampleID() const noexcept { return latestSampleID_; }
    void setLatestSampleID(double sampleID) noexcept { latestSampleID_ = sampleID; }
    double peak() const noexcept { return peak_; }
    void setPeak(double peak) noexcept { peak_ = peak; }
    double low() const noexcept { return low_; }
    void setLow(double low) noexcept { low_ = low; }

    /// Begins anew: the next paint reads all samples again.
    void clearCache();
    /// Lets go of its collectors.
    void cleanup();
    /// What the scale is called, in the user's language; nothing for the one of now.
    std::optional<std::string> range() const;
    /// When, and how much: what the graph shows at a point of its own coordinates, in the user's
    /// language, as of its last paint; that nothing was measured, of a gap. Nothing where there is
    /// no column.
    std::optional<std::string> tooltipAt(Point point) const;
    /// The columns, for tests and for those who tell what a graph shows.
    const HistoryColumns& columns() const noexcept { return columns_; }

protected:
    /// Paints it all; a concrete graph names the newest sample first.
    void draw(Painting::Context& context) override;
    void viewDidMoveToWindow() override;
    /// Sets `peak` and `low` by the columns; whether they are others than before.
    virtual bool calculatePeak();
    virtual void drawRange(Painting::Context&) {}
    /// What a column's figures say; "" for nothing.
    virtual std::string valueText(std::size_t /*column*/) const { return ""; }

    const StatSamples* collector() const noexcept { return collector_.get(); }
    /// The columns that the frame has room for.
    std::size_t columnCount() const noexcept;
    void drawMinimumString(Painting::Context& context, std::string_view text);
    void drawMaximumString(Painting::Context& context, std::string_view text);

private:
    struct Strip;

    void prepareToDraw(double scale);
    double cutWidth() const noexcept;
    void scaleColumns(std::size_t count, std::size_t paintedFrom);
    bool rescaleColumns(std::size_t count);
    void renewImage(const Strip& strip, double scale);
    void drawGraphs(const Rect& clip, std::size_t count);
    void drawSeries(const Rect& clip, const HistorySeries& series, std::size_t count);
    bool isPainted(const HistorySeries& series) const;
    void drawBackground(Painting::Context& context);
    void renewGround(double scale);
    void drawCenterLine(Painting::Context& context) const;
    bool wantsCenterLine() const;
    void drawString(Painting::Context& context, std::string_view text, Point atPoint);

    HistoryGraphConfig config_;
    WeakHandle<const StatSamples> collector_;
    std::vector<WeakHandle<const StatSamples>> collectors_;
    bool usesCollectors_ = false;
    std::vector<const StatSamples*> sources_;  // room for a paint
    HistoryColumns columns_;
    bool hasColumns_ = false;
    std::array<double, kGraphSlots> peaks_{};
    std::optional<Painting::ImageSurface> ground_, image_;
    Painting::BandPainter bands_;  // room for a paint, too
    std::vector<Point> line_;
    Painting::Path path_;
    std::shared_ptr<const Painting::Image> labelImage_;
    float lastWidth_ = 0;
    double lastScale_ = 1;
    double latestSampleID_ = 0, peak_ = 1, low_ = 0;
    std::int64_t storageMode_ = 0, sizeType_ = 0;
    bool breakStroke_ = false, useAllSamples_ = false, forceLabel_ = false;
    Observation clearCacheNotification_, shutdown_;
};

}  // namespace vantor::inline VANTOR_MODULE
