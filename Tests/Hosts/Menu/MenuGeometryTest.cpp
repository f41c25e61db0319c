#include "Hosts/Menu/MenuGeometry.h"

#include <gtest/gtest.h>

namespace vantor {
namespace {

constexpr Rect kRight{225, 0, 300, 200}, kLeft{-300, 0, 300, 200};

TEST(MenuGeometryTest, APointerIsOnItsWayInsideTheTriangleOfItsPlaceAndTheNearEdge) {
    EXPECT_TRUE(isOnItsWay({100, 20}, {110, 22}, kRight));
    EXPECT_TRUE(isOnItsWay({100, 20}, {110, 30}, kRight));
    EXPECT_FALSE(isOnItsWay({100, 20}, {110, 60}, kRight));
    EXPECT_FALSE(isOnItsWay({100, 20}, {110, 10}, kRight));
}

TEST(MenuGeometryTest, TheTriangleIsMirroredForAMenuAtTheLeft) {
    EXPECT_TRUE(isOnItsWay({100, 20}, {90, 25}, kLeft));
    EXPECT_FALSE(isOnItsWay({100, 20}, {110, 25}, kLeft));
}

TEST(MenuGeometryTest, APointerThatGoesStraightDownOrAwayIsOnNoWay) {
    EXPECT_FALSE(isOnItsWay({100, 20}, {100, 30}, kRight));
    EXPECT_FALSE(isOnItsWay({100, 20}, {95, 22}, kRight));
    EXPECT_FALSE(isOnItsWay({100, 20}, {100, 20}, kRight));
}

TEST(MenuGeometryTest, ARectangleHoldsItsUpperLeftEdgesOnly) {
    EXPECT_TRUE(contains({0, 0, 10, 10}, {0, 0}));
    EXPECT_FALSE(contains({0, 0, 10, 10}, {10, 5}));
    EXPECT_FALSE(contains({0, 0, 10, 10}, {5, 10}));
}

TEST(MenuGeometryTest, RectanglesThatDoNotMeetShareNothing) {
    EXPECT_TRUE(isEmpty(intersection({0, 0, 10, 10}, {10, 0, 10, 10})));
    EXPECT_EQ(intersection({0, 0, 10, 10}, {5, -5, 10, 10}), (Rect{5, 0, 5, 5}));
}

TEST(MenuGeometryTest, AScrollStaysWithinItsContent) {
    MenuScroll scroll;
    scroll.fit(500, 200);
    EXPECT_TRUE(scroll.moveBy(50));
    EXPECT_TRUE(scroll.moveBy(900));
    EXPECT_EQ(scroll.offset, 300);
    EXPECT_FALSE(scroll.moveBy(10));
    EXPECT_FALSE(scroll.canScrollDown());
    EXPECT_TRUE(scroll.canScrollUp());
}

TEST(MenuGeometryTest, AContentThatShrinksKeepsItsEndInSight) {
    MenuScroll scroll;
    scroll.fit(500, 200);
    scroll.moveTo(300);
    scroll.fit(400, 200);
    EXPECT_EQ(scroll.offset, 200);
    scroll.fit(100, 100);
    EXPECT_EQ(scroll.offset, 0);
}

TEST(MenuGeometryTest, AScrollRevealsWhatIsBeyondAnEdgeAndNothingElse) {
    MenuScroll scroll;
    scroll.fit(500, 200);
    EXPECT_FALSE(scroll.reveal(100, 20, 16));
    EXPECT_TRUE(scroll.reveal(300, 20, 16));
    EXPECT_EQ(scroll.offset, 136);
    EXPECT_TRUE(scroll.reveal(100, 20, 16));
    EXPECT_EQ(scroll.offset, 84);
}

}  // namespace
}  // namespace vantor
