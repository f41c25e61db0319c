#include "Painting/ImageSurface.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "Painting/Engine.h"

namespace vantor::Painting {
namespace {

constexpr double kMostPixels = 16'384;

/// 0 where there is no such number of pixels.
int pixelsFor(double points, double scale) noexcept {
    // A size that is whole but for rounding is whole.
    const double pixels = std::ceil(points * scale - 1e-6);
    return pixels > 0 && pixels <= kMostPixels ? static_cast<int>(pixels) : 0;
}

void close(_cairo* cairo) noexcept { Engine::shared().close(cairo); }

}  // namespace

ImageSurface::ImageSurface(Size size, double scale) noexcept
    : size_(size), scale_(scale), cairo_(nullptr, close) {
    width_ = pixelsFor(size.width, scale);
    height_ = pixelsFor(size.height, scale);
    try {
        pixels_.resize(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_));
    } catch (const std::bad_alloc&) {
        pixels_.clear();
    }
    if (pixels_.empty())
        width_ = height_ = 0;
    const double usable = pixels_.empty() ? 1 : scale;  // cairo takes no other than a number
    cairo_.reset(Engine::shared().open(pixels_.data(), width_, height_, usable));
}

Context ImageSurface::context(Origin origin) noexcept {
    return Context(cairo_.get(), size_, scale_, origin);
}

void ImageSurface::clear() noexcept { std::ranges::fill(pixels_, 0u); }

void ImageSurface::scrollLeft(int by, int begin, int end) noexcept {
    const int first = std::clamp(begin, 0, width_);
    const int moved = std::clamp(end, first, std::max(first, width_ - std::max(by, 0))) - first;
    for (int y = 0; y < height_; ++y) {
        std::uint32_t* const row = pixels_.data() + static_cast<std::ptrdiff_t>(y) * width_;
        std::copy_n(row + first + by, moved, row + first);
        std::fill_n(row, first, 0u);
        std::fill(row + first + moved, row + width_, 0u);
    }
}

std::uint32_t ImageSurface::pixel(int x, int y) const noexcept {
    const auto pixels = row(y);
    return x >= 0 && x < width_ && !pixels.empty() ? pixels[static_cast<std::size_t>(x)] : 0;
}

std::span<const std::uint32_t> ImageSurface::row(int y) const noexcept {
    if (y < 0 || y >= height_)
        return {};
    const auto width = static_cast<std::size_t>(width_);
    return std::span(pixels_).subspan(static_cast<std::size_t>(y) * width, width);
}

bool ImageSurface::writePNG(const std::filesystem::path& file) const noexcept {
    // Without pixels there is nothing to write, and no empty file is left.
    return widthPixels() > 0 && heightPixels() > 0 &&
           Engine::shared().writePNG(cairo_.get(), file.c_str());
}

}  // namespace vantor::Painting
