#include "Shared/VTRMenu.h"

#include <algorithm>

#include "Shared/ProcessContext.h"
#include "Shared/Views/StatInterfaceView.h"

namespace vantor::inline VANTOR_MODULE {

VTRMenu::VTRMenu()
    : themeChanged_(ProcessContext::current().ports().localNotifications.observe(
          "DropdownThemeChanged", [this](const Notification&) { themeChange(); })) {}

VTRMenu::~VTRMenu() {
    setHost(nullptr, nullptr);
    for (const std::shared_ptr<VTRMenuItem>& item : items_)
        item->menu_ = nullptr;
}

void VTRMenu::updateColors() {
    for (const std::shared_ptr<VTRMenuItem>& item : items_)
        if (StatInterfaceView* const view = item->view())
            view->updateColors();
}

void VTRMenu::updateIndexes() {
    for (std::size_t index = 0; index < items_.size(); ++index)
        if (StatInterfaceView* const view = items_[index]->view())
            view->setItemIndex(static_cast<std::int64_t>(index));
}

void VTRMenu::addItem(const std::shared_ptr<VTRMenuItem>& item) { insertItem(item, items_.size()); }

void VTRMenu::insertItem(const std::shared_ptr<VTRMenuItem>& item, std::size_t atIndex) {
    if (item->menu_ != nullptr)
        item->menu_->removeItem(*item);
    if (StatInterfaceView* const view = item->view())
        view->updateColors();
    const std::size_t index = std::min(atIndex, items_.size());
    items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(index), item);
    item->menu_ = this;
    updateIndexes();
    if (StatInterfaceView* const view = item->view())
        view->setWindow(window_);
    changed();
}

void VTRMenu::removeItem(VTRMenuItem& item) {
    if (item.menu_ == nullptr)
        return;
    VTRMenu& menu = *item.menu_;
    const auto place = std::ranges::find(menu.items_, &item, &std::shared_ptr<VTRMenuItem>::get);
    menu.removeItemAtIndex(static_cast<std::size_t>(place - menu.items_.begin()));
}

void VTRMenu::removeItemAtIndex(std::size_t index) {
    if (index >= items_.size())
        return;
    const std::shared_ptr<VTRMenuItem> item = items_[index];
    if (StatInterfaceView* const view = item->view()) {
        view->removeLayer();
        view->setWindow(nullptr);
    }
    item->menu_ = nullptr;
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(index));
    updateIndexes();
    changed();
}

void VTRMenu::removeItemWithKey(std::string_view key) {
    if (const auto found = cache_.find(key); found != cache_.end())
        removeItem(*found->second);
}

void VTRMenu::removeAllItems() {
    for (const std::shared_ptr<VTRMenuItem>& item : items_) {
        if (StatInterfaceView* const view = item->view())
            view->setWindow(nullptr);
        item->menu_ = nullptr;
    }
    items_.clear();
    changed();
}

void VTRMenu::setHost(VTRMenuHost* host, ViewWindow* window) {
    host_ = host;
    window_ = window;
    for (const std::shared_ptr<VTRMenuItem>& item : items_)
        if (StatInterfaceView* const view = item->view())
            view->setWindow(window);
}

void VTRMenu::changed() {
    if (host_ != nullptr)
        host_->menuChanged(*this);
}

}  // namespace vantor::inline VANTOR_MODULE
