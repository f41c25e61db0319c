#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <span>

#include "Foundation/Geometry.h"

namespace vantor {

inline constexpr double kBarHeight = 22;
inline constexpr double kItemMargin = 4;  // from the end of the bar

enum class BarEdge : std::uint8_t { top, bottom };
enum class ItemSide : std::uint8_t { right, left };

/// Where the item stands in a bar of that size: as high as the bar, on whole points.
inline Rect itemFrame(Size bar, ItemSide side, double length,
                      double margin = kItemMargin) noexcept {
    const double room = std::max(0.0, bar.width - 2 * margin);
    const double width = std::clamp(std::ceil(length), 0.0, room);
    const double x = side == ItemSide::right ? bar.width - margin - width : margin;
    return {x, 0, width, bar.height};
}

/// Where the bar of a monitor lies; y grows downwards.
inline Rect barFrame(const Rect& monitor, BarEdge edge) noexcept {
    const double top = edge == BarEdge::top ? 0 : monitor.height - kBarHeight;
    return {monitor.x, monitor.y + top, monitor.width, kBarHeight};
}

/// Left, right, top and bottom, then the beginning and the end of each: what _NET_WM_STRUT_PARTIAL
/// keeps free, in pixels from the edges of the whole desktop.
using BarStrut = std::array<unsigned long, 12>;

/// Whether `other` lies between `monitor` and that edge of the desktop: what is kept free there
/// would be the other's room, as it is counted from the desktop's edge.
inline bool isBeyond(const Rect& other, const Rect& monitor, BarEdge edge) noexcept {
    const bool beside = other.x + other.width <= monitor.x || monitor.x + monitor.width <= other.x;
    if (beside)
        return false;
    return edge == BarEdge::top ? other.y < monitor.y
                                : other.y + other.height > monitor.y + monitor.height;
}

/// What a bar at `edge` of `monitor` keeps free. All 0 where that can't be told: another monitor
/// is in the way. `scale` is in pixels a point.
inline BarStrut strutFor(const Rect& monitor, std::span<const Rect> monitors, BarEdge edge,
                         double scale) noexcept {
    double desktopHeight = 0;
    for (const Rect& other : monitors) {
        if (isBeyond(other, monitor, edge))
            return {};
        desktopHeight = std::max(desktopHeight, other.y + other.height);
    }
    const auto pixels = [scale](double points) {
        return static_cast<unsigned long>(std::lround(points * scale));
    };
    const bool top = edge == BarEdge::top;
    const double gap = top ? monitor.y : desktopHeight - monitor.y - monitor.height;
    const std::size_t place = top ? 2 : 3;
    BarStrut strut{};
    strut[place] = pixels(gap + kBarHeight);
    strut[4 + 2 * place] = pixels(monitor.x);
    strut[5 + 2 * place] = pixels(monitor.x + monitor.width) - 1;
    return strut;
}

}  // namespace vantor
