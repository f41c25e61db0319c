#include "Shared/VTRMenuItemComboBuilders.h"

#include <array>
#include <cmath>

#include <gtest/gtest.h>

#include "Shared/VTRMenuItemBuilders.h"
#include "Shared/VTRMenuItemControls.h"
#include "Shared/Views/DropdownTheme.h"
#include "Shared/Views/ImageView.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

class VTRMenuItemComboBuildersTest : public testing::Test {
protected:
    test::World world;
};

double cutWidth(const StatInterfaceTextField& field) {
    return std::trunc(widthOfText(field.stringValue(), field.font()));
}

/// A text that is so many points wide or a little less, which gives a label of that width.
std::string textOfWidth(double width) {
    std::string text;
    while (std::trunc(widthOfText(text + "i", vtrNormalFont(12))) <= width)
        text += "i";
    return text;
}

}  // namespace

TEST_F(VTRMenuItemComboBuildersTest, ASampleReservesTheValuesColumn) {
    const auto item = createComboTextMenuItem("Process", "8888.8%", 225, 15);
    const double value = std::trunc(measuredWidth("8888.8%") + 10);
    EXPECT_EQ(item->field->frame().width, value);
    EXPECT_EQ(item->label->frame().width, 225 - 18 - value);
    EXPECT_EQ(item->field->frame().x + item->field->frame().width, 217);
}

TEST_F(VTRMenuItemComboBuildersTest, WithoutWidthTheRowFitsBothTexts) {
    const auto item = createComboTextMenuItem("Frames Per Second", "12345", 0, 19);
    EXPECT_EQ(item->view()->frame().width,
              item->label->frame().width + item->field->frame().width + 36);
}

TEST_F(VTRMenuItemComboBuildersTest, WithoutTextsTheColumnsHaveTheirLeastWidths) {
    const auto item = createComboTextMenuItem("", "", 0, 15);
    EXPECT_EQ(item->view()->frame().width, 56);
    EXPECT_EQ(item->label->stringValue(), "");
    EXPECT_EQ(item->field->stringValue(), "");
}

TEST_F(VTRMenuItemComboBuildersTest, TheValuesMarginAndWidthGrowWithTheRow) {
    const auto item = createComboTextMenuItem("Label", "Value", 225, 15);
    EXPECT_EQ(item->field->resizing(), Resizing::leftMargin | Resizing::width);

    item->view()->setFrameSize({325, 15});

    const Rect& field = item->field->frame();
    EXPECT_DOUBLE_EQ(field.x + field.width, 317);
}

TEST_F(VTRMenuItemComboBuildersTest, AColumnOfTheOtherContainerPaintsNoGround) {
    const auto item =
        createComboTextMenuItem2("Label", "Value", Container::alternateView, 0, 0, {0, 0, 0, 15});
    ASSERT_EQ(item->view(), nullptr);
    EXPECT_TRUE(item->alternateView()->backgroundDisabled());
    EXPECT_EQ(item->alternateView()->frame().width,
              columnWidth("Label") + columnWidth("Value") + 36);
}

TEST_F(VTRMenuItemComboBuildersTest, ALegendRowIsToBeStacked) {
    const auto item = createComboTextMenuItemWithLegend("User", "100%", 0, 15, 1);
    ASSERT_EQ(item->view(), nullptr);
    const StatInterfaceView& view = *item->alternateView();
    EXPECT_EQ(view.frame(), (Rect{0, 0, columnWidth("User") + columnWidth("100%") + 55, 15}));
    EXPECT_TRUE(view.highlightable());
    EXPECT_TRUE(view.backgroundDisabled());
}

TEST_F(VTRMenuItemComboBuildersTest, ALegendRowsLabelFitsItsOwnFont) {
    const auto item = createComboTextMenuItemWithLegend("User", "100%", 0, 15, 1);
    const double row = item->alternateView()->frame().width;
    const double label = std::ceil(widthOfText("User", vtrNormalFont(12))) + 10;
    const double value = std::trunc(row - 32 - label);
    EXPECT_EQ(item->label->frame(), (Rect{22, 0, label, 15}));
    EXPECT_EQ(item->field->frame(), (Rect{row - 8 - value, 0, value, 15}));
    EXPECT_EQ(item->field->resizing(), Resizing::leftMargin);
    EXPECT_EQ(item->legend->frame(), (Rect{10, 3, 9, 10}));
    EXPECT_EQ(item->legend->tag(), 1);
}

