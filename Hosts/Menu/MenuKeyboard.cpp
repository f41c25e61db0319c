#include "Hosts/Menu/MenuKeyboard.h"

#include <algorithm>
#include <utility>

#include "Foundation/LetterCase.h"
#include "Hosts/Menu/MenuControls.h"
#include "Hosts/Menu/MenuRowText.h"
#include "Shared/Views/StatInterfaceView.h"

namespace vantor {
namespace {

constexpr double kLinePoints = 45;  // what a step scrolls where there is no row to step to

}  // namespace

using Row = MenuChain::Row;

MenuKeyboard::MenuKeyboard(MainQueue& queue, MenuChain& menus, MenuPointer& pointer,
                           std::function<void()> chose)
    : queue_(queue), menus_(menus), pointer_(pointer), chose_(std::move(chose)) {}

void MenuKeyboard::forget() noexcept {
    queue_.cancel(std::exchange(wordEnds_, {}));
    queue_.cancel(std::exchange(enters_, {}));
    word_.clear();
}

void MenuKeyboard::press(MenuKey key) {
    if (menus_.size() == 0)
        return;
    pointer_.setLevel(pointer_.level());  // a pointer at rest opens nothing any more
    switch (key) {
    case MenuKey::up:
        return step(-1);
    case MenuKey::down:
        return step(1);
    case MenuKey::left:
        return moveAmongButtons(-1) ? void() : leave();
    case MenuKey::right:
        return moveAmongButtons(1) ? void() : enter();
    case MenuKey::home:
        return goToEnd(1);
    case MenuKey::end:
        return goToEnd(-1);
    case MenuKey::pageUp:
        return turnPage(-1);
    case MenuKey::pageDown:
        return turnPage(1);
    case MenuKey::choose:
        return choose();
    case MenuKey::escape:
        return;
    }
}

const Row* MenuKeyboard::current() const noexcept {
    return menus_.highlightedRow(pointer_.level());
}

/// The first row from there on, in that direction, to which the keyboard comes.
const Row* MenuKeyboard::nextStop(std::ptrdiff_t from, int direction) const {
    const auto& rows = picture().layout().rows();
    const auto count = static_cast<std::ptrdiff_t>(rows.size());
    for (std::ptrdiff_t index = from; index >= 0 && index < count; index += direction)
        if (const Row& row = rows[static_cast<std::size_t>(index)]; isStop(*row.item))
            return &row;
    return nullptr;
}

/// Behind the last row comes the first one. A menu without stops scrolls.
void MenuKeyboard::step(int direction) {
    const auto& rows = picture().layout().rows();
    const Row* const row = current();
    const auto count = static_cast<std::ptrdiff_t>(rows.size());
    const Row* next = row != nullptr ? nextStop(row - rows.data() + direction, direction) : nullptr;
    if (next == nullptr)
        next = nextStop(direction > 0 ? 0 : count - 1, direction);
    if (next == nullptr)
        picture().scrollBy(direction * kLinePoints);
    else
        goTo(next);
}

void MenuKeyboard::goToEnd(int direction) {
    const auto count = static_cast<std::ptrdiff_t>(picture().layout().rows().size());
    const Row* const row = nextStop(direction > 0 ? 0 : count - 1, direction);
    if (row == nullptr || picture().scroll().most() > 0)
        picture().scrollBy(-direction * picture().scroll().content);
    if (row != nullptr)
        goTo(row);
}

void MenuKeyboard::turnPage(int direction) {
    const MenuScroll& scroll = picture().scroll();
    if (scroll.most() > 0)
        picture().scrollBy(direction * (scroll.window - kLinePoints));
    else
        goToEnd(-direction);
}

void MenuKeyboard::goTo(const Row* row) {
    const std::size_t level = pointer_.level();
    menus_.closeBelow(level);
    menus_.highlight(level, row);
    picture().reveal(*row);
    const auto buttons = buttonsIn(*row->item->view());
    menus_.focus(level, buttons.empty() ? nullptr : buttons.front());
}

bool MenuKeyboard::moveAmongButtons(int direction) {
    const std::size_t level = pointer_.level();
    View* const focused = menus_.focusedControl(level);
    const Row* const row = current();
    if (focused == nullptr || row == nullptr)
        return false;
    const auto buttons = buttonsIn(*row->item->view());
    const auto place = std::ranges::find(buttons, focused) - buttons.begin();
    const auto next = std::clamp<std::ptrdiff_t>(place + direction, 0,
                                                 static_cast<std::ptrdiff_t>(buttons.size()) - 1);
    menus_.focus(level, buttons[static_cast<std::size_t>(next)]);
    return true;
}

/// When those have run that the highlight of its row goes to by the queue.
void MenuKeyboard::enter() {
    const Row* const row = current();
    if (row == nullptr || !row->item->submenu())
        return;
    queue_.cancel(enters_);
    enters_ = queue_.after(0, [this] { enterSoon(); });
}

void MenuKeyboard::enterSoon() {
    if (menus_.size() == 0)
        return;
    const std::size_t level = pointer_.level();
    const Row* const row = current();
    if (row == nullptr || !menus_.openSubmenu(level, *row))
        return;
    pointer_.setLevel(level + 1);
    if (const Row* const first = nextStop(0, 1))
        goTo(first);
}

void MenuKeyboard::leave() {
    const std::size_t level = pointer_.level();
    if (level == 0) {
        menus_.closeBelow(0);
        return;
    }
    menus_.closeBelow(level - 1);
    pointer_.setLevel(level - 1);
}

void MenuKeyboard::choose() {
    const Row* const row = current();
    if (row == nullptr)
        return;
    const auto item = row->item;
    if (View* const focused = menus_.focusedControl(pointer_.level()))
        pressControl(*focused, *item);
    else if (item->submenu())
        enter();
    else if (View* const control = controlOf(*item))
        pressControl(*control, *item);
    else if (isChoosable(*item)) {
        item->action(*item);
        chose_();
    }
}

void MenuKeyboard::pressControl(View& control, VTRMenuItem& item) {
    const auto held = control.shared_from_this();
    control.mouseDown(++presses_);
    control.mouseUp(presses_);
    if (isChoosable(item))
        item.action(item);
    chose_();
}

void MenuKeyboard::type(std::string_view text) {
    if (menus_.size() == 0)
        return;
    word_ += upperCased(text);
    waitForMore();
    const Row* const row = current();
    const auto& rows = picture().layout().rows();
    // A further row with the same letter comes next; a word goes on in the row that it is on.
    const bool goesOn = word_.size() > upperCased(text).size();
    const std::size_t start =
        row == nullptr ? 0 : static_cast<std::size_t>(row - rows.data()) + (goesOn ? 0 : 1);
    for (std::size_t step = 0; step < rows.size(); ++step) {
        const Row& candidate = rows[(start + step) % rows.size()];
        if (!isStop(*candidate.item) ||
            !upperCased(menuRowText(*candidate.item).name).starts_with(word_))
            continue;
        goTo(&candidate);
        return;
    }
}

void MenuKeyboard::waitForMore() {
    queue_.cancel(wordEnds_);
    wordEnds_ = queue_.after(kWordSeconds, [this] { word_.clear(); });
}

}  // namespace vantor
