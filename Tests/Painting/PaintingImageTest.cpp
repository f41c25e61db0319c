#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Foundation/Image.h"
#include "Painting/Context.h"
#include "Painting/Image.h"
#include "Painting/ImageSurface.h"
#include "Tests/Support/AllocationCounter.h"
#include "Tests/Support/Pictures.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor::Painting {
namespace {

using namespace test;

/// A picture of 6 by 4 points; at each scale its pixels are of another kind.
class PaintingImageTest : public testing::Test {
protected:
    void write(int scale) {
        const std::string ending = scale == 1 ? "" : "@" + std::to_string(scale) + "x";
        ASSERT_TRUE(writeMosaic(folder / ("x" + ending + ".png"), 6 * scale, 4 * scale, scale));
    }
    /// The kind of file that a paint at that scale takes its pixels from.
    static int kindAt(const Image& image, double scale) {
        const Bitmap bitmap = image.viewForScale(scale).bitmap;
        return bitmap.isEmpty() ? 0 : static_cast<int>(*bitmap.pixels & 0xFF) / 60;
    }

    TemporaryFolder folder;
};

TEST_F(PaintingImageTest, ScaleBetweenTakesTheNextLargerFile) {
    write(1), write(2), write(3);
    const auto image = Image::fromFile(folder / "x.png", "x");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->size(), (Size{6, 4}));
    EXPECT_EQ(image->name(), "x");
    for (const auto& [scale, kind] :
         {std::pair{0.5, 1}, {1.0, 1}, {1.25, 2}, {2.0, 2}, {2.0000000001, 2}, {2.5, 3}, {4.0, 3}})
        EXPECT_EQ(kindAt(*image, scale), kind) << scale;
}

TEST_F(PaintingImageTest, MissingFilesAreStoodInForByTheLargest) {
    write(2);
    const auto image = Image::fromFile(folder / "x@2x.png");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->size(), (Size{6, 4}));
    for (const double scale : {1.0, 2.0, 3.0})
        EXPECT_EQ(kindAt(*image, scale), 2);
}

TEST_F(PaintingImageTest, UnreadableFileIsAsOneThatIsNotThere) {
    write(2);
    std::ofstream(folder / "x.png") << "no picture";
    const auto image = Image::fromFile(folder / "x.png");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(kindAt(*image, 1), 2);
    std::ofstream(folder / "x@2x.png") << "no picture either";
    EXPECT_EQ(Image::fromFile(folder / "x.png"), nullptr);
    EXPECT_EQ(Image::fromFile(folder / "y.png"), nullptr);
}

TEST_F(PaintingImageTest, LargerFilesAreReadWhenAPaintAsksForThem) {
    write(1), write(2);
    const auto image = Image::fromFile(folder / "x.png");
    std::filesystem::remove(folder / "x@2x.png");
    EXPECT_EQ(kindAt(*image, 2), 1) << "so it wasn't read before";
}

TEST_F(PaintingImageTest, PictureStandsUprightPixelByPixelInEitherView) {
    write(1), write(2), write(3);
    const auto image = Image::fromFile(folder / "x.png");
    for (const int scale : {1, 2, 3})
        for (const Origin origin : {Origin::lowerLeft, Origin::upperLeft}) {
            ImageSurface surface({10, 10}, scale);
            const double y = origin == Origin::lowerLeft ? 1 : 5;  // the same place
            surface.context(origin).drawImage(*image, Point{2, y});
            for (int row = 0; row < 10 * scale; ++row)
                for (int column = 0; column < 10 * scale; ++column) {
                    const int px = column - 2 * scale, py = row - 5 * scale;
                    const bool inside = px >= 0 && px < 6 * scale && py >= 0 && py < 4 * scale;
                    ASSERT_EQ(surface.pixel(column, row), inside ? mosaicPixel(px, py, scale) : 0u);
                }
        }
}

TEST_F(PaintingImageTest, PlaceBetweenPixelsIsMovedToTheNextPixel) {
    write(1);
    const auto image = Image::fromFile(folder / "x.png");
    ImageSurface between({10, 10}, 1), on({10, 10}, 1);
    between.context(Origin::upperLeft).drawImage(*image, Point{2.3, 4.5});
    on.context(Origin::upperLeft).drawImage(*image, Point{2, 5});
    EXPECT_EQ(pixelsOf(between), pixelsOf(on));
}

TEST_F(PaintingImageTest, AlphaLetsWhatIsBelowShowThrough) {
    ImageSurface picture({4, 4}, 1), surface({4, 4}, 1);
    picture.context().fill(Rect{0, 0, 4, 4}, kRed);
    auto context = surface.context();
    context.fill(Rect{0, 0, 4, 4}, kBlack);
    context.drawImage(picture, Point{0, 0}, 0.5);
    EXPECT_NEAR(static_cast<int>(surface.pixel(1, 1) >> 16 & 0xFF), 128, 1);
    EXPECT_EQ(surface.pixel(1, 1) >> 24, 0xFFu);
    context.drawImage(picture, Point{0, 0}, 0);
    EXPECT_NEAR(static_cast<int>(surface.pixel(1, 1) >> 16 & 0xFF), 128, 1);
}

