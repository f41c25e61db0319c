#pragma once

#include <cstdint>

#include "Painting/Context.h"
#include "Painting/ImageSurface.h"

namespace vantor::test {

/// A piece of a bar to paint into, asked for pixels in points of the bar: x from the left, y from
/// the bottom.
class BarCanvas {
public:
    explicit BarCanvas(double width, double scale = 1)
        : surface({width, 22}, scale), context(surface.context()) {}

    /// The pixel whose lower left is there.
    std::uint32_t pixel(double x, double y) const {
        const double scale = surface.scale();
        return surface.pixel(static_cast<int>(x * scale),
                             static_cast<int>((22 - y) * scale) - 1);
    }
    bool painted(double x, double y) const { return pixel(x, y) != 0; }
    /// How many points are painted, from `y` upwards without a break.
    int heightAt(double x, double y) const {
        int height = 0;
        while (height < 22 && painted(x, y + height))
            ++height;
        return height;
    }

    Painting::ImageSurface surface;
    Painting::Context context;
};

/// Opaque pixels, as they stand in a surface.
constexpr std::uint32_t kOpaqueWhite = 0xFFFFFFFF, kOpaqueBlack = 0xFF000000;

}  // namespace vantor::test
