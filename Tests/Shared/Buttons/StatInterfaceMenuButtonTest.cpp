#include "Shared/Buttons/StatInterfaceMenuButton.h"

#include <gtest/gtest.h>

#include "Painting/ImageSurface.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

class StatInterfaceMenuButtonTest : public testing::Test {
protected:
    StatInterfaceMenuButtonTest() {
        button.setAction([this](StatInterfaceMenuButton& sender) {
            ++pressed;
            sentBy = &sender;
        });
    }
    std::uint32_t brightest() {
        Painting::ImageSurface surface({100, 15}, 1);
        Painting::Context context = surface.context(Painting::Origin::upperLeft);
        button.display(context);
        std::uint32_t result = 0;
        for (int y = 0; y < 15; ++y)
            for (int x = 0; x < 100; ++x)
                result = std::max(result, surface.pixel(x, y));
        return result;
    }

    test::World world;
    StatInterfaceMenuButton button{Rect{0, 0, 100, 15}};
    int pressed = 0;
    StatInterfaceMenuButton* sentBy = nullptr;
};

}  // namespace

TEST_F(StatInterfaceMenuButtonTest, AReleaseWithoutAPressOnItFiresNothing) {
    button.mouseUp(7);
    EXPECT_EQ(pressed, 0);
    button.mouseDown(7);
    button.mouseUp(8);
    EXPECT_EQ(pressed, 0);
}

TEST_F(StatInterfaceMenuButtonTest, APressAndItsReleaseFireOnce) {
    button.mouseDown(7);
    EXPECT_EQ(pressed, 0);
    button.mouseUp(7);
    EXPECT_EQ(pressed, 1);
    EXPECT_EQ(sentBy, &button);
}

TEST_F(StatInterfaceMenuButtonTest, WithoutActionAPressIsHarmless) {
    button.setAction({});
    button.mouseDown(1);
    button.mouseUp(1);
    EXPECT_EQ(pressed, 0);
}

TEST_F(StatInterfaceMenuButtonTest, AHighlightTurnsTheTitleWhiteWhereThereIsAnAction) {
    button.setTitle("MMMM");
    const std::uint32_t plain = brightest();
    button.setMenuItemHighlighted(true);
    EXPECT_EQ(brightest(), 0xFFFFFFFFu);
    button.setAction({});
    EXPECT_EQ(brightest(), plain);
}

}  // namespace vantor
