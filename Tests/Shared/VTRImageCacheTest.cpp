#include "Shared/VTRImageCache.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Painting/Context.h"
#include "Painting/Image.h"
#include "Painting/ImageSurface.h"
#include "Platform/Simulated/SimulatedMachine.h"
#include "Shared/ProcessContext.h"
#include "Tests/Support/AllocationCounter.h"
#include "Tests/Support/Pictures.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

using namespace test;
using Painting::ImageSurface;
using Painting::Origin;

/// One part as it should be: its size, and where the source is painted in it.
struct Part {
    Size size;
    Point source;
};

class VTRImageCacheTest : public testing::Test {
protected:
    VTRImageCacheTest() { machine.directories.setResources(folder.path()); }

    /// At 1x and 2x, in pixels of which no two are alike.
    void writeImage(const std::string& name, int width, int height) {
        ASSERT_TRUE(writeMosaic(inBundle(name + ".png"), width, height, 1));
        ASSERT_TRUE(writeMosaic(inBundle(name + "@2x.png"), width * 2, height * 2, 2));
    }
    std::filesystem::path inBundle(const std::string& name) const {
        return folder / "VantorBar.bundle" / name;
    }
    VTRImageCache& cache() { return VTRImageCache::sharedCache(); }

    /// Whether the parts are what the source leaves in pictures of those sizes, at any scale.
    static void expectParts(const VTRImageCacheItem& item, const Painting::Image& source,
                            const std::vector<Part>& wanted) {
        const auto& parts = item.data().parts;
        ASSERT_EQ(parts.size(), wanted.size());
        for (std::size_t index = 0; index < parts.size(); ++index) {
            SCOPED_TRACE(index);
            EXPECT_EQ(parts[index]->size(), wanted[index].size);
            for (const int scale : {1, 2}) {
                ImageSurface painted(wanted[index].size, scale), part(wanted[index].size, scale);
                painted.context().drawImage(source, wanted[index].source);
                part.context().drawImage(*parts[index], Point{0, 0});
                EXPECT_EQ(pixelsOf(part), pixelsOf(painted)) << "at " << scale;
            }
        }
    }

    TemporaryFolder folder;
    simulated::SimulatedMachine machine;
    ProcessContext context{machine.ports()};
};

TEST_F(VTRImageCacheTest, OneCacheAContext) {
    VTRImageCache* const first = &VTRImageCache::sharedCache();
    EXPECT_EQ(&VTRImageCache::sharedCache(), first);
    const ProcessContext other(machine.ports());
    EXPECT_NE(&VTRImageCache::sharedCache(), first);
}

TEST_F(VTRImageCacheTest, ImageIsLoadedOnceAndNamedWithoutItsExtension) {
    writeImage("x", 6, 4);
    const auto image = VTRImageNamed("x.png");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->name(), "x");
    EXPECT_EQ(image->size(), (Size{6, 4}));
    std::filesystem::remove(inBundle("x.png"));
    EXPECT_EQ(cache().imageNamed("x.png"), image);
    EXPECT_EQ(cache().cache().size(), 1u);
}

TEST_F(VTRImageCacheTest, NameMayLackItsExtension) {
    writeImage("menubar-label-cpu", 12, 18);
    const auto image = VTRImageNamed("menubar-label-cpu");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->name(), "menubar-label-cpu");
}

TEST_F(VTRImageCacheTest, ImageThatExistsAtOneScaleOnlyIsFound) {
    ASSERT_TRUE(writeMosaic(inBundle("x@2x.png"), 12, 8, 2));
    const auto image = VTRImageNamed("x.png");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->size(), (Size{6, 4}));
    EXPECT_EQ(image->name(), "x");
}

TEST_F(VTRImageCacheTest, MissingImageIsNothingAndIsLookedForAgain) {
    std::filesystem::create_directories(inBundle(""));
    EXPECT_EQ(VTRImageNamed(""), nullptr);
    EXPECT_EQ(VTRImageNamed("x"), nullptr);
    EXPECT_EQ(cache().imageWithLeftCap("x", 4), nullptr);
    EXPECT_TRUE(cache().cache().empty());
    writeImage("x", 9, 18);
    EXPECT_NE(VTRImageNamed("x"), nullptr);
    EXPECT_NE(cache().imageWithLeftCap("x", 4), nullptr);
}

