#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "Painting/ImageSurface.h"

namespace vantor::test {

inline constexpr std::uint32_t kRedPixel = 0xFFFF0000, kGreenPixel = 0xFF00FF00;
inline constexpr std::uint32_t kBluePixel = 0xFF0000FF, kWhitePixel = 0xFFFFFFFF;
inline constexpr std::uint32_t kBlackPixel = 0xFF000000;

inline constexpr Colour kRed{1, 0, 0, 1}, kGreen{0, 1, 0, 1}, kBlue{0, 0, 1, 1};

inline std::vector<std::uint32_t> pixelsOf(const Painting::ImageSurface& surface) {
    std::vector<std::uint32_t> pixels;
    for (int y = 0; y < surface.heightPixels(); ++y)
        pixels.insert(pixels.end(), surface.row(y).begin(), surface.row(y).end());
    return pixels;
}

/// The colour of one pixel of a picture in which no two are alike, from the upper left. `kind`
/// tells pictures apart.
inline Colour mosaicColour(int x, int y, int kind) {
    return {(x * 5 % 256) / 255.0, (y * 5 % 256) / 255.0, (kind * 60 % 256) / 255.0, 1};
}
inline std::uint32_t mosaicPixel(int x, int y, int kind) {
    const auto byte = [](int value) { return static_cast<std::uint32_t>(value % 256); };
    return 0xFF000000 | byte(x * 5) << 16 | byte(y * 5) << 8 | byte(kind * 60);
}

/// Writes such a picture, of so many pixels.
[[nodiscard]] inline bool writeMosaic(const std::filesystem::path& file, int width, int height,
                                      int kind) {
    std::filesystem::create_directories(file.parent_path());
    Painting::ImageSurface surface({static_cast<double>(width), static_cast<double>(height)}, 1);
    {
        auto context = surface.context(Painting::Origin::upperLeft);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                context.fill(Rect{static_cast<double>(x), static_cast<double>(y), 1, 1},
                             mosaicColour(x, y, kind));
    }
    return surface.writePNG(file);
}

}  // namespace vantor::test
