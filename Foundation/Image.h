#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "Foundation/Geometry.h"

namespace vantor {

/// A picture in memory.
/// Shape:  rows from the top, without gaps; a pixel is alpha, red, green and blue from its highest
///         byte to its lowest, the colours multiplied by the alpha.
/// Units:  `size` is in points: its pixels over `scale`.
/// Thread: any, one at a time.
class Image {
public:
    /// The PNG file; its name's ending "@2x" or "@3x" is the scale. Null where there is no such
    /// file, it can't be read, or it has more than 16 million pixels.
    static std::shared_ptr<Image> fromFile(const std::filesystem::path& file);

    /// `pixels` has room for all rows.
    Image(int widthPixels, int heightPixels, int scale, std::vector<std::uint32_t> pixels);

    int widthPixels() const noexcept { return widthPixels_; }
    int heightPixels() const noexcept { return heightPixels_; }
    int scale() const noexcept { return scale_; }
    Size size() const noexcept;
    std::span<const std::uint32_t> pixels() const noexcept { return pixels_; }

    const std::string& name() const noexcept { return name_; }
    void setName(std::string name) { name_ = std::move(name); }

private:
    int widthPixels_, heightPixels_, scale_;
    std::vector<std::uint32_t> pixels_;
    std::string name_;
};

}  // namespace vantor
