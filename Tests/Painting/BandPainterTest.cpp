#include "Painting/BandPainter.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "Painting/Context.h"
#include "Painting/ImageSurface.h"
#include "Painting/Path.h"
#include "Tests/Support/AllocationCounter.h"

namespace vantor::Painting {
namespace {

constexpr Size kSize{60, 40};
constexpr Rect kAll{0, 0, 60, 40};
constexpr Colour kInk{0.2, 0.6, 0.9, 1};

// A path is sampled in 15 rows a pixel where it isn't upright and level: a sample more or less is
// 17 of 255.
constexpr int kSampled = 17;

int difference(const ImageSurface& one, const ImageSurface& other) {
    int greatest = 0;
    for (int y = 0; y < one.heightPixels(); ++y)
        for (int x = 0; x < one.widthPixels(); ++x)
            for (int shift = 0; shift < 32; shift += 8) {
                const auto part = [&](const ImageSurface& surface) {
                    return static_cast<int>(surface.pixel(x, y) >> shift & 0xFF);
                };
                greatest = std::max(greatest, std::abs(part(one) - part(other)));
            }
    return greatest;
}

/// A point of some height at each whole x.
std::vector<Point> jagged(std::mt19937& random) {
    std::uniform_real_distribution<double> height(1, 39);
    std::vector<Point> line;
    for (int x = 2; x <= 58; ++x)
        line.push_back({static_cast<double>(x), random() % 3 == 0 ? height(random) : 20});
    return line;
}

Path pathOf(const std::vector<Point>& line) {
    Path path;
    for (const Point& point : line)
        path.lineTo(point);
    return path;
}

unsigned alphaOf(const ImageSurface& surface, int x, int y) { return surface.pixel(x, y) >> 24; }

TEST(BandPainterTest, APixelIsCoveredByItsShare) {
    ImageSurface surface({4, 4}, 1);
    const Point slope[]{{0, 2}, {4, 0}}, base[]{{0, 3}, {4, 3}};
    BandPainter().fillBetween(surface, {0, 0, 4, 4}, slope, base, kBlack);
    EXPECT_EQ(alphaOf(surface, 0, 1), 64u);
    EXPECT_EQ(alphaOf(surface, 1, 1), 191u);
    EXPECT_EQ(alphaOf(surface, 2, 0), 64u);
    EXPECT_EQ(alphaOf(surface, 3, 0), 191u);
    for (int x = 0; x < 4; ++x) {
        EXPECT_EQ(alphaOf(surface, x, 2), 255u);
        EXPECT_EQ(alphaOf(surface, x, 3), 0u);
    }
}

TEST(BandPainterTest, AStepIsUpright) {
    ImageSurface surface({4, 4}, 1);
    const Point step[]{{0, 3}, {2, 3}, {2, 1}, {4, 1}}, base[]{{0, 4}, {4, 4}};
    BandPainter().fillBetween(surface, {0, 0, 4, 4}, step, base, kBlack);
    EXPECT_EQ(alphaOf(surface, 1, 2), 0u);
    EXPECT_EQ(alphaOf(surface, 2, 1), 255u);
    EXPECT_EQ(alphaOf(surface, 2, 0), 0u);
}

TEST(BandPainterTest, WhichLineIsAboveDoesNotMatter) {
    std::mt19937 random(3);
    const auto line = jagged(random);
    const Point base[]{{2, 40}, {58, 40}};
    ImageSurface one(kSize, 1), other(kSize, 1);
    BandPainter().fillBetween(one, kAll, line, base, kInk);
    BandPainter().fillBetween(other, kAll, base, line, kInk);
    EXPECT_EQ(difference(one, other), 0);
}

TEST(BandPainterTest, AnAreaIsThatOfThePathAroundIt) {
    std::mt19937 random(5);
    for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
        const auto line = jagged(random);
        const Point base[]{{2, 38}, {58, 38}};
        ImageSurface bands(kSize, scale), paths(kSize, scale);
        BandPainter().fillBetween(bands, kAll, line, base, kInk);
        Path path = pathOf(line);
        path.lineTo(base[1]);
        path.lineTo(base[0]);
        path.close();
        paths.context(Origin::upperLeft).fill(path, kInk);
        EXPECT_LE(difference(bands, paths), kSampled) << scale;
    }
}

TEST(BandPainterTest, AStrokeIsThatOfThePath) {
    std::mt19937 random(7);
    for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
        const auto line = jagged(random);
        ImageSurface bands(kSize, scale), paths(kSize, scale);
        BandPainter().stroke(bands, kAll, line, 1, kInk);
        paths.context(Origin::upperLeft).stroke(pathOf(line), kInk, 1);
        EXPECT_LE(difference(bands, paths), kSampled) << scale;
    }
}

