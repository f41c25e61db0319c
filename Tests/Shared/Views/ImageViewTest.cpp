#include "Shared/Views/ImageView.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "Painting/Image.h"
#include "Painting/ImageSurface.h"
#include "Shared/VTRImageCache.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

class ImageViewTest : public testing::Test {
protected:
    ImageViewTest() {
        world.machine.directories.setResources(
            std::filesystem::path(VANTOR_BUNDLE_DIR).parent_path());
    }
    test::World world;
};

Painting::ImageSurface painted(View& view) {
    Painting::ImageSurface surface(view.frame().size(), 1);
    Painting::Context context = surface.context();
    view.display(context);
    return surface;
}

bool isBlank(const Painting::ImageSurface& surface) {
    for (int y = 0; y < surface.heightPixels(); ++y)
        for (int x = 0; x < surface.widthPixels(); ++x)
            if (surface.pixel(x, y) != 0)
                return false;
    return true;
}

}  // namespace

TEST_F(ImageViewTest, EveryTagHasItsDot) {
    for (std::int64_t tag = 1; tag <= 8; ++tag) {
        DotImageView dot({0, 0, 9, 10});
        dot.setTag(tag);
        dot.updateImage();
        ASSERT_NE(dot.image(), nullptr) << tag;
        EXPECT_EQ(dot.image()->size(), (Size{9, 10})) << tag;
        EXPECT_FALSE(isBlank(painted(dot))) << tag;
    }
}

TEST_F(ImageViewTest, AnUnknownTagLeavesTheImage) {
    DotImageView dot({0, 0, 9, 10});
    dot.setTag(1);
    dot.updateImage();
    const auto image = dot.image();
    for (const std::int64_t tag : {0, 9, -1}) {
        dot.setTag(tag);
        dot.updateImage();
        EXPECT_EQ(dot.image(), image);
    }
}

TEST_F(ImageViewTest, AMissingImageLeavesADotEmpty) {
    world.machine.directories.setResources("/nonexistent");
    ProcessContext other(world.machine.ports());
    DotImageView dot({0, 0, 9, 10});
    dot.setTag(1);
    dot.updateImage();
    EXPECT_EQ(dot.image(), nullptr);
    EXPECT_TRUE(isBlank(painted(dot)));
    TickView tick({0, 0, 12, 12});
    tick.setState(1);
    EXPECT_TRUE(isBlank(painted(tick)));
    DotView plain({0, 0, 11, 11});
    EXPECT_FALSE(isBlank(painted(plain))) << "it has its colour all the same";
}

TEST_F(ImageViewTest, ATickShowsInStateOneOnly) {
    TickView tick({0, 0, 12, 12});
    for (const std::int64_t state : {0, -1, 2}) {
        tick.setState(state);
        EXPECT_TRUE(isBlank(painted(tick))) << state;
    }
    tick.setState(1);
    EXPECT_FALSE(isBlank(painted(tick)));
}

TEST_F(ImageViewTest, AHighlightedTickIsWhite) {
    TickView tick({0, 0, 12, 12});
    tick.setState(1);
    tick.setHighlighted(true);
    const auto picture = painted(tick);
    std::uint32_t brightest = 0;
    for (int y = 0; y < 12; ++y)
        for (int x = 0; x < 12; ++x)
            brightest = std::max(brightest, picture.pixel(x, y));
    EXPECT_GT(brightest & 0xFF, 0xE0u);
}

TEST_F(ImageViewTest, ADotHasItsColourInTheMiddle) {
    DotView dot({0, 0, 11, 11});
    dot.setColor({1, 0, 0, 1});
    const auto picture = painted(dot);
    EXPECT_GT(picture.pixel(5, 6) >> 16 & 0xFF, 0xE0u);
    EXPECT_EQ(picture.pixel(0, 0), 0u);
}

TEST_F(ImageViewTest, APictureIsMadeSmallerWhereItHasNoRoom) {
    ImageView view({0, 0, 5, 5});
    view.setImage(VTRImageNamed("stats-launcher-1"));
    EXPECT_FALSE(isBlank(painted(view)));
}

TEST_F(ImageViewTest, TheArtworkOfTheDropdownIsAllThere) {
    for (const char* const name :
         {"stats-historygrapharea-69", "stats-historygrapharea-49", "stats-bararea-16",
          "stats-bar-blue", "stats-tick", "stats-tick-white", "stats-launcher-1",
          "stats-launcher-2", "stats-launcher-3", "stats-launcher-4", "stats-launcher-5",
          "stats-launcher-6", "stats-launcher-7", "stats-launcher-8", "stats-launcher-9",
          "menubar-diskactivity-dots-overlay.tiff"})
        EXPECT_NE(VTRImageNamed(name), nullptr) << name;
    EXPECT_EQ(VTRImageNamed("stats-historygrapharea-69")->size().height, 70);
    EXPECT_EQ(VTRImageNamed("stats-historygrapharea-49")->size().height, 50);
    EXPECT_EQ(VTRImageNamed("stats-bararea-16")->size().height, 17);
    EXPECT_EQ(VTRImageNamed("stats-launcher-1")->size(), (Size{20, 20}));
}

}  // namespace vantor