TEST_F(VTRImageCacheTest, WithoutPreferencesThereAreNoImages) {
    writeImage("x", 6, 4);
    context.cleanupPreferences();
    EXPECT_EQ(VTRImageNamed("x"), nullptr);
}

TEST_F(VTRImageCacheTest, EachCapHasAnEntryOfItsOwn) {
    writeImage("x", 20, 10);
    const auto four = cache().imageWithLeftCap("x", 4), five = cache().imageWithLeftCap("x", 5);
    EXPECT_NE(four, five);
    EXPECT_EQ(cache().imageWithLeftCap("x", 4), four);
    EXPECT_EQ(cache().imageWithTopCap("x", 3)->data().vertical, true);
    cache().image("x", 3, 2);
    cache().image("x", EdgeInsets{.top = 1, .left = 2, .bottom = 3, .right = 4});
    std::vector<std::string> keys;
    for (const auto& [key, entry] : cache().cache())
        keys.push_back(key);
    EXPECT_EQ(keys, (std::vector<std::string>{"x - 0, 0, 3, 0", "x - 0, 0, 3, 2", "x - 2, 4, 1, 3",
                                              "x - 4, 4, 0, 0", "x - 5, 5, 0, 0"}));
}

// --- From left to right ------------------------------------------------------------------------

TEST_F(VTRImageCacheTest, LeftCapOfHalfTheWidthLeavesOnePoint) {
    writeImage("x", 9, 18);
    const auto item = cache().imageWithLeftCap("x", 4);
    ASSERT_NE(item, nullptr);
    EXPECT_FALSE(item->data().vertical);
    expectParts(*item, *VTRImageNamed("x"),
                {{{4, 18}, {0, 0}}, {{1, 18}, {-4, 0}}, {{4, 18}, {-5, 0}}});
}

TEST_F(VTRImageCacheTest, LeftCapThatIsTooWideLeavesTheRightOneWhatRemains) {
    writeImage("x", 60, 10);
    expectParts(*cache().imageWithLeftCap("x", 45), *VTRImageNamed("x"),
                {{{45, 10}, {0, 0}}, {{1, 10}, {-14, 0}}, {{14, 10}, {-15, 0}}});
}

TEST_F(VTRImageCacheTest, UnequalCapsTakeTheirCentreAndRightFromTheOtherOnesPlace) {
    writeImage("x", 20, 10);
    expectParts(*cache().image("x", EdgeInsets{.left = 3, .right = 6}), *VTRImageNamed("x"),
                {{{3, 10}, {0, 0}}, {{11, 10}, {-6, 0}}, {{6, 10}, {-17, 0}}});
}

TEST_F(VTRImageCacheTest, MissingRightCapIsAsWideAsTheLeft) {
    writeImage("x", 20, 10);
    expectParts(*cache().image("x", EdgeInsets{.left = 3, .bottom = 7}), *VTRImageNamed("x"),
                {{{3, 10}, {0, 0}}, {{14, 10}, {-3, 0}}, {{3, 10}, {-17, 0}}});
}

// --- From the top down -------------------------------------------------------------------------

TEST_F(VTRImageCacheTest, TopCapAloneLeavesOnePointOverTheRest) {
    writeImage("x", 10, 20);
    const auto item = cache().imageWithTopCap("x", 4);
    EXPECT_TRUE(item->data().vertical);
    expectParts(*item, *VTRImageNamed("x"),
                {{{10, 4}, {0, -16}}, {{10, 1}, {0, -15}}, {{10, 15}, {0, 0}}});
}

TEST_F(VTRImageCacheTest, TopAndBottomCapsAreTakenAsGiven) {
    writeImage("x", 10, 20);
    expectParts(*cache().image("x", 4, 6), *VTRImageNamed("x"),
                {{{10, 4}, {0, -16}}, {{10, 10}, {0, -6}}, {{10, 6}, {0, 0}}});
}

TEST_F(VTRImageCacheTest, BottomCapThatIsTooHighGetsWhatRemains) {
    writeImage("x", 10, 20);
    expectParts(*cache().image("x", 12, 12), *VTRImageNamed("x"),
                {{{10, 12}, {0, -8}}, {{10, 1}, {0, -7}}, {{10, 7}, {0, 0}}});
}

