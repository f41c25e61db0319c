#include "Shared/StatInterface.h"

#include <algorithm>

#include "Shared/ProcessContext.h"
#include "Shared/Views/StatInterfaceView.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

bool contains(const StatInterface::Items& items, const VTRMenuItem& item) {
    return std::ranges::find(items, &item, &std::shared_ptr<VTRMenuItem>::get) != items.end();
}

void markForDisplay(VTRMenuItem& item) {
    if (StatInterfaceView* const view = item.view())
        view->setNeedsDisplay();
}

void removeOthers(VTRMenu& menu, const StatInterface::Items& items) {
    const VTRMenu::Items before = menu.itemArray();
    for (const std::shared_ptr<VTRMenuItem>& item : before)
        if (!contains(items, *item))
            menu.removeItem(*item);
}

}  // namespace

StatInterface::StatInterface() : ports_(ProcessContext::current().ports()) {}

StatInterface::~StatInterface() = default;

void StatInterface::rebuildMenu(VTRMenu& menu, const Items& withItems) {
    removeOthers(menu, withItems);
    for (std::size_t index = 0; index < withItems.size(); ++index)
        if (withItems[index]->menu() != &menu) {
            menu.insertItem(withItems[index], index);
            markForDisplay(*withItems[index]);
        }
    if (menu.itemArray() == withItems)
        return;
    menu.removeAllItems();
    for (const std::shared_ptr<VTRMenuItem>& item : withItems)
        if (item->menu() != &menu) {
            menu.addItem(item);
            markForDisplay(*item);
        }
}

}  // namespace vantor::inline VANTOR_MODULE
