#include "Shared/VTRMenuItemButtonBuilders.h"

#include <array>
#include <cmath>
#include <string>
#include <utility>

#include "Shared/Buttons/StatInterfaceButton.h"
#include "Shared/VTRMenuHighlight.h"
#include "Shared/VTRMenuItemComboBuilders.h"
#include "Shared/VTRMenuItemControls.h"
#include "Shared/Views/ImageView.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kTitleRoom = 40;
constexpr Size kLauncherSize{kRowWidth, 29};
constexpr double kLauncherTop = 1, kLauncherIcon = 20;
constexpr std::array kLauncherPlaces{20.0, 61.0, 102.0, 143.0, 184.0};

/// As wide as the row, beginning where its texts do and as high as their fields.
void addButton(VTRMenuItem& item, std::string_view title, bool bold,
               StatInterfaceMenuButton::Action action) {
    const Size size = item.view()->frame().size();
    item.button = addControl<StatInterfaceMenuButton>(
        item, {0, textY(size.height), size.width, size.height}, Resizing::width);
    item.button->setTitle(title);
    item.button->setBold(bold);
    item.button->setAction(std::move(action));
    item.action = VTRMenuItemUtilities::fauxAction;
}

std::shared_ptr<VTRMenuItem> buttonRow(std::string_view title,
                                       StatInterfaceMenuButton::Action action, int width,
                                       int height, bool bold) {
    const double rowWidth = width == 0 ? std::trunc(measuredWidth(title)) + kTitleRoom : width;
    auto item = createRow({rowWidth, static_cast<double>(height)});
    addButton(*item, title, bold, std::move(action));
    return item;
}

void resizeHighlight(VTRMenuItem& item) {
    if (item.view()->frame().height == kTextRowHeight)
        menuItemResizeHightlight(item);
}

}  // namespace

void VTRMenuItemUtilities::fauxAction(VTRMenuItem&) noexcept {}

std::shared_ptr<VTRMenuItem> createComboButtonMenuItem(std::string_view label,
                                                       std::string_view value, int width,
                                                       int height, bool bold,
                                                       StatInterfaceMenuButton::Action action) {
    auto item = createComboTextMenuItem(label, value, width, height);
    addButton(*item, "", bold, std::move(action));
    item->button->setRepresentedObject(std::string(value));
    resizeHighlight(*item);
    return item;
}

std::shared_ptr<VTRMenuItem> createButtonMenuItem(std::string_view title,
                                                  StatInterfaceMenuButton::Action action, int width,
                                                  int height, bool bold) {
    auto item = buttonRow(title, std::move(action), width, height, bold);
    resizeHighlight(*item);
    return item;
}

std::shared_ptr<VTRMenuItem> createTickButtonMenuItem(std::string_view title,
                                                      StatInterfaceMenuButton::Action action,
                                                      int width, int height, bool bold) {
    auto item = buttonRow(title, std::move(action), width, height, bold);
    item->tick = addControl<TickView>(*item, {item->view()->frame().width - 22, 2, 12, 12},
                                      Resizing::leftMargin);
    return item;
}

std::shared_ptr<VTRMenuItem> createLauncherMenuItem(const std::vector<std::int64_t>& tags) {
    auto item = createRow(kLauncherSize);
    if (tags.size() != kLauncherPlaces.size())
        return item;
    for (std::size_t index = 0; index < tags.size(); ++index) {
        const auto button = addControl<StatInterfaceButton>(
            *item, {kLauncherPlaces[index], kLauncherTop, kLauncherIcon, kLauncherIcon},
            Resizing::leftMargin | Resizing::rightMargin);
        button->setTag(tags[index]);
        button->setupTarget();
    }
    item->action = VTRMenuItemUtilities::fauxAction;
    return item;
}

}  // namespace vantor::inline VANTOR_MODULE
