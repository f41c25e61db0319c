#include "Shared/Graphs/BarGraph.h"

#include <cmath>

#include "Painting/Image.h"
#include "Shared/VTRImageCache.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kCap = 20, kEdge = 1;

}  // namespace

double filledWidth(float fraction, double width) noexcept {
    const auto room = static_cast<float>(std::trunc(width - 2 * kEdge));
    const float filled = std::floor(fraction * room);
    return static_cast<double>(filled < 1 && fraction > 0 ? 1 : filled);
}

void BarGraph::draw(Painting::Context& context) {
    if (percentage_ > 1)
        percentage_ = 1;
    if (const auto area = VTRImageCache::sharedCache().imageWithLeftCap("stats-bararea-16", kCap))
        area->drawInRect(context, {0, 0, frame().width, kHeight});
    const double filled = filledWidth(percentage_, frame().width);
    if (const auto bar = VTRImageNamed("stats-bar-blue"); bar && filled > 0)
        context.drawImage(*bar, Rect{kEdge, 0, filled, kHeight});
}

}  // namespace vantor::inline VANTOR_MODULE
