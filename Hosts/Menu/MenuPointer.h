#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "Hosts/Menu/MenuChain.h"
#include "Platform/MainQueue.h"

namespace vantor {

/// What the pointer does in open menus: rows under it are highlighted at once, and their submenus
/// open when it rests; on its way into an open submenu it may cross other rows. It presses what
/// can be pressed, and scrolls.
/// Units:  points, in the window that it is in; seconds.
/// Thread: main queue. Its calls on the queue end with it.
class MenuPointer {
public:
    /// It rests on a row for so long before its submenu opens, or another one closes.
    static constexpr double kRestSeconds = 0.2;
    /// And for so long on other rows on its way into an open submenu.
    static constexpr double kGraceSeconds = 0.3;
    static constexpr double kArrowSeconds = 0.02, kArrowPoints = 8, kWheelPoints = 45;

    /// `chose` is called after something was pressed that ends a menu.
    MenuPointer(MainQueue& queue, MenuChain& menus, std::function<void()> chose);
    ~MenuPointer() { forget(); }
    MenuPointer(const MenuPointer&) = delete;
    MenuPointer& operator=(const MenuPointer&) = delete;

    /// The menu in which it is, or the keyboard.
    std::size_t level() const noexcept;
    void setLevel(std::size_t level) noexcept;

    void move(std::size_t level, Point to);
    void leave();
    void press(std::size_t level, Point at);
    void release(std::size_t level, Point at);
    void releaseElsewhere() { endPress(nullptr); }
    void turnWheel(std::size_t level, double notches);
    /// What it would still do. Belongs where the menus close.
    void forget() noexcept;

private:
    void rest(double seconds);
    void cancelRest() noexcept;
    void settle();
    void scrollAt(std::size_t level, MenuPicture::Arrow arrow);
    void scrollOn();
    void hoverPressed(const View* view);
    void endPress(View* view);
    const MenuChain::Row* enabledRowAt(std::size_t level, Point point) const;
    bool isSettled(const MenuChain::Row* row) const noexcept;
    bool isOnItsWayIntoSubmenu(std::size_t level, Point to) const noexcept;

    MainQueue& queue_;
    MenuChain& menus_;
    std::function<void()> chose_;
    std::size_t level_ = 0;
    Point point_;  // where it was last, in that level
    MainQueue::CallID rest_{}, scroll_{};
    bool isResting_ = false;
    MenuPicture::Arrow arrow_ = MenuPicture::Arrow::none;
    std::weak_ptr<View> pressed_;
    std::weak_ptr<VTRMenuItem> pressedItem_;
    bool isPressedInside_ = false;
    std::int64_t presses_ = 0;
};

}  // namespace vantor
