#include "Shared/VTRMenuItemHeaderBuilders.h"

#include <cmath>
#include <cstdint>
#include <string>

#include "Foundation/LetterCase.h"
#include "Shared/VTRMenu.h"
#include "Shared/Views/DropdownTheme.h"
#include "Shared/Views/StatInterfaceView.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kMainHeaderHeight = 23, kHeaderHeight = 20;
constexpr std::int64_t kHeaderFont = 10;
constexpr double kHeaderRoom = 24;  // beside a title
constexpr Size kSmallest{1, 12};

/// The row that the menu has under the key, or the one that `make` makes for it.
template <class Make>
std::shared_ptr<VTRMenuItem> cachedItem(VTRMenu* menu, std::string_view key, Make make) {
    if (menu == nullptr || key.empty())
        return make();
    const auto found = menu->cache().find(key);
    if (found != menu->cache().end())
        return found->second;
    return menu->cache().emplace(key, make()).first->second;
}

template <class Kind>
std::shared_ptr<VTRMenuItem> plainItem(Size size) {
    auto view = std::make_shared<Kind>(Rect{0, 0, size.width == 0 ? kSmallest.width : size.width,
                                            size.height == 0 ? kSmallest.height : size.height});
    view->setResizing(Resizing::width);
    auto item = std::make_shared<VTRMenuItem>();
    item->setView(std::move(view));
    return item;
}

std::shared_ptr<VTRMenuItem> headerItem(std::string title, Size size, std::int64_t type) {
    auto view = std::make_shared<HeaderView>(Rect{0, 0, size.width, size.height});
    view->setResizing(Resizing::width);
    view->setType(type);
    view->setTitle(std::move(title));
    auto item = std::make_shared<VTRMenuItem>();
    item->setView(std::move(view));
    return item;
}

}  // namespace

std::shared_ptr<VTRMenuItem> createSpacerItem(VTRMenu* menu, std::string_view key, Size size) {
    return cachedItem(menu, key, [size] { return plainItem<SpacerView>(size); });
}

std::shared_ptr<VTRMenuItem> createFillerItem(VTRMenu* menu, std::string_view key, Size size) {
    return cachedItem(menu, key, [size] { return plainItem<StatInterfaceView>(size); });
}

std::shared_ptr<VTRMenuItem> createMainHeaderItem(VTRMenu* menu, std::string_view key,
                                                  std::string_view title, int width) {
    return cachedItem(menu, key, [title, width] {
        return headerItem(upperCased(title), {static_cast<double>(width), kMainHeaderHeight}, 1);
    });
}

std::shared_ptr<VTRMenuItem> createHeaderItem(VTRMenu* menu, std::string_view key,
                                              std::string_view title, int /*width*/) {
    return cachedItem(menu, key, [title] {
        std::string capitals = upperCased(title);
        const double width =
            std::trunc(widthOfText(capitals, vtrMediumFont(kHeaderFont)) + kHeaderRoom);
        return headerItem(std::move(capitals), {width, kHeaderHeight}, 0);
    });
}

}  // namespace vantor::inline VANTOR_MODULE
