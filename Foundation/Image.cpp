#include "Foundation/Image.h"

#include <bit>
#include <cassert>
#include <cstddef>
#include <system_error>
#include <utility>

#include <png.h>

namespace vantor {
namespace {

constexpr std::uint64_t kMostPixels = 16u << 20;
constexpr auto kNativeOrder = std::endian::native == std::endian::little
                                  ? png_uint_32{PNG_FORMAT_BGRA}
                                  : png_uint_32{PNG_FORMAT_ARGB};

/// The library's state while it reads one file.
class PNGReading {
public:
    PNGReading() noexcept { image_.version = PNG_IMAGE_VERSION; }
    ~PNGReading() { png_image_free(&image_); }
    PNGReading(const PNGReading&) = delete;
    PNGReading& operator=(const PNGReading&) = delete;

    bool begin(const std::filesystem::path& file) noexcept {
        return png_image_begin_read_from_file(&image_, file.c_str()) != 0 && pixelCount() > 0 &&
               pixelCount() <= kMostPixels;
    }
    bool finish(std::vector<std::uint32_t>& pixels) {
        image_.format = kNativeOrder;
        pixels.resize(pixelCount());
        return png_image_finish_read(&image_, nullptr, pixels.data(), 0, nullptr) != 0;
    }
    int width() const noexcept { return static_cast<int>(image_.width); }
    int height() const noexcept { return static_cast<int>(image_.height); }

private:
    std::uint64_t pixelCount() const noexcept {
        return std::uint64_t{image_.width} * image_.height;
    }

    png_image image_{};
};

std::uint32_t premultiplied(std::uint32_t pixel) noexcept {
    const std::uint32_t alpha = pixel >> 24;
    const auto scaled = [&](int shift) {
        return ((pixel >> shift & 0xFF) * alpha + 127) / 255 << shift;
    };
    return alpha << 24 | scaled(16) | scaled(8) | scaled(0);
}

int scaleOf(const std::filesystem::path& file) {
    const std::string stem = file.stem().string();
    if (stem.ends_with("@2x"))
        return 2;
    return stem.ends_with("@3x") ? 3 : 1;
}

}  // namespace

std::shared_ptr<Image> Image::fromFile(const std::filesystem::path& file) {
    std::error_code none;  // a pipe in its place would make the library wait
    PNGReading reading;
    if (!std::filesystem::is_regular_file(file, none) || !reading.begin(file))
        return nullptr;
    std::vector<std::uint32_t> pixels;
    if (!reading.finish(pixels))
        return nullptr;
    for (std::uint32_t& pixel : pixels)
        pixel = premultiplied(pixel);
    return std::make_shared<Image>(reading.width(), reading.height(), scaleOf(file),
                                   std::move(pixels));
}

Image::Image(int widthPixels, int heightPixels, int scale, std::vector<std::uint32_t> pixels)
    : widthPixels_(widthPixels), heightPixels_(heightPixels), scale_(scale),
      pixels_(std::move(pixels)) {
    assert(pixels_.size() ==
           static_cast<std::size_t>(widthPixels_) * static_cast<std::size_t>(heightPixels_));
}

Size Image::size() const noexcept {
    return {static_cast<double>(widthPixels_) / scale_,
            static_cast<double>(heightPixels_) / scale_};
}

}  // namespace vantor
