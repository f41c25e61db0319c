#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <gtk/gtk.h>

#include "Hosts/Gtk/Menus/GtkMenuWindow.h"
#include "Hosts/Menu/MenuWindows.h"

namespace vantor {

/// Where menus go from the widget that they belong to.
enum class MenuDirection : std::uint8_t { down, up, right, left };

/// Menus that belong to a widget: a bar of ours, or a widget in somebody's panel. The first window
/// hangs at a rectangle of the widget's window, and while it is there pointer and keyboard are
/// held: whatever the user does in this program or elsewhere comes here first.
/// Thread: the one that GTK is used on.
class GtkMenus final : public MenuWindows, private GtkMenuWindowOwner {
public:
    GtkMenus() = default;
    ~GtkMenus() { closeAll(); }
    GtkMenus(const GtkMenus&) = delete;
    GtkMenus& operator=(const GtkMenus&) = delete;

    /// Told of a press outside of the menus, in the program's own windows; answers whether it
    /// took care of it. Else the menus close.
    using PressElsewhere = std::function<bool(GdkEventButton&)>;

    /// Where the next one opens: `widget` is shown on the screen, `rect` in its window's points.
    void setAnchor(GtkWidget* widget, const GdkRectangle& rect, MenuDirection direction) noexcept;
    void setPressElsewhere(PressElsewhere handler) { pressElsewhere_ = std::move(handler); }
    /// Told when the first window has come, and when it goes.
    using OpenChanged = std::function<void(bool isOpen)>;
    void setOpenChanged(OpenChanged handler) { openChanged_ = std::move(handler); }
    GtkWidget* anchor() const noexcept { return anchor_; }
    bool isOpen() const noexcept { return !windows_.empty(); }
    /// The widget goes, and what is open there with it.
    void removeAnchor() noexcept;
    /// Sets the windows aside of a display that is there no more, and can't be asked to end them:
    /// for those who live as long as the process.
    void abandon() noexcept;

    void setOwner(MenuWindowsOwner* owner) noexcept override { owner_ = owner; }
    double mostHeight(MenuWindowID parent) const noexcept override;
    MenuWindowID open(Size size) noexcept override;
    MenuWindowID openBeside(MenuWindowID parent, const Rect& row, Size size) noexcept override;
    void resize(MenuWindowID window, Size size) noexcept override;
    void repaint(MenuWindowID window, const Rect& part) noexcept override;
    void rowHighlighted(MenuWindowID window, std::size_t index) noexcept override;
    void close(MenuWindowID window) noexcept override;

private:
    void paintWindow(const GtkMenuWindow& window, cairo_t* cairo,
                     std::span<const Rect> parts) noexcept override;
    void windowMoved(const GtkMenuWindow& window, const Rect& inParent) noexcept override;
    bool handle(GdkEvent* event) noexcept override;
    MenuWindowsOwner* describer() noexcept override { return owner_; }

    /// As what the windows know it: only in here is it one.
    GtkMenuWindowOwner& windowOwner() noexcept { return *this; }
    MenuPlace anchorPlace() const noexcept;
    bool grab(GtkMenuWindow& window) noexcept;
    void release() noexcept;
    void holdKeyboard(bool holds) noexcept;
    void tellOpen(bool isOpen) noexcept;
    void closeAll() noexcept;
    GtkMenuWindow* find(MenuWindowID window) const noexcept;
    const GtkMenuWindow* windowAt(const GdkEvent* event, Point& point) const noexcept;
    void pressed(GdkEventButton& event) noexcept;
    void crossed(const GdkEventCrossing& event) noexcept;
    void turned(const GdkEventScroll& event) noexcept;
    bool typed(const GdkEventKey& event) noexcept;

    GtkWidget* anchor_ = nullptr;
    GdkRectangle anchorRect_{};
    MenuDirection direction_ = MenuDirection::down;
    PressElsewhere pressElsewhere_;
    OpenChanged openChanged_;
    MenuWindowsOwner* owner_ = nullptr;
    std::vector<std::unique_ptr<GtkMenuWindow>> windows_;  // each hangs at the one before
    std::vector<std::unique_ptr<GtkMenuWindow>> abandoned_;
    std::uint32_t windowsMade_ = 0;
    bool holdsKeyboard_ = false, toldOpen_ = false, isClosing_ = false;
    int keyboardMode_ = 0;  // the layer's, before
};

}  // namespace vantor
