#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "Hosts/Menu/MenuPicture.h"
#include "Hosts/Menu/MenuWindows.h"
#include "Platform/MainQueue.h"

namespace vantor {

/// The menus that are open, each in a window: the first one, and from each the submenu of one of
/// its rows at most. Rows and windows follow what the menus become.
/// Shape:  level 0 is the first menu. Levels that aren't open mayn't be asked for.
/// Units:  points; places are in the window of their level.
/// Errors: where there is no window to be had, nothing opens.
/// Thread: main queue.
class MenuChain final : private MenuPictureOwner {
public:
    using Row = MenuLayout::Row;

    /// `ended` is called when the first menu has no rows left to show.
    MenuChain(MainQueue& queue, std::function<void()> ended);
    ~MenuChain();
    MenuChain(const MenuChain&) = delete;
    MenuChain& operator=(const MenuChain&) = delete;

    /// `windows` and their owner outlive the menu's being open.
    [[nodiscard]] bool open(VTRMenu& menu, MenuWindows& windows);
    void close() noexcept;

    std::size_t size() const noexcept { return levels_.size(); }
    std::optional<std::size_t> levelOf(MenuWindowID window) const noexcept;
    MenuPicture& picture(std::size_t level) const noexcept { return *levels_[level].picture; }
    Size windowSize(std::size_t level) const noexcept { return levels_[level].size; }
    void setFrameInParent(MenuWindowID window, const Rect& frame) noexcept;
    /// Where the window of the submenu of `level` is; nothing without one.
    std::optional<Rect> submenuFrame(std::size_t level) const noexcept;

    /// Null for none.
    const Row* highlightedRow(std::size_t level) const noexcept;
    void highlight(std::size_t level, const Row* row);
    /// The row whose submenu is open; null for none.
    const Row* openRow(std::size_t level) const noexcept;
    /// Closes any other one. Whether it is open then.
    bool openSubmenu(std::size_t level, const Row& row);
    void closeBelow(std::size_t level) noexcept;

    /// The control that the keyboard is on, in the highlighted menu; null for none.
    View* focusedControl(std::size_t level) const noexcept;
    void focus(std::size_t level, View* control);

    void paint(Painting::Context& context, std::size_t level, std::span<const Rect> parts);
    /// The line around the window, which tells it from what is below it.
    void paintEdge(Painting::Context& context, std::size_t level, std::span<const Rect> parts,
                   double cornerRadius);

private:
    struct Level {
        MenuWindowID window = MenuWindowID::none;
        std::unique_ptr<MenuPicture> picture;
        std::weak_ptr<VTRMenuItem> openedFrom;  // in the menu before
        std::weak_ptr<VTRMenuItem> highlighted;
        std::weak_ptr<View> focused;
        Size size;
        Rect inParent;
    };

    void picturesRowsChanged(MenuPicture& picture) override;
    void pictureChanged(MenuPicture& picture, const Rect& part) override;
    /// As what the pictures know it: only in here is it one.
    MenuPictureOwner& owner() noexcept { return *this; }
    bool push(Level level, VTRMenu& menu, const Rect* row);
    double mostHeight(std::size_t level) const noexcept;
    void layOut();
    void layOut(Level& level, double mostHeight);
    void closeOrphans();
    void repaint(const Level& level) noexcept;
    Rect focusRing(const Level& level) const noexcept;

    MainQueue& queue_;
    std::function<void()> ended_;
    MenuWindows* windows_ = nullptr;
    std::vector<Level> levels_;
    MainQueue::CallID layout_{};
    bool isLayoutDue_ = false;
};

}  // namespace vantor
