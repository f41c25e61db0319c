#pragma once

namespace vantor {

/// Points. A view's origin is at its lower left, or at its upper left where it is flipped.
struct Point {
    double x = 0, y = 0;
    bool operator==(const Point&) const = default;
};

struct Size {
    double width = 0, height = 0;
    bool operator==(const Size&) const = default;
};

struct Rect {
    double x = 0, y = 0, width = 0, height = 0;
    Size size() const noexcept { return {width, height}; }
    bool operator==(const Rect&) const = default;
};

}  // namespace vantor
