#include "Hosts/Offscreen/OffscreenHost.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "Painting/Context.h"
#include "Shared/MenuExtra.h"
#include "Shared/Views/VTRMenuExtraView.h"

namespace vantor {
namespace {

constexpr Colour kHighlight{0.18, 0.45, 0.92, 1};
/// An item that changes its width each time it is painted mustn't be painted for ever.
constexpr int kMostPaintsAtOnce = 4;
constexpr double kFirstCanvasWidth = 1024, kWidestItem = 16384;

}  // namespace

void OffscreenHost::setMenuDown(bool down) noexcept {
    needsDisplay_ = needsDisplay_ || menuDown_ != down;
    menuDown_ = down;
}

void OffscreenHost::setLength(double length) {
    length_ = length;
    if (listener_ != nullptr)
        listener_->length(length);
}

void OffscreenHost::setViewFrameSize(Size size) {
    needsDisplay_ = needsDisplay_ || size_ != size;
    size_ = size;
}

void OffscreenHost::drawMenuBackground(Painting::Context& context) {
    context.fill(context.clipBounds(), kHighlight);
}

void OffscreenHost::displayIfNeeded() {
    VTRMenuExtraView* const view = extra_ != nullptr ? extra_->view() : nullptr;
    for (int paint = 0; view != nullptr && needsDisplay_ && paint < kMostPaintsAtOnce; ++paint) {
        needsDisplay_ = false;
        Painting::ImageSurface surface({std::max(1.0, size_.width), kHeight}, 1);
        Painting::Context context = surface.context();
        view->drawRect(context, {});
        if (listener_ != nullptr)
            listener_->repaint();
    }
}

Painting::ImageSurface OffscreenHost::snapshot(double scale,
                                               const std::optional<Colour>& background) {
    VTRMenuExtraView* const view = extra_ != nullptr ? extra_->view() : nullptr;
    if (view == nullptr)
        return {{1, kHeight}, scale};
    // How wide the item is shows when it is painted: into a canvas with room to spare.
    Painting::ImageSurface canvas({kFirstCanvasWidth, kHeight}, scale);
    double width = 0;
    for (double room = kFirstCanvasWidth;; room = std::ceil(width)) {
        if (room > kFirstCanvasWidth)
            canvas = Painting::ImageSurface({std::min(room, kWidestItem / scale), kHeight}, scale);
        Painting::Context context = canvas.context();
        if (background)
            context.fill(Rect{0, 0, room, kHeight}, *background);
        width = static_cast<double>(view->drawSnapshot(context));
        if (width <= room || room >= kWidestItem / scale)
            break;
    }
    Painting::ImageSurface item({std::clamp(width, 1.0, kWidestItem / scale), kHeight}, scale);
    item.context(Painting::Origin::upperLeft).drawImage(canvas, Point{0, 0});
    return item;
}

}  // namespace vantor
