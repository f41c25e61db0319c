#include "Shared/Views/ImageView.h"

#include <algorithm>
#include <utility>

#include "Painting/Image.h"
#include "Painting/Path.h"
#include "Shared/VTRImageCache.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

/// By tag, from 1.
constexpr std::string_view kDots[] = {
    "stats-label-blue",   "stats-label-red",   "stats-label-lightgrey", "stats-label-darkgrey",
    "stats-label-purple", "stats-label-green", "stats-label-yellow",    "stats-label-orange"};

/// In the middle of `bounds`, whole if there is room, else made smaller in proportion.
Rect centred(const Rect& bounds, Size size) {
    const double shrink = std::min({1.0, bounds.width / size.width, bounds.height / size.height});
    const Size shown{size.width * shrink, size.height * shrink};
    return {(bounds.width - shown.width) / 2, (bounds.height - shown.height) / 2, shown.width,
            shown.height};
}

}  // namespace

void ImageView::setImage(std::shared_ptr<const Painting::Image> image) {
    if (image == image_)
        return;
    image_ = std::move(image);
    setNeedsDisplay();
}

void ImageView::draw(Painting::Context& context) {
    if (image_ && image_->size().width > 0 && image_->size().height > 0)
        context.drawImage(*image_, centred(bounds(), image_->size()));
}

void DotImageView::updateImage() {
    if (tag_ >= 1 && tag_ <= static_cast<std::int64_t>(std::size(kDots)))
        setImage(VTRImageNamed(kDots[tag_ - 1]));
}

void DotView::setColor(const Colour& color) {
    color_ = color;
    setNeedsDisplay();
}

void DotView::draw(Painting::Context& context) {
    Painting::Path oval;
    oval.addOval({2, 2, 7, 7});
    context.fill(oval, color_);
    if (const auto gloss = VTRImageNamed("menubar-diskactivity-dots-overlay.tiff"))
        context.drawImage(*gloss, Point{0, 0});
}

void TickView::setState(std::int64_t state) {
    state_ = state;
    setNeedsDisplay();
}

void TickView::setHighlighted(bool highlighted) {
    highlighted_ = highlighted;
    setNeedsDisplay();
}

void TickView::draw(Painting::Context& context) {
    if (state_ != 1)
        return;
    if (const auto tick = VTRImageNamed(highlighted_ ? "stats-tick-white" : "stats-tick"))
        context.drawImage(*tick, Point{0, 0});
}

}  // namespace vantor::inline VANTOR_MODULE
