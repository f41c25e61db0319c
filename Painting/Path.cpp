#include "Painting/Path.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace vantor::Painting {
namespace {

/// Handles of this length, for a radius of 1, make a curve out of a quarter of a circle.
constexpr double kQuarterHandle = 0.5522847498307936;

Point onCircle(Point centre, double radius, double degrees) noexcept {
    const double angle = degrees * std::numbers::pi / 180;
    return {centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)};
}

/// Degrees from `start` to `end`, 0 to 360, going counter-clockwise. Reckoned in degrees: in
/// radians, 450 and 90 aren't quite the same direction, and an empty slice would become a full one.
double counterClockwiseSweep(double start, double end) noexcept {
    const double sweep = end - start;
    if (sweep >= 0)
        return std::min(sweep, 360.0);
    const double rest = std::fmod(sweep, 360.0);
    return rest < 0 ? rest + 360 : 0;
}

/// Grows to hold each point.
class Extent {
public:
    void add(Point point) noexcept {
        left_ = std::min(left_, point.x);
        right_ = std::max(right_, point.x);
        low_ = std::min(low_, point.y);
        high_ = std::max(high_, point.y);
    }
    void addArc(Point centre, double radius, double start, double sweep) noexcept {
        add(onCircle(centre, radius, start));
        add(onCircle(centre, radius, start + sweep));
        const double from = std::min(start, start + sweep), to = std::max(start, start + sweep);
        for (double quarter = std::ceil(from / 90) * 90; quarter <= to; quarter += 90)
            add(onCircle(centre, radius, quarter));
    }
    Rect rect() const noexcept { return {left_, low_, right_ - left_, high_ - low_}; }

private:
    static constexpr double kFar = std::numeric_limits<double>::infinity();
    double left_ = kFar, right_ = -kFar, low_ = kFar, high_ = -kFar;
};

}  // namespace

void Path::clear() noexcept {
    verbs_.clear();
    points_.clear();
    current_.reset();
    start_.reset();
}

void Path::reserve(std::size_t points) {
    verbs_.reserve(points);
    points_.reserve(points);
}

void Path::moveTo(Point point) {
    verbs_.push_back(Verb::move);
    points_.push_back(point);
    current_ = start_ = point;
}

void Path::lineTo(Point point) {
    if (!current_)
        return moveTo(point);
    verbs_.push_back(Verb::line);
    points_.push_back(point);
    current_ = point;
}

void Path::curveTo(Point point, Point control1, Point control2) {
    if (!current_)
        moveTo(control1);
    verbs_.push_back(Verb::curve);
    points_.insert(points_.end(), {control1, control2, point});
    current_ = point;
}

void Path::close() {
    if (!current_)
        return;
    verbs_.push_back(Verb::close);
    current_ = start_;
}

void Path::addRect(const Rect& rect) {
    moveTo({rect.x, rect.y});
    lineTo({rect.x + rect.width, rect.y});
    lineTo({rect.x + rect.width, rect.y + rect.height});
    lineTo({rect.x, rect.y + rect.height});
    close();
}

void Path::addRoundedRect(const Rect& rect, double radius) {
    const double right = rect.x + rect.width, high = rect.y + rect.height;
    const double corner =
        std::clamp(radius, 0.0, std::max(0.0, std::min(rect.width, rect.height)) / 2);
    moveTo({rect.x + corner, rect.y});
    addArc({right - corner, rect.y + corner}, corner, 270, 360);
    addArc({right - corner, high - corner}, corner, 0, 90);
    addArc({rect.x + corner, high - corner}, corner, 90, 180);
    addArc({rect.x + corner, rect.y + corner}, corner, 180, 270);
    close();
}

void Path::addOval(const Rect& rect) {
    const double rx = rect.width / 2, ry = rect.height / 2;
    const double hx = rx * kQuarterHandle, hy = ry * kQuarterHandle;
    const Point centre{rect.x + rx, rect.y + ry};
    const auto at = [centre](double x, double y) { return Point{centre.x + x, centre.y + y}; };
    moveTo(at(rx, 0));
    curveTo(at(0, ry), at(rx, hy), at(hx, ry));
    curveTo(at(-rx, 0), at(-hx, ry), at(-rx, hy));
    curveTo(at(0, -ry), at(-rx, -hy), at(-hx, -ry));
    curveTo(at(rx, 0), at(hx, -ry), at(rx, -hy));
    close();
}

void Path::addArc(Point centre, double radius, double startDegrees, double endDegrees,
                  bool clockwise) {
    const double sweep = clockwise ? -counterClockwiseSweep(endDegrees, startDegrees)
                                   : counterClockwiseSweep(startDegrees, endDegrees);
    lineTo(onCircle(centre, radius, startDegrees));
    verbs_.push_back(Verb::arc);
    points_.insert(points_.end(), {centre, {radius, 0}, {startDegrees, sweep}});
    current_ = onCircle(centre, radius, startDegrees + sweep);
}

Rect Path::bounds() const noexcept {
    if (points_.empty())
        return {};
    Extent extent;
    const Point* point = points_.data();
    for (const Verb verb : verbs_) {
        switch (verb) {
        case Verb::move:
        case Verb::line:
            extent.add(*point++);
            break;
        case Verb::curve:
            for (int index = 0; index < 3; ++index)
                extent.add(*point++);
            break;
        case Verb::arc:
            extent.addArc(point[0], point[1].x, point[2].x, point[2].y);
            point += 3;
            break;
        case Verb::close:
            break;
        }
    }
    return extent.rect();
}

}  // namespace vantor::Painting
