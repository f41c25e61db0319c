#include "Painting/Path.h"

#include <gtest/gtest.h>

#include "Tests/Support/AllocationCounter.h"

namespace vantor::Painting {
namespace {

void expectNear(const Rect& found, const Rect& wanted) {
    EXPECT_NEAR(found.x, wanted.x, 1e-9);
    EXPECT_NEAR(found.y, wanted.y, 1e-9);
    EXPECT_NEAR(found.width, wanted.width, 1e-9);
    EXPECT_NEAR(found.height, wanted.height, 1e-9);
}

TEST(PathTest, NewPathIsEmpty) {
    const Path path;
    EXPECT_TRUE(path.isEmpty());
    EXPECT_EQ(path.bounds(), Rect{});
    EXPECT_FALSE(path.currentPoint());
}

TEST(PathTest, BoundsHoldAllPoints) {
    Path path;
    path.moveTo({3, -1});
    path.lineTo({10, 4});
    path.addRect({-2, 0, 1, 8});
    EXPECT_EQ(path.bounds(), (Rect{-2, -1, 12, 9}));
    EXPECT_FALSE(path.isEmpty());
}

TEST(PathTest, LineWithoutCurrentPointIsAMove) {
    Path path;
    path.lineTo({3, 4});
    ASSERT_EQ(path.verbs().size(), 1u);
    EXPECT_EQ(path.verbs()[0], Path::Verb::move);
    EXPECT_EQ(path.currentPoint(), (Point{3, 4}));
}

TEST(PathTest, ClosingGoesBackToTheStartOfTheFigure) {
    Path path;
    path.close();
    EXPECT_TRUE(path.isEmpty());
    path.moveTo({1, 1});
    path.lineTo({5, 1});
    path.close();
    EXPECT_EQ(path.currentPoint(), (Point{1, 1}));
}

TEST(PathTest, ArcSweepsAtMostOnceAround) {
    struct Case {
        double start, end;
        bool clockwise;
        double sweep;
    };
    for (const Case& arc :
         {Case{0, 90, false, 90}, Case{90, 0, false, 270}, Case{450, 90, false, 0},
          Case{91, 90, false, 359}, Case{0, 360, false, 360}, Case{0, 1000, false, 360},
          Case{90, 0, true, -90}, Case{0, 90, true, -270}, Case{360 - 0.5 + 90, 90, false, 0.5}}) {
        Path path;
        path.addArc({0, 0}, 1, arc.start, arc.end, arc.clockwise);
        EXPECT_DOUBLE_EQ(path.points().back().y, arc.sweep)
            << arc.start << " to " << arc.end << (arc.clockwise ? " clockwise" : "");
    }
}

TEST(PathTest, BoundsOfAnArcReachItsFarthestPoints) {
    Path quarter, half;
    quarter.addArc({10, 10}, 8, 0, 90);
    expectNear(quarter.bounds(), {10, 10, 8, 8});
    half.addArc({10, 10}, 8, -90, 90);
    expectNear(half.bounds(), {10, 2, 8, 16});
}

TEST(PathTest, RoundedRectAndOvalFillTheirRect) {
    Path rounded, tooRound, oval;
    rounded.addRoundedRect({1, 2, 30, 14}, 3);
    tooRound.addRoundedRect({1, 2, 30, 14}, 99);
    oval.addOval({1, 2, 30, 14});
    expectNear(rounded.bounds(), {1, 2, 30, 14});
    expectNear(tooRound.bounds(), {1, 2, 30, 14});
    expectNear(oval.bounds(), {1, 2, 30, 14});
}

TEST(PathTest, ClearedPathIsBuiltAgainWithoutAllocating) {
    Path path;
    const auto build = [&path] {
        path.clear();
        path.moveTo({0, 0});
        for (int column = 0; column < 300; ++column)
            path.lineTo({static_cast<double>(column), 5});
        path.close();
    };
    build();
    const test::AllocationCounter allocations;
    build();
    EXPECT_EQ(allocations.count(), 0u);
}

}  // namespace
}  // namespace vantor::Painting
