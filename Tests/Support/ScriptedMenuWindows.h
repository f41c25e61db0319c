#pragma once

#include <algorithm>
#include <optional>
#include <vector>

#include "Hosts/Menu/MenuWindows.h"

namespace vantor::test {

/// Windows of menus that nobody sees: they note what they are asked for, and a test is the user.
/// Submenus come to stand at the right of their row, or where there is no room at the left.
class ScriptedMenuWindows final : public MenuWindows {
public:
    struct Window {
        MenuWindowID id;
        MenuWindowID parent;
        Size size;
        Rect row;
    };

    /// The user, in the window of that level.
    void move(std::size_t level, Point to) { owner->pointerMoved(windows.at(level).id, to); }
    void leave() { owner->pointerMoved(MenuWindowID::none, {}); }
    void press(std::size_t level, Point at) { owner->pointerPressed(windows.at(level).id, at); }
    void release(std::size_t level, Point at) { owner->pointerReleased(windows.at(level).id, at); }
    void click(std::size_t level, Point at) {
        press(level, at);
        if (owner != nullptr && level < windows.size())
            release(level, at);
    }
    void turn(std::size_t level, double notches) {
        owner->wheelTurned(windows.at(level).id, notches);
    }
    void key(MenuKey key) { owner->keyPressed(key); }
    void type(std::string_view text) { owner->textTyped(text); }
    void dismiss() { owner->dismissed(); }

    void setOwner(MenuWindowsOwner* newOwner) noexcept override { owner = newOwner; }
    double mostHeight(MenuWindowID) const noexcept override { return most; }
    MenuWindowID open(Size size) noexcept override {
        return refuses ? MenuWindowID::none : add(MenuWindowID::none, {}, size);
    }
    MenuWindowID openBeside(MenuWindowID parent, const Rect& row, Size size) noexcept override {
        return refuses ? MenuWindowID::none : add(parent, row, size);
    }
    void resize(MenuWindowID window, Size size) noexcept override {
        find(window)->size = size;
        ++resizes;
    }
    void repaint(MenuWindowID window, const Rect& part) noexcept override {
        if (find(window) != windows.end())
            repaints.push_back(part);
    }
    void rowHighlighted(MenuWindowID, std::size_t index) noexcept override {
        highlightedRow = index;
    }
    void close(MenuWindowID window) noexcept override {
        windows.erase(find(window), windows.end());
    }

    MenuWindowsOwner* owner = nullptr;
    std::vector<Window> windows;
    std::vector<Rect> repaints;
    std::size_t highlightedRow = 0;
    double most = 2000;
    bool refuses = false, opensLeft = false;
    int opened = 0, resizes = 0;

private:
    std::vector<Window>::iterator find(MenuWindowID window) {
        return std::ranges::find(windows, window, &Window::id);
    }
    MenuWindowID add(MenuWindowID parent, const Rect& row, Size size) {
        const MenuWindowID id{static_cast<std::uint32_t>(++opened)};
        windows.push_back({id, parent, size, row});
        if (parent != MenuWindowID::none)
            placed_ = {opensLeft ? row.x - size.width : row.x + row.width, row.y, size.width,
                       size.height};
        return id;
    }

    Rect placed_;

public:
    /// Toolkits tell of it a little later.
    void tellPlace() { owner->windowPlaced(windows.back().id, placed_); }
};

}  // namespace vantor::test
