#include "Hosts/ItemPicture.h"

#include <gtest/gtest.h>

#include "Painting/Context.h"
#include "Tests/Support/AllocationCounter.h"

namespace vantor {
namespace {

constexpr Colour kInk{1, 0, 0, 1}, kPaper{1, 1, 1, 1};

/// Paper with a spot of ink, in points from the lower left.
auto spot(const Rect& place) {
    return [place](Painting::Context& context) {
        context.fill(context.clipBounds(), kPaper);
        context.fill(place, kInk);
    };
}

TEST(ItemPictureTest, TheFirstPaintChangesAllOfIt) {
    ItemPicture picture(2);
    EXPECT_EQ(picture.repaint({30, 22}, spot({})), (PixelRect{0, 0, 60, 44}));
}

TEST(ItemPictureTest, APaintThatComesOutTheSameChangesNothing) {
    ItemPicture picture(1);
    picture.repaint({30, 22}, spot({4, 4, 2, 2}));
    for (int again = 0; again < 3; ++again)
        EXPECT_TRUE(picture.repaint({30, 22}, spot({4, 4, 2, 2})).isEmpty());
}

TEST(ItemPictureTest, WhatChangedIsTheSmallestRectangleAroundIt) {
    ItemPicture picture(1);
    picture.repaint({30, 22}, spot({4, 4, 2, 2}));
    // From (4, 4) to (12, 8) when y grows upwards: rows 14 to 17 from the top.
    EXPECT_EQ(picture.repaint({30, 22}, spot({10, 6, 2, 2})), (PixelRect{4, 14, 8, 4}));
}

TEST(ItemPictureTest, TheLastPixelOfARowCounts) {
    ItemPicture picture(1);
    picture.repaint({30, 22}, spot({}));
    EXPECT_EQ(picture.repaint({30, 22}, spot({29, 0, 1, 1})), (PixelRect{29, 21, 1, 1}));
}

TEST(ItemPictureTest, AnotherSizeIsAnotherPicture) {
    ItemPicture picture(1);
    picture.repaint({30, 22}, spot({}));
    EXPECT_EQ(picture.repaint({20, 22}, spot({})), (PixelRect{0, 0, 20, 22}));
    EXPECT_EQ(picture.shown().widthPixels(), 20);
}

TEST(ItemPictureTest, APictureWithoutRoomNeverChanges) {
    ItemPicture picture(1);
    EXPECT_TRUE(picture.repaint({0, 22}, spot({})).isEmpty());
    EXPECT_TRUE(picture.repaint({0, 22}, spot({})).isEmpty());
    EXPECT_TRUE(picture.repaint({1e9, 22}, spot({})).isEmpty());
}

TEST(ItemPictureTest, PaintsOfOneSizeAllocateNothing) {
    ItemPicture picture(1);
    picture.repaint({30, 22}, spot({}));
    const test::AllocationCounter allocations;
    picture.repaint({30, 22}, spot({4, 4, 2, 2}));
    picture.repaint({30, 22}, spot({6, 4, 2, 2}));
    EXPECT_EQ(allocations.count(), 0u);
}

}  // namespace
}  // namespace vantor
