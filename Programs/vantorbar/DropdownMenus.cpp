#include "Programs/vantorbar/DropdownMenus.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "Shared/Buttons/StatInterfaceButton.h"
#include "Shared/Views/StatInterfaceView.h"
#include "Targets/VantorBarCPU/Classes/VTRCPUModule.h"

namespace vantor {
namespace {

constexpr std::int64_t kPress = 1;  // both ends of one
constexpr std::string_view kFixedSubmenus[] = {"cores", "history", "load", "uptime"};
constexpr std::string_view kMemoryMenu = "memory:", kProcessorMenu = "processor:";

struct NamedMenu {
    std::string name;
    VTRMenu* menu;
};

std::vector<NamedMenu> submenus(const StatInterfaceCPU& interface) {
    VTRMenu* const fixed[] = {&interface.coresMenu(), &interface.historyMenu(),
                              &interface.loadMenu(), &interface.uptimeMenu()};
    std::vector<NamedMenu> menus;
    for (std::size_t index = 0; index < std::size(fixed); ++index)
        menus.push_back({std::string(kFixedSubmenus[index]), fixed[index]});
    for (const auto& gpu : interface.gpuItems()) {
        menus.push_back(
            {std::string(kMemoryMenu) + gpu->key, gpu->memoryMenuitem->submenu().get()});
        menus.push_back(
            {std::string(kProcessorMenu) + gpu->key, gpu->processorMenuitem->submenu().get()});
    }
    return menus;
}

StatInterfaceButton* launcherButton(View& view, std::int64_t tag) {
    if (auto* const button = dynamic_cast<StatInterfaceButton*>(&view);
        button && button->tag() == tag)
        return button;
    for (const auto& inside : view.subviews())
        if (StatInterfaceButton* const button = launcherButton(*inside, tag))
            return button;
    return nullptr;
}

/// The text that a row goes by: a title first, then its key in the cache, then its submenu's name.
std::shared_ptr<VTRMenuItem> rowFor(VTRMenuExtra& extra, VTRMenu& menu, std::string_view text) {
    const auto first = [&](auto&& isIt) -> std::shared_ptr<VTRMenuItem> {
        const auto& rows = menu.itemArray();
        const auto found = std::ranges::find_if(rows, isIt);
        return found == rows.end() ? nullptr : *found;
    };
    if (auto row = first([&](const auto& item) { return item->title() == text; });
        row && !text.empty())
        return row;
    if (const auto cached = menu.cache().find(text); cached != menu.cache().end())
        if (auto row = first([&](const auto& item) { return item == cached->second; }))
            return row;
    return text.empty()
               ? nullptr
               : first([&](const auto& item) { return submenuName(extra, *item) == text; });
}

}  // namespace

StatInterfaceCPU* interfaceOf(const VTRMenuExtra& extra) {
    if (extra.modules() == nullptr || extra.modules()->empty())
        return nullptr;
    const auto* const module = dynamic_cast<const VTRCPUModule*>(extra.modules()->front().get());
    return module != nullptr ? module->interface() : nullptr;
}

VTRMenu* menuNamed(VTRMenuExtra& extra, std::string_view name) {
    if (name == "main")
        return extra.menu();
    if (const StatInterfaceCPU* const interface = interfaceOf(extra))
        for (const auto& [known, menu] : submenus(*interface))
            if (known == name)
                return menu;
    return nullptr;
}

bool isSubmenuName(std::string_view name) {
    return std::ranges::find(kFixedSubmenus, name) != std::end(kFixedSubmenus) ||
           name.starts_with(kMemoryMenu) || name.starts_with(kProcessorMenu);
}

std::vector<std::string> submenuNames(const VTRMenuExtra& extra) {
    std::vector<std::string> names;
    if (const StatInterfaceCPU* const interface = interfaceOf(extra))
        for (const NamedMenu& submenu : submenus(*interface))
            names.push_back(submenu.name);
    return names;
}

std::string submenuName(VTRMenuExtra& extra, const VTRMenuItem& item) {
    if (const StatInterfaceCPU* const interface = interfaceOf(extra))
        for (const auto& [name, menu] : submenus(*interface))
            if (item.submenu().get() == menu)
                return name;
    return "";
}

bool DropdownMenus::isOpen(std::string_view name) const noexcept {
    return std::ranges::find(open_, name, &Open::name) != open_.end();
}

std::vector<std::string> DropdownMenus::openNames() const {
    std::vector<std::string> names;
    for (auto each = open_.rbegin(); each != open_.rend(); ++each)
        names.push_back(each->name);
    return names;
}

VTRMenu* DropdownMenus::mainMenu() { return isOpen("main") ? menuNamed(extra_, "main") : nullptr; }

void DropdownMenus::tellHighlight(VTRMenu& menu, VTRMenuItem* item) {
    if (VTRMenuDelegate* const delegate = menu.delegate())
        delegate->menuWillHighlightItem(menu, item);
}

bool DropdownMenus::open(std::string_view name) {
    forgetGone();
    if (isOpen(name))
        return true;
    if (name != "main") {
        VTRMenu* const main = mainMenu();
        if (main == nullptr)
            return false;
        const auto& rows = main->itemArray();
        const auto row = std::ranges::find_if(
            rows, [&](const auto& item) { return submenuName(extra_, *item) == name; });
        if (row == rows.end())
            return false;
        tellHighlight(*main, row->get());
    }
    VTRMenu* const menu = menuNamed(extra_, name);
    if (menu == nullptr)
        return false;
    open_.push_back({std::string(name), std::make_unique<OffscreenMenu>(*menu)});
    return true;
}

/// A graphics processor may have gone with its menus while they were open, and come back with new
/// ones.
void DropdownMenus::forgetGone() {
    std::erase_if(open_, [](const Open& each) { return !each.menu->isThere(); });
}

void DropdownMenus::close(std::string_view name) {
    const auto place = std::ranges::find(open_, name, &Open::name);
    if (place == open_.end())
        return;
    const Open closing = std::move(*place);
    open_.erase(place);
}

void DropdownMenus::abandon() noexcept {
    for (const Open& each : open_)
        each.menu->abandon();
    open_.clear();
}

bool DropdownMenus::highlight(std::string_view text) {
    VTRMenu* const main = mainMenu();
    const auto row = main != nullptr ? rowFor(extra_, *main, text) : nullptr;
    if (row)
        tellHighlight(*main, row.get());
    return row != nullptr;
}

bool DropdownMenus::highlightNothing() {
    VTRMenu* const main = mainMenu();
    if (main != nullptr)
        tellHighlight(*main, nullptr);
    return main != nullptr;
}

bool DropdownMenus::clickLauncher(std::int64_t tag) {
    VTRMenu* const main = mainMenu();
    if (main == nullptr)
        return false;
    for (const auto& item : main->itemArray())
        if (StatInterfaceView* const view = item->view())
            if (StatInterfaceButton* const button = launcherButton(*view, tag)) {
                button->mouseDown(kPress);
                button->mouseUp(kPress);
                return true;
            }
    return false;
}

void DropdownMenus::displayIfNeeded() {
    for (const Open& each : open_)
        each.menu->displayIfNeeded();
}

}  // namespace vantor
