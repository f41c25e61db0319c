#pragma once

#include <algorithm>

#include "Foundation/Geometry.h"

namespace vantor {

inline bool contains(const Rect& rect, Point point) noexcept {
    return point.x >= rect.x && point.x < rect.x + rect.width && point.y >= rect.y &&
           point.y < rect.y + rect.height;
}

/// Without area where they don't meet.
inline Rect intersection(const Rect& one, const Rect& other) noexcept {
    const double x = std::max(one.x, other.x), y = std::max(one.y, other.y);
    return {x, y, std::max(0.0, std::min(one.x + one.width, other.x + other.width) - x),
            std::max(0.0, std::min(one.y + one.height, other.y + other.height) - y)};
}

inline bool isEmpty(const Rect& rect) noexcept { return !(rect.width > 0 && rect.height > 0); }

/// How much of a menu that is higher than its window shows, in points.
struct MenuScroll {
    double content = 0, window = 0, offset = 0;

    double most() const noexcept { return std::max(0.0, content - window); }
    bool canScrollUp() const noexcept { return offset > 0; }
    bool canScrollDown() const noexcept { return offset < most(); }
    /// Another window or another content; what showed stays where it can.
    void fit(double newContent, double newWindow) noexcept {
        content = newContent;
        window = newWindow;
        offset = std::clamp(offset, 0.0, most());
    }
    /// Answers whether anything moved.
    bool moveTo(double newOffset) noexcept {
        const double before = offset;
        offset = std::clamp(newOffset, 0.0, most());
        return offset != before;
    }
    bool moveBy(double points) noexcept { return moveTo(offset + points); }
    /// So that the rows from `y` on show, `margin` from the window's edges.
    bool reveal(double y, double height, double margin) noexcept {
        if (y - margin < offset)
            return moveTo(y - margin);
        if (y + height + margin > offset + window)
            return moveTo(y + height + margin - window);
        return false;
    }
};

/// Whether a pointer that went from `from` to `to` is on its way into `target`, a window beside
/// it: inside the triangle of where it was and the window's near edge.
bool isOnItsWay(Point from, Point to, const Rect& target) noexcept;

}  // namespace vantor
