#include "Shared/VTRMenuItemButtonBuilders.h"

#include <gtest/gtest.h>

#include "Shared/Buttons/StatInterfaceButton.h"
#include "Shared/Textfields/StatInterfaceTextField.h"
#include "Shared/Views/ImageView.h"
#include "Shared/Views/StatInterfaceView.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

class VTRMenuItemButtonBuildersTest : public testing::Test {
protected:
    StatInterfaceMenuButton::Action counting() {
        return [this](StatInterfaceMenuButton&) { ++pressed; };
    }

    test::World world;
    int pressed = 0;
};

std::vector<const StatInterfaceButton*> launchersOf(const VTRMenuItem& item) {
    std::vector<const StatInterfaceButton*> buttons;
    for (const auto& view : item.view()->subviews())
        if (const auto* const button = dynamic_cast<const StatInterfaceButton*>(view.get()))
            buttons.push_back(button);
    return buttons;
}

}  // namespace

TEST_F(VTRMenuItemButtonBuildersTest, AButtonsRowCanBeChosenAndDoesNothingItself) {
    const auto item = createButtonMenuItem("Open", counting(), 225, 15, true);
    ASSERT_NE(item->action, nullptr);
    item->action(*item);
    EXPECT_EQ(pressed, 0);

    item->button->mouseDown(1);
    item->button->mouseUp(1);
    EXPECT_EQ(pressed, 1);
    EXPECT_TRUE(item->button->bold());
    EXPECT_EQ(item->button->title(), "Open");
}

TEST_F(VTRMenuItemButtonBuildersTest, TheHighlightOfATextRowRunsIntoItsNeighbours) {
    for (const int height : {15, 19}) {
        const auto button = createButtonMenuItem("Open", counting(), 225, height, false);
        const auto combo = createComboButtonMenuItem("a", "b", 225, height, false, counting());
        const auto tick = createTickButtonMenuItem("Open", counting(), 225, height, false);
        EXPECT_EQ(button->useCustomHighlight, height == 15);
        EXPECT_EQ(combo->useCustomHighlight, height == 15);
        EXPECT_FALSE(tick->useCustomHighlight);
    }
}

TEST_F(VTRMenuItemButtonBuildersTest, AComboButtonCarriesItsValueAndNoTitle) {
    const auto item = createComboButtonMenuItem("Address", "10.0.0.1", 225, 15, false, counting());
    EXPECT_EQ(item->button->title(), "");
    EXPECT_EQ(item->button->representedObject().stringValue(), "10.0.0.1");
    EXPECT_EQ(item->label->stringValue(), "Address");
    EXPECT_EQ(item->view()->subviews().back(), item->button) << "it takes the clicks";
}

TEST_F(VTRMenuItemButtonBuildersTest, ATickIsOffAndStaysAtTheRight) {
    const auto item = createTickButtonMenuItem("Show", counting(), 225, 15, false);
    EXPECT_EQ(item->tick->state(), 0);
    item->view()->setFrameSize({325, 15});
    EXPECT_EQ(item->tick->frame(), (Rect{303, 2, 12, 12}));
}

TEST_F(VTRMenuItemButtonBuildersTest, FiveTagsGiveFiveLaunchers) {
    const auto item = createLauncherMenuItem({1, 2, 3, 8, 4});
    const auto buttons = launchersOf(*item);
    ASSERT_EQ(buttons.size(), 5u);
    const double lefts[]{20, 61, 102, 143, 184};
    const std::int64_t tags[]{1, 2, 3, 8, 4};
    for (std::size_t index = 0; index < buttons.size(); ++index) {
        EXPECT_EQ(buttons[index]->frame(), (Rect{lefts[index], 1, 20, 20}));
        EXPECT_EQ(buttons[index]->tag(), tags[index]);
    }
}

TEST_F(VTRMenuItemButtonBuildersTest, AnyOtherNumberOfTagsGivesAnEmptyRow) {
    for (const std::vector<std::int64_t>& tags :
         {std::vector<std::int64_t>{}, {1, 2, 3, 4}, {1, 2, 3, 4, 5, 6}}) {
        const auto item = createLauncherMenuItem(tags);
        EXPECT_TRUE(launchersOf(*item).empty());
        EXPECT_EQ(item->view()->frame(), (Rect{0, 0, 225, 29}));
    }
}

TEST_F(VTRMenuItemButtonBuildersTest, LaunchersStaySpacedInAWiderRow) {
    const auto item = createLauncherMenuItem({1, 2, 3, 8, 4});
    item->view()->setFrameSize({450, 29});
    const auto buttons = launchersOf(*item);
    for (std::size_t index = 1; index < buttons.size(); ++index)
        EXPECT_NEAR(buttons[index]->frame().x - buttons[index - 1]->frame().x, 41 * 430 / 205.0, 1);
    EXPECT_EQ(buttons[0]->frame().width, 20);
}

}  // namespace vantor
