#include "Shared/Graphs/BarGraph.h"

#include <limits>

#include <gtest/gtest.h>

#include "Painting/ImageSurface.h"
#include "Tests/Support/World.h"

namespace vantor {

TEST(BarGraphTest, AnythingAtAllFillsAPoint) {
    EXPECT_DOUBLE_EQ(filledWidth(0.001F, 52), 1);
    EXPECT_DOUBLE_EQ(filledWidth(0, 52), 0);
    EXPECT_DOUBLE_EQ(filledWidth(1, 52), 50);
    EXPECT_DOUBLE_EQ(filledWidth(0.5F, 52), 25);
}

TEST(BarGraphTest, APaintCutsWhatIsAboveTheWhole) {
    const test::World world;
    BarGraph bar({0, 0, 52, 17});
    bar.setPercentage(1.5F);
    Painting::ImageSurface surface({52, 17}, 1);
    Painting::Context context = surface.context();

    bar.display(context);

    EXPECT_FLOAT_EQ(bar.percentage(), 1);
}

TEST(BarGraphTest, WhatIsNoFractionPaintsAnEmptyBar) {
    const test::World world;
    for (const float fraction : {-0.5F, std::numeric_limits<float>::quiet_NaN()}) {
        BarGraph bar({0, 0, 52, 17});
        bar.setPercentage(fraction);
        Painting::ImageSurface surface({52, 17}, 1);
        Painting::Context context = surface.context();

        bar.display(context);

        EXPECT_EQ(surface.pixel(1, 8), 0u);
    }
}

}  // namespace vantor