// --- Nine parts, and none ----------------------------------------------------------------------

TEST_F(VTRImageCacheTest, NinePartsHaveCornersOfTheUpperLeftOnesSize) {
    writeImage("x", 20, 16);
    const auto item = cache().image("x", EdgeInsets{.top = 3, .left = 4, .bottom = 5, .right = 6});
    EXPECT_FALSE(item->data().vertical);
    expectParts(*item, *VTRImageNamed("x"),
                {{{4, 3}, {0, -13}},
                 {{10, 3}, {-4, -13}},
                 {{4, 3}, {-16, -13}},
                 {{4, 8}, {0, -3}},
                 {{10, 8}, {-4, -3}},
                 {{4, 8}, {-16, -3}},
                 {{4, 3}, {0, 0}},
                 {{10, 3}, {-4, 0}},
                 {{4, 3}, {-16, 0}}});
}

TEST_F(VTRImageCacheTest, NinePartsWithoutRightAndBottomHaveACentreOfOnePoint) {
    writeImage("x", 20, 16);
    for (const EdgeInsets& inset : {EdgeInsets{.top = 3, .left = 4},
                                    EdgeInsets{.top = 3, .left = 4, .bottom = 99, .right = 99}})
        expectParts(*cache().image("x", inset), *VTRImageNamed("x"),
                    {{{4, 3}, {0, -13}},
                     {{1, 3}, {-4, -13}},
                     {{4, 3}, {-16, -13}},
                     {{4, 1}, {0, -3}},
                     {{1, 1}, {-4, -3}},
                     {{4, 1}, {-16, -3}},
                     {{4, 3}, {0, 0}},
                     {{1, 3}, {-4, 0}},
                     {{4, 3}, {-16, 0}}});
}

TEST_F(VTRImageCacheTest, OtherInsetsHaveNoPartsAndPaintNothing) {
    writeImage("x", 20, 16);
    for (const EdgeInsets& inset :
         {EdgeInsets{}, EdgeInsets{.bottom = 3, .right = 3}, EdgeInsets{.top = -1, .left = 4}}) {
        const auto item = cache().image("x", inset);
        ASSERT_NE(item, nullptr);
        EXPECT_TRUE(item->data().parts.empty());
        ImageSurface surface({20, 16}, 1);
        auto painting = surface.context();
        item->drawInRect(painting, {0, 0, 20, 16});
        EXPECT_EQ(pixelsOf(surface), std::vector<std::uint32_t>(20 * 16, 0));
    }
}

// --- Painting ----------------------------------------------------------------------------------

/// The pixels of a wide picture whose left cap, centre column and right cap are those of the tile.
TEST_F(VTRImageCacheTest, ThreePartsKeepTheirCapsAndStretchTheCentre) {
    writeImage("x", 9, 18);
    const auto item = cache().imageWithLeftCap("x", 4);
    for (const Origin origin : {Origin::lowerLeft, Origin::upperLeft}) {
        ImageSurface surface({40, 22}, 1);
        auto painting = surface.context(origin);
        item->drawInRect(painting, {5, 2, 30, 18});
        for (int x = 0; x < 40; ++x)
            for (int y = 0; y < 22; ++y) {
                const bool inside = x >= 5 && x < 35 && y >= 2 && y < 20;
                const int column = x < 9 ? x - 5 : x < 31 ? 4 : x - 35 + 9;
                ASSERT_EQ(surface.pixel(x, y), inside ? mosaicPixel(column, y - 2, 1) : 0u)
                    << x << ", " << y;
            }
    }
}

TEST_F(VTRImageCacheTest, VerticalPartsStandFromTheTopDownInEitherView) {
    writeImage("x", 5, 9);
    const auto item = cache().image("x", 4, 4);
    for (const Origin origin : {Origin::lowerLeft, Origin::upperLeft}) {
        ImageSurface surface({5, 30}, 1);
        auto painting = surface.context(origin);
        item->drawInRect(painting, {0, 0, 5, 30});
        for (int y = 0; y < 30; ++y) {
            const int row = y < 4 ? y : y < 26 ? 4 : y - 30 + 9;
            ASSERT_EQ(surface.pixel(2, y), mosaicPixel(2, row, 1)) << y;
        }
    }
}

