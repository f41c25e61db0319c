#include "Programs/vantorbar-preferences/Model/MenubarModes.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace vantor {
namespace {

using Row = MenubarModes::Row;

std::size_t placeOf(const MenubarModes& modes, std::int64_t mode) {
    return static_cast<std::size_t>(std::ranges::find(modes.rows(), mode, &Row::mode) -
                                    modes.rows().begin());
}

TEST(MenubarModesTest, WhatIsShownComesFirstInItsOrderAndTheRestBehindIt) {
    const MenubarModes modes("2,100");
    ASSERT_EQ(modes.rows().size(), 8u);
    EXPECT_EQ(modes.rows()[0], (Row{2, true}));
    EXPECT_EQ(modes.rows()[1], (Row{100, true}));
    EXPECT_EQ(modes.rows()[2], (Row{0, false}));
    EXPECT_EQ(modes.text(), "2,100");
}

TEST(MenubarModesTest, EntriesReadAsPaintersReadThem) {
    const struct {
        const char *stored, *text;
    } cases[]{{"", "0"}, {"graph", "0"}, {"100,,1", "100,0,1"}, {"3,3", "3,3"}, {"-1,5", "-1,5"}};
    for (const auto& [stored, text] : cases)
        EXPECT_EQ(MenubarModes(stored).text(), text) << stored;
}

TEST(MenubarModesTest, TickedModeIsShownWhereItStands) {
    MenubarModes modes("100,0");
    ASSERT_TRUE(modes.setShown(placeOf(modes, 2), true));
    EXPECT_EQ(modes.text(), "100,0,2");
    ASSERT_TRUE(modes.move(placeOf(modes, 2), 0));
    EXPECT_EQ(modes.text(), "2,100,0");
}

TEST(MenubarModesTest, UntickedModeKeepsItsRow) {
    MenubarModes modes("100,0,1");
    ASSERT_TRUE(modes.setShown(1, false));
    EXPECT_EQ(modes.rows()[1], (Row{0, false}));
    EXPECT_EQ(modes.text(), "100,1");
}

TEST(MenubarModesTest, LastModeThatShowsSomethingStays) {
    MenubarModes modes("77,3");
    const std::size_t pie = placeOf(modes, 3);
    EXPECT_FALSE(modes.canHide(pie));
    EXPECT_FALSE(modes.setShown(pie, false));
    EXPECT_EQ(modes.text(), "77,3");
}

TEST(MenubarModesTest, RowsBetweenMakeWay) {
    MenubarModes modes("0,1,2,3");
    ASSERT_TRUE(modes.move(0, 2));
    EXPECT_EQ(modes.text(), "1,2,0,3");
    ASSERT_TRUE(modes.move(3, 1));
    EXPECT_EQ(modes.text(), "1,3,2,0");
    EXPECT_FALSE(modes.move(1, 1));
    EXPECT_FALSE(modes.move(1, 99));
}

TEST(MenubarModesTest, UnknownNumbersKeepTheirPlaceAndAreStepped) {
    MenubarModes modes("0,77,1");
    EXPECT_EQ(modes.neighbour(0, 1), 2u);
    EXPECT_EQ(modes.neighbour(0, -1), 0u);
    ASSERT_TRUE(modes.setShown(placeOf(modes, 100), true));
    EXPECT_EQ(modes.text(), "0,77,1,100");
}

TEST(MenubarModesTest, SameTextFromElsewhereLeavesTheRowsAlone) {
    MenubarModes modes("100,0,1");
    modes.setShown(1, false);
    EXPECT_FALSE(modes.follow("100,1"));
    EXPECT_EQ(modes.rows()[1], (Row{0, false}));
    EXPECT_TRUE(modes.follow("5"));
    EXPECT_EQ(modes.text(), "5");
}

}  // namespace
}  // namespace vantor
