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
    for (std::size_t row = 0; row < menu->itemArray().size(); ++row) {
        const auto item = menu->itemArray()[row];
        if (StatInterfaceView* const view = item->view(); view && view->treeNeedsDisplay())
            displayRow(*view);
    }
}

/// On one canvas for all rows, which stays as large as the largest of them was.
void OffscreenMenu::displayRow(StatInterfaceView& view) {
    const Size size = view.frame().size();
    const Size room = canvas_ ? canvas_->size() : Size{1, 1};
    if (!canvas_ || room.width < size.width || room.height < size.height)
        canvas_.emplace(Size{std::max(room.width, size.width), std::max(room.height, size.height)},
                        1);
    Painting::Context context = canvas_->context(Painting::Origin::upperLeft);
    Painting::Context inside(context, {0, 0, size.width, size.height}, originOf(view));
    view.display(inside);
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
