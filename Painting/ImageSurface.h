#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <vector>

#include "Foundation/Geometry.h"
#include "Painting/Bitmap.h"
#include "Painting/Context.h"

namespace vantor::Painting {

/// Pixels to paint into: for bitmaps kept between paints, snapshots and tests. All transparent at
/// first.
/// Shape:  the size in points times the scale, rounded up to whole pixels.
/// Errors: one that can't be had, or has a side of more than 16,384 pixels, has no pixels.
/// Thread: main.
class ImageSurface {
public:
    ImageSurface(Size size, double scale) noexcept;

    Size size() const noexcept { return size_; }
    double scale() const noexcept { return scale_; }
    int widthPixels() const noexcept { return width_; }
    int heightPixels() const noexcept { return height_; }

    /// The surface as a view. It outlives the context.
    Context context(Origin origin = Origin::lowerLeft) noexcept;
    /// Makes it all transparent again.
    void clear() noexcept;
    /// Moves the columns of pixels from `begin` on to the left, so that they end before `end`;
    /// all others become transparent. In pixels.
    void scrollLeft(int by, int begin, int end) noexcept;

    /// From the upper left, in pixels: alpha, red, green and blue from the highest byte to the
    /// lowest, the colours multiplied by the alpha. 0 outside.
    std::uint32_t pixel(int x, int y) const noexcept;
    std::span<const std::uint32_t> row(int y) const noexcept;
    [[nodiscard]] bool writePNG(const std::filesystem::path& file) const noexcept;

    /// For those who paint.
    Bitmap bitmap() const noexcept { return {pixels_.data(), width_, height_, width_}; }
    /// For those who paint into them, in rows from the top.
    std::span<std::uint32_t> pixels() noexcept { return pixels_; }

private:
    Size size_;
    double scale_;
    int width_ = 0, height_ = 0;
    std::vector<std::uint32_t> pixels_;
    std::unique_ptr<_cairo, void (*)(_cairo*) noexcept> cairo_;
};

}  // namespace vantor::Painting
