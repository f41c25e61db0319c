#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "Hosts/Menu/MenuPointer.h"
#include "Hosts/Menu/MenuWindows.h"

namespace vantor {

/// What the keyboard does in open menus: it goes from row to row, among the buttons of one, into
/// submenus and out of them, and to the row that begins with what is typed.
/// Units:  seconds.
/// Thread: main queue. Its calls on the queue end with it.
class MenuKeyboard {
public:
    /// What is typed within so long of the letter before it belongs to the same word.
    static constexpr double kWordSeconds = 1;

    /// `chose` is called after something was pressed that ends a menu. The pointer is where the
    /// keyboard is.
    MenuKeyboard(MainQueue& queue, MenuChain& menus, MenuPointer& pointer,
                 std::function<void()> chose);
    ~MenuKeyboard() { forget(); }
    MenuKeyboard(const MenuKeyboard&) = delete;
    MenuKeyboard& operator=(const MenuKeyboard&) = delete;

    /// Any but escape.
    void press(MenuKey key);
    void type(std::string_view text);
    void forget() noexcept;

private:
    MenuPicture& picture() const noexcept { return menus_.picture(pointer_.level()); }
    const MenuChain::Row* current() const noexcept;
    const MenuChain::Row* nextStop(std::ptrdiff_t from, int direction) const;
    void step(int direction);
    void goToEnd(int direction);
    void goTo(const MenuChain::Row* row);
    void turnPage(int direction);
    void enter();
    void enterSoon();
    void leave();
    bool moveAmongButtons(int direction);
    void choose();
    void pressControl(View& control, VTRMenuItem& item);
    void waitForMore();

    MainQueue& queue_;
    MenuChain& menus_;
    MenuPointer& pointer_;
    std::function<void()> chose_;
    std::string word_;
    MainQueue::CallID wordEnds_{}, enters_{};
    std::int64_t presses_ = 0;
};

}  // namespace vantor
