#pragma once

#include <cstdint>

namespace vantor::Painting {

/// Pixels that somebody else keeps, as an image or an image surface has them.
/// Shape:  rows from the top, `stride` pixels from one to the next.
struct Bitmap {
    const std::uint32_t* pixels = nullptr;
    int width = 0, height = 0, stride = 0;

    bool isEmpty() const noexcept { return pixels == nullptr || width <= 0 || height <= 0; }
};

}  // namespace vantor::Painting