TEST_F(VTRMenuItemComboBuildersTest, AStatusDotStaysAtTheRight) {
    const auto item = createMenuItemWithRightStatusDot("Daemon", {0, 0, 225, 15});
    EXPECT_EQ(item->legend->tag(), 1);

    item->view()->setFrameSize({325, 15});

    EXPECT_EQ(item->legend->frame().x, 306);
    EXPECT_EQ(item->field->frame().x + item->field->frame().width, 300);
}

TEST_F(VTRMenuItemComboBuildersTest, RowsThatAreLinedUpShareTheirColumns) {
    const std::array items{createComboTextMenuItem("a", "1", 100, 15),
                           createComboTextMenuItem("b", "2", 100, 15)};
    items[0]->label->setStringValue(textOfWidth(30));
    items[1]->label->setStringValue(textOfWidth(60));
    const double widest = cutWidth(*items[1]->label);
    items[1]->label->setFrame({40, 0, 10, 15});  // which asks for a wider row

    const double width = resizeMenuItems(items, 20, 50);

    EXPECT_EQ(items[0]->label->frame().width, widest + 10);
    EXPECT_EQ(items[1]->label->frame().width, widest + 10);
    EXPECT_EQ(items[0]->view()->frame().width, 8 + widest + 50 + 10) << "not widened again";
    EXPECT_EQ(items[1]->view()->frame().width, 40 + widest + 50 + 10);
    EXPECT_EQ(width, 40 + widest + 60);
    EXPECT_EQ(items[1]->field->frame(), (Rect{width - 60, 0, 50, 15}));
}

TEST_F(VTRMenuItemComboBuildersTest, RowsThatAreLinedUpAreAsWideAsAskedFor) {
    const auto item = createComboTextMenuItem("a", "1", 0, 15);
    EXPECT_EQ(resizeMenuItem(item, 225, 50), 225);
    EXPECT_EQ(item->view()->frame().width, 225);
    EXPECT_EQ(item->field->frame(), (Rect{165, 0, 50, 15}));
    EXPECT_EQ(resizeMenuItems({}, 225, 50), 225);
}

TEST_F(VTRMenuItemComboBuildersTest, AWideRowKeepsItsWidthForShortTexts) {
    const auto item = createComboTextMenuItem("Running since", "", 300, 15);
    item->field->setStringValue("today");

    resizeMenuItemToContent(*item, 225);

    EXPECT_EQ(item->view()->frame().width, 300);
    EXPECT_EQ(item->label->frame().width, cutWidth(*item->label));
    EXPECT_EQ(item->field->frame().width, cutWidth(*item->field));
    EXPECT_EQ(item->field->frame().x + item->field->frame().width, 292);
}

TEST_F(VTRMenuItemComboBuildersTest, LongTextsWidenTheRow) {
    const auto item = createComboTextMenuItem("Running since", "", 225, 15);
    item->field->setStringValue(std::string(50, 'm'));

    resizeMenuItemToContent(*item, 225);

    EXPECT_EQ(item->view()->frame().width, 8 + cutWidth(*item->label) + cutWidth(*item->field) + 8);
}

TEST_F(VTRMenuItemComboBuildersTest, AStackedRowIsResizedInItsPlace) {
    const auto item = createComboTextMenuItemWithLegend("User", "1", 0, 15, 1);
    resizeMenuItemToContent(*item, 225);
    EXPECT_EQ(item->alternateView()->frame().width, 225);
}

TEST_F(VTRMenuItemComboBuildersTest, RowsWithoutFieldsAreResizedAllTheSame) {
    const auto item = createMenuItem();
    resizeMenuItemToContent(*item, 300);
    EXPECT_EQ(item->view()->frame().width, 300);
    VTRMenuItem empty;
    resizeMenuItemToContent(empty, 300);
    EXPECT_EQ(resizeMenuItem(createMenuItem(), 0, 50), 60);
}

TEST_F(VTRMenuItemComboBuildersTest, AnUnknownLegendHasNoDot) {
    const auto item = createComboTextMenuItemWithLegend("User", "1", 0, 15, 99);
    EXPECT_EQ(item->legend->image(), nullptr);
    EXPECT_EQ(item->legend->tag(), 99);
}

}  // namespace vantor
