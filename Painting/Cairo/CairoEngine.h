#pragma once

#include <optional>

#include "Painting/Cairo/TextLayouts.h"
#include "Painting/Engine.h"

namespace vantor::Painting {

/// The engine by cairo and Pango.
class CairoEngine final : public Engine {
public:
    void save(_cairo* cairo) noexcept override;
    void restore(_cairo* cairo) noexcept override;
    void transform(_cairo* cairo, Point origin, double xFactor, double yFactor) noexcept override;
    void clip(_cairo* cairo, const Rect& rect) noexcept override;
    void clip(_cairo* cairo, const Path& path) noexcept override;
    Rect clipBounds(_cairo* cairo) noexcept override;

    void setColour(_cairo* cairo, const Colour& colour) noexcept override;
    void fill(_cairo* cairo, const Path& path) noexcept override;
    void fill(_cairo* cairo, const Rect& rect) noexcept override;
    void fill(_cairo* cairo, const Path& path, const Gradient& gradient, double from,
              double to) noexcept override;
    void stroke(_cairo* cairo, const Path& path, double lineWidth) noexcept override;
    void paint(_cairo* cairo, const Bitmap& bitmap, const Rect& rect, double alpha,
               Origin origin) noexcept override;

    Size sizeOfText(std::string_view text, const TextAttributes& attributes) noexcept override;
    void drawText(_cairo* cairo, std::string_view text, const Rect& rect,
                  const TextAttributes& attributes, Origin origin) noexcept override;

    _cairo* open(std::uint32_t* pixels, int width, int height, double scale) noexcept override;
    void close(_cairo* cairo) noexcept override;
    bool writePNG(_cairo* cairo, const char* file) noexcept override;

private:
    TextLayouts& layouts() noexcept;

    std::optional<TextLayouts> layouts_;  // made with the first text
};

}  // namespace vantor::Painting
