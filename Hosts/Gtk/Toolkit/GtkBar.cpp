#include "Hosts/Gtk/Toolkit/GtkBar.h"

#include <algorithm>
#include <vector>

#include <gdk/gdkx.h>
#include <gtk-layer-shell/gtk-layer-shell.h>

#include "Hosts/Gtk/Menus/GtkPointer.h"

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

GtkBar::GtkBar(BarID id, GdkMonitor* monitor, const BarOptions& options, BarOwner& owner)
    : id_(id), options_(options), owner_(owner), monitor_(GDK_MONITOR(g_object_ref(monitor))),
      window_(newDescribedWindow(GTK_WINDOW_TOPLEVEL, *this)) {
    GtkWidget* const widget = window_.get();
    GtkWindow* const window = GTK_WINDOW(widget);
    gtk_window_set_title(window, options_.title.c_str());
    gtk_window_set_decorated(window, FALSE);
    gtk_window_set_accept_focus(window, FALSE);
    gtk_widget_set_app_paintable(widget, TRUE);
    gtk_widget_add_events(widget, GDK_BUTTON_PRESS_MASK);
    g_signal_connect(widget, "draw", G_CALLBACK(drawn), this);
    g_signal_connect(widget, "button-press-event", G_CALLBACK(pressed), this);
    g_signal_connect(widget, "delete-event", G_CALLBACK(askedToClose), this);
    if (isDock())
        makeDock();
    else
        placeOnLayer();
    gtk_widget_show(widget);
    g_signal_connect(widget, "notify::scale-factor", G_CALLBACK(scaleChanged), this);
}

bool GtkBar::isDock() const noexcept {
    return GDK_IS_X11_DISPLAY(gtk_widget_get_display(window_.get()));
}

BarPlace GtkBar::place() const noexcept {
    return {id_, static_cast<double>(gtk_widget_get_scale_factor(window_.get()))};
}

void GtkBar::placeOnLayer() noexcept {
    GtkWindow* const window = GTK_WINDOW(window_.get());
    gtk_layer_init_for_window(window);
    gtk_layer_set_namespace(window, "vantorbar");
    gtk_layer_set_monitor(window, monitor());
    gtk_layer_set_layer(window, GTK_LAYER_SHELL_LAYER_TOP);
    const auto edge =
        options_.edge == BarEdge::top ? GTK_LAYER_SHELL_EDGE_TOP : GTK_LAYER_SHELL_EDGE_BOTTOM;
    for (const auto anchor : {edge, GTK_LAYER_SHELL_EDGE_LEFT, GTK_LAYER_SHELL_EDGE_RIGHT})
        gtk_layer_set_anchor(window, anchor, TRUE);
    gtk_widget_set_size_request(window_.get(), -1, whole(kBarHeight));
    gtk_layer_set_exclusive_zone(window, whole(kBarHeight));
}

void GtkBar::makeDock() noexcept {
    GtkWindow* const window = GTK_WINDOW(window_.get());
    gtk_window_set_type_hint(window, GDK_WINDOW_TYPE_HINT_DOCK);
    // Not on a layer: there it is the compositor that stretches the window from edge to edge.
    gtk_window_set_resizable(window, FALSE);
    gtk_window_stick(window);
    gtk_widget_realize(window_.get());
    // One picture a second needs no pace; keeping it costs two messages a picture, or a question
    // where nobody composites.
    gdk_x11_window_set_frame_sync_enabled(gtk_widget_get_window(window_.get()), FALSE);
    placeDock();
}

void GtkBar::placeDock() noexcept {
    const Rect monitor = rectOf(monitor_.get()), bar = barFrame(monitor, options_.edge);
    gtk_widget_set_size_request(window_.get(), whole(bar.width), whole(bar.height));
    // Without a place of its own, window managers put a dock in the middle.
    gtk_window_move(GTK_WINDOW(window_.get()), whole(bar.x), whole(bar.y));
    reserveSpace(monitor);
}

void GtkBar::reserveSpace(const Rect& monitor) noexcept {
    GtkWidget* const widget = window_.get();
    const std::vector<Rect> monitors = monitorsOf(gtk_widget_get_display(widget));
    const BarStrut strut = strutFor(monitor, monitors, options_.edge, place().scale);
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

void GtkBar::followMonitors() noexcept {
    if (isDock())
        placeDock();
}

void GtkBar::setItemLength(double length) noexcept {
    repaintFrame(item());  // what it leaves
    length_ = length;
    repaintFrame(item());
}

void GtkBar::repaintItem(const Rect& part) noexcept {
    const Rect frame = item();
    const double left = std::min(part.x, frame.width);
    repaintFrame(
        {frame.x + left, frame.y + part.y, std::min(part.width, frame.width - left), part.height});
}

void GtkBar::repaintFrame(const Rect& frame) noexcept {
    if (frame.width > 0)
        gtk_widget_queue_draw_area(window_.get(), whole(frame.x), whole(frame.y),
                                   whole(frame.width), whole(frame.height));
}

void GtkBar::repaint() noexcept { gtk_widget_queue_draw(window_.get()); }

Size GtkBar::size() const noexcept {
    return {static_cast<double>(gtk_widget_get_allocated_width(window_.get())),
            static_cast<double>(gtk_widget_get_allocated_height(window_.get()))};
}

gboolean GtkBar::drawn(GtkWidget*, cairo_t* cairo, gpointer self) noexcept {
    const auto* const bar = static_cast<GtkBar*>(self);
    bar->owner_.paint(cairo, bar->id_, bar->size());
    return TRUE;
}

/// The item is all that there is in a bar.
DescribedPart GtkBar::describedPart(std::size_t) noexcept {
    const Rect frame = item();
    return {.role = ATK_ROLE_PUSH_BUTTON,
            .name = owner_.itemName(),
            .description = owner_.itemSentence(),
            .place = {whole(frame.x), whole(frame.y), whole(frame.width), whole(frame.height)},
            .isEnabled = true,
            .isFocused = false};
}

bool GtkBar::handlePress(const GdkEventButton& event) noexcept {
    const Rect frame = item();
    const auto place = pointerIn(gtk_widget_get_window(window_.get()),
                                 reinterpret_cast<const GdkEvent*>(&event));
    // A double click is told as two presses, and then once more as what it is.
    const bool isMeant =
        event.type == GDK_BUTTON_PRESS && event.button == GDK_BUTTON_PRIMARY && place &&
        isInside({place->x - frame.x, place->y}, {frame.width, frame.height});
    if (isMeant)
        owner_.itemPressed(id_);
    return isMeant;
}

gboolean GtkBar::pressed(GtkWidget*, GdkEventButton* event, gpointer self) noexcept {
    static_cast<GtkBar*>(self)->handlePress(*event);
    return TRUE;
}

/// A compositor does that when the monitor goes. The window is ours to end, then.
gboolean GtkBar::askedToClose(GtkWidget*, GdkEvent*, gpointer) noexcept { return TRUE; }

void GtkBar::scaleChanged(GtkWidget*, GParamSpec*, gpointer self) noexcept {
    auto* const bar = static_cast<GtkBar*>(self);
    bar->followMonitors();
    bar->owner_.barsChanged();
}

}  // namespace vantor
