#include "Shared/VTRMenuItem.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <fmt/format.h>

#include "Shared/Textfields/StatInterfaceTextField.h"
#include "Shared/VTRMenu.h"
#include "Shared/Views/DropdownTheme.h"
#include "Shared/Views/StatInterfaceView.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kFieldMargin = 30, kStandardWidth = 225;

}  // namespace

VTRMenuItem::VTRMenuItem() = default;

VTRMenuItem::~VTRMenuItem() {
    for (const std::shared_ptr<VTRMenuItem>& item : menuItemsOrdered_)
        item->parentItem2_ = nullptr;
}

void VTRMenuItem::setView(std::shared_ptr<StatInterfaceView> view) { view_ = std::move(view); }

void VTRMenuItem::setAlternateView(std::shared_ptr<StatInterfaceView> view) {
    alternateView_ = std::move(view);
}

void VTRMenuItem::createSignature() {
    signature_ = fmt::format("{} - {:.0f}", title_, view_ ? view_->frame().height : 0.0);
}

void VTRMenuItem::resizeToFieldValue() {
    if (!field || !view_)
        return;
    const double wanted =
        std::max(widthOfText(field->stringValue(), field->font()) + kFieldMargin, kStandardWidth);
    if (view_->frame().width < wanted)
        view_->setFrameSize({wanted, view_->frame().height});
}

/// A host row can hold but one view, so this row's view holds those of the rows inside.
void VTRMenuItem::addSubMenuItem(const std::shared_ptr<VTRMenuItem>& item, std::string_view key) {
    if (key.empty())
        return;
    item->parentItem2_ = this;
    item->key_ = key;
    if (StatInterfaceView* const view = item->anyView()) {
        view->setBackgroundDisabled(true);
        view->setHighlightable(false);
        view->setResizing(Resizing::width);
    }
    if (!item->alternateView_)
        item->alternateView_ = item->view_;
    item->view_.reset();
    menuItemsOrdered_.push_back(item);
    updateLayout();
}

void VTRMenuItem::updateLayout() {
    StatInterfaceView* const around = anyView();
    if (around == nullptr)
        return;
    double width = std::trunc(around->frame().width), height = 0;
    for (const std::shared_ptr<VTRMenuItem>& item : menuItemsOrdered_)
        if (const StatInterfaceView* const view = item->alternateView()) {
            width = std::max(width, std::trunc(view->frame().width));
            height = std::trunc(height + view->frame().height);
        }
    around->setFrameSize({width, height});
    double y = 0;
    for (const std::shared_ptr<VTRMenuItem>& item : menuItemsOrdered_)
        if (StatInterfaceView* const view = item->alternateView()) {
            view->setFrame({0, y, width, view->frame().height});
            y = std::trunc(y + view->frame().height);
            if (view->superview() == nullptr)
                around->addSubview(item->alternateView_);
        }
}

VTRMenuItem* VTRMenuItem::itemWithKey(std::string_view key) const noexcept {
    const auto found = std::ranges::find_if(menuItemsOrdered_,
                                            [key](const auto& item) { return item->key_ == key; });
    return found == menuItemsOrdered_.end() ? nullptr : found->get();
}

void VTRMenuItem::detach(VTRMenuItem& item) {
    item.parentItem2_ = nullptr;
    if (item.alternateView_)
        item.alternateView_->removeFromSuperview();
}

void VTRMenuItem::removeItem(VTRMenuItem& item) {
    const auto place =
        std::ranges::find(menuItemsOrdered_, &item, &std::shared_ptr<VTRMenuItem>::get);
    if (place == menuItemsOrdered_.end())
        return;
    const std::shared_ptr<VTRMenuItem> kept = *place;
    detach(item);
    menuItemsOrdered_.erase(place);
    updateLayout();
}

void VTRMenuItem::removeItemWithKey(std::string_view key) {
    if (VTRMenuItem* const item = itemWithKey(key))
        removeItem(*item);
}

void VTRMenuItem::removeAllItems() {
    for (const std::shared_ptr<VTRMenuItem>& item : menuItemsOrdered_)
        detach(*item);
    menuItemsOrdered_.clear();
    updateLayout();
}

}  // namespace vantor::inline VANTOR_MODULE
