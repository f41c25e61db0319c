#include "Painting/Cairo/CairoEngine.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

#include <cairo.h>

namespace vantor::Painting {
namespace {

/// Beyond these points cairo's own numbers run over, and shapes come out torn.
constexpr double kFarthest = 100'000;

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;
using Pattern = std::unique_ptr<cairo_pattern_t, decltype(&cairo_pattern_destroy)>;

/// Gives cairo's state back at the end of the scope.
class CairoStateSaver {
public:
    explicit CairoStateSaver(cairo_t* cairo) noexcept : cairo_(cairo) { cairo_save(cairo_); }
    ~CairoStateSaver() { cairo_restore(cairo_); }
    CairoStateSaver(const CairoStateSaver&) = delete;
    CairoStateSaver& operator=(const CairoStateSaver&) = delete;

private:
    cairo_t* cairo_;
};

bool isFinite(const Rect& rect) noexcept {
    return std::isfinite(rect.x) && std::isfinite(rect.y) && std::isfinite(rect.width) &&
           std::isfinite(rect.height);
}

double within(double coordinate) noexcept { return std::clamp(coordinate, -kFarthest, kFarthest); }

/// By its edges, so that one too far away doesn't take the other along.
void addRect(cairo_t* cairo, const Rect& rect) noexcept {
    const double left = within(rect.x), low = within(rect.y);
    cairo_rectangle(cairo, left, low, within(rect.x + rect.width) - left,
                    within(rect.y + rect.height) - low);
}

void addArc(cairo_t* cairo, Point centre, double radius, double start, double sweep) noexcept {
    constexpr double kRadians = std::numbers::pi / 180;
    const double from = start * kRadians, to = (start + sweep) * kRadians;
    if (sweep < 0)
        cairo_arc_negative(cairo, within(centre.x), within(centre.y), within(radius), from, to);
    else
        cairo_arc(cairo, within(centre.x), within(centre.y), within(radius), from, to);
}

/// Adds one step of a path, and answers where the points of the next begin.
const Point* addStep(cairo_t* cairo, Path::Verb verb, const Point* point) noexcept {
    const auto x = [point](int index) { return within(point[index].x); };
    const auto y = [point](int index) { return within(point[index].y); };
    switch (verb) {
    case Path::Verb::move:
        cairo_move_to(cairo, x(0), y(0));
        return point + 1;
    case Path::Verb::line:
        cairo_line_to(cairo, x(0), y(0));
        return point + 1;
    case Path::Verb::curve:
        cairo_curve_to(cairo, x(0), y(0), x(1), y(1), x(2), y(2));
        return point + 3;
    case Path::Verb::arc:
        addArc(cairo, point[0], point[1].x, point[2].x, point[2].y);
        return point + 3;
    case Path::Verb::close:
        cairo_close_path(cairo);
        break;
    }
    return point;
}

/// Makes `path` cairo's current one; an empty one where a coordinate isn't finite.
void setPath(cairo_t* cairo, const Path& path) noexcept {
    cairo_new_path(cairo);
    const auto finite = [](const Point& point) {
        return std::isfinite(point.x) && std::isfinite(point.y);
    };
    if (!std::ranges::all_of(path.points(), finite))
        return;
    const Point* point = path.points().data();
    for (const Path::Verb verb : path.verbs())
        point = addStep(cairo, verb, point);
}

void setSource(cairo_t* cairo, const Colour& colour) noexcept {
    cairo_set_source_rgba(cairo, colour.red, colour.green, colour.blue, colour.alpha);
}

Pattern verticalGradient(const Gradient& gradient, double from, double to) noexcept {
    Pattern pattern(cairo_pattern_create_linear(0, from, 0, to), cairo_pattern_destroy);
    const auto addStop = [&](double place, const Colour& colour) {
        cairo_pattern_add_color_stop_rgba(pattern.get(), place, colour.red, colour.green,
                                          colour.blue, colour.alpha);
    };
    addStop(0, gradient.start);
    addStop(1, gradient.end);
    return pattern;
}

// --- Whole pixels ------------------------------------------------------------------------------

/// Between the coordinates of a context and the pixels below it.
class PixelGrid {
public:
    explicit PixelGrid(cairo_t* cairo) noexcept : cairo_(cairo) {
        cairo_surface_get_device_scale(cairo_get_group_target(cairo), &xScale_, &yScale_);
    }
    /// The corners of the pixel grid that are nearest to those of `rect`.
    Rect aligned(const Rect& rect) const noexcept {
        const Point one = alignedPoint({rect.x, rect.y});
        const Point other = alignedPoint({rect.x + rect.width, rect.y + rect.height});
        return {one.x, one.y, other.x - one.x, other.y - one.y};
    }
    Point alignedPoint(Point point) const noexcept {
        cairo_user_to_device(cairo_, &point.x, &point.y);
        point = {nearest(point.x * xScale_) / xScale_, nearest(point.y * yScale_) / yScale_};
        cairo_device_to_user(cairo_, &point.x, &point.y);
        return point;
    }
    /// Whether `rect` covers exactly so many pixels.
    bool covers(const Rect& rect, int width, int height) const noexcept {
        double x = rect.width, y = rect.height;
        cairo_user_to_device_distance(cairo_, &x, &y);
        return std::abs(std::abs(x * xScale_) - width) < kNoise &&
               std::abs(std::abs(y * yScale_) - height) < kNoise;
    }

private:
    static constexpr double kNoise = 1e-6;
    /// Halves go up, even those that came out a little smaller: what is 9 wide stays 9 wide.
    static double nearest(double pixel) noexcept { return std::floor(pixel + 0.5 + kNoise); }

