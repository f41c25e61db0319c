#include "Hosts/Menu/MenuKeyboard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Shared/Buttons/StatInterfaceButton.h"
#include "Tests/Support/MenuWorld.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class MenuKeyboardTest : public testing::Test, protected test::MenuWorld {
protected:
    void SetUp() override {
        ASSERT_TRUE(open());
        serve();
        windows.repaints.clear();
    }
    void press(MenuKey key) {
        windows.key(key);
        serve();
    }
    std::int64_t focusedTag() const {
        const auto* const button =
            dynamic_cast<const StatInterfaceButton*>(session.menus().focusedControl(0));
        return button != nullptr ? button->tag() : 0;
    }
};

TEST_F(MenuKeyboardTest, DownAndUpGoToTheRowsThatCanBeHighlightedAndAround) {
    press(MenuKey::down);
    EXPECT_EQ(highlighted(), graph);
    press(MenuKey::down);
    EXPECT_EQ(highlighted(), plain);
    press(MenuKey::up);
    press(MenuKey::up);
    EXPECT_EQ(highlighted(), launcher);
    press(MenuKey::down);
    EXPECT_EQ(highlighted(), graph);
}

TEST_F(MenuKeyboardTest, UpBeginsAtTheEnd) {
    press(MenuKey::up);
    EXPECT_EQ(highlighted(), launcher);
}

TEST_F(MenuKeyboardTest, HomeAndEndGoToTheFirstAndTheLastRow) {
    press(MenuKey::end);
    EXPECT_EQ(highlighted(), launcher);
    press(MenuKey::home);
    EXPECT_EQ(highlighted(), graph);
}

TEST_F(MenuKeyboardTest, TheKeyboardGoesOnFromThePointer) {
    windows.move(0, kPlain);
    press(MenuKey::down);
    EXPECT_EQ(highlighted(), cores);
    wait(1);
    EXPECT_THAT(windows.windows, SizeIs(1));
}

TEST_F(MenuKeyboardTest, RightOpensASubmenuAndGoesToItsFirstRow) {
    press(MenuKey::up);
    press(MenuKey::up);
    press(MenuKey::right);
    ASSERT_THAT(windows.windows, SizeIs(2));
    EXPECT_EQ(highlighted(1), coresMenu->itemArray()[0]);
    EXPECT_EQ(highlighted(0), cores);
}

TEST_F(MenuKeyboardTest, LeftComesBackToTheRowThatOpenedTheSubmenu) {
    press(MenuKey::down);
    press(MenuKey::right);
    ASSERT_THAT(windows.windows, SizeIs(2));
    press(MenuKey::left);
    EXPECT_THAT(windows.windows, SizeIs(1));
    EXPECT_EQ(highlighted(), graph);
    press(MenuKey::left);
    EXPECT_TRUE(session.isOpen());
}

TEST_F(MenuKeyboardTest, RightOnARowWithoutASubmenuDoesNothing) {
    press(MenuKey::down);
    press(MenuKey::down);
    press(MenuKey::right);
    EXPECT_THAT(windows.windows, SizeIs(1));
}

TEST_F(MenuKeyboardTest, EnterOpensASubmenu) {
    press(MenuKey::down);
    press(MenuKey::choose);
    EXPECT_THAT(windows.windows, SizeIs(2));
}

TEST_F(MenuKeyboardTest, EscapeClosesAllMenus) {
    press(MenuKey::down);
    press(MenuKey::right);
    press(MenuKey::escape);
    EXPECT_THAT(windows.windows, IsEmpty());
    EXPECT_EQ(closed, 1);
}

TEST_F(MenuKeyboardTest, LeftAndRightGoAmongTheButtonsOfARowAndEnterPressesOne) {
    press(MenuKey::end);
    EXPECT_EQ(focusedTag(), 1);
    press(MenuKey::left);
    EXPECT_EQ(focusedTag(), 1);
    press(MenuKey::right);
    press(MenuKey::right);
    EXPECT_EQ(focusedTag(), 3);
    press(MenuKey::choose);
    EXPECT_THAT(world.journal.launches, ElementsAre("/Applications/Utilities/Terminal.app"));
    EXPECT_EQ(closed, 1);
}

TEST_F(MenuKeyboardTest, ARowOfButtonsIsNotHighlightedAsAWhole) {
    launcher->view()->setHighlightable(true);
    press(MenuKey::end);
    EXPECT_EQ(highlighted(), launcher);
    EXPECT_FALSE(launcher->view()->menuItemHighlighted());
}

TEST_F(MenuKeyboardTest, TheRingOfAButtonIsPaintedWhereItComesAndGoes) {
    press(MenuKey::end);
    windows.repaints.clear();
    press(MenuKey::right);
    EXPECT_THAT(windows.repaints, testing::Contains(testing::Field(&Rect::x, testing::Lt(20))));
    EXPECT_THAT(windows.repaints, testing::Contains(testing::Field(&Rect::x, testing::Gt(50))));
}

TEST_F(MenuKeyboardTest, ThePointerTakesTheRingAway) {
    press(MenuKey::end);
    windows.move(0, kPlain);
    EXPECT_EQ(focusedTag(), 0);
}

TEST_F(MenuKeyboardTest, LettersGoToTheRowThatBeginsWithThem) {
    windows.type("c");
    EXPECT_EQ(highlighted(), cores);
    wait(2);
    windows.type("P");
    windows.type("l");
    EXPECT_EQ(highlighted(), plain);
}

TEST_F(MenuKeyboardTest, TheSameLetterAgainGoesToTheNextRow) {
    const auto other = test::textRow("Clock");
    other->action = VTRMenuItemUtilities::fauxAction;
    menu.addItem(other);
    serve();
    windows.type("c");
    wait(2);
    windows.type("c");
    EXPECT_EQ(highlighted(), other);
    wait(2);
    windows.type("c");
    EXPECT_EQ(highlighted(), cores);
}

TEST_F(MenuKeyboardTest, ALetterThatBeginsNoRowChangesNothing) {
    press(MenuKey::down);
    windows.type("x");
    EXPECT_EQ(highlighted(), graph);
}

TEST_F(MenuKeyboardTest, ARowOutOfSightIsScrolledIntoIt) {
    session.close();
    windows.most = 60;
    ASSERT_TRUE(open());
    press(MenuKey::end);
    const MenuPicture& picture = session.menus().picture(0);
    EXPECT_EQ(picture.scroll().offset, picture.scroll().most());
    press(MenuKey::home);
    EXPECT_EQ(picture.scroll().offset, 0);
}

TEST_F(MenuKeyboardTest, AMenuWithoutRowsToGoToScrolls) {
    graphMenu->addItem(test::plainRow(324, 2000, false));
    windows.most = 200;
    press(MenuKey::down);
    press(MenuKey::right);
    ASSERT_THAT(windows.windows, SizeIs(2));
    const MenuScroll& scroll = session.menus().picture(1).scroll();
    press(MenuKey::down);
    EXPECT_GT(scroll.offset, 0);
    press(MenuKey::end);
    EXPECT_EQ(scroll.offset, scroll.most());
    press(MenuKey::pageUp);
    EXPECT_LT(scroll.offset, scroll.most());
    press(MenuKey::home);
    EXPECT_EQ(scroll.offset, 0);
}

}  // namespace
}  // namespace vantor
