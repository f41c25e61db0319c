#include "Painting/Image.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>
#include <string_view>
#include <system_error>
#include <utility>

#include "Foundation/Image.h"

namespace vantor::Painting {
namespace {

namespace fs = std::filesystem;

using Pixels = std::shared_ptr<const vantor::Image>;

constexpr std::array<std::string_view, 3> kEndings{"", "@2x", "@3x"};

std::string withoutEnding(std::string stem) {
    for (const std::string_view ending : kEndings)
        if (!ending.empty() && stem.ends_with(ending))
            stem.resize(stem.size() - ending.size());
    return stem;
}

Rect intersection(const Rect& one, const Rect& other) noexcept {
    const double left = std::max(one.x, other.x), low = std::max(one.y, other.y);
    const double right = std::min(one.x + one.width, other.x + other.width);
    const double high = std::min(one.y + one.height, other.y + other.height);
    return {left, low, std::max(0.0, right - left), std::max(0.0, high - low)};
}

}  // namespace

/// The files of one picture, each read when it is first asked for.
class ImageSource {
public:
    explicit ImageSource(Pixels pixels) { variants_[0].pixels = std::move(pixels); }
    explicit ImageSource(const fs::path& file) {
        const std::string stem = withoutEnding(file.stem().string());
        for (std::size_t index = 0; index < kEndings.size(); ++index) {
            fs::path sibling = file.parent_path() / (stem + std::string(kEndings[index]));
            sibling += file.extension();
            std::error_code none;
            if (fs::is_regular_file(sibling, none))
                variants_[index].unread = std::move(sibling);
        }
    }

    Size size() const noexcept {
        const vantor::Image* const smallest = pixelsForScale(0);
        return smallest == nullptr ? Size{} : smallest->size();
    }

    /// The next larger one there is, else the largest; null where none can be read.
    const vantor::Image* pixelsForScale(double scale) const noexcept {
        // A scale that is 2 but for rounding is 2.
        const auto wanted = std::clamp(std::ceil(scale - 1e-6), 1.0, 3.0);
        const auto first = static_cast<std::size_t>(wanted) - 1;
        for (std::size_t index = first; index < variants_.size(); ++index)
            if (const auto* const pixels = variants_[index].read())
                return pixels;
        for (std::size_t index = first; index-- > 0;)
            if (const auto* const pixels = variants_[index].read())
                return pixels;
        return nullptr;
    }

private:
    struct Variant {
        mutable fs::path unread;  // "" once it was read, or where there is no such file
        mutable Pixels pixels;

        const vantor::Image* read() const noexcept {
            if (!unread.empty())
                pixels = readFile(std::exchange(unread, {}));
            return pixels.get();
        }
        static Pixels readFile(const fs::path& file) noexcept {
            try {
                return vantor::Image::fromFile(file);
            } catch (const std::exception&) {
                return nullptr;  // no memory for it
            }
        }
    };
    std::array<Variant, kEndings.size()> variants_;
};

std::shared_ptr<const Image> Image::fromFile(const fs::path& file, std::string name) {
    auto source = std::make_shared<const ImageSource>(file);
    if (source->pixelsForScale(0) == nullptr)
        return nullptr;
    return fromSource(std::move(source), std::move(name));
}

std::shared_ptr<const Image> Image::fromPixels(std::shared_ptr<const vantor::Image> pixels) {
    if (pixels == nullptr)
        return nullptr;
    std::string name = pixels->name();
    return fromSource(std::make_shared<const ImageSource>(std::move(pixels)), std::move(name));
}

std::shared_ptr<const Image> Image::fromSource(std::shared_ptr<const ImageSource> source,
                                               std::string name) {
    const std::shared_ptr<Image> image(new Image);
    image->size_ = source->size();
    image->visible_ = {0, 0, image->size_.width, image->size_.height};
    image->name_ = std::move(name);
    image->source_ = std::move(source);
    return image;
}

std::shared_ptr<const Image> Image::cutOut(Size size, Point paintedAt) const {
    const std::shared_ptr<Image> image(new Image);
    const Rect whole{0, 0, std::max(0.0, size.width), std::max(0.0, size.height)};
    const Rect moved{visible_.x + paintedAt.x, visible_.y + paintedAt.y, visible_.width,
                     visible_.height};
    image->source_ = source_;
    image->name_ = name_;
    image->size_ = whole.size();
    image->paintedAt_ = {paintedAt_.x + paintedAt.x, paintedAt_.y + paintedAt.y};
    image->visible_ = intersection(whole, moved);
    return image;
}

ImageView Image::viewForScale(double scale) const noexcept {
    const vantor::Image* const pixels = source_->pixelsForScale(scale);
    if (pixels == nullptr)
        return {};
    // From the points of this image to the pixels of the file, whose rows begin at the top.
    const int width = pixels->widthPixels(), height = pixels->heightPixels();
    const Size whole = source_->size();
    const double xScale = width / whole.width, yScale = height / whole.height;
    const auto column = [&](double x) {
        return std::clamp(static_cast<int>(std::lround((x - paintedAt_.x) * xScale)), 0, width);
    };
    const auto row = [&](double y) {
        const long fromBottom = std::lround((y - paintedAt_.y) * yScale);
        return std::clamp(height - static_cast<int>(fromBottom), 0, height);
    };
    const int left = column(visible_.x), right = column(visible_.x + visible_.width);
    const int top = row(visible_.y + visible_.height), bottom = row(visible_.y);
    const auto first = static_cast<std::size_t>(top) * static_cast<std::size_t>(width) +
                       static_cast<std::size_t>(left);
    if (left >= right || top >= bottom)
        return {};
    return {{pixels->pixels().data() + first, right - left, bottom - top, width}, visible_};
}

}  // namespace vantor::Painting
