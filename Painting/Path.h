#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "Foundation/Geometry.h"

namespace vantor::Painting {

/// The outline of a shape, made of open and closed figures.
/// Shape:  grows as it is drawn; `clear` keeps the room, so that a path that is kept from paint to
///         paint stops allocating.
/// Units:  points of the view that it will be painted in. Angles are in degrees, from the x axis
///         towards the y axis: counter-clockwise where y grows upwards.
/// Errors: none. What isn't a finite number paints nothing.
/// Thread: main.
class Path {
public:
    enum class Verb : std::uint8_t { move, line, curve, arc, close };

    void clear() noexcept;
    void reserve(std::size_t points);

    void moveTo(Point point);
    /// Without a current point it is `moveTo`.
    void lineTo(Point point);
    void curveTo(Point point, Point control1, Point control2);
    void close();

    void addRect(const Rect& rect);
    /// A radius of more than half a side is cut to it.
    void addRoundedRect(const Rect& rect, double radius);
    void addOval(const Rect& rect);
    /// The arc from `startDegrees` to `endDegrees`, at most once around, and the line to its start
    /// from the current point, if there is one. Counter-clockwise, an end below the start is
    /// reached past 360; one below it by 360 exactly is no arc at all.
    void addArc(Point centre, double radius, double startDegrees, double endDegrees,
                bool clockwise = false);

    bool isEmpty() const noexcept { return verbs_.empty(); }
    std::optional<Point> currentPoint() const noexcept { return current_; }
    /// The smallest rectangle that holds the shape; a curve counts with its control points.
    Rect bounds() const noexcept;

    /// For those who paint: the verbs in order, each with its points. `move` and `line` have one
    /// point; `curve` has two control points and the end; `arc` has the centre, the radius and 0,
    /// and the degrees at which it starts and those that it sweeps, below 0 if clockwise.
    std::span<const Verb> verbs() const noexcept { return verbs_; }
    std::span<const Point> points() const noexcept { return points_; }

private:
    std::vector<Verb> verbs_;
    std::vector<Point> points_;
    std::optional<Point> current_, start_;
};

}  // namespace vantor::Painting
