#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "Foundation/Geometry.h"
#include "Painting/Bitmap.h"

namespace vantor {
class Image;
}

namespace vantor::Painting {

class ImageSource;

/// What an image shows at one scale: the pixels, and the part of the image that they fill. Its
/// origin is at the image's lower left.
struct ImageView {
    Bitmap bitmap;
    Rect filled;
};

/// A picture for any scale, or a cut-out of one.
/// Shape:  up to three files, "name.png", "name@2x.png" and "name@3x.png". Each is read when a
///         paint first asks for its scale: the next larger one there is, else the largest.
///         Cut-outs look into the same pixels.
/// Units:  points; `size` is that of the smallest file over its scale.
/// Errors: a file that can't be read is as one that isn't there; a cut-out paints nothing where
///         there is no picture.
/// Thread: main.
class Image {
public:
    /// The files that belong to `file`, itself one of them. Null where none is readable.
    static std::shared_ptr<const Image> fromFile(const std::filesystem::path& file,
                                                 std::string name = {});
    /// One picture for all scales.
    static std::shared_ptr<const Image> fromPixels(std::shared_ptr<const vantor::Image> pixels);

    Image(const Image&) = delete;
    Image& operator=(const Image&) = delete;

    Size size() const noexcept { return size_; }
    const std::string& name() const noexcept { return name_; }

    /// What a picture of that size would show on which this one was painted with its lower left
    /// at `paintedAt`, from the lower left, y upwards. A size below 0 is 0.
    std::shared_ptr<const Image> cutOut(Size size, Point paintedAt) const;

    /// For those who paint. Nothing to show gives an empty bitmap.
    ImageView viewForScale(double scale) const noexcept;

private:
    Image() = default;
    static std::shared_ptr<const Image> fromSource(std::shared_ptr<const ImageSource> source,
                                                   std::string name);

    std::shared_ptr<const ImageSource> source_;
    std::string name_;
    Size size_;
    Point paintedAt_;  // the lower left of the source's picture in this image
    Rect visible_;     // where in this image the picture may show
};

}  // namespace vantor::Painting