    cairo_t* cairo_;
    double xScale_ = 1, yScale_ = 1;
};

Surface surfaceOf(const Bitmap& bitmap) noexcept {
    // cairo only reads them: nothing paints into this surface.
    auto* const pixels =
        reinterpret_cast<unsigned char*>(const_cast<std::uint32_t*>(bitmap.pixels));
    return {cairo_image_surface_create_for_data(pixels, CAIRO_FORMAT_ARGB32, bitmap.width,
                                                bitmap.height, bitmap.stride * 4),
            cairo_surface_destroy};
}

/// Coordinates in which `rect` begins at its upper edge and y grows downwards.
void beginAtTop(cairo_t* cairo, const Rect& rect, Origin origin) noexcept {
    const bool turned = origin == Origin::lowerLeft;
    cairo_translate(cairo, rect.x, turned ? rect.y + rect.height : rect.y);
    cairo_scale(cairo, 1, turned ? -1 : 1);
}

}  // namespace

void CairoEngine::save(_cairo* cairo) noexcept { cairo_save(cairo); }

void CairoEngine::restore(_cairo* cairo) noexcept { cairo_restore(cairo); }

void CairoEngine::transform(_cairo* cairo, Point origin, double xFactor, double yFactor) noexcept {
    // cairo would refuse all work from then on.
    const auto usable = [](double factor) { return std::isfinite(factor) && factor != 0; };
    if (!std::isfinite(origin.x) || !std::isfinite(origin.y) || !usable(xFactor) ||
        !usable(yFactor))
        return;
    cairo_translate(cairo, origin.x, origin.y);
    cairo_scale(cairo, xFactor, yFactor);
}

void CairoEngine::clip(_cairo* cairo, const Rect& rect) noexcept {
    cairo_new_path(cairo);
    if (isFinite(rect))
        addRect(cairo, rect);
    cairo_clip(cairo);
}

void CairoEngine::clip(_cairo* cairo, const Path& path) noexcept {
    setPath(cairo, path);
    cairo_clip(cairo);
}

Rect CairoEngine::clipBounds(_cairo* cairo) noexcept {
    double left = 0, low = 0, right = 0, high = 0;
    cairo_clip_extents(cairo, &left, &low, &right, &high);
    return {left, low, right - left, high - low};
}

void CairoEngine::setColour(_cairo* cairo, const Colour& colour) noexcept {
    setSource(cairo, colour);
}

void CairoEngine::fill(_cairo* cairo, const Path& path) noexcept {
    setPath(cairo, path);
    cairo_fill(cairo);
}

void CairoEngine::fill(_cairo* cairo, const Rect& rect) noexcept {
    cairo_new_path(cairo);
    if (isFinite(rect))
        addRect(cairo, rect);
    cairo_fill(cairo);
}

void CairoEngine::fill(_cairo* cairo, const Path& path, const Gradient& gradient, double from,
                       double to) noexcept {
    const CairoStateSaver saved(cairo);
    if (gradient.start == gradient.end)
        setSource(cairo, gradient.start);
    else
        cairo_set_source(cairo, verticalGradient(gradient, from, to).get());
    fill(cairo, path);
}

void CairoEngine::stroke(_cairo* cairo, const Path& path, double lineWidth) noexcept {
    const CairoStateSaver saved(cairo);
    setPath(cairo, path);
    cairo_set_line_width(cairo, lineWidth);
    cairo_stroke(cairo);
}

void CairoEngine::paint(_cairo* cairo, const Bitmap& bitmap, const Rect& rect, double alpha,
                        Origin origin) noexcept {
    if (!isFinite(rect) || !(alpha > 0))
        return;
    const PixelGrid grid(cairo);
    const Rect place = grid.aligned(rect);
    if (place.width <= 0 || place.height <= 0)
        return;
    const CairoStateSaver saved(cairo);
    const bool exact = grid.covers(place, bitmap.width, bitmap.height);
    beginAtTop(cairo, place, origin);
    cairo_scale(cairo, place.width / bitmap.width, place.height / bitmap.height);
    cairo_set_source_surface(cairo, surfaceOf(bitmap).get(), 0, 0);
    cairo_pattern_t* const source = cairo_get_source(cairo);
    cairo_pattern_set_filter(source, exact ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_GOOD);
    cairo_pattern_set_extend(source, CAIRO_EXTEND_PAD);  // no see-through edges when stretched
    cairo_new_path(cairo);
    cairo_rectangle(cairo, 0, 0, bitmap.width, bitmap.height);
    cairo_clip(cairo);
    cairo_paint_with_alpha(cairo, std::min(alpha, 1.0));
}

// --- Texts -------------------------------------------------------------------------------------

TextLayouts& CairoEngine::layouts() noexcept { return layouts_ ? *layouts_ : layouts_.emplace(); }

Size CairoEngine::sizeOfText(std::string_view text, const TextAttributes& attributes) noexcept {
    return layouts().layout(text, attributes.font).size();
}

void CairoEngine::drawText(_cairo* cairo, std::string_view text, const Rect& rect,
                           const TextAttributes& attributes, Origin origin) noexcept {
    if (text.empty() || !isFinite(rect))
        return;
    const bool truncates = attributes.overflow == Overflow::truncateTail;
    TextLayout& layout = layouts().layout(text, attributes.font,
                                          truncates ? std::optional(rect.width) : std::nullopt);
    const double room = rect.width - layout.size().width;
    const double left = attributes.alignment == Alignment::left    ? 0
                        : attributes.alignment == Alignment::right ? room
                                                                   : room / 2;
    const CairoStateSaver saved(cairo);
    beginAtTop(cairo, rect, origin);
    // A base line between two rows of pixels would blur every letter.
    const Point start = PixelGrid(cairo).alignedPoint({left, layout.baseline()});
    if (attributes.shadow) {
        const Shadow& shadow = *attributes.shadow;
        setSource(cairo, shadow.colour);
        layout.show(cairo, {start.x + shadow.offset.width, start.y - shadow.offset.height});
    }
    setSource(cairo, attributes.colour);
    layout.show(cairo, start);
}

// --- Surfaces ----------------------------------------------------------------------------------

_cairo* CairoEngine::open(std::uint32_t* pixels, int width, int height, double scale) noexcept {
    const Surface surface(
        cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(pixels),
                                            CAIRO_FORMAT_ARGB32, width, height, width * 4),
        cairo_surface_destroy);
    cairo_surface_set_device_scale(surface.get(), scale, scale);
    return cairo_create(surface.get());
}

void CairoEngine::close(_cairo* cairo) noexcept { cairo_destroy(cairo); }

bool CairoEngine::writePNG(_cairo* cairo, const char* file) noexcept {
    cairo_surface_t* const surface = cairo_get_target(cairo);
    cairo_surface_flush(surface);
    return cairo_surface_write_to_png(surface, file) == CAIRO_STATUS_SUCCESS;
}

}  // namespace vantor::Painting

extern "C" __attribute__((visibility("default"))) vantor::Painting::Engine* vantorPaintingEngine1();

/// Never ended: what it holds outlives all who paint.
vantor::Painting::Engine* vantorPaintingEngine1() {
    static auto* const engine = new vantor::Painting::CairoEngine;
    return engine;
}
