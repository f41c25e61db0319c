#include "Hosts/Gtk/Toolkit/GtkBar.h"

#include <vector>

#include <gdk/gdkx.h>
#include <gtk-layer-shell/gtk-layer-shell.h>

namespace vantor {
namespace {

Rect rectOf(GdkMonitor* monitor) noexcept {
    GdkRectangle rect;
    gdk_monitor_get_geometry(monitor, &rect);
    return {static_cast<double>(rect.x), static_cast<double>(rect.y),
            static_cast<double>(rect.width), static_cast<double>(rect.height)};
}

std::vector<Rect> monitorsOf(GdkDisplay* display) {
    std::vector<Rect> rects;
    for (int index = 0; index < gdk_display_get_n_monitors(display); ++index)
        rects.push_back(rectOf(gdk_display_get_monitor(display, index)));
    return rects;
}

int whole(double points) noexcept { return static_cast<int>(points); }

}  // namespace

GtkBar::GtkBar(GdkMonitor* monitor, const BarOptions& options, BarOwner& owner)
    : options_(options), owner_(owner), window_(gtk_window_new(GTK_WINDOW_TOPLEVEL)),
      monitor_(rectOf(monitor)) {
    GtkWidget* const widget = window_.get();
    GtkWindow* const window = GTK_WINDOW(widget);
    gtk_window_set_title(window, options_.title.c_str());
    gtk_window_set_decorated(window, FALSE);
    gtk_window_set_accept_focus(window, FALSE);
    gtk_widget_set_app_paintable(widget, TRUE);
    gtk_widget_add_events(widget, GDK_BUTTON_PRESS_MASK);
    g_signal_connect(widget, "draw", G_CALLBACK(drawn), this);
    g_signal_connect(widget, "button-press-event", G_CALLBACK(pressed), this);
    if (GDK_IS_X11_DISPLAY(gtk_widget_get_display(widget)))
        placeAsDock();
    else
        placeOnLayer(monitor);
    gtk_widget_show(widget);
}

void GtkBar::placeOnLayer(GdkMonitor* monitor) noexcept {
    GtkWindow* const window = GTK_WINDOW(window_.get());
    gtk_layer_init_for_window(window);
    gtk_layer_set_namespace(window, "vantorbar");
    gtk_layer_set_monitor(window, monitor);
    gtk_layer_set_layer(window, GTK_LAYER_SHELL_LAYER_TOP);
    const auto edge =
        options_.edge == BarEdge::top ? GTK_LAYER_SHELL_EDGE_TOP : GTK_LAYER_SHELL_EDGE_BOTTOM;
    for (const auto anchor : {edge, GTK_LAYER_SHELL_EDGE_LEFT, GTK_LAYER_SHELL_EDGE_RIGHT})
        gtk_layer_set_anchor(window, anchor, TRUE);
    gtk_widget_set_size_request(window_.get(), -1, whole(kBarHeight));
    gtk_layer_set_exclusive_zone(window, whole(kBarHeight));
}

void GtkBar::placeAsDock() noexcept {
    GtkWindow* const window = GTK_WINDOW(window_.get());
    const Rect bar = barFrame(monitor_, options_.edge);
    gtk_window_set_type_hint(window, GDK_WINDOW_TYPE_HINT_DOCK);
    // Not on a layer: there it is the compositor that stretches the window from edge to edge.
    gtk_window_set_resizable(window, FALSE);
    gtk_window_stick(window);
    gtk_widget_set_size_request(window_.get(), whole(bar.width), whole(bar.height));
    // Without a place of its own, window managers put a dock in the middle.
    gtk_window_move(window, whole(bar.x), whole(bar.y));
    gtk_widget_realize(window_.get());
    reserveSpace();
    g_signal_connect(window_.get(), "notify::scale-factor", G_CALLBACK(scaleChanged), this);
}

void GtkBar::reserveSpace() noexcept {
    GtkWidget* const widget = window_.get();
    const std::vector<Rect> monitors = monitorsOf(gtk_widget_get_display(widget));
    const BarStrut strut =
        strutFor(monitor_, monitors, options_.edge, gtk_widget_get_scale_factor(widget));
    const auto set = [&](const char* property, std::size_t numbers) {
        // Numbers of 32 bits are handed over as longs.
        gdk_property_change(gtk_widget_get_window(widget), gdk_atom_intern_static_string(property),
                            gdk_atom_intern_static_string("CARDINAL"), 32, GDK_PROP_MODE_REPLACE,
                            reinterpret_cast<const guchar*>(strut.data()),
                            static_cast<int>(numbers));
    };
    set("_NET_WM_STRUT", 4);  // for window managers that know no more
    set("_NET_WM_STRUT_PARTIAL", strut.size());
}

void GtkBar::setItemLength(double length) noexcept {
    repaintItem();  // what it leaves
    length_ = length;
    repaintItem();
}

void GtkBar::repaintItem() noexcept {
    const Rect frame = item();
    if (frame.width > 0)
        gtk_widget_queue_draw_area(window_.get(), whole(frame.x), whole(frame.y),
                                   whole(frame.width), whole(frame.height));
}

void GtkBar::repaint() noexcept { gtk_widget_queue_draw(window_.get()); }

Size GtkBar::size() const noexcept {
    return {static_cast<double>(gtk_widget_get_allocated_width(window_.get())),
            static_cast<double>(gtk_widget_get_allocated_height(window_.get()))};
}

gboolean GtkBar::drawn(GtkWidget* widget, cairo_t* cairo, gpointer self) noexcept {
    const auto* const bar = static_cast<GtkBar*>(self);
    bar->owner_.paint(cairo, bar->size(), gtk_widget_get_scale_factor(widget));
    return TRUE;
}

gboolean GtkBar::pressed(GtkWidget*, GdkEventButton* event, gpointer self) noexcept {
    const auto* const bar = static_cast<GtkBar*>(self);
    const Rect frame = bar->item();
    // A double click is told as two presses, and then once more as what it is.
    if (event->type == GDK_BUTTON_PRESS && event->button == GDK_BUTTON_PRIMARY &&
        event->x >= frame.x && event->x < frame.x + frame.width)
        bar->owner_.itemPressed();
    return TRUE;
}

void GtkBar::scaleChanged(GtkWidget*, GParamSpec*, gpointer self) noexcept {
    static_cast<GtkBar*>(self)->reserveSpace();
}

}  // namespace vantor
