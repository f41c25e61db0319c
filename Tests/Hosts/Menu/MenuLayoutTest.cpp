#include "Hosts/Menu/MenuLayout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Support/MenuWorld.h"

namespace vantor {
namespace {

using test::plainRow;

class MenuLayoutTest : public testing::Test {
protected:
    double widthOf(const VTRMenuItem& item) const { return item.view()->frame().width; }

    test::World world;
    std::shared_ptr<VTRMenuItem> narrow = plainRow(100, 20), wide = plainRow(300, 30);
    MenuLayout layout;
};

TEST_F(MenuLayoutTest, RowsStandBelowEachOtherAsWideAsTheWidest) {
    layout.update({narrow, wide});
    EXPECT_EQ(layout.size(), (Size{300, 50}));
    EXPECT_EQ(widthOf(*narrow), 300);
    EXPECT_EQ(layout.rowOf(wide.get())->y, 20);
}

TEST_F(MenuLayoutTest, ControlsFollowTheirMargins) {
    const auto value = std::make_shared<View>(Rect{60, 0, 30, 20});
    value->setResizing(Resizing::leftMargin);
    narrow->view()->addSubview(value);
    layout.update({narrow, wide});
    EXPECT_EQ(value->frame(), (Rect{260, 0, 30, 20}));
    layout.clear();
    EXPECT_EQ(value->frame(), (Rect{60, 0, 30, 20}));
}

TEST_F(MenuLayoutTest, AMenuGetsNarrowerWithTheRowThatMadeItWide) {
    layout.update({narrow, wide});
    layout.update({narrow});
    EXPECT_EQ(layout.size(), (Size{100, 20}));
    EXPECT_EQ(widthOf(*narrow), 100);
}

TEST_F(MenuLayoutTest, ARowThatLeavesHasItsOwnWidthBack) {
    layout.update({narrow, wide});
    layout.update({wide});
    EXPECT_EQ(widthOf(*narrow), 100);
}

TEST_F(MenuLayoutTest, AWidthThatSomebodyGaveARowIsItsOwnFromThenOn) {
    layout.update({narrow, wide});
    narrow->view()->setFrameSize({400, 20});
    EXPECT_FALSE(layout.isPlaced(*layout.rowOf(narrow.get())));
    layout.update({narrow, wide});
    EXPECT_EQ(layout.size().width, 400);
    layout.clear();
    EXPECT_EQ(widthOf(*narrow), 400);
    EXPECT_EQ(widthOf(*wide), 300);
}

TEST_F(MenuLayoutTest, EachPlaceBelongsToOneRow) {
    layout.update({narrow, wide});
    EXPECT_EQ(layout.rowAt(-1), nullptr);
    EXPECT_EQ(layout.rowAt(0)->item, narrow);
    EXPECT_EQ(layout.rowAt(19.5)->item, narrow);
    EXPECT_EQ(layout.rowAt(20)->item, wide);
    EXPECT_EQ(layout.rowAt(50), nullptr);
}

TEST_F(MenuLayoutTest, ARowWithoutAViewHasNoPlace) {
    layout.update({std::make_shared<VTRMenuItem>(), wide});
    EXPECT_EQ(layout.rows().size(), 1u);
    EXPECT_EQ(layout.rowAt(0)->item, wide);
}

}  // namespace
}  // namespace vantor
