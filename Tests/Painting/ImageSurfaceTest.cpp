#include "Painting/ImageSurface.h"

#include <limits>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Foundation/Image.h"
#include "Tests/Support/Pictures.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor::Painting {
namespace {

using namespace test;

TEST(ImageSurfaceTest, HasItsSizeTimesTheScaleRoundedUp) {
    for (const auto& [width, scale, pixels] :
         {std::tuple{10.0, 1.0, 10}, {10.0, 2.0, 20}, {10.2, 1.0, 11}, {10.0, 1.5, 15}}) {
        const ImageSurface surface({width, 4}, scale);
        EXPECT_EQ(surface.widthPixels(), pixels);
        EXPECT_EQ(surface.size(), (Size{width, 4}));
    }
}

TEST(ImageSurfaceTest, IsTransparentAtFirstAndWhenCleared) {
    ImageSurface surface({4, 4}, 2);
    const std::vector<std::uint32_t> nothing(64, 0);
    EXPECT_EQ(pixelsOf(surface), nothing);
    surface.context().fill(Rect{0, 0, 4, 4}, kRed);
    EXPECT_NE(pixelsOf(surface), nothing);
    surface.clear();
    EXPECT_EQ(pixelsOf(surface), nothing);
    surface.context().fill(Rect{0, 0, 1, 1}, kRed);
    EXPECT_EQ(surface.pixel(0, 7), kRedPixel);
}

TEST(ImageSurfaceTest, PixelsOutsideAreNothing) {
    ImageSurface surface({2, 2}, 1);
    surface.context().fill(Rect{0, 0, 2, 2}, kRed);
    for (const auto& [x, y] : {std::pair{-1, 0}, {2, 0}, {0, -1}, {0, 2}})
        EXPECT_EQ(surface.pixel(x, y), 0u);
    EXPECT_TRUE(surface.row(2).empty());
}

TEST(ImageSurfaceTest, OneThatCannotBeHadTakesAllPaintingQuietly) {
    const test::TemporaryFolder folder;
    const double none = std::numeric_limits<double>::quiet_NaN();
    for (const Size size : {Size{0, 5}, Size{-1, 5}, Size{20'000, 5}, Size{none, 5}}) {
        ImageSurface surface(size, 1), other({5, 5}, 1);
        auto context = surface.context();
        context.fill(Rect{0, 0, 5, 5}, kRed);
        context.drawText("8", Rect{0, 0, 5, 5}, {});
        other.context().drawImage(surface, Point{0, 0});
        EXPECT_EQ(surface.widthPixels(), 0);
        EXPECT_EQ(surface.pixel(0, 0), 0u);
        EXPECT_FALSE(surface.writePNG(folder / "nowhere.png"));
        EXPECT_FALSE(std::filesystem::exists(folder / "nowhere.png"));
        EXPECT_EQ(other.pixel(2, 2), 0u);
    }
}

TEST(ImageSurfaceTest, MovedOneKeepsItsPixelsAndPaintsOn) {
    ImageSurface surface({4, 4}, 1);
    surface.context().fill(Rect{0, 0, 1, 4}, kRed);
    ImageSurface other({1, 1}, 1);
    other = std::move(surface);
    other.context().fill(Rect{1, 0, 1, 4}, kBlue);
    EXPECT_EQ(other.pixel(0, 0), kRedPixel);
    EXPECT_EQ(other.pixel(1, 0), kBluePixel);
}

TEST(ImageSurfaceTest, WrittenPictureReadsBackTheSame) {
    const TemporaryFolder folder;
    ImageSurface surface({3, 2}, 1);
    surface.context().fill(Rect{0, 0, 1, 1}, kRed);
    surface.context().fill(Rect{2, 1, 1, 1}, Colour{0, 0, 1, 0.5});
    ASSERT_TRUE(surface.writePNG(folder / "x.png"));
    const auto image = vantor::Image::fromFile(folder / "x.png");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(std::vector<std::uint32_t>(image->pixels().begin(), image->pixels().end()),
              pixelsOf(surface));
    EXPECT_FALSE(surface.writePNG(folder / "missing" / "x.png"));
}

TEST(ImageSurfaceTest, PictureScrollsWithinItselfByWayOfAnother) {
    ImageSurface before({10, 4}, 2), after({10, 4}, 2);
    before.context().fill(Rect{5, 0, 1, 4}, kRed);
    after.context().drawImage(before, Point{-2, 0});
    EXPECT_EQ(after.pixel(6, 0), kRedPixel);
    EXPECT_EQ(after.pixel(7, 7), kRedPixel);
    EXPECT_EQ(after.pixel(8, 0), 0u);
    EXPECT_EQ(after.pixel(5, 0), 0u);
}

}  // namespace
}  // namespace vantor::Painting