TEST_F(PaintingImageTest, StretchedPictureFillsItsRectToTheEdges) {
    ImageSurface picture({1, 1}, 2), surface({20, 20}, 2);
    picture.context().fill(Rect{0, 0, 1, 1}, kRed);
    surface.context().drawImage(picture, Rect{3, 4, 10, 12});
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 40; ++x) {
            const bool inside = x >= 6 && x < 26 && y >= 8 && y < 32;
            ASSERT_EQ(surface.pixel(x, y), inside ? kRedPixel : 0u) << x << ", " << y;
        }
}

TEST_F(PaintingImageTest, CutOutShowsWhatTheSourcePaintedThereWouldShow) {
    write(1), write(2), write(3);
    const auto image = Image::fromFile(folder / "x.png");
    struct Case {
        Size size;
        Point at;
    };
    for (const auto& [size, at] :
         {Case{{2, 4}, {0, 0}}, Case{{2, 4}, {-2, 0}}, Case{{6, 1}, {0, -3}}, Case{{6, 1}, {0, 0}},
          Case{{3, 2}, {-1, -1}}, Case{{4, 4}, {-4, 2}}, Case{{9, 9}, {2, 3}},
          Case{{3, 3}, {-7, 0}}, Case{{0, 4}, {0, 0}}, Case{{-1, 4}, {0, 0}}})
        for (const int scale : {1, 2, 3})
            for (const Origin origin : {Origin::lowerLeft, Origin::upperLeft}) {
                const auto part = image->cutOut(size, at);
                ImageSurface wanted(size, scale), found(size, scale);
                wanted.context(Origin::lowerLeft).drawImage(*image, at);
                found.context(origin).drawImage(*part, Point{0, 0});
                EXPECT_EQ(pixelsOf(found), pixelsOf(wanted))
                    << size.width << " by " << size.height << ", " << at.x << ", " << at.y;
            }
}

TEST_F(PaintingImageTest, CutOutOfACutOutShowsNoMoreThanThat) {
    write(1);
    const auto image = Image::fromFile(folder / "x.png");
    const auto part = image->cutOut({3, 3}, {-1, -1})->cutOut({6, 6}, {1, 1});
    ImageSurface found({6, 6}, 1);
    found.context().drawImage(*part, Point{0, 0});
    EXPECT_EQ(found.pixel(1, 2), mosaicPixel(1, 0, 1)) << "the upper left of the inner one";
    EXPECT_EQ(found.pixel(0, 2), 0u);
    EXPECT_EQ(found.pixel(4, 2), 0u);
    EXPECT_EQ(found.pixel(1, 1), 0u);
}

TEST_F(PaintingImageTest, StretchedCutOutTakesNothingFromBesideIt) {
    ImageSurface picture({3, 1}, 1);
    {
        auto context = picture.context();
        context.fill(Rect{0, 0, 3, 1}, kBlue);
        context.fill(Rect{1, 0, 1, 1}, kRed);
    }
    ASSERT_TRUE(picture.writePNG(folder / "y.png"));
    const auto part = Image::fromFile(folder / "y.png")->cutOut({1, 1}, {-1, 0});
    ImageSurface surface({8, 2}, 1);
    surface.context().drawImage(*part, Rect{0, 0, 8, 2});
    for (const std::uint32_t pixel : pixelsOf(surface))
        EXPECT_EQ(pixel, kRedPixel);
}

TEST_F(PaintingImageTest, PixelsOfAnotherKeeperCanBePainted) {
    const auto pixels =
        std::make_shared<vantor::Image>(2, 1, 1, std::vector<std::uint32_t>{kRedPixel, kBluePixel});
    pixels->setName("icon");
    const auto image = Image::fromPixels(pixels);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->name(), "icon");
    EXPECT_EQ(image->size(), (Size{2, 1}));
    ImageSurface surface({4, 2}, 1);
    surface.context().drawImage(*image, Rect{0, 0, 4, 2});
    EXPECT_EQ(surface.pixel(0, 0), kRedPixel);
    EXPECT_EQ(surface.pixel(3, 1), kBluePixel);
    EXPECT_EQ(Image::fromPixels(nullptr), nullptr);
}

TEST_F(PaintingImageTest, RepeatedPaintAllocatesNothing) {
    write(1), write(2);
    const auto image = Image::fromFile(folder / "x.png");
    ImageSurface surface({10, 10}, 2);
    surface.context().drawImage(*image, Point{1, 1});
    const AllocationCounter allocations;
    surface.context().drawImage(*image, Rect{1, 1, 9, 9}, 0.5);
    EXPECT_EQ(allocations.count(), 0u);
}

}  // namespace
}  // namespace vantor::Painting
