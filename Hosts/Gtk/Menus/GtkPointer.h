#pragma once

#include <optional>

#include <gtk/gtk.h>

#include "Foundation/Geometry.h"

namespace vantor {

/// Where in `window` an event of the pointer happened, in the window's points, which may be outside
/// of it. Nothing where the event doesn't tell: it is another window's on Wayland, or none's.
/// While a window of ours holds the pointer, GDK on X11 may name that one with the place in another.
std::optional<Point> pointerIn(GdkWindow* window, const GdkEvent* event) noexcept;

inline bool isInside(Point point, Size size) noexcept {
    return point.x >= 0 && point.y >= 0 && point.x < size.width && point.y < size.height;
}

}  // namespace vantor
