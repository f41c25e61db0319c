#include "Hosts/Menu/MenuControls.h"

#include "Shared/Buttons/StatInterfaceButton.h"
#include "Shared/Buttons/StatInterfaceMenuButton.h"
#include "Shared/VTRMenuItemButtonBuilders.h"
#include "Shared/Views/StatInterfaceActionView.h"
#include "Shared/Views/StatInterfaceView.h"

namespace vantor {
namespace {

template <class Kind>
bool isA(const View& view) {
    return dynamic_cast<const Kind*>(&view) != nullptr;
}

void gather(View& view, std::vector<View*>& into) {
    if (isA<StatInterfaceButton>(view) && !view.hidden())
        into.push_back(&view);
    for (const auto& inside : view.subviews())
        gather(*inside, into);
}

}  // namespace

bool isControl(const View& view) {
    return isA<StatInterfaceButton>(view) || isA<StatInterfaceMenuButton>(view) ||
           isA<StatInterfaceActionView>(view);
}

std::vector<View*> buttonsIn(View& row) {
    std::vector<View*> buttons;
    gather(row, buttons);
    return buttons;
}

bool isEnabled(const VTRMenuItem& item) {
    return item.submenu() || item.action != nullptr || controlOf(item) != nullptr;
}

bool isChoosable(const VTRMenuItem& item) {
    return item.action != nullptr && item.action != &VTRMenuItemUtilities::fauxAction;
}

bool isStop(const VTRMenuItem& item) {
    StatInterfaceView* const view = item.view();
    return view != nullptr && isEnabled(item) &&
           (view->highlightable() || !buttonsIn(*view).empty());
}

View* controlOf(const VTRMenuItem& item) {
    if (item.button)
        return item.button.get();
    StatInterfaceView* const view = item.view();
    return view != nullptr && isControl(*view) ? view : nullptr;
}

}  // namespace vantor
