#include "Hosts/ItemPicture.h"

#include <algorithm>
#include <cstdint>
#include <span>

namespace vantor {
namespace {

using Row = std::span<const std::uint32_t>;

/// How many pixels are the same before the first that isn't.
int sameAtTheLeft(Row before, Row after) noexcept {
    return static_cast<int>(std::ranges::mismatch(before, after).in1 - before.begin());
}

/// How many pixels there are up to the last that isn't the same.
int endOfDifference(Row before, Row after) noexcept {
    auto end = before.size();
    while (end > 0 && before[end - 1] == after[end - 1])
        --end;
    return static_cast<int>(end);
}

}  // namespace

PixelRect differenceBetween(const Painting::ImageSurface& before,
                            const Painting::ImageSurface& after) noexcept {
    int left = after.widthPixels(), right = 0, top = after.heightPixels(), bottom = 0;
    for (int y = 0; y < after.heightPixels(); ++y) {
        const int first = sameAtTheLeft(before.row(y), after.row(y));
        if (first == after.widthPixels())
            continue;
        left = std::min(left, first);
        right = std::max(right, endOfDifference(before.row(y), after.row(y)));
        top = std::min(top, y);
        bottom = y + 1;
    }
    return right == 0 ? PixelRect{} : PixelRect{left, top, right - left, bottom - top};
}

ItemPicture::ItemPicture(double scale) noexcept
    : surfaces_{Painting::ImageSurface({0, 0}, scale), Painting::ImageSurface({0, 0}, scale)} {}

bool ItemPicture::resize(Size size) noexcept {
    if (shown().size() == size)
        return false;
    for (Painting::ImageSurface& surface : surfaces_)
        surface = Painting::ImageSurface(size, scale());
    return true;
}

}  // namespace vantor
