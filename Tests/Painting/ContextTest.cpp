#include "Painting/Context.h"

#include <limits>
#include <numbers>

#include <gtest/gtest.h>

#include "Painting/Engine.h"
#include "Painting/ImageSurface.h"
#include "Painting/Path.h"
#include "Tests/Support/AllocationCounter.h"
#include "Tests/Support/Pictures.h"

namespace vantor::Painting {
namespace {

using namespace test;

int redOf(std::uint32_t pixel) { return static_cast<int>(pixel >> 16 & 0xFF); }
int blueOf(std::uint32_t pixel) { return static_cast<int>(pixel & 0xFF); }
int alphaOf(std::uint32_t pixel) { return static_cast<int>(pixel >> 24); }

TEST(ContextTest, EngineIsThere) { EXPECT_EQ(Engine::trouble(), ""); }

TEST(ContextTest, RectHasExactEdgesAtAnyWholeScale) {
    for (const int scale : {1, 2, 3}) {
        ImageSurface surface({20, 10}, scale);
        surface.context(Origin::lowerLeft).fill(Rect{2, 1, 5, 3}, kRed);
        for (int y = 0; y < 10 * scale; ++y)
            for (int x = 0; x < 20 * scale; ++x) {
                const bool inside =
                    x >= 2 * scale && x < 7 * scale && y >= 6 * scale && y < 9 * scale;
                ASSERT_EQ(surface.pixel(x, y), inside ? kRedPixel : 0u) << x << ", " << y;
            }
    }
}

TEST(ContextTest, FlippedViewCountsFromTheUpperLeft) {
    ImageSurface surface({20, 10}, 2);
    auto context = surface.context(Origin::upperLeft);
    EXPECT_TRUE(context.isFlipped());
    EXPECT_EQ(context.scale(), 2);
    context.fill(Rect{0, 1, 5, 3}, kRed);
    EXPECT_EQ(surface.pixel(0, 1), 0u);
    EXPECT_EQ(surface.pixel(0, 2), kRedPixel);
    EXPECT_EQ(surface.pixel(9, 7), kRedPixel);
    EXPECT_EQ(surface.pixel(9, 8), 0u);
}

TEST(ContextTest, ClipEndsWithTheScope) {
    ImageSurface surface({20, 10}, 1);
    auto context = surface.context();
    {
        const StateSaver saved(context);
        context.clip(Rect{0, 0, 4, 10});
        EXPECT_EQ(context.clipBounds(), (Rect{0, 0, 4, 10}));
        context.fill(Rect{0, 0, 20, 10}, kRed);
    }
    EXPECT_EQ(context.clipBounds(), (Rect{0, 0, 20, 10}));
    EXPECT_EQ(surface.pixel(3, 5), kRedPixel);
    EXPECT_EQ(surface.pixel(4, 5), 0u);
    context.fill(Rect{10, 0, 2, 10}, kBlue);
    EXPECT_EQ(surface.pixel(10, 5), kBluePixel);
}

TEST(ContextTest, CoordinatesEndWithTheScope) {
    ImageSurface surface({20, 10}, 1);
    auto context = surface.context();
    {
        const StateSaver saved(context);
        context.translate(20, 0);
        context.stretch(-1, 1);
        context.fill(Rect{0, 0, 3, 10}, kRed);
    }
    context.fill(Rect{0, 0, 1, 10}, kBlue);
    EXPECT_EQ(surface.pixel(17, 5), kRedPixel);
    EXPECT_EQ(surface.pixel(16, 5), 0u);
    EXPECT_EQ(surface.pixel(0, 5), kBluePixel);
}

TEST(ContextTest, ColourEndsWithTheScopeAndOutlivesGradientsAndPictures) {
    ImageSurface surface({20, 10}, 1), picture({2, 2}, 1);
    auto context = surface.context();
    Path left, right;
    left.addRect({0, 0, 2, 10});
    right.addRect({18, 0, 2, 10});
    context.setColour(kRed);
    {
        const StateSaver saved(context);
        context.setColour(kGreen);
    }
    context.fill(left, Gradient{kBlue, kWhite});
    context.drawImage(picture, Point{5, 5});
    context.fill(right);
    EXPECT_EQ(surface.pixel(19, 5), kRedPixel);
}

TEST(ContextTest, ViewInAViewHasItsOwnOriginAndClip) {
    for (const Origin outer : {Origin::lowerLeft, Origin::upperLeft}) {
        ImageSurface surface({20, 10}, 1);
        auto context = surface.context(outer);
        const double y = outer == Origin::upperLeft ? 2 : 4;  // the same place, counted in points
        Context lower(context, {5, y, 6, 4}, Origin::lowerLeft);
        lower.fill(Rect{0, 0, 1, 1}, kRed);
        lower.fill(Rect{5, 3, 9, 9}, kBlue);
        EXPECT_EQ(surface.pixel(5, 5), kRedPixel);
        EXPECT_EQ(surface.pixel(10, 2), kBluePixel);
        EXPECT_EQ(surface.pixel(11, 2), 0u) << "outside the frame";
        EXPECT_EQ(surface.pixel(10, 1), 0u) << "outside the frame";
        Context upper(lower, {0, 0, 6, 4}, Origin::upperLeft);
        upper.fill(Rect{0, 0, 1, 1}, kGreen);
        EXPECT_EQ(surface.pixel(5, 2), kGreenPixel);
    }
}

TEST(ContextTest, GradientGoesFromTheUpperEdgeOfTheShapeToItsLower) {
    for (const Origin origin : {Origin::lowerLeft, Origin::upperLeft}) {
        ImageSurface surface({4, 40}, 2);
        auto context = surface.context(origin);
        Path path;
        path.addRect({0, 10, 4, 20});
        context.clip(Rect{0, 0, 4, 25});  // the clip has no part in it
        context.fill(path, Gradient{kRed, kBlue});
        const int top = origin == Origin::lowerLeft ? 30 : 20;  // first pixel of the clipped shape
        const int bottom = origin == Origin::lowerLeft ? 59 : 49;
        EXPECT_EQ(surface.pixel(3, top - 1), 0u);
        EXPECT_EQ(surface.pixel(3, bottom + 1), 0u);
        const int shapeTop = 20;
        for (int y = top; y <= bottom; ++y) {
            const double share = (y + 0.5 - shapeTop) / 40;
            ASSERT_NEAR(redOf(surface.pixel(3, y)), 255 * (1 - share), 2) << y;
            ASSERT_NEAR(blueOf(surface.pixel(3, y)), 255 * share, 2) << y;
        }
    }
}

TEST(ContextTest, GradientOfOneColourIsFlat) {
    ImageSurface surface({4, 4}, 1);
    Path path;
    path.addRect({0, 0, 4, 4});
    surface.context().fill(path, Gradient{kGreen, kGreen});
    for (const std::uint32_t pixel : pixelsOf(surface))
        EXPECT_EQ(pixel, kGreenPixel);
}

/// Pixels that a slice of a disc covers, partly covered ones by their share.
double coverage(const ImageSurface& surface) {
    double sum = 0;
    for (const std::uint32_t pixel : pixelsOf(surface))
        sum += alphaOf(pixel) / 255.0;
    return sum;
}

TEST(ContextTest, SliceCoversItsShareOfTheDisc) {
    for (const double degrees : {0.0, 0.5, 12.25, 90.0, 133.7, 270.0, 359.0, 360.0}) {
        ImageSurface surface({20, 20}, 2);
        Path path;
        path.addArc({10, 10}, 8, 360 - degrees + 90, 90);
        if (degrees == 360) {
            path.clear();
            path.addArc({10, 10}, 8, 90, 450);
        }
        path.lineTo({10, 10});
        surface.context().fill(path, kBlack);
        const double disc = std::numbers::pi * 16 * 16;
        EXPECT_NEAR(coverage(surface), disc * degrees / 360, disc * 0.004) << degrees;
    }
}

TEST(ContextTest, SliceGrowsClockwiseFromTheTop) {
    ImageSurface surface({20, 20}, 1);
    Path path;
    path.addArc({10, 10}, 8, 360 - 90 + 90, 90);  // a quarter
    path.lineTo({10, 10});
    surface.context(Origin::lowerLeft).fill(path, kRed);
    EXPECT_EQ(surface.pixel(13, 6), kRedPixel) << "the upper right";
    EXPECT_EQ(surface.pixel(6, 6), 0u);
    EXPECT_EQ(surface.pixel(6, 13), 0u);
    EXPECT_EQ(surface.pixel(13, 13), 0u);
}

TEST(ContextTest, StrokeIsAsWideAsAsked) {
    ImageSurface surface({10, 10}, 1);
    Path path;
    path.moveTo({0, 5.5});
    path.lineTo({10, 5.5});
    surface.context(Origin::upperLeft).stroke(path, kRed, 1);
    EXPECT_EQ(surface.pixel(5, 4), 0u);
    EXPECT_EQ(surface.pixel(5, 5), kRedPixel);
    EXPECT_EQ(surface.pixel(5, 6), 0u);
}

TEST(ContextTest, CoordinatesFarOutsideAreCutAndThoseThatAreNoneAreLeftOut) {
    ImageSurface surface({10, 10}, 1);
    auto context = surface.context();
    Path path;
    path.moveTo({0, 0});
    path.lineTo({0, 1e300});
    path.lineTo({5, 1e300});
    path.lineTo({5, 0});
    context.fill(path, kRed);
    EXPECT_EQ(surface.pixel(4, 0), kRedPixel);
    EXPECT_EQ(surface.pixel(4, 9), kRedPixel);
    EXPECT_EQ(surface.pixel(5, 5), 0u);
    for (const double nothing :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        path.clear();
        path.addRect({0, 0, 10, nothing});
        context.fill(path, kBlue);
        context.fill(Rect{nothing, 0, 10, 10}, kBlue);
        context.translate(nothing, 0);
        context.stretch(0, nothing);
    }
    context.fill(Rect{9, 0, 1, 10}, kGreen);
    EXPECT_EQ(surface.pixel(4, 5), kRedPixel);
    EXPECT_EQ(surface.pixel(9, 5), kGreenPixel) << "and all else still paints";
}

TEST(ContextTest, SecondPaintAllocatesNothing) {
    ImageSurface surface({60, 22}, 2), picture({9, 18}, 2);
    Path path;
    path.addRoundedRect({0, 0, 10, 10}, 3);
    const TextAttributes attributes{.font = {.size = 13, .tabularDigits = true},
                                    .colour = kWhite,
                                    .alignment = Alignment::centre,
                                    .shadow = Shadow{{0, -1}, kBlack}};
    const auto paint = [&] {
        auto context = surface.context();
        const StateSaver saved(context);
        context.clip(Rect{0, 0, 50, 22});
        context.fill(path, kRed);
        context.fill(path, Gradient{kRed, kBlue});
        context.stroke(path, kGreen, 1);
        context.drawImage(picture, Rect{0, 2, 30, 18}, 0.5);
        context.drawText("42%", Rect{0, 3, 40, 16}, attributes);
    };
    paint();
    const AllocationCounter allocations;
    paint();
    EXPECT_EQ(allocations.count(), 0u);
}

}  // namespace
}  // namespace vantor::Painting
