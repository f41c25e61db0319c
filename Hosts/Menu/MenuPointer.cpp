#include "Hosts/Menu/MenuPointer.h"

#include <algorithm>
#include <utility>

#include "Hosts/Menu/MenuControls.h"

namespace vantor {

using Arrow = MenuPicture::Arrow;

MenuPointer::MenuPointer(MainQueue& queue, MenuChain& menus, std::function<void()> chose)
    : queue_(queue), menus_(menus), chose_(std::move(chose)) {}

std::size_t MenuPointer::level() const noexcept {
    return menus_.size() == 0 ? 0 : std::min(level_, menus_.size() - 1);
}

void MenuPointer::setLevel(std::size_t level) noexcept {
    level_ = level;
    cancelRest();
}

void MenuPointer::forget() noexcept {
    cancelRest();
    scrollAt(0, Arrow::none);
    pressed_.reset();
    pressedItem_.reset();
    level_ = 0;
}

void MenuPointer::move(std::size_t level, Point to) {
    const MenuPicture& picture = menus_.picture(level);
    const bool isOnItsWay = level == level_ && isOnItsWayIntoSubmenu(level, to);
    level_ = level;
    point_ = to;
    menus_.focus(level, nullptr);
    hoverPressed(picture.viewAt(to));
    scrollAt(level, picture.arrowAt(to));
    // Where a submenu is, the row that it belongs to is the one in the menus before.
    for (std::size_t before = 0; before < level; ++before)
        menus_.highlight(before, menus_.openRow(before));
    const auto* const row = enabledRowAt(level, to);
    if (row != nullptr && row == menus_.openRow(level)) {
        cancelRest();
        menus_.highlight(level, row);
    } else if (isOnItsWay) {
        rest(kGraceSeconds);
    } else if (row != menus_.highlightedRow(level)) {
        menus_.highlight(level, row);
        rest(kRestSeconds);
    } else if (!isResting_ && !isSettled(row)) {
        rest(kRestSeconds);
    }
}

const MenuChain::Row* MenuPointer::enabledRowAt(std::size_t level, Point point) const {
    const auto* const row = menus_.picture(level).rowAt(point);
    return row != nullptr && isEnabled(*row->item) ? row : nullptr;
}

/// Whether resting on that row, or on none, would change nothing.
bool MenuPointer::isSettled(const MenuChain::Row* row) const noexcept {
    const bool opens = row != nullptr && row->item->submenu();
    return menus_.openRow(level_) == (opens ? row : nullptr);
}

bool MenuPointer::isOnItsWayIntoSubmenu(std::size_t level, Point to) const noexcept {
    const auto submenu = menus_.submenuFrame(level);
    return submenu && isOnItsWay(point_, to, *submenu);
}

/// Its row stays highlighted where its submenu is open: that is what the submenu belongs to.
void MenuPointer::leave() {
    cancelRest();
    scrollAt(0, Arrow::none);
    hoverPressed(nullptr);
    for (std::size_t level = 0; level < menus_.size(); ++level)
        menus_.highlight(level, menus_.openRow(level));
}

void MenuPointer::rest(double seconds) {
    cancelRest();
    isResting_ = true;
    rest_ = queue_.after(seconds, [this] {
        isResting_ = false;
        settle();
    });
}

void MenuPointer::cancelRest() noexcept {
    if (std::exchange(isResting_, false))
        queue_.cancel(rest_);
}

/// The row that it rests on opens its submenu, and others close.
void MenuPointer::settle() {
    if (level_ >= menus_.size())
        return;
    const auto* const row = enabledRowAt(level_, point_);
    menus_.highlight(level_, row);
    if (row != nullptr && row->item->submenu())
        menus_.openSubmenu(level_, *row);
    else
        menus_.closeBelow(level_);
}

void MenuPointer::scrollAt(std::size_t level, Arrow arrow) {
    const Arrow before = std::exchange(arrow_, arrow);
    if (arrow == Arrow::none) {
        if (before != Arrow::none)
            queue_.cancel(scroll_);
        return;
    }
    menus_.closeBelow(level);
    if (before == Arrow::none)
        scrollOn();
}

void MenuPointer::scrollOn() {
    if (level_ >= menus_.size())
        return;
    MenuPicture& picture = menus_.picture(level_);
    picture.scrollBy(arrow_ == Arrow::up ? -kArrowPoints : kArrowPoints);
    arrow_ = picture.arrowAt(point_);
    if (arrow_ != Arrow::none)
        scroll_ = queue_.after(kArrowSeconds, [this] { scrollOn(); });
}

void MenuPointer::turnWheel(std::size_t level, double notches) {
    MenuPicture& picture = menus_.picture(level);
    if (!(picture.scroll().most() > 0))
        return;
    menus_.closeBelow(level);
    picture.scrollBy(-notches * kWheelPoints);
    if (level == level_)
        move(level, point_);
}

void MenuPointer::press(std::size_t level, Point at) {
    move(level, at);
    endPress(nullptr);
    const MenuPicture& picture = menus_.picture(level);
    const auto* const row = picture.rowAt(at);
    View* const view = picture.viewAt(at);
    if (row == nullptr || view == nullptr)
        return;
    if (row->item->submenu()) {
        // After those that the highlight goes to by the queue have seen it.
        rest(0);
        return;
    }
    pressed_ = view->weak_from_this();
    pressedItem_ = row->item;
    isPressedInside_ = true;
    view->mouseDown(++presses_);
}

void MenuPointer::hoverPressed(const View* view) {
    const auto pressed = pressed_.lock();
    if (!pressed || isPressedInside_ == (pressed.get() == view))
        return;
    isPressedInside_ = !isPressedInside_;
    if (isPressedInside_)
        pressed->mouseDown(presses_);
    else
        pressed->mouseExited();
}

void MenuPointer::release(std::size_t level, Point at) {
    move(level, at);
    endPress(menus_.picture(level).viewAt(at));
}

void MenuPointer::endPress(View* view) {
    const auto pressed = std::exchange(pressed_, {}).lock();
    const auto item = std::exchange(pressedItem_, {}).lock();
    if (!pressed)
        return;
    if (pressed.get() != view || !item) {
        pressed->mouseExited();
        return;
    }
    pressed->mouseUp(presses_);
    if (isChoosable(*item))
        item->action(*item);
    if (isChoosable(*item) || isControl(*pressed))
        chose_();
}

}  // namespace vantor
