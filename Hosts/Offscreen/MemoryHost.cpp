#include "Hosts/Offscreen/MemoryHost.h"

#include "Painting/Context.h"
#include "Shared/MenuExtra.h"
#include "Shared/Views/VTRMenuExtraView.h"

namespace vantor {
namespace {

constexpr double kHeight = 22;
/// An item that changes its length each time it is painted mustn't be painted for ever.
constexpr int kMostPaintsAtOnce = 4;
constexpr Colour kBackground{1, 1, 1, 1};

}  // namespace

void MemoryHost::display(Sample) {
    VTRMenuExtraView* const view = extra_ != nullptr ? extra_->view() : nullptr;
    bool changed = view != nullptr;
    for (int paint = 0; changed && paint < kMostPaintsAtOnce; ++paint) {
        const double before = length();
        picture_.repaint({before, kHeight}, [&](Painting::Context& context) {
            context.fill(context.clipBounds(), kBackground);
            view->drawRect(context, {});
        });
        changed = length() != before;
    }
}

}  // namespace vantor
