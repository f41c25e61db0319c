#include "Painting/BandPainter.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "Painting/ImageSurface.h"

namespace vantor::Painting {
namespace {

using Line = BandPainter::Line;

constexpr double kMiterLimit = 10;  // half widths from a corner to its tip, at most
constexpr double kLevel = 1e-6;     // pixels by which a piece may rise that counts as level
constexpr double kFarthest = 1e6;   // pixels, of a line that runs away

bool isFinite(Line line) noexcept {
    return std::ranges::all_of(
        line, [](const Point& point) { return std::isfinite(point.x) && std::isfinite(point.y); });
}

// --- Colours -----------------------------------------------------------------------------------

/// All four parts of a pixel by `share` of 255.
std::uint32_t partOf(std::uint32_t pixel, std::uint32_t share) noexcept {
    constexpr std::uint32_t kTwo = 0x00FF00FF, kHalves = 0x00800080;
    std::uint32_t even = (pixel & kTwo) * share + kHalves;
    std::uint32_t odd = (pixel >> 8 & kTwo) * share + kHalves;
    even = (even + (even >> 8 & kTwo)) >> 8 & kTwo;
    odd = (odd + (odd >> 8 & kTwo)) & ~kTwo;
    return even | odd;
}

std::uint32_t over(std::uint32_t pixel, std::uint32_t ground) noexcept {
    return pixel + partOf(ground, 255 - (pixel >> 24));
}

/// As the engine has it, which cuts 16 bits off to 8.
std::uint32_t pixelOf(const Colour& colour) noexcept {
    const double alpha = std::clamp(colour.alpha, 0.0, 1.0);
    const auto part = [alpha](double value) {
        return static_cast<std::uint32_t>(std::clamp(value, 0.0, 1.0) * alpha * 65535 + 0.5) >> 8;
    };
    return part(1) << 24 | part(colour.red) << 16 | part(colour.green) << 8 | part(colour.blue);
}

// --- Lines -------------------------------------------------------------------------------------

/// What of a line is in one column of pixels: how wide, and how high at both ends, in pixels.
struct Piece {
    double width, start, end;
};

/// A line as it is walked along, from one column of pixels to the next.
class Walk {
public:
    Walk(Line line, double scale) noexcept : line_(line), scale_(scale) {}

    double left() const noexcept { return line_.front().x * scale_; }
    double right() const noexcept { return line_.back().x * scale_; }

    /// Calls `take` with each piece between `from` and `to`, which go on from call to call.
    template <class Take>
    void pieces(double from, double to, const Take& take) noexcept {
        for (; next_ < line_.size(); ++next_) {
            const Point begin = pixel(next_ - 1), end = pixel(next_);
            const double left = std::max(from, begin.x), right = std::min(to, end.x);
            if (right > left) {
                const double slope = (end.y - begin.y) / (end.x - begin.x);
                take(Piece{right - left, begin.y + slope * (left - begin.x),
                           begin.y + slope * (right - begin.x)});
            }
            if (end.x > to)
                return;
        }
    }

private:
    Point pixel(std::size_t index) const noexcept {
        return {line_[index].x * scale_,
                std::clamp(line_[index].y * scale_, -kFarthest, kFarthest)};
    }

    Line line_;
    double scale_;
    std::size_t next_ = 1;
};

/// What is below 0 as nothing and what is above 1 as 1, summed up from 0 to `value`.
double sumOfClamped(double value) noexcept {
    if (value <= 0)
        return 0;
    return value < 1 ? value * value / 2 : value - 0.5;
}

/// How much of a pixel is above a piece that begins and ends so far below the pixel's upper edge.
double areaAbove(double width, double start, double end) noexcept {
    if (std::abs(end - start) < kLevel)
        return width * std::clamp((start + end) / 2, 0.0, 1.0);
    return width * (sumOfClamped(end) - sumOfClamped(start)) / (end - start);
}

// --- Strokes -----------------------------------------------------------------------------------

Point sum(Point one, Point other) noexcept { return {one.x + other.x, one.y + other.y}; }
Point difference(Point one, Point other) noexcept { return {one.x - other.x, one.y - other.y}; }
Point times(Point point, double factor) noexcept { return {point.x * factor, point.y * factor}; }

/// Upwards, and as long as a line between the two is to be half wide.
Point normal(Point begin, Point end, double half) noexcept {
    const Point along = difference(end, begin);
    const double length = std::sqrt(along.x * along.x + along.y * along.y);
    return length > 0 ? times({along.y, -along.x}, half / length) : Point{0, -half};
}

/// Both edges where the line turns at `corner`, from one normal to the other.
void addCorner(std::vector<Point>& upper, std::vector<Point>& lower, Point corner, Point before,
               Point after, double half) noexcept {
    const double square = half * half;
    const double closeness = 1 + (before.x * after.x + before.y * after.y) / square;
    const Point tip = times(sum(before, after), 1 / closeness);
    if (closeness * kMiterLimit * kMiterLimit >= 2) {
        upper.push_back(sum(corner, tip));
        lower.push_back(difference(corner, tip));
        return;
    }
    const bool turnsDown = after.x > before.x;
    (turnsDown ? lower : upper).push_back(turnsDown ? difference(corner, tip) : sum(corner, tip));
    for (const Point& side : {before, after})
        (turnsDown ? upper : lower)
            .push_back(turnsDown ? sum(corner, side) : difference(corner, side));
}

/// Both edges at an end, from where the one that reaches further out begins.
void addEnd(std::vector<Point>& upper, std::vector<Point>& lower, Point end, Point side,
            bool isFirst) noexcept {
    const Point high = sum(end, side), low = difference(end, side);
    const Point outermost = (high.x < low.x) == isFirst ? high : low;
    if (isFirst) {
        upper.push_back(outermost);
        lower.push_back(outermost);
    }
    upper.push_back(high);
    lower.push_back(low);
    if (!isFirst) {
        upper.push_back(outermost);
        lower.push_back(outermost);
    }
}

// --- Pixels ------------------------------------------------------------------------------------

/// The part of a surface that a clip leaves, in pixels.
struct Area {
    double left, top, right, bottom;

