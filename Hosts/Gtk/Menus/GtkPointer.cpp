#include "Hosts/Gtk/Menus/GtkPointer.h"

#include <gdk/gdkx.h>

namespace vantor {

std::optional<Point> pointerIn(GdkWindow* window, const GdkEvent* event) noexcept {
    double x = 0, y = 0;
    if (GDK_IS_X11_WINDOW(window)) {
        int left = 0, top = 0;
        gdk_window_get_origin(window, &left, &top);
        if (gdk_event_get_root_coords(event, &x, &y) == FALSE)
            return std::nullopt;
        return Point{x - left, y - top};
    }
    if (gdk_event_get_window(event) != window || gdk_event_get_coords(event, &x, &y) == FALSE)
        return std::nullopt;
    return Point{x, y};
}

}  // namespace vantor
