#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "Foundation/Geometry.h"

struct _cairo;

namespace vantor {

/// A window of an open menu; a number is never used again.
enum class MenuWindowID : std::uint32_t { none = 0 };

enum class MenuKey : std::uint8_t {
    up,
    down,
    left,
    right,
    home,
    end,
    pageUp,
    pageDown,
    choose,
    escape,
};

/// How a window shows what is painted into it.
struct MenuLook {
    double scale = 1;         // pixels a point
    double cornerRadius = 0;  // in points; what is outside of the corners isn't seen
};

/// A row of a menu, as assistive technology is told of it.
struct MenuRowDescription {
    enum class Role : std::uint8_t { head, text, item, menu };
    Role role = Role::text;
    std::string sentence;  // in the user's language
    Rect place;            // in the window
};

/// Who fills the windows of menus, and hears what the user does in them. Places are in the window,
/// from its upper left.
class MenuWindowsOwner {
public:
    /// `cairo` is at the upper left of the window, in points. Only `parts` are to be painted.
    virtual void paintMenu(_cairo* cairo, MenuWindowID window, std::span<const Rect> parts,
                           const MenuLook& look) noexcept = 0;
    /// Where a window came to stand, in the coordinates of the one that it was opened from.
    virtual void windowPlaced(MenuWindowID window, const Rect& inParent) noexcept = 0;
    /// `none` where the pointer left all windows.
    virtual void pointerMoved(MenuWindowID window, Point to) noexcept = 0;
    virtual void pointerPressed(MenuWindowID window, Point at) noexcept = 0;
    /// Told of `none`, too: the release of a press that left.
    virtual void pointerReleased(MenuWindowID window, Point at) noexcept = 0;
    /// Positive away from the user's hand: the rows go up. One notch is 1.
    virtual void wheelTurned(MenuWindowID window, double notches) noexcept = 0;
    virtual void keyPressed(MenuKey key) noexcept = 0;
    // For those who can't see it.
    virtual std::size_t describedRows(MenuWindowID window) noexcept = 0;
    virtual MenuRowDescription describedRow(MenuWindowID window, std::size_t index) noexcept = 0;
    virtual bool isRowHighlighted(MenuWindowID window, std::size_t index) noexcept = 0;
    /// What a press of the pointer there does.
    virtual void rowPressed(MenuWindowID window, std::size_t index) noexcept = 0;
    /// What a key that isn't a MenuKey writes, in UTF-8.
    virtual void textTyped(std::string_view text) noexcept = 0;
    /// The user pressed elsewhere, or somebody took the keyboard or a window away: close them all.
    virtual void dismissed() noexcept = 0;

protected:
    ~MenuWindowsOwner() = default;
};

/// What a menu asks of a toolkit: windows that hang at one place, above all others, and hold
/// pointer and keyboard while there is one.
/// Units:  points.
/// Thread: main. Nobody is called but from inside the toolkit's own loop, and in `close` nobody.
class MenuWindows {
public:
    /// Who fills those that are opened from now on, for as long as there is one.
    virtual void setOwner(MenuWindowsOwner* owner) noexcept = 0;

    /// How high a window can be; the first one has `none` as its parent.
    virtual double mostHeight(MenuWindowID parent) const noexcept = 0;
    /// The first window, at its place. `none` where it can't be had, or the pointer can't.
    virtual MenuWindowID open(Size size) noexcept = 0;
    /// A further one beside `row` of `parent`, which has no other yet.
    virtual MenuWindowID openBeside(MenuWindowID parent, const Rect& row, Size size) noexcept = 0;
    virtual void resize(MenuWindowID window, Size size) noexcept = 0;
    /// Has that part painted soon.
    virtual void repaint(MenuWindowID window, const Rect& part) noexcept = 0;
    /// For those who can't see it.
    virtual void rowHighlighted(MenuWindowID window, std::size_t index) noexcept = 0;
    /// Together with all that were opened from it.
    virtual void close(MenuWindowID window) noexcept = 0;

protected:
    ~MenuWindows() = default;
};

}  // namespace vantor
