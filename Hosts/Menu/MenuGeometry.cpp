#include "Hosts/Menu/MenuGeometry.h"

namespace vantor {
namespace {

constexpr double kSlack = 8;  // hands aren't exact: above and below the window, in points

}  // namespace

bool isOnItsWay(Point from, Point to, const Rect& target) noexcept {
    const bool isRight = from.x < target.x + target.width / 2;
    const double edge = isRight ? target.x : target.x + target.width;
    const double way = isRight ? edge - from.x : from.x - edge;
    const double gone = isRight ? to.x - from.x : from.x - to.x;
    if (!(gone > 0) || gone > way)
        return false;
    const double share = gone / way;
    const double top = from.y + (target.y - kSlack - from.y) * share;
    const double bottom = from.y + (target.y + target.height + kSlack - from.y) * share;
    return to.y >= top && to.y <= bottom;
}

}  // namespace vantor