    /// How much of a row is inside.
    double shareOfRow(int y) const noexcept {
        return std::min(bottom, y + 1.0) - std::max(top, static_cast<double>(y));
    }
};

Area areaOf(const ImageSurface& surface, const Rect& clip) noexcept {
    const double scale = surface.scale();
    return {std::max(clip.x * scale, 0.0), std::max(clip.y * scale, 0.0),
            std::min((clip.x + clip.width) * scale, surface.widthPixels() + 0.0),
            std::min((clip.y + clip.height) * scale, surface.heightPixels() + 0.0)};
}

/// One column of pixels after the other, each filled between the pieces of two lines.
class Column {
public:
    Column(ImageSurface& surface, std::span<BandPainter::Row> rows, const Area& area,
           std::uint32_t ink) noexcept
        : pixels_(surface.pixels()), width_(surface.widthPixels()), rows_(rows), area_(area),
          ink_(ink), highest_(std::floor(area.top)), lowest_(std::ceil(area.bottom)) {}

    void begin() noexcept {
        begin_ = static_cast<int>(lowest_);
        end_ = static_cast<int>(highest_);
    }
    /// `sign` is 1 for the one line and -1 for the other.
    void add(const Piece& piece, double sign) noexcept {
        const int from = rowOf(std::floor(std::min(piece.start, piece.end)));
        const int to = rowOf(std::ceil(std::max(piece.start, piece.end)));
        for (int y = from; y < to; ++y)
            row(y).share += sign * areaAbove(piece.width, piece.start - y, piece.end - y);
        row(from).step += sign * piece.width;
        begin_ = std::min(begin_, from);
        end_ = std::max(end_, to);
    }
    /// Leaves all rows empty for the next column.
    void paint(int x) noexcept {
        double full = 0;
        std::uint32_t inside = 0;  // what a pixel gets that no line crosses
        for (int y = begin_; y < end_; ++y) {
            auto& [share, step] = row(y);
            if (step != 0) {
                full -= step;
                inside = inkOf(full);
            }
            const double part = area_.shareOfRow(y);
            const bool isCrossed = share != 0 || part < 1;
            put(y, x, isCrossed ? inkOf((share + full) * part) : inside);
            share = step = 0;
        }
        row(end_) = {};
    }

private:
    int rowOf(double y) const noexcept {
        return static_cast<int>(std::clamp(y, highest_, lowest_));
    }
    BandPainter::Row& row(int y) noexcept { return rows_[static_cast<std::size_t>(y)]; }
    /// The share has a sign, by which of the lines is above.
    std::uint32_t inkOf(double share) const noexcept {
        return partOf(ink_, static_cast<std::uint32_t>(std::abs(share) * 255 + 0.5));
    }
    void put(int y, int x, std::uint32_t ink) noexcept {
        auto& pixel = pixels_[static_cast<std::size_t>(y * width_ + x)];
        pixel = ink >> 24 == 0xFF ? ink : over(ink, pixel);
    }

    std::span<std::uint32_t> pixels_;
    int width_;
    std::span<BandPainter::Row> rows_;
    Area area_;
    std::uint32_t ink_;
    double highest_, lowest_;
    int begin_ = 0, end_ = 0;
};

}  // namespace

void BandPainter::fillBetween(ImageSurface& surface, const Rect& clip, Line one, Line other,
                              const Colour& colour) {
    if (one.size() < 2 || other.size() < 2 || !isFinite(one) || !isFinite(other))
        return;
    Walk first(one, surface.scale()), second(other, surface.scale());
    Area area = areaOf(surface, clip);
    area.left = std::max({area.left, first.left(), second.left()});
    area.right = std::min({area.right, first.right(), second.right()});
    if (!(area.left < area.right && area.top < area.bottom))
        return;
    rows_.resize(static_cast<std::size_t>(surface.heightPixels()) + 1);
    Column column(surface, rows_, area, pixelOf(colour));
    for (auto x = static_cast<int>(area.left); x < area.right; ++x) {
        const double from = std::max(area.left, x + 0.0), to = std::min(area.right, x + 1.0);
        column.begin();
        first.pieces(from, to, [&](const Piece& piece) { column.add(piece, 1); });
        second.pieces(from, to, [&](const Piece& piece) { column.add(piece, -1); });
        column.paint(x);
    }
}

// What a sample adds to a graph has fewer: it finds room from the first one on.
constexpr std::size_t kStripPoints = 64;

void BandPainter::stroke(ImageSurface& surface, const Rect& clip, Line line, double width,
                         const Colour& colour) {
    if (line.size() < 2)
        return;
    const double half = width / 2;
    for (std::vector<Point>* const edge : {&upper_, &lower_}) {
        edge->clear();
        edge->reserve(kStripPoints);
    }
    Point before = normal(line[0], line[1], half);
    addEnd(upper_, lower_, line.front(), before, true);
    for (std::size_t index = 1; index + 1 < line.size(); ++index) {
        const Point after = normal(line[index], line[index + 1], half);
        addCorner(upper_, lower_, line[index], before, after, half);
        before = after;
    }
    addEnd(upper_, lower_, line.back(), before, false);
    fillBetween(surface, clip, upper_, lower_, colour);
}

}  // namespace vantor::Painting
