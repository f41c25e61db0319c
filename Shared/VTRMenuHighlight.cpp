#include "Shared/VTRMenuHighlight.h"

#include "Platform/MainQueue.h"
#include "Shared/ProcessContext.h"
#include "Shared/Views/StatInterfaceView.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

/// The pill of a row, `height` high, as its neighbour paints it: only `spill` points of it are
/// inside. `above` for the neighbour above the row.
void spillInto(StatInterfaceView& neighbour, double height, std::int64_t spill, bool above) {
    const auto inside = static_cast<double>(spill);
    const bool atItsEnd = neighbour.isFlipped() == above;  // where its y is greatest
    const double y = atItsEnd ? neighbour.frame().height - inside : inside - height;
    neighbour.setCustomHighlightRect(true);
    neighbour.setHighlightRect({0, y, 0, height});
}

void highlightWithNeighbours(VTRMenu& menu, std::size_t index) {
    const VTRMenu::Items& items = menu.itemArray();
    const VTRMenuItem& item = *items[index];
    StatInterfaceView& view = *item.view();
    view.setCustomHighlightRect(false);
    double height = view.frame().height;
    if (item.useCustomHighlight) {
        view.setCustomHighlightRect(true);
        view.setHighlightRect(item.customHighlightRect);
        height = item.customHighlightRect.height;
    }
    const auto spill = [&](std::size_t neighbour, std::int64_t points, bool above) {
        if (StatInterfaceView* const beside = items[neighbour]->view(); beside && points != 0)
            spillInto(*beside, height, points, above);
    };
    if (index > 0)
        spill(index - 1, item.previousItemHighlight, true);
    if (index + 1 < items.size())
        spill(index + 1, item.nextItemHighlight, false);
    view.setMenuItemHighlighted(true);
}

template <class Change>
void forEachView(VTRMenu& menu, Change change) {
    for (const std::shared_ptr<VTRMenuItem>& item : menu.itemArray())
        if (StatInterfaceView* const view = item->view())
            change(*view);
}

void clear(StatInterfaceView& view) {
    view.setMenuItemHighlighted(false);
    view.setCustomHighlightRect(false);
}

void highlightNow(VTRMenu& menu, const VTRMenuItem* item) {
    forEachView(menu, clear);
    const VTRMenu::Items& items = menu.itemArray();
    for (std::size_t index = 0; index < items.size(); ++index)
        if (const StatInterfaceView* const view = items[index]->view();
            view && view->highlightable() && items[index].get() == item)
            highlightWithNeighbours(menu, index);
    forEachView(menu, [](StatInterfaceView& view) { view.setNeedsDisplay(); });
}

}  // namespace

void highlightRow(VTRMenu& menu, const VTRMenuItem* item) {
    for (const std::shared_ptr<VTRMenuItem>& each : menu.itemArray())
        if (StatInterfaceView* const view = each->view(); view && view->highlightable()) {
            view->setMenuItemHighlighted(each.get() == item);
            view->setNeedsDisplay();
        }
}

void highlightMenuItem(VTRMenu& menu, const std::shared_ptr<VTRMenuItem>& item) {
    ProcessContext::current().ports().mainQueue.after(0, [handle = menu.handle(), item] {
        if (VTRMenu* const self = handle.get())
            highlightNow(*self, item.get());
    });
}

void resetMenuItems(VTRMenu& menu) {
    forEachView(menu, [](StatInterfaceView& view) {
        clear(view);
        view.setNeedsDisplay();
    });
}

void menuItemResizeHightlight(VTRMenuItem& item) {
    item.useCustomHighlight = true;
    item.customHighlightRect = {0, -1, 0, 17};
    item.previousItemHighlight = 1;
    item.nextItemHighlight = 1;
}

}  // namespace vantor::inline VANTOR_MODULE
