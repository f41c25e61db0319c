#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "Shared/Views/View.h"

namespace vantor::Painting {
class Image;
}

namespace vantor::inline VANTOR_MODULE {

/// A picture in the middle of its frame, made smaller where it has no room. Without one it is
/// empty.
class ImageView : public View {
public:
    explicit ImageView(const Rect& frame = {}) : View(frame) {}
    std::string_view className() const override { return "NSImageView"; }

    const std::shared_ptr<const Painting::Image>& image() const noexcept { return image_; }
    void setImage(std::shared_ptr<const Painting::Image> image);

protected:
    void draw(Painting::Context& context) override;

private:
    std::shared_ptr<const Painting::Image> image_;
};

/// The colour of a series, as a picture by number: 1 blue, 2 red, 3 light grey, 4 dark grey,
/// 5 purple, 6 green, 7 yellow, 8 orange.
class DotImageView final : public ImageView {
public:
    using ImageView::ImageView;
    std::string_view className() const override { return "DotImageView"; }

    std::int64_t tag() const noexcept { return tag_; }
    void setTag(std::int64_t tag) noexcept { tag_ = tag; }
    /// Shows the dot of the tag; any other tag leaves what is there.
    void updateImage();

private:
    std::int64_t tag_ = 0;
};

/// A round dot of any colour, with a gloss.
class DotView final : public View {
public:
    using View::View;
    std::string_view className() const override { return "DotView"; }

    const Colour& color() const noexcept { return color_; }
    void setColor(const Colour& color);

protected:
    void draw(Painting::Context& context) override;

private:
    Colour color_ = kBlack;
};

/// A check mark, when its state is 1.
class TickView final : public View {
public:
    using View::View;
    std::string_view className() const override { return "TickView"; }

    std::int64_t state() const noexcept { return state_; }
    void setState(std::int64_t state);
    bool highlighted() const noexcept { return highlighted_; }
    void setHighlighted(bool highlighted);

protected:
    void draw(Painting::Context& context) override;

private:
    bool highlighted_ = false;
    std::int64_t state_ = 0;
};

}  // namespace vantor::inline VANTOR_MODULE
