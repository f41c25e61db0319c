#pragma once

#include <cstdint>
#include <string_view>

#include "Foundation/Colour.h"
#include "Foundation/Geometry.h"
#include "Painting/Bitmap.h"
#include "Painting/Context.h"
#include "Painting/Path.h"
#include "Painting/Text.h"

struct _cairo;

namespace vantor::Painting {

/// What the floor asks of cairo and Pango. They cost a program that never paints 4 MiB of memory
/// and several milliseconds, so their callers live in a shared object of their own that the first
/// paint opens.
/// Units:  points, in the coordinates that `cairo` has at that moment.
/// Errors: none. What can't be painted isn't.
/// Thread: main.
class Engine {
public:
    /// The one of this process. Where the shared object can't be opened it paints nothing, and
    /// all its texts are of size 0.
    static Engine& shared() noexcept;
    /// Why `shared` paints nothing; "" where it paints.
    static std::string_view trouble() noexcept;

    virtual void save(_cairo* cairo) noexcept = 0;
    virtual void restore(_cairo* cairo) noexcept = 0;
    /// The coordinates from here on begin at `origin`, and are stretched by the factors.
    virtual void transform(_cairo* cairo, Point origin, double xFactor,
                           double yFactor) noexcept = 0;
    virtual void clip(_cairo* cairo, const Rect& rect) noexcept = 0;
    virtual void clip(_cairo* cairo, const Path& path) noexcept = 0;
    virtual Rect clipBounds(_cairo* cairo) noexcept = 0;

    virtual void setColour(_cairo* cairo, const Colour& colour) noexcept = 0;
    virtual void fill(_cairo* cairo, const Path& path) noexcept = 0;
    virtual void fill(_cairo* cairo, const Rect& rect) noexcept = 0;
    /// `from` is the y of the start colour, `to` that of the end colour.
    virtual void fill(_cairo* cairo, const Path& path, const Gradient& gradient, double from,
                      double to) noexcept = 0;
    virtual void stroke(_cairo* cairo, const Path& path, double lineWidth) noexcept = 0;

    /// The bitmap in `rect`, its edges moved to whole pixels.
    virtual void paint(_cairo* cairo, const Bitmap& bitmap, const Rect& rect, double alpha,
                       Origin origin) noexcept = 0;

    /// `text` is valid and short.
    virtual Size sizeOfText(std::string_view text, const TextAttributes& attributes) noexcept = 0;
    virtual void drawText(_cairo* cairo, std::string_view text, const Rect& rect,
                          const TextAttributes& attributes, Origin origin) noexcept = 0;

    /// Something to paint into those pixels with, which outlive it. Without pixels it can be used
    /// all the same, and paints nothing.
    virtual _cairo* open(std::uint32_t* pixels, int width, int height, double scale) noexcept = 0;
    virtual void close(_cairo* cairo) noexcept = 0;
    [[nodiscard]] virtual bool writePNG(_cairo* cairo, const char* file) noexcept = 0;

protected:
    ~Engine() = default;
};

/// The entry point of the shared object. Its number goes up with each change of `Engine`.
inline constexpr const char* kEngineEntry = "vantorPaintingEngine1";
using EngineEntry = Engine* (*)();

}  // namespace vantor::Painting
