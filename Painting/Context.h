#pragma once

#include <cstdint>
#include <string_view>

#include "Foundation/Colour.h"
#include "Foundation/Geometry.h"
#include "Painting/Text.h"

struct _cairo;

namespace vantor::Painting {

class Image;
class ImageSurface;
class Path;
struct Bitmap;

/// Where the origin of a view lies. At its lower left y grows upwards, as in the bar; a view with
/// its origin at the upper left is called flipped, as in the dropdown.
enum class Origin : std::uint8_t { lowerLeft, upperLeft };

/// Two colours, from the upper edge of the shape that is filled to its lower edge.
struct Gradient {
    Colour start, end;
    bool operator==(const Gradient&) const = default;
};

/// What painters paint into: one view, in its own points. Pictures and texts come out upright,
/// whatever the origin.
/// Errors: none. What can't be painted isn't.
/// Thread: main. Lives for one paint; nothing is allocated here by any call.
class Context {
public:
    /// `cairo` is at the upper left of a view of that size, in points; it outlives the context and
    /// has its state back when the context ends. `scale` is the screen's: pixels a point.
    Context(_cairo* cairo, Size view, double scale, Origin origin) noexcept;
    /// A view at `frame` in the view of `parent`, clipped to it. `parent` waits until it ends.
    Context(Context& parent, const Rect& frame, Origin origin) noexcept;
    ~Context();
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    double scale() const noexcept { return scale_; }
    bool isFlipped() const noexcept { return origin_ == Origin::upperLeft; }
    /// The part of the view that painting can reach.
    Rect clipBounds() const noexcept;

    // State, given back by a StateSaver: the clip, the coordinates and the colour.
    void clip(const Rect& rect) noexcept;
    void clip(const Path& path) noexcept;
    void translate(double x, double y) noexcept;
    /// Stretches the coordinates; a factor of -1 mirrors them. Neither may be 0.
    void stretch(double x, double y) noexcept;
    void setColour(const Colour& colour) noexcept;

    /// In the colour that was set last.
    void fill(const Path& path) noexcept;
    void fill(const Path& path, const Colour& colour) noexcept;
    void fill(const Path& path, const Gradient& gradient) noexcept;
    void fill(const Rect& rect, const Colour& colour) noexcept;
    void stroke(const Path& path, const Colour& colour, double lineWidth) noexcept;

    /// The whole picture over what is there, its lower left at `point`, or the upper left in a
    /// flipped view. Its edges are moved to whole pixels.
    void drawImage(const Image& image, Point point, double alpha = 1) noexcept;
    void drawImage(const Image& image, const Rect& rect, double alpha = 1) noexcept;
    void drawImage(const ImageSurface& image, Point point, double alpha = 1) noexcept;
    void drawImage(const ImageSurface& image, const Rect& rect, double alpha = 1) noexcept;

    /// One line at the upper edge of `rect`, which cuts nothing off.
    void drawText(std::string_view text, const Rect& rect,
                  const TextAttributes& attributes) noexcept;
    /// As in a rectangle of the text's own size whose corner, as a picture's, is at `point`.
    void drawText(std::string_view text, Point point, const TextAttributes& attributes) noexcept;

private:
    friend class StateSaver;
    void drawBitmap(const Bitmap& bitmap, const Rect& rect, double alpha) noexcept;

    _cairo* cairo_;
    double scale_;
    Origin origin_;
};

/// Gives a context back the state that it has now, at the end of the scope.
class StateSaver {
public:
    explicit StateSaver(Context& context) noexcept;
    ~StateSaver();
    StateSaver(const StateSaver&) = delete;
    StateSaver& operator=(const StateSaver&) = delete;

private:
    Context& context_;
};

}  // namespace vantor::Painting
