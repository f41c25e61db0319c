#include "Hosts/Gtk/BarGeometry.h"

#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantor {
namespace {

using testing::Each;
using testing::ElementsAre;

constexpr Rect kMonitor{0, 0, 1280, 800};

TEST(BarGeometryTest, TheItemStandsAtItsEndOfTheBarOnWholePoints) {
    EXPECT_EQ(itemFrame({1280, 22}, ItemSide::right, 41.5),
              (Rect{1280 - 42 - kItemMargin, 0, 42, 22}));
    EXPECT_EQ(itemFrame({1280, 22}, ItemSide::left, 41.5), (Rect{kItemMargin, 0, 42, 22}));
}

TEST(BarGeometryTest, AnItemIsNoLongerThanItsBar) {
    EXPECT_EQ(itemFrame({100, 22}, ItemSide::right, 4000).width, 100 - 2 * kItemMargin);
    EXPECT_EQ(itemFrame({1, 1}, ItemSide::right, 4000).width, 0);
}

TEST(BarGeometryTest, TheBarLiesAtItsEdgeOfTheMonitor) {
    const Rect monitor{1280, 100, 640, 480};
    EXPECT_EQ(barFrame(monitor, BarEdge::top), (Rect{1280, 100, 640, 22}));
    EXPECT_EQ(barFrame(monitor, BarEdge::bottom), (Rect{1280, 558, 640, 22}));
}

TEST(BarGeometryTest, SpaceIsReservedInPixels) {
    const std::vector monitors{kMonitor};
    EXPECT_THAT(strutFor(kMonitor, monitors, BarEdge::top, 2),
                ElementsAre(0, 0, 44, 0, 0, 0, 0, 0, 0, 2559, 0, 0));
    EXPECT_THAT(strutFor(kMonitor, monitors, BarEdge::bottom, 1),
                ElementsAre(0, 0, 0, 22, 0, 0, 0, 0, 0, 0, 0, 1279));
}

TEST(BarGeometryTest, SpaceCountsFromTheEdgeOfTheWholeDesktop) {
    const Rect lower{1280, 200, 640, 400};
    const std::vector monitors{kMonitor, lower};
    EXPECT_THAT(strutFor(lower, monitors, BarEdge::top, 1),
                ElementsAre(0, 0, 222, 0, 0, 0, 0, 0, 1280, 1919, 0, 0));
    EXPECT_THAT(strutFor(lower, monitors, BarEdge::bottom, 1),
                ElementsAre(0, 0, 0, 222, 0, 0, 0, 0, 0, 0, 1280, 1919));
}

TEST(BarGeometryTest, NoSpaceIsTakenFromAMonitorInBetween) {
    const Rect below{0, 800, 1280, 800};
    const std::vector monitors{kMonitor, below};
    EXPECT_THAT(strutFor(below, monitors, BarEdge::top, 1), Each(0));
    EXPECT_THAT(strutFor(kMonitor, monitors, BarEdge::bottom, 1), Each(0));
    EXPECT_EQ(strutFor(kMonitor, monitors, BarEdge::top, 1)[2], 22u);
}

}  // namespace
}  // namespace vantor
