#include "Hosts/Offscreen/OffscreenMenu.h"

#include <algorithm>

#include "Shared/Views/StatInterfaceView.h"

namespace vantor {
namespace {

Size sizeOf(const VTRMenu& menu) {
    Size size;
    for (const auto& item : menu.itemArray())
        if (const StatInterfaceView* const view = item->view()) {
            size.width = std::max(size.width, view->frame().width);
            size.height += view->frame().height;
        }
    return size;
}

Painting::Origin originOf(const View& view) {
    return view.isFlipped() ? Painting::Origin::upperLeft : Painting::Origin::lowerLeft;
}

}  // namespace

OffscreenMenu::OffscreenMenu(VTRMenu& menu) : menu_(menu.handle()) {
    if (VTRMenuDelegate* const delegate = menu.delegate())
        delegate->menuWillOpen(menu);
    menu.setHost(this, this);
}

OffscreenMenu::~OffscreenMenu() {
    VTRMenu* const menu = menu_.get();
    if (menu == nullptr)
        return;
    if (VTRMenuDelegate* const delegate = menu->delegate())
        delegate->menuDidClose(*menu);
    menu->setHost(nullptr, nullptr);
}

void OffscreenMenu::abandon() noexcept {
    if (VTRMenu* const menu = menu_.get())
        menu->setHost(nullptr, nullptr);
    menu_ = {};
}

/// A row without a mark stays as it is.
void OffscreenMenu::displayIfNeeded() {
    VTRMenu* const menu = menu_.get();
    if (!needsDisplay_ || menu == nullptr)
        return;
    needsDisplay_ = false;
    const VTRMenu::Items rows = menu->itemArray();
    for (const auto& item : rows) {
        StatInterfaceView* const view = item->view();
        if (view == nullptr || !view->treeNeedsDisplay())
            continue;
        Painting::ImageSurface surface(view->frame().size(), 1);
        Painting::Context context = surface.context(originOf(*view));
        view->display(context);
    }
}

Painting::ImageSurface OffscreenMenu::snapshot(VTRMenu& menu, double scale,
                                               const std::optional<Colour>& background) {
    const Size size = sizeOf(menu);
    Painting::ImageSurface surface({std::max(size.width, 1.0), std::max(size.height, 1.0)}, scale);
    Painting::Context context = surface.context(Painting::Origin::upperLeft);
    if (background)
        context.fill(Rect{0, 0, size.width, size.height}, *background);
    double y = 0;
    for (const auto& item : menu.itemArray()) {
        StatInterfaceView* const view = item->view();
        if (view == nullptr)
            continue;
        const Rect own = view->frame();
        const bool narrow = own.width < size.width;
        if (narrow)
            view->setFrame({own.x, own.y, size.width, own.height});
        {
            Painting::Context inside(context, {0, y, size.width, own.height}, originOf(*view));
            view->display(inside);
        }
        if (narrow)
            view->setFrame(own);
        y += own.height;
    }
    return surface;
}

}  // namespace vantor