TEST(BandPainterTest, APartIsExactlyThatOfTheWhole) {
    std::mt19937 random(11);
    const auto line = jagged(random);
    ImageSurface whole(kSize, 2), parts(kSize, 2);
    BandPainter painter;
    painter.stroke(whole, kAll, line, 1, kInk);
    const std::vector<Point> older(line.begin(), line.begin() + 32),
        newer(line.begin() + 28, line.end());  // two columns around the seam in both
    painter.stroke(parts, {0, 0, 32, 40}, older, 1, kInk);
    painter.stroke(parts, {32, 0, 28, 40}, newer, 1, kInk);
    EXPECT_EQ(difference(whole, parts), 0);
}

TEST(BandPainterTest, NothingIsPaintedOutsideTheClip) {
    const Point line[]{{0, 0}, {60, 0}}, base[]{{0, 40}, {60, 40}};
    ImageSurface surface(kSize, 1);
    BandPainter().fillBetween(surface, {10, 5.5, 20, 10}, line, base, kBlack);
    EXPECT_EQ(alphaOf(surface, 9, 8), 0u);
    EXPECT_EQ(alphaOf(surface, 10, 8), 255u);
    EXPECT_EQ(alphaOf(surface, 30, 8), 0u);
    EXPECT_EQ(alphaOf(surface, 10, 5), 128u);
    EXPECT_EQ(alphaOf(surface, 10, 16), 0u);
}

TEST(BandPainterTest, AnAlphaLetsTheGroundShine) {
    const Point line[]{{0, 0}, {60, 0}}, base[]{{0, 40}, {60, 40}};
    ImageSurface bands(kSize, 1), paths(kSize, 1);
    for (ImageSurface* const surface : {&bands, &paths})
        surface->context().fill(kAll, Colour{0.9, 0.1, 0.3, 1});
    BandPainter().fillBetween(bands, kAll, line, base, {0.2, 0.6, 0.9, 0.4});
    paths.context().fill(kAll, {0.2, 0.6, 0.9, 0.4});
    EXPECT_LE(difference(bands, paths), 1);
}

TEST(BandPainterTest, WhatIsNoLineOrHasNoPlacePaintsNothing) {
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinite = std::numeric_limits<double>::infinity();
    const std::vector<Point> base{{0, 40}, {60, 40}};
    const std::vector<std::vector<Point>> lines{
        {}, {{1, 1}}, {{0, kNaN}, {60, 1}}, {{0, 1}, {kInfinite, 1}}, {{5, 1}, {5, 9}}};
    ImageSurface surface(kSize, 1), none({0, 40}, 1);
    const ImageSurface untouched(kSize, 1);
    BandPainter painter;
    for (const auto& line : lines) {
        painter.fillBetween(surface, kAll, line, base, kInk);
        painter.fillBetween(none, kAll, line, base, kInk);
    }
    painter.fillBetween(surface, {0, 0, kNaN, 40}, base, lines[3], kInk);
    painter.stroke(surface, kAll, lines[0], 1, kInk);
    painter.stroke(surface, kAll, lines[1], 1, kInk);
    EXPECT_EQ(difference(surface, untouched), 0);
}

TEST(BandPainterTest, OneThatIsKeptAllocatesNothing) {
    std::mt19937 random(13);
    const auto line = jagged(random);
    ImageSurface surface(kSize, 2);
    BandPainter painter;
    painter.stroke(surface, kAll, line, 1, kInk);
    const test::AllocationCounter allocations;
    painter.stroke(surface, kAll, line, 1, kInk);
    EXPECT_EQ(allocations.count(), 0u);
}

}  // namespace
}  // namespace vantor::Painting
