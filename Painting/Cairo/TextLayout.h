#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "Foundation/Geometry.h"

struct _PangoAttrList;
struct _PangoContext;
struct _PangoFontDescription;
struct _PangoLayout;
struct _cairo;
struct _cairo_surface;

namespace vantor::Painting {

/// Lets go of an object of GLib's kind.
struct ObjectRelease {
    void operator()(void* object) const noexcept;
};
struct SurfaceRelease {
    void operator()(_cairo_surface* surface) const noexcept;
};

/// One line of text, laid out. It can be given another text.
/// Units:  points; y grows downwards.
/// Thread: main.
class TextLayout {
public:
    /// `context` outlives it.
    explicit TextLayout(_PangoContext* context) noexcept;

    /// What `setText` needs; `attributes` may be null.
    void setFont(const _PangoFontDescription* font, _PangoAttrList* attributes) noexcept;
    /// With a width the line ends in "…" where it is wider.
    void setText(std::string_view text, std::optional<double> width) noexcept;

    Size size() const noexcept { return size_; }
    /// From the upper edge of the line.
    double baseline() const noexcept { return baseline_; }

    /// In cairo's colour, the left end of the base line at `start`, which is on a corner of the
    /// pixel grid.
    void show(_cairo* cairo, Point start) noexcept;

private:
    void showMask(_cairo* cairo, Point start, double scale) noexcept;
    void makeMask(double scale) noexcept;

    std::unique_ptr<_PangoLayout, ObjectRelease> lines_;
    Size size_;
    double baseline_ = 0;
    Rect ink_;  // from the left end of the base line

    // The line as it was last painted at a small scale.
    std::unique_ptr<_cairo_surface, SurfaceRelease> mask_;
    double maskScale_ = 0;
    Point maskStart_;  // its upper left, from the left end of the base line
};

}  // namespace vantor::Painting
