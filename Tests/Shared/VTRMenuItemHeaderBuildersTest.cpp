#include "Shared/VTRMenuItemHeaderBuilders.h"

#include <gtest/gtest.h>

#include "Shared/VTRMenu.h"
#include "Shared/Views/StatInterfaceView.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

class VTRMenuItemHeaderBuildersTest : public testing::Test {
protected:
    test::World world;
    VTRMenu menu;
};

}  // namespace

TEST_F(VTRMenuItemHeaderBuildersTest, TheSameMenuAndKeyGiveTheSameRow) {
    EXPECT_EQ(createHeaderItem(&menu, "header", "LOAD", 225),
              createHeaderItem(&menu, "header", "LOAD", 225));
    EXPECT_EQ(createMainHeaderItem(&menu, "main", "CPU", 225),
              createMainHeaderItem(&menu, "main", "CPU", 225));
    EXPECT_EQ(createFillerItem(&menu, "filler", {225, 7}),
              createFillerItem(&menu, "filler", {225, 7}));
    EXPECT_EQ(createSpacerItem(&menu, "spacer", {225, 7}),
              createSpacerItem(&menu, "spacer", {225, 7}));
    EXPECT_EQ(menu.cache().size(), 4u);
}

TEST_F(VTRMenuItemHeaderBuildersTest, WithoutMenuOrKeyEachRowIsANewOne) {
    EXPECT_NE(createHeaderItem(nullptr, "header", "LOAD", 225),
              createHeaderItem(nullptr, "header", "LOAD", 225));
    EXPECT_NE(createHeaderItem(&menu, "", "LOAD", 225), createHeaderItem(&menu, "", "LOAD", 225));
    EXPECT_TRUE(menu.cache().empty());
}

TEST_F(VTRMenuItemHeaderBuildersTest, TitlesAreShownInCapitals) {
    const auto item = createHeaderItem(nullptr, "", "Größe", 225);
    const auto& view = dynamic_cast<const HeaderView&>(*item->view());
    EXPECT_EQ(view.title(), "GRÖSSE");
    EXPECT_EQ(view.type(), 0);
    EXPECT_EQ(item->title(), "");
    const auto main = createMainHeaderItem(nullptr, "", "cpu", 225);
    EXPECT_EQ(dynamic_cast<const HeaderView&>(*main->view()).type(), 1);
}

TEST_F(VTRMenuItemHeaderBuildersTest, TheGivenWidthHasNoPartInASectionsHead) {
    EXPECT_EQ(createHeaderItem(nullptr, "", "LOAD", 10)->view()->frame(),
              createHeaderItem(nullptr, "", "LOAD", 1000)->view()->frame());
}

TEST_F(VTRMenuItemHeaderBuildersTest, GapsHaveViewsThatCantBeHighlighted) {
    const auto spacer = createSpacerItem(nullptr, "", {225, 12});
    const auto filler = createFillerItem(nullptr, "", {225, 12});
    EXPECT_EQ(spacer->view()->className(), "SpacerView");
    EXPECT_EQ(filler->view()->className(), "StatInterfaceView");
    EXPECT_FALSE(spacer->view()->highlightable());
    EXPECT_FALSE(filler->view()->highlightable());
}

TEST_F(VTRMenuItemHeaderBuildersTest, ASizeOfZeroHasAStandIn) {
    EXPECT_EQ(createFillerItem(nullptr, "", {0, 0})->view()->frame(), (Rect{0, 0, 1, 12}));
    EXPECT_EQ(createSpacerItem(nullptr, "", {0, 5})->view()->frame(), (Rect{0, 0, 1, 5}));
    EXPECT_EQ(createSpacerItem(nullptr, "", {5, 0})->view()->frame(), (Rect{0, 0, 5, 12}));
}

}  // namespace vantor
