#include "Shared/VTRMenuItem.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "Shared/Textfields/StatInterfaceTextField.h"
#include "Shared/VTRMenuItemBuilders.h"
#include "Shared/VTRMenuItemComboBuilders.h"
#include "Shared/VTRMenuItemHeaderBuilders.h"
#include "Shared/Views/DropdownTheme.h"
#include "Shared/Views/StatInterfaceView.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

std::shared_ptr<VTRMenuItem> row(double width, double height) {
    return createFillerItem(nullptr, "", {width, height});
}

class VTRMenuItemTest : public testing::Test {
protected:
    test::World world;
    std::shared_ptr<VTRMenuItem> parent = createMenuItem();
};

}  // namespace

TEST_F(VTRMenuItemTest, StackedRowsStandOneBelowTheOther) {
    const auto third = row(225, 3);
    parent->addSubMenuItem(row(225, 15), "one");
    parent->addSubMenuItem(row(225, 15), "two");
    parent->addSubMenuItem(third, "three");

    EXPECT_EQ(parent->view()->frame(), (Rect{0, 0, 225, 33}));
    EXPECT_EQ(third->alternateView()->frame(), (Rect{0, 30, 225, 3}));
}

TEST_F(VTRMenuItemTest, AStackedRowThatIsWiderWidensAll) {
    const auto narrow = row(100, 15), wide = row(324.9, 15);
    parent->addSubMenuItem(narrow, "narrow");
    parent->addSubMenuItem(wide, "wide");

    EXPECT_EQ(parent->view()->frame().width, 324);
    EXPECT_EQ(narrow->alternateView()->frame().width, 324);
    EXPECT_EQ(wide->alternateView()->frame().width, 324);
}

TEST_F(VTRMenuItemTest, HeightsAreCutAfterEachAddition) {
    const auto second = row(225, 10.6);
    parent->addSubMenuItem(row(225, 10.6), "one");
    parent->addSubMenuItem(second, "two");

    EXPECT_EQ(parent->view()->frame().height, 20);
    EXPECT_EQ(second->alternateView()->frame(), (Rect{0, 10, 225, 10.6}));
}

TEST_F(VTRMenuItemTest, AStackedRowPaintsNeitherGroundNorHighlight) {
    const auto item = createMenuItem();
    parent->addSubMenuItem(item, "row");

    EXPECT_EQ(item->view(), nullptr);
    EXPECT_EQ(item->parentItem2(), parent.get());
    EXPECT_EQ(item->key(), "row");
    EXPECT_TRUE(item->alternateView()->backgroundDisabled());
    EXPECT_FALSE(item->alternateView()->highlightable());
    EXPECT_EQ(item->alternateView()->superview(), parent->view());
}

TEST_F(VTRMenuItemTest, WithoutKeyNothingIsStacked) {
    parent->addSubMenuItem(createMenuItem(), "");
    EXPECT_TRUE(parent->menuItemsOrdered().empty());
}

TEST_F(VTRMenuItemTest, ARowIsFoundByItsKeyTheFirstOfThem) {
    const auto first = row(1, 1), second = row(1, 1);
    parent->addSubMenuItem(first, "key");
    parent->addSubMenuItem(second, "key");

    EXPECT_EQ(parent->itemWithKey("key"), first.get());
    EXPECT_EQ(parent->itemWithKey("other"), nullptr);
    EXPECT_EQ(first->itemWithKey("key"), nullptr);
}

TEST_F(VTRMenuItemTest, RowsBelowOneThatGoesMoveUp) {
    const auto first = row(225, 15), second = row(225, 20);
    parent->addSubMenuItem(first, "one");
    parent->addSubMenuItem(second, "two");

    parent->removeItemWithKey("one");
    parent->removeItemWithKey("no such key");

    EXPECT_EQ(first->parentItem2(), nullptr);
    EXPECT_EQ(first->alternateView()->superview(), nullptr);
    EXPECT_EQ(second->alternateView()->frame().y, 0);
    EXPECT_EQ(parent->view()->frame().height, 20);
}

TEST_F(VTRMenuItemTest, AllStackedRowsMayGoAtOnce) {
    const auto first = row(225, 15);
    parent->addSubMenuItem(first, "one");
    parent->addSubMenuItem(row(225, 15), "two");

    parent->removeAllItems();

    EXPECT_TRUE(parent->menuItemsOrdered().empty());
    EXPECT_EQ(first->alternateView()->superview(), nullptr);
    EXPECT_EQ(parent->view()->frame().height, 0);
}

TEST_F(VTRMenuItemTest, AStackMovesFromOneParentToAnother) {
    const auto stack = createMenuItem(), other = createMenuItem();
    stack->addSubMenuItem(row(324, 84), "graph");
    parent->addSubMenuItem(stack, "history");

    parent->removeItem(*stack);
    other->addSubMenuItem(stack, "history");

    EXPECT_EQ(stack->alternateView()->superview(), other->view());
    EXPECT_EQ(other->view()->frame(), (Rect{0, 0, 324, 84}));
}

TEST_F(VTRMenuItemTest, StackedRowsOutliveTheirParent) {
    const auto item = row(225, 15);
    parent->addSubMenuItem(item, "one");

    parent.reset();

    EXPECT_EQ(item->parentItem2(), nullptr);
    EXPECT_EQ(item->alternateView()->superview(), nullptr);
}

TEST_F(VTRMenuItemTest, SizesThatAreNoNumbersHarmNothing) {
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    parent->addSubMenuItem(row(kNaN, kNaN), "one");
    parent->addSubMenuItem(row(-5, -5), "two");

    EXPECT_EQ(parent->view()->frame().width, 225);
}

TEST_F(VTRMenuItemTest, TheSignatureIsTitleAndHeight) {
    const auto item = row(225, 19);
    item->setTitle("Uptime");
    item->createSignature();
    EXPECT_EQ(item->signature(), "Uptime - 19");

    VTRMenuItem without;
    without.createSignature();
    EXPECT_EQ(without.signature(), " - 0");
}

TEST_F(VTRMenuItemTest, AShortValueLeavesAWideRow) {
    const auto item = createTextMenuItem("1", 300, 15, false);
    item->resizeToFieldValue();
    EXPECT_EQ(item->view()->frame().width, 300);
}

TEST_F(VTRMenuItemTest, AShortValueGivesANarrowRowTheStandardWidth) {
    const auto item = createTextMenuItem("1", 100, 15, false);
    item->resizeToFieldValue();
    EXPECT_EQ(item->view()->frame().width, 225);
}

TEST_F(VTRMenuItemTest, ALongValueWidensTheRow) {
    const std::string text(60, 'm');
    const auto item = createTextMenuItem(text, 100, 15, false);

    item->resizeToFieldValue();

    EXPECT_DOUBLE_EQ(item->view()->frame().width, widthOfText(text, item->field->font()) + 30);
}

TEST_F(VTRMenuItemTest, ARowWithoutValueKeepsItsWidth) {
    const auto item = row(100, 15);
    item->resizeToFieldValue();
    EXPECT_EQ(item->view()->frame().width, 100);
}

}  // namespace vantor
