#pragma once

#include <memory>

#include <gtk/gtk.h>

#include "Hosts/Gtk/BarToolkit.h"

namespace vantor {

/// One bar on one monitor: a window at its edge, with the room that it needs kept free.
class GtkBar {
public:
    /// All outlive the bar, the monitor as far as it is used: while this is made.
    GtkBar(GdkMonitor* monitor, const BarOptions& options, BarOwner& owner);
    GtkBar(const GtkBar&) = delete;
    GtkBar& operator=(const GtkBar&) = delete;

    void setItemLength(double length) noexcept;
    void repaintItem() noexcept;
    void repaint() noexcept;

private:
    struct Destroy {
        void operator()(GtkWidget* widget) const noexcept { gtk_widget_destroy(widget); }
    };

    static gboolean drawn(GtkWidget*, cairo_t* cairo, gpointer self) noexcept;
    static gboolean pressed(GtkWidget*, GdkEventButton* event, gpointer self) noexcept;
    static void scaleChanged(GtkWidget*, GParamSpec*, gpointer self) noexcept;

    void placeOnLayer(GdkMonitor* monitor) noexcept;
    void placeAsDock() noexcept;
    void reserveSpace() noexcept;
    Size size() const noexcept;
    Rect item() const noexcept { return itemFrame(size(), options_.side, length_); }

    const BarOptions& options_;
    BarOwner& owner_;
    const std::unique_ptr<GtkWidget, Destroy> window_;
    Rect monitor_;
    double length_ = 0;
};

}  // namespace vantor
