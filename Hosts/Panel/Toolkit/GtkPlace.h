#pragma once

#include <functional>

#include <gtk/gtk.h>

#include "Hosts/Gtk/BarToolkit.h"
#include "Hosts/Gtk/Menus/GtkMenus.h"
#include "Hosts/Panel/PanelItem.h"

namespace vantor {

/// One place of the item in a panel: a widget that the panel owns.
class GtkPlace {
public:
    /// What a place tells of itself.
    struct Listener {
        std::function<void(GtkPlace&)> pressed;
        std::function<void(GtkPlace&)> changed;    // its scale, or the panel's colours
        std::function<void(GtkPlace&)> destroyed;  // with its widget: the last call
        std::function<void(GtkPlace&, cairo_t*, Size)> paint;
    };

    GtkPlace(BarID id, const VantorPanelOptions& options, Listener listener);
    ~GtkPlace();
    GtkPlace(const GtkPlace&) = delete;
    GtkPlace& operator=(const GtkPlace&) = delete;

    GtkWidget* widget() const noexcept { return widget_; }
    BarID id() const noexcept { return id_; }
    double scale() const noexcept;
    /// Whether the panel writes in a light colour.
    bool isDark() const noexcept;
    void setLength(double length) noexcept;
    void setMaximumWidth(double width) noexcept;
    void repaint(const Rect& part) noexcept;
    /// All of the widget, and where menus go from it: away from the edge of its screen.
    GdkRectangle wholeRect() const noexcept;
    MenuDirection menuDirection() const noexcept;
    void menuChanged(bool isOpen) const noexcept;
    bool isUnder(const GdkEventButton& event) const noexcept;
    /// Whether it is one that the item listens to.
    bool handlePress(const GdkEventButton& event) noexcept;
    void repaint() noexcept { gtk_widget_queue_draw(widget_); }

private:
    static gboolean drawn(GtkWidget*, cairo_t* cairo, gpointer self) noexcept;
    static gboolean pressed(GtkWidget*, GdkEventButton* event, gpointer self) noexcept;
    static void restyled(GtkWidget*, gpointer self) noexcept;
    static void rescaled(GtkWidget*, GParamSpec*, gpointer self) noexcept;
    static void destroyed(GtkWidget*, gpointer self) noexcept;

    double shrink() const noexcept;
    void requestSize() noexcept;
    /// Where the item's upper left is in the widget, in points.
    Point origin() const noexcept;

    const BarID id_;
    const VantorPanelOptions options_;
    const Listener listener_;
    GtkWidget* widget_;
    double length_ = 0, maximumWidth_ = 0;
};

}  // namespace vantor