TEST_F(VTRImageCacheTest, NinePartsKeepTheirCornersAndStretchTheRest) {
    writeImage("x", 9, 9);
    const auto item = cache().image("x", EdgeInsets{4, 4, 4, 4});
    for (const Origin origin : {Origin::lowerLeft, Origin::upperLeft}) {
        ImageSurface surface({20, 30}, 1);
        auto painting = surface.context(origin);
        item->drawInRect(painting, {0, 0, 20, 30});
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 20; ++x) {
                const int column = x < 4 ? x : x < 16 ? 4 : x - 20 + 9;
                const int row = y < 4 ? y : y < 26 ? 4 : y - 30 + 9;
                ASSERT_EQ(surface.pixel(x, y), mosaicPixel(column, row, 1)) << x << ", " << y;
            }
    }
}

TEST_F(VTRImageCacheTest, PartsMeetWithoutSeamsAtAnyScale) {
    ASSERT_TRUE(writeMosaic(inBundle("x.png"), 9, 9, 1));
    const auto item = cache().image("x", EdgeInsets{4, 4, 4, 4});
    for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0}) {
        ImageSurface surface({40, 30}, scale);
        {
            auto painting = surface.context();
            item->drawInRect(painting, {1, 1, 37.3, 27.7});
        }
        const int inset = static_cast<int>(2 * scale) + 1;
        for (int y = inset; y < surface.heightPixels() - inset; ++y)
            for (int x = inset; x < surface.widthPixels() - inset; ++x)
                ASSERT_EQ(surface.pixel(x, y) >> 24, 0xFFu) << x << ", " << y << " at " << scale;
    }
}

TEST_F(VTRImageCacheTest, CapsWithoutRoomAreCutOffOnTheirInnerSides) {
    writeImage("x", 9, 2);
    const auto item = cache().imageWithLeftCap("x", 4);
    ImageSurface surface({10, 2}, 1);
    auto painting = surface.context();
    item->drawInRect(painting, {0, 0, 4, 2});
    const std::vector<int> columns{0, 1, 7, 8};
    for (int x = 0; x < 4; ++x)
        EXPECT_EQ(surface.pixel(x, 0), mosaicPixel(columns[static_cast<std::size_t>(x)], 0, 1));
    EXPECT_EQ(surface.pixel(4, 0), 0u);
    item->drawInRect(painting, {0, 0, 0, 2});
    item->drawInRect(painting, {6, 0, -4, 2});
    EXPECT_EQ(surface.pixel(5, 0), 0u);
}

TEST_F(VTRImageCacheTest, AlphaIsThatOfAllParts) {
    writeImage("x", 9, 2);
    ImageSurface surface({30, 2}, 1);
    auto painting = surface.context();
    cache().imageWithLeftCap("x", 4)->drawInRect(painting, {0, 0, 30, 2}, 0.5);
    for (const std::uint32_t pixel : pixelsOf(surface))
        EXPECT_NEAR(static_cast<int>(pixel >> 24), 128, 1);
}

TEST_F(VTRImageCacheTest, RepeatedPaintAllocatesNothing) {
    writeImage("menubar-graph-darkmode-black", 9, 18);
    ImageSurface surface({30, 22}, 2);
    auto painting = surface.context();
    const auto paint = [&] {
        cache()
            .imageWithLeftCap("menubar-graph-darkmode-black", 4)
            ->drawInRect(painting, {0, 2, 30, 18}, 0.5);
        painting.drawImage(*VTRImageNamed("menubar-graph-darkmode-black"), Point{0, 2});
    };
    paint();
    const AllocationCounter allocations;
    paint();
    EXPECT_EQ(allocations.count(), 0u);
}

TEST_F(VTRImageCacheTest, CapsWithoutRoomMeetBetweenTwoPixels) {
    writeImage("x", 9, 2);
    ImageSurface surface({7, 2}, 1);
    auto painting = surface.context();
    cache().imageWithLeftCap("x", 4)->drawInRect(painting, {0, 0, 7, 2});
    const std::vector<int> columns{0, 1, 2, 3, 6, 7, 8};
    for (int x = 0; x < 7; ++x)
        EXPECT_EQ(surface.pixel(x, 0), mosaicPixel(columns[static_cast<std::size_t>(x)], 0, 1)) << x;
}

}  // namespace
}  // namespace vantor
