#include "Painting/Cairo/TextLayout.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <pango/pangocairo.h>

namespace vantor::Painting {
namespace {

/// Pixels a point below which a letter that stands a fraction of a pixel off can be seen.
constexpr double kFineScale = 2;
/// Pixels of a mask, to which a byte belongs.
constexpr double kMostMaskPixels = 64 * 1024;
constexpr double kWidest = 100'000;

using Pattern = std::unique_ptr<cairo_pattern_t, decltype(&cairo_pattern_destroy)>;
using Cairo = std::unique_ptr<cairo_t, decltype(&cairo_destroy)>;

double points(int pangoUnits) noexcept { return static_cast<double>(pangoUnits) / PANGO_SCALE; }

/// Pixels a point; nothing where points aren't upright squares.
std::optional<double> uprightScale(cairo_t* cairo) noexcept {
    cairo_matrix_t matrix;
    cairo_get_matrix(cairo, &matrix);
    double xScale = 1, yScale = 1;
    cairo_surface_get_device_scale(cairo_get_group_target(cairo), &xScale, &yScale);
    const double x = matrix.xx * xScale, y = matrix.yy * yScale;
    const bool upright = x > 0 && std::abs(x - y) < 1e-9 && matrix.xy == 0 && matrix.yx == 0;
    return upright ? std::optional(x) : std::nullopt;
}

}  // namespace

void ObjectRelease::operator()(void* object) const noexcept { g_object_unref(object); }

void SurfaceRelease::operator()(_cairo_surface* surface) const noexcept {
    cairo_surface_destroy(surface);
}

TextLayout::TextLayout(_PangoContext* context) noexcept : lines_(pango_layout_new(context)) {
    pango_layout_set_single_paragraph_mode(lines_.get(), TRUE);
    pango_layout_set_ellipsize(lines_.get(), PANGO_ELLIPSIZE_END);
}

void TextLayout::setFont(const _PangoFontDescription* font, _PangoAttrList* attributes) noexcept {
    pango_layout_set_font_description(lines_.get(), font);
    pango_layout_set_attributes(lines_.get(), attributes);
}

void TextLayout::setText(std::string_view text, std::optional<double> width) noexcept {
    mask_.reset();
    pango_layout_set_text(lines_.get(), text.data(), static_cast<int>(text.size()));
    pango_layout_set_width(lines_.get(),
                           width ? static_cast<int>(std::clamp(*width, 0.0, kWidest) * PANGO_SCALE)
                                 : -1);
    PangoRectangle ink{}, logical{};
    pango_layout_get_extents(lines_.get(), &ink, &logical);
    size_ = {points(logical.width), points(logical.height)};
    baseline_ = points(pango_layout_get_baseline(lines_.get()));
    ink_ = {points(ink.x), points(ink.y) - baseline_, points(ink.width), points(ink.height)};
}

void TextLayout::show(_cairo* cairo, Point start) noexcept {
    const auto scale = uprightScale(cairo);
    if (scale && *scale < kFineScale &&
        ink_.width * ink_.height * *scale * *scale < kMostMaskPixels)
        return showMask(cairo, start, *scale);
    cairo_move_to(cairo, start.x, start.y);
    pango_cairo_show_layout_line(cairo, pango_layout_get_line_readonly(lines_.get(), 0));
    cairo_new_path(cairo);
}

/// cairo puts each letter of a text on a whole pixel, which tears words apart where pixels are
/// large. Filled as one shape the letters keep their distances; as that takes ten times as long,
/// the result is kept.
void TextLayout::showMask(_cairo* cairo, Point start, double scale) noexcept {
    if (mask_ == nullptr || maskScale_ != scale)
        makeMask(scale);
    const Pattern pattern(cairo_pattern_create_for_surface(mask_.get()), cairo_pattern_destroy);
    cairo_matrix_t matrix;
    cairo_matrix_init_translate(&matrix, -start.x - maskStart_.x, -start.y - maskStart_.y);
    cairo_pattern_set_matrix(pattern.get(), &matrix);
    cairo_pattern_set_filter(pattern.get(), CAIRO_FILTER_NEAREST);
    cairo_mask(cairo, pattern.get());
}

void TextLayout::makeMask(double scale) noexcept {
    // Whole pixels, with one to spare on each side for what hinting moves.
    const double left = std::floor(ink_.x * scale) - 1, top = std::floor(ink_.y * scale) - 1;
    const double right = std::ceil((ink_.x + ink_.width) * scale) + 1;
    const double bottom = std::ceil((ink_.y + ink_.height) * scale) + 1;
    mask_.reset(cairo_image_surface_create(CAIRO_FORMAT_A8, static_cast<int>(right - left),
                                           static_cast<int>(bottom - top)));
    maskScale_ = scale;
    maskStart_ = {left / scale, top / scale};
    cairo_surface_set_device_scale(mask_.get(), scale, scale);
    const Cairo cairo(cairo_create(mask_.get()), cairo_destroy);
    cairo_move_to(cairo.get(), -maskStart_.x, -maskStart_.y);
    pango_cairo_layout_line_path(cairo.get(), pango_layout_get_line_readonly(lines_.get(), 0));
    cairo_fill(cairo.get());
}

}  // namespace vantor::Painting
