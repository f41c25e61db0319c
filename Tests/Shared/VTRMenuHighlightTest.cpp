#include "Shared/VTRMenuHighlight.h"

#include <gtest/gtest.h>

#include "Shared/Textfields/StatInterfaceTextField.h"
#include "Shared/VTRMenuItemBuilders.h"
#include "Shared/VTRMenuItemHeaderBuilders.h"
#include "Shared/Views/StatInterfaceView.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

/// Three rows 15 high whose highlights run into their neighbours.
class VTRMenuHighlightTest : public testing::Test {
protected:
    VTRMenuHighlightTest() {
        for (const auto& item : rows) {
            menuItemResizeHightlight(*item);
            menu.addItem(item);
        }
    }
    StatInterfaceView& view(std::size_t row) const { return *rows[row]->view(); }
    void highlight(const std::shared_ptr<VTRMenuItem>& item) {
        highlightMenuItem(menu, item);
        world.machine.run(1);
    }

    test::World world;
    VTRMenu menu;
    std::vector<std::shared_ptr<VTRMenuItem>> rows{createLabelMenuItem("1", 225, 15, false),
                                                   createLabelMenuItem("2", 225, 15, false),
                                                   createLabelMenuItem("3", 225, 15, false)};
};

}  // namespace

TEST_F(VTRMenuHighlightTest, NothingHappensUntilTheMainQueueRuns) {
    highlightMenuItem(menu, rows[1]);
    EXPECT_FALSE(view(1).menuItemHighlighted());
    world.machine.run(1);
    EXPECT_TRUE(view(1).menuItemHighlighted());
}

TEST_F(VTRMenuHighlightTest, TheNeighboursPaintWhatSpillsOver) {
    highlight(rows[1]);

    EXPECT_TRUE(view(1).customHighlightRect());
    EXPECT_EQ(view(1).highlightRect(), (Rect{0, -1, 0, 17}));
    EXPECT_TRUE(view(0).customHighlightRect());
    EXPECT_FALSE(view(0).menuItemHighlighted());
    EXPECT_EQ(view(0).highlightRect(), (Rect{0, 14, 0, 17}));
    EXPECT_TRUE(view(2).customHighlightRect());
    EXPECT_FALSE(view(2).menuItemHighlighted());
    EXPECT_EQ(view(2).highlightRect(), (Rect{0, -16, 0, 17}));
}

TEST_F(VTRMenuHighlightTest, NeighboursThatArentFlippedCountFromBelow) {
    VTRMenu plain;
    const auto above = createFillerItem(nullptr, "", {225, 7});
    const auto below = createFillerItem(nullptr, "", {225, 7});
    const auto row = createLabelMenuItem("1", 225, 15, false);
    menuItemResizeHightlight(*row);
    for (const auto& item : {above, row, below})
        plain.addItem(item);

    highlightMenuItem(plain, row);
    world.machine.run(1);

    EXPECT_EQ(above->view()->highlightRect(), (Rect{0, -16, 0, 17}));
    EXPECT_EQ(below->view()->highlightRect(), (Rect{0, 6, 0, 17}));
}

TEST_F(VTRMenuHighlightTest, TheFirstRowTouchesNoneAbove) {
    highlight(rows[0]);
    EXPECT_TRUE(view(1).customHighlightRect());
    EXPECT_FALSE(view(2).customHighlightRect());
}

TEST_F(VTRMenuHighlightTest, TheLastRowTouchesNoneBelow) {
    highlight(rows[2]);
    EXPECT_FALSE(view(0).customHighlightRect());
    EXPECT_TRUE(view(1).customHighlightRect());
}

TEST_F(VTRMenuHighlightTest, TheNextCallClearsTheSpill) {
    highlight(rows[0]);
    highlight(nullptr);
    for (std::size_t row = 0; row < rows.size(); ++row) {
        EXPECT_FALSE(view(row).customHighlightRect()) << row;
        EXPECT_FALSE(view(row).menuItemHighlighted()) << row;
    }
}

TEST_F(VTRMenuHighlightTest, ARowThatCantBeHighlightedStaysPlain) {
    view(1).setHighlightable(false);
    highlight(rows[1]);
    EXPECT_FALSE(view(1).menuItemHighlighted());
    EXPECT_FALSE(view(0).customHighlightRect());
}

TEST_F(VTRMenuHighlightTest, ANeighbourWithoutViewIsPassedOver) {
    menu.insertItem(std::make_shared<VTRMenuItem>(), 0);
    highlight(rows[0]);
    EXPECT_TRUE(view(0).menuItemHighlighted());
}

TEST_F(VTRMenuHighlightTest, AMenuThatIsGoneByThenIsLeftAlone) {
    {
        VTRMenu gone;
        highlightMenuItem(gone, rows[0]);
    }
    world.machine.run(1);
    EXPECT_FALSE(view(0).menuItemHighlighted());
}

TEST_F(VTRMenuHighlightTest, ResettingClearsEveryRow) {
    highlight(rows[1]);
    resetMenuItems(menu);
    for (std::size_t row = 0; row < rows.size(); ++row) {
        EXPECT_FALSE(view(row).customHighlightRect()) << row;
        EXPECT_FALSE(view(row).menuItemHighlighted()) << row;
    }
}

TEST_F(VTRMenuHighlightTest, ThePlainLevelHighlightsTheRowAndNoOther) {
    view(0).setMenuItemHighlighted(true);
    view(2).setHighlightable(false);
    view(2).setMenuItemHighlighted(true);

    highlightRow(menu, rows[1].get());

    EXPECT_FALSE(view(0).menuItemHighlighted());
    EXPECT_TRUE(view(1).menuItemHighlighted());
    EXPECT_TRUE(view(2).menuItemHighlighted()) << "a row that can't be highlighted is left alone";
}

TEST_F(VTRMenuHighlightTest, AHighlightedRowsTextsAreWhite) {
    highlight(rows[1]);
    EXPECT_EQ(rows[1]->label->textColor(), kWhite);
}

}  // namespace vantor
