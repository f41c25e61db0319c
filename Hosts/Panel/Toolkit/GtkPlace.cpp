#include "Hosts/Panel/Toolkit/GtkPlace.h"

#include <cmath>
#include <utility>

#include "Hosts/Gtk/Menus/GtkPointer.h"

namespace vantor {
namespace {

int whole(double points) noexcept { return static_cast<int>(std::ceil(points)); }

}  // namespace

GtkPlace::GtkPlace(BarID id, const VantorPanelOptions& options, Listener listener)
    : id_(id), options_(options), listener_(std::move(listener)),
      widget_(gtk_drawing_area_new()) {
    gtk_widget_add_events(widget_, GDK_BUTTON_PRESS_MASK);
    g_signal_connect(widget_, "draw", G_CALLBACK(drawn), this);
    g_signal_connect(widget_, "button-press-event", G_CALLBACK(pressed), this);
    g_signal_connect(widget_, "style-updated", G_CALLBACK(restyled), this);
    g_signal_connect(widget_, "notify::scale-factor", G_CALLBACK(rescaled), this);
    g_signal_connect(widget_, "destroy", G_CALLBACK(destroyed), this);
    requestSize();
}

GtkPlace::~GtkPlace() { g_signal_handlers_disconnect_by_data(widget_, this); }

double GtkPlace::scale() const noexcept {
    return static_cast<double>(gtk_widget_get_scale_factor(widget_));
}

bool GtkPlace::isDark() const noexcept {
    GtkStyleContext* const style = gtk_widget_get_style_context(widget_);
    GdkRGBA ink;
    gtk_style_context_get_color(style, gtk_style_context_get_state(style), &ink);
    return 0.299 * ink.red + 0.587 * ink.green + 0.114 * ink.blue > 0.5;  // as eyes weigh them
}

void GtkPlace::setLength(double length) noexcept {
    length_ = length;
    requestSize();
    gtk_widget_queue_draw(widget_);
}

void GtkPlace::setMaximumWidth(double width) noexcept {
    maximumWidth_ = width;
    requestSize();
}

double GtkPlace::shrink() const noexcept {
    return maximumWidth_ > 0 && length_ > maximumWidth_ ? maximumWidth_ / length_ : 1;
}

/// In a row the panel says how high it is; what stands in a column says so itself.
void GtkPlace::requestSize() noexcept {
    const double factor = shrink();
    const bool inRow = maximumWidth_ <= 0;
    gtk_widget_set_size_request(widget_, whole(length_ * factor),
                                inRow ? -1 : whole(kBarHeight * factor));
}

Point GtkPlace::origin() const noexcept {
    const double factor = shrink();
    const double width = gtk_widget_get_allocated_width(widget_);
    const double height = gtk_widget_get_allocated_height(widget_);
    return {std::max(0.0, std::floor((width - std::ceil(length_) * factor) / 2)),
            std::floor((height - kBarHeight * factor) / 2)};
}

void GtkPlace::repaint(const Rect& part) noexcept {
    const double factor = shrink();
    if (factor < 1)
        return repaint();
    const Point from = origin();
    gtk_widget_queue_draw_area(widget_, static_cast<int>(from.x + part.x),
                               static_cast<int>(from.y + part.y), whole(part.width),
                               whole(part.height));
}

gboolean GtkPlace::drawn(GtkWidget*, cairo_t* cairo, gpointer self) noexcept {
    auto* const place = static_cast<GtkPlace*>(self);
    const Point from = place->origin();
    cairo_save(cairo);
    cairo_translate(cairo, from.x, from.y);
    cairo_scale(cairo, place->shrink(), place->shrink());
    place->listener_.paint(*place, cairo, {std::ceil(place->length_), kBarHeight});
    cairo_restore(cairo);
    return TRUE;
}

bool GtkPlace::isUnder(const GdkEventButton& event) const noexcept {
    const GdkRectangle whole = wholeRect();
    const auto point =
        pointerIn(gtk_widget_get_window(widget_), reinterpret_cast<const GdkEvent*>(&event));
    return point && isInside(*point, {static_cast<double>(whole.width),
                                      static_cast<double>(whole.height)});
}

bool GtkPlace::handlePress(const GdkEventButton& event) noexcept {
    if (event.button != GDK_BUTTON_PRIMARY)
        return false;  // the panel has menus of its own
    // A double click is told as two presses, and then once more as what it is.
    if (event.type == GDK_BUTTON_PRESS)
        listener_.pressed(*this);
    return true;
}

gboolean GtkPlace::pressed(GtkWidget*, GdkEventButton* event, gpointer self) noexcept {
    return static_cast<GtkPlace*>(self)->handlePress(*event) ? TRUE : FALSE;
}

GdkRectangle GtkPlace::wholeRect() const noexcept {
    return {0, 0, gtk_widget_get_allocated_width(widget_),
            gtk_widget_get_allocated_height(widget_)};
}

MenuDirection GtkPlace::menuDirection() const noexcept {
    GdkWindow* const window = gtk_widget_get_window(widget_);
    int x = 0, y = 0;
    gdk_window_get_origin(window, &x, &y);  // 0, 0 on Wayland, where nobody is told
    GdkRectangle screen;
    gdk_monitor_get_geometry(
        gdk_display_get_monitor_at_window(gtk_widget_get_display(widget_), window), &screen);
    if (maximumWidth_ > 0)
        return 2 * (x - screen.x) < screen.width ? MenuDirection::right : MenuDirection::left;
    return 2 * (y - screen.y) < screen.height ? MenuDirection::down : MenuDirection::up;
}

void GtkPlace::menuChanged(bool isOpen) const noexcept {
    if (options_.menuChanged != nullptr)
        options_.menuChanged(options_.data, isOpen);
}

void GtkPlace::restyled(GtkWidget*, gpointer self) noexcept {
    auto* const place = static_cast<GtkPlace*>(self);
    place->listener_.changed(*place);
}

void GtkPlace::rescaled(GtkWidget*, GParamSpec*, gpointer self) noexcept {
    auto* const place = static_cast<GtkPlace*>(self);
    place->listener_.changed(*place);
}

void GtkPlace::destroyed(GtkWidget*, gpointer self) noexcept {
    auto* const place = static_cast<GtkPlace*>(self);
    place->listener_.destroyed(*place);
}

}  // namespace vantor
