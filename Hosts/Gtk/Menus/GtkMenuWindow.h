#pragma once

#include <vector>

#include <gtk/gtk.h>

#include "Hosts/Gtk/Menus/GtkDescribedWindow.h"
#include "Hosts/Gtk/Menus/GtkOwned.h"
#include "Hosts/Menu/MenuWindows.h"

namespace vantor {

/// Where a window hangs: at a rectangle of another one, in that one's points.
struct MenuPlace {
    GdkWindow* beside = nullptr;
    GtkWindow* owner = nullptr;  // the toplevel that it belongs to; null for a stranger's
    GdkRectangle rect{};
    GdkGravity corner = GDK_GRAVITY_SOUTH_WEST;     // of the rectangle
    GdkGravity ownCorner = GDK_GRAVITY_NORTH_WEST;  // which comes to stand there
    GdkAnchorHints hints{};                         // where that has no room
};

class GtkMenuWindow;

/// Who hears of the windows' events.
class GtkMenuWindowOwner {
public:
    virtual void paintWindow(const GtkMenuWindow& window, cairo_t* cairo,
                             std::span<const Rect> parts) noexcept = 0;
    virtual void windowMoved(const GtkMenuWindow& window, const Rect& inParent) noexcept = 0;
    /// Whether somebody did something with it.
    virtual bool handle(GdkEvent* event) noexcept = 0;
    /// Who can be asked about the rows; null for nobody any more.
    virtual MenuWindowsOwner* describer() noexcept = 0;

protected:
    ~GtkMenuWindowOwner() = default;
};

/// A window for one menu, without decoration, above all others, that paints nothing of its own.
class GtkMenuWindow final : private WindowDescriber {
public:
    GtkMenuWindow(MenuWindowID id, const MenuPlace& place, Size size, GtkMenuWindowOwner& owner);
    GtkMenuWindow(const GtkMenuWindow&) = delete;
    GtkMenuWindow& operator=(const GtkMenuWindow&) = delete;

    MenuWindowID id() const noexcept { return id_; }
    GtkWidget* widget() const noexcept { return window_.get(); }
    GdkWindow* window() const noexcept { return gtk_widget_get_window(window_.get()); }
    Size size() const noexcept { return size_; }
    MenuLook look() const noexcept;
    void show() noexcept { gtk_widget_show(window_.get()); }
    void resize(Size size) noexcept;
    void repaint(const Rect& part) noexcept;
    void tellHighlight(std::size_t row) noexcept { tellFocus(window_.get(), row); }

private:
    std::size_t describedParts() noexcept override;
    DescribedPart describedPart(std::size_t index) noexcept override;
    void pressPart(std::size_t index) noexcept override;
    static gboolean drawn(GtkWidget*, cairo_t* cairo, gpointer self) noexcept;
    static gboolean happened(GtkWidget*, GdkEvent* event, gpointer self) noexcept;
    static void moved(GdkWindow*, const GdkRectangle*, const GdkRectangle* final, gboolean,
                      gboolean, gpointer self) noexcept;
    void makeTranslucent() noexcept;
    void place() noexcept;
    void cutCorners(cairo_t* cairo) const noexcept;

    const MenuWindowID id_;
    MenuPlace place_;
    Size size_;
    GtkMenuWindowOwner& owner_;
    OwnedWindow window_;
    std::vector<Rect> parts_;  // of one paint
    bool isTranslucent_ = false;
};

}  // namespace vantor
