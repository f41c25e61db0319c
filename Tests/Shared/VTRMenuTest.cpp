#include "Shared/VTRMenu.h"

#include <gtest/gtest.h>

#include "Shared/Textfields/StatInterfaceTextField.h"
#include "Shared/VTRMenuItemBuilders.h"
#include "Shared/VTRMenuItemHeaderBuilders.h"
#include "Shared/VTRPreferenceFunctions.h"
#include "Shared/Views/DropdownTheme.h"
#include "Shared/Views/StatInterfaceView.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

class VTRMenuTest : public testing::Test {
protected:
    std::vector<std::int64_t> indexes() const {
        std::vector<std::int64_t> result;
        for (const auto& item : menu.itemArray())
            result.push_back(item->view()->itemIndex());
        return result;
    }

    test::World world;
    VTRMenu menu;
    std::shared_ptr<VTRMenuItem> first = createMenuItem(), second = createMenuItem(),
                                 third = createMenuItem();
};

class RecordingWindow final : public ViewWindow {
public:
    void setNeedsDisplay(View&, View&) override {}
    void setBackground(const std::optional<Colour>& colour) override {
        background = colour;
        ++changes;
    }
    std::optional<Colour> background;
    int changes = 0;
};

class RecordingHost final : public VTRMenuHost {
public:
    void menuChanged(VTRMenu&) override { ++changes; }
    int changes = 0;
};

}  // namespace

TEST_F(VTRMenuTest, RowsKnowTheirPlaces) {
    menu.addItem(first);
    menu.addItem(third);
    menu.insertItem(second, 1);

    EXPECT_EQ(menu.itemArray(), (VTRMenu::Items{first, second, third}));
    EXPECT_EQ(indexes(), (std::vector<std::int64_t>{0, 1, 2}));
}

TEST_F(VTRMenuTest, RowsThatAreLeftMoveUp) {
    for (const auto& item : {first, second, third})
        menu.addItem(item);

    menu.removeItem(*first);

    EXPECT_EQ(indexes(), (std::vector<std::int64_t>{0, 1}));
    EXPECT_EQ(first->menu(), nullptr);
}

TEST_F(VTRMenuTest, AnIndexBeyondTheEndAppends) {
    menu.insertItem(first, 99);
    menu.removeItemAtIndex(5);

    EXPECT_EQ(menu.itemArray().size(), 1u);
}

TEST_F(VTRMenuTest, TakingOutARowThatIsInNoMenuIsIgnored) {
    menu.addItem(first);

    menu.removeItem(*second);

    EXPECT_EQ(menu.itemArray().size(), 1u);
}

TEST_F(VTRMenuTest, ARowWithoutViewIsCarriedAlong) {
    menu.addItem(std::make_shared<VTRMenuItem>());
    menu.addItem(first);
    menu.updateColors();

    EXPECT_EQ(first->view()->itemIndex(), 1);
}

TEST_F(VTRMenuTest, ARowTakenOutByKeyIsFoundAgainByItsBuilder) {
    const auto filler = createFillerItem(&menu, "filler", VTRMakeSize(225, 7));
    menu.addItem(filler);

    menu.removeItemWithKey("filler");
    menu.removeItemWithKey("no such key");

    EXPECT_TRUE(menu.itemArray().empty());
    EXPECT_EQ(createFillerItem(&menu, "filler", VTRMakeSize(1, 1)), filler);
}

TEST_F(VTRMenuTest, ARowIsInOneMenuOnly) {
    VTRMenu other;
    menu.addItem(first);

    other.addItem(first);

    EXPECT_TRUE(menu.itemArray().empty());
    EXPECT_EQ(first->menu(), &other);
}

TEST_F(VTRMenuTest, AllRowsMayGoAtOnce) {
    menu.addItem(first);
    menu.addItem(second);

    menu.removeAllItems();

    EXPECT_TRUE(menu.itemArray().empty());
    EXPECT_EQ(second->menu(), nullptr);
}

TEST_F(VTRMenuTest, AThemeChangeTurnsAllLabelsWithoutARebuild) {
    VTRSetBoolForKey("Theme-SeperateStyles", false);
    VTRSetIntegerForKey("DropdownTheme", 0);
    const auto row = createLabelMenuItem("Threads", 225, 15, false);
    menu.addItem(row);
    ASSERT_EQ(row->label->textColor(), grey(0.49));

    VTRSetIntegerForKey("DropdownTheme", 1);
    world.machine.localNotifications.post("DropdownThemeChanged");

    EXPECT_EQ(row->label->textColor(), grey(0.58));
}

TEST_F(VTRMenuTest, ARowGetsTheThemeOfTheMomentWhenItIsAdded) {
    VTRSetBoolForKey("Theme-SeperateStyles", false);
    VTRSetIntegerForKey("DropdownTheme", 0);
    const auto row = createLabelMenuItem("Threads", 225, 15, false);
    VTRSetIntegerForKey("DropdownTheme", 1);

    menu.addItem(row);

    EXPECT_EQ(row->label->textColor(), grey(0.58));
}

TEST_F(VTRMenuTest, AMenuThatIsGoneHearsOfNoTheme) {
    { VTRMenu gone; }
    world.machine.localNotifications.post("DropdownThemeChanged");
    EXPECT_FALSE(menu.visible());
}

TEST_F(VTRMenuTest, TheFirstRowGivesTheWindowItsGround) {
    RecordingWindow window;
    RecordingHost host;
    menu.setHost(&host, &window);

    menu.addItem(first);
    EXPECT_EQ(window.background, menuBackground());
    menu.addItem(second);
    EXPECT_EQ(window.changes, 1);

    menu.removeItem(*first);
    EXPECT_EQ(window.background, std::nullopt);
    EXPECT_EQ(host.changes, 3);
    menu.setHost(nullptr, nullptr);
}

TEST_F(VTRMenuTest, AHeaderGivesTheWindowItsGroundToo) {
    RecordingWindow window;
    menu.addItem(createMainHeaderItem(&menu, "header", "CPU", 225));

    menu.setHost(nullptr, &window);

    EXPECT_EQ(window.background, menuBackground());
    menu.setHost(nullptr, nullptr);
}

}  // namespace vantor
