#include "Hosts/Menu/MenuSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Hosts/Menu/MenuControls.h"
#include "Shared/Buttons/StatInterfaceButton.h"
#include "Tests/Support/MenuWorld.h"

namespace vantor {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class MenuSessionTest : public testing::Test, protected test::MenuWorld {
protected:
    void SetUp() override {
        ASSERT_TRUE(open());
        serve();
        delegate.notes.clear();
        windows.repaints.clear();
        delegate.highlights = 0;
    }
    StatInterfaceButton& launcherButton(std::size_t index) const {
        return dynamic_cast<StatInterfaceButton&>(*buttonsIn(*launcher->view())[index]);
    }
    static Point atButton(std::size_t index) {
        return {30 + 41.0 * static_cast<double>(index), kLauncherTop + 10};
    }
    void openGraph() {
        windows.move(0, kGraph);
        wait(MenuPointer::kRestSeconds + 0.01);
        windows.tellPlace();
    }
};

TEST_F(MenuSessionTest, TheMenuHearsThatItOpensBeforeItsWindowIsThere) {
    session.close();
    EXPECT_THAT(delegate.notes, ElementsAre("close main"));
    EXPECT_THAT(windows.windows, IsEmpty());
    EXPECT_EQ(windows.owner, nullptr);
    windows.refuses = true;
    EXPECT_FALSE(open());
    EXPECT_THAT(delegate.notes, ElementsAre("close main", "open main", "close main"));
    EXPECT_FALSE(session.isOpen());
}

TEST_F(MenuSessionTest, ItsWindowIsAsLargeAsItsRows) {
    EXPECT_EQ(windows.windows[0].size, (Size{225, 20 + 3 * 19 + 29}));
}

TEST_F(MenuSessionTest, TheRowUnderThePointerIsHighlightedAtOnce) {
    windows.move(0, kPlain);
    EXPECT_EQ(highlighted(), plain);
    EXPECT_TRUE(plain->view()->menuItemHighlighted());
    windows.move(0, kGraph);
    EXPECT_FALSE(plain->view()->menuItemHighlighted());
    EXPECT_TRUE(graph->view()->menuItemHighlighted());
}

TEST_F(MenuSessionTest, ARowIsToldOfOnceForAsLongAsThePointerIsOnIt) {
    windows.move(0, kPlain);
    windows.move(0, {120, 46});
    wait(1);
    windows.move(0, {130, 46});
    EXPECT_EQ(delegate.highlights, 1);
}

TEST_F(MenuSessionTest, APointerThatLeavesHighlightsNothing) {
    windows.move(0, kPlain);
    windows.leave();
    EXPECT_EQ(highlighted(), nullptr);
    EXPECT_FALSE(plain->view()->menuItemHighlighted());
}

TEST_F(MenuSessionTest, ASubmenuOpensBesideItsRowWhenThePointerRests) {
    windows.move(0, kGraph);
    wait(MenuPointer::kRestSeconds - 0.01);
    EXPECT_THAT(windows.windows, SizeIs(1));
    wait(0.02);
    ASSERT_THAT(windows.windows, SizeIs(2));
    EXPECT_EQ(windows.windows[1].row, (Rect{0, 20, 225, 19}));
    EXPECT_EQ(windows.windows[1].size, (Size{324, 200}));
    EXPECT_THAT(delegate.notes, ElementsAre("open graph"));
}

TEST_F(MenuSessionTest, MovingWithinTheRowDoesNotPutItsSubmenuOff) {
    windows.move(0, kGraph);
    wait(0.15);
    windows.move(0, {140, 26});
    wait(0.06);
    EXPECT_THAT(windows.windows, SizeIs(2));
}

TEST_F(MenuSessionTest, APressOpensASubmenuWithoutDelay) {
    windows.click(0, kGraph);
    serve();
    EXPECT_THAT(windows.windows, SizeIs(2));
    windows.click(0, kGraph);
    serve();
    EXPECT_THAT(windows.windows, SizeIs(2));
}

TEST_F(MenuSessionTest, ASubmenuClosesWhenThePointerRestsOnAnotherRow) {
    openGraph();
    windows.move(0, kPlain);
    EXPECT_EQ(highlighted(), plain);
    EXPECT_THAT(windows.windows, SizeIs(2));
    wait(MenuPointer::kRestSeconds + 0.01);
    EXPECT_THAT(windows.windows, SizeIs(1));
    EXPECT_THAT(delegate.notes, ElementsAre("open graph", "close graph"));
}

TEST_F(MenuSessionTest, AnotherRowsSubmenuTakesItsPlace) {
    openGraph();
    windows.move(0, kCores);
    wait(MenuPointer::kRestSeconds + 0.01);
    ASSERT_THAT(windows.windows, SizeIs(2));
    EXPECT_THAT(delegate.notes, ElementsAre("open graph", "close graph", "open cores"));
}

TEST_F(MenuSessionTest, OnItsWayIntoTheSubmenuThePointerMayCrossOtherRows) {
    openGraph();
    windows.move(0, {140, 41});
    EXPECT_EQ(highlighted(), graph);
    windows.move(0, {180, 60});
    EXPECT_EQ(highlighted(), graph);
    windows.move(1, {5, 45});
    wait(1);
    EXPECT_THAT(windows.windows, SizeIs(2));
    EXPECT_EQ(highlighted(), graph);
}

TEST_F(MenuSessionTest, TheSameIsSoForASubmenuAtTheLeft) {
    windows.opensLeft = true;
    openGraph();
    windows.move(0, {60, 41});
    EXPECT_EQ(highlighted(), graph);
    windows.move(0, {70, 45});
    EXPECT_EQ(highlighted(), plain);
}

TEST_F(MenuSessionTest, APointerThatStopsOnItsWayIsOnTheRowWhereItStopped) {
    openGraph();
    windows.move(0, {140, 41});
    wait(MenuPointer::kGraceSeconds + 0.01);
    EXPECT_EQ(highlighted(), plain);
    EXPECT_THAT(windows.windows, SizeIs(1));
}

TEST_F(MenuSessionTest, ARowWhoseSubmenuIsOpenStaysHighlightedOutsideOfAllWindows) {
    openGraph();
    windows.leave();
    wait(1);
    EXPECT_EQ(highlighted(), graph);
    EXPECT_THAT(windows.windows, SizeIs(2));
}

TEST_F(MenuSessionTest, WhatEndsTheSessionClosesAllMenusAndSaysSo) {
    openGraph();
    windows.dismiss();
    EXPECT_EQ(closed, 1);
    EXPECT_FALSE(session.isOpen());
    EXPECT_THAT(windows.windows, IsEmpty());
    EXPECT_THAT(delegate.notes, ElementsAre("open graph", "close graph", "close main"));
    wait(5);
    EXPECT_THAT(windows.windows, IsEmpty());
}

TEST_F(MenuSessionTest, AButtonIsPressedWhereThePressBeganAndEnds) {
    windows.press(0, atButton(0));
    EXPECT_TRUE(launcherButton(0).highlighted());
    windows.release(0, atButton(0));
    EXPECT_THAT(world.journal.launches, SizeIs(1));
    EXPECT_EQ(closed, 1);
}

TEST_F(MenuSessionTest, APressThatLeavesItsButtonDoesNothing) {
    windows.press(0, atButton(0));
    windows.move(0, kPlain);
    EXPECT_FALSE(launcherButton(0).highlighted());
    windows.release(0, kPlain);
    EXPECT_THAT(world.journal.launches, IsEmpty());
    EXPECT_TRUE(session.isOpen());
}

TEST_F(MenuSessionTest, APressThatComesBackToItsButtonCounts) {
    windows.press(0, atButton(0));
    windows.move(0, kPlain);
    windows.move(0, atButton(0));
    EXPECT_TRUE(launcherButton(0).highlighted());
    windows.release(0, atButton(0));
    EXPECT_THAT(world.journal.launches, SizeIs(1));
}

TEST_F(MenuSessionTest, APressReleasedOutsideOfTheMenuDoesNothing) {
    windows.press(0, atButton(1));
    windows.leave();
    windows.owner->pointerReleased(MenuWindowID::none, {});
    EXPECT_FALSE(launcherButton(1).highlighted());
    EXPECT_THAT(world.journal.launches, IsEmpty());
}

TEST_F(MenuSessionTest, AReleaseAloneDoesNothing) {
    windows.release(0, atButton(0));
    EXPECT_THAT(world.journal.launches, IsEmpty());
    EXPECT_TRUE(session.isOpen());
}

TEST_F(MenuSessionTest, ARowThatDoesNothingIsNotHighlighted) {
    plain->action = nullptr;
    windows.move(0, kPlain);
    EXPECT_EQ(highlighted(), nullptr);
    EXPECT_FALSE(plain->view()->menuItemHighlighted());
    EXPECT_EQ(delegate.highlights, 0);
}

TEST_F(MenuSessionTest, AClickOnARowThatIsOneButtonDoesWhatItIsFor) {
    plain->action = [](VTRMenuItem& item) { item.setTitle("chosen"); };
    windows.click(0, kPlain);
    EXPECT_EQ(plain->title(), "chosen");
    EXPECT_EQ(closed, 1);
}

TEST_F(MenuSessionTest, AClickOnARowThatDoesNothingLeavesTheMenuOpen) {
    windows.click(0, kPlain);
    windows.click(0, kHead);
    EXPECT_TRUE(session.isOpen());
}

TEST_F(MenuSessionTest, ARebuildResizesTheWindowOnce) {
    menu.removeItemAtIndex(2);
    menu.addItem(test::plainRow(300, 40));
    EXPECT_EQ(windows.resizes, 0);
    serve();
    EXPECT_EQ(windows.resizes, 1);
    EXPECT_EQ(windows.windows[0].size, (Size{300, 20 + 2 * 19 + 29 + 40}));
    EXPECT_THAT(windows.repaints, Contains(Rect{0, 0, 300, 127}));
}

TEST_F(MenuSessionTest, ARebuildOfTheSameRowsResizesNothing) {
    menu.removeItem(*plain);
    menu.insertItem(plain, 2);
    serve();
    EXPECT_EQ(windows.resizes, 0);
}

TEST_F(MenuSessionTest, ASubmenuClosesWithItsRow) {
    openGraph();
    menu.removeItem(*graph);
    serve();
    EXPECT_THAT(windows.windows, SizeIs(1));
    EXPECT_TRUE(session.isOpen());
}

TEST_F(MenuSessionTest, NothingIsAskedOfAClosedMenu) {
    session.close();
    windows.repaints.clear();
    plain->label->setStringValue("Changed");
    menu.addItem(test::plainRow(400, 10));
    wait(5);
    EXPECT_THAT(windows.repaints, IsEmpty());
    EXPECT_EQ(windows.resizes, 0);
}

class HighMenuTest : public testing::Test, protected test::MenuWorld {
protected:
    void SetUp() override {
        for (int row = 0; row < 40; ++row)
            menu.addItem(test::plainRow(225, 50));
        windows.most = 300;
        ASSERT_TRUE(open());
        serve();
    }
    double offset() const { return session.menus().picture(0).scroll().offset; }
};

TEST_F(HighMenuTest, ItsWindowIsAsHighAsCanBe) { EXPECT_EQ(windows.windows[0].size.height, 300); }

TEST_F(HighMenuTest, TheWheelScrollsTheRowsUnderThePointer) {
    windows.move(0, {100, 150});
    windows.turn(0, -2);
    EXPECT_EQ(offset(), 2 * MenuPointer::kWheelPoints);
    windows.turn(0, 10);
    EXPECT_EQ(offset(), 0);
}

TEST_F(HighMenuTest, APointerAtAnArrowScrollsToTheEnd) {
    windows.move(0, {100, 295});
    wait(0.5);
    const double begun = offset();
    EXPECT_GT(begun, 100);
    windows.move(0, {100, 150});
    wait(1);
    EXPECT_EQ(offset(), begun);
    windows.move(0, {100, 295});
    wait(60);
    EXPECT_EQ(offset(), session.menus().picture(0).scroll().most());
}

TEST_F(HighMenuTest, ASubmenuStandsAtItsRowWhereThatShows) {
    windows.move(0, {100, 150});
    windows.turn(0, -1);
    windows.move(0, {100, 20});
    wait(1);
    ASSERT_THAT(windows.windows, SizeIs(2));
    EXPECT_EQ(windows.windows[1].row, (Rect{0, 58 - MenuPointer::kWheelPoints, 225, 19}));
}

}  // namespace
}  // namespace vantor
