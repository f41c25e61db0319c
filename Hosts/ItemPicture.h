#pragma once

#include <array>
#include <utility>

#include "Foundation/Geometry.h"
#include "Painting/ImageSurface.h"

namespace vantor {

/// Pixels, from the upper left.
struct PixelRect {
    int x = 0, y = 0, width = 0, height = 0;
    bool isEmpty() const noexcept { return width <= 0 || height <= 0; }
    bool operator==(const PixelRect&) const = default;
};

/// The smallest rectangle that holds every pixel in which two surfaces of one size differ.
PixelRect differenceBetween(const Painting::ImageSurface& before,
                            const Painting::ImageSurface& after) noexcept;

/// The item as it was painted last, kept so that only what changed has to be shown anew.
/// Shape:  two surfaces of one size, painted in turn. Only another size allocates.
/// Units:  points; `scale` is the screen's: pixels a point.
/// Errors: what has no room in a surface has no pixels, and never changes.
/// Thread: main queue.
class ItemPicture {
public:
    explicit ItemPicture(double scale) noexcept;

    double scale() const noexcept { return shown().scale(); }
    const Painting::ImageSurface& shown() const noexcept { return surfaces_[0]; }

    /// Has `paint` paint all of it, over nothing, and answers what changed: everything where it has
    /// another size now.
    template <class Paint>
    PixelRect repaint(Size size, Paint&& paint) {
        const bool resized = resize(size);
        surfaces_[1].clear();
        {
            Painting::Context context = surfaces_[1].context();
            std::forward<Paint>(paint)(context);
        }
        std::swap(surfaces_[0], surfaces_[1]);
        return resized ? whole() : differenceBetween(surfaces_[1], surfaces_[0]);
    }

private:
    bool resize(Size size) noexcept;
    PixelRect whole() const noexcept {
        return {0, 0, shown().widthPixels(), shown().heightPixels()};
    }

    std::array<Painting::ImageSurface, 2> surfaces_;  // shown, and to be painted next
};

}  // namespace vantor
