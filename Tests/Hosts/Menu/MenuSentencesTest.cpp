#include "Hosts/Menu/MenuSentences.h"

#include <gtest/gtest.h>

#include "Painting/ImageSurface.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/VTRMenuItemBuilders.h"
#include "Shared/VTRMenuItemGraphBuilders.h"
#include "Shared/VTRMenuItemHeaderBuilders.h"
#include "Targets/VantorBarCPU/Graphs/CPUGraph.h"
#include "Tests/Support/MenuWorld.h"

namespace vantor {
namespace {

using Role = MenuRowDescription::Role;

class MenuSentencesTest : public testing::Test {
protected:
    void measure(std::uint32_t user, std::uint32_t system) {
        for (std::size_t cpu = 0; cpu < 2; ++cpu)
            world.machine.processorCounters.spend(
                cpu, {.user = user, .system = system, .idle = 100 - user - system});
        CPUStatCollector::sharedCPUCollector().updateStats();
    }
    /// Graphs tell of what they painted.
    static void paint(const VTRMenuItem& row) {
        Painting::ImageSurface surface(row.anyView()->frame().size(), 1);
        Painting::Context context = surface.context(Painting::Origin::upperLeft);
        row.anyView()->display(context);
    }
    static std::shared_ptr<VTRMenuItem> graphRow() {
        auto row = createHistoryGraph<CPUGraph>(VTRMakeRect(225, 50, 10, 3));
        row->historyGraph->setStorageMode(0);
        row->historyGraph->setCollector(&CPUStatCollector::sharedCPUCollector());
        return row;
    }

    test::World world;
};

TEST_F(MenuSentencesTest, BeforeAMeasurementTheItemSaysNothing) { EXPECT_EQ(itemSentence(), ""); }

TEST_F(MenuSentencesTest, TheItemSaysTheSharesOfTheNewestMeasurement) {
    CPUStatCollector::sharedCPUCollector();
    measure(25, 15);
    EXPECT_EQ(itemSentence(), "User 25%, System 15%, Idle 60%");
}

TEST_F(MenuSentencesTest, AGraphSaysItsNewestAndItsGreatestValue) {
    const auto row = graphRow();
    measure(60, 20);
    measure(25, 15);
    paint(*row);
    EXPECT_EQ(rowSentence(*row, "CPU"), "Graph of CPU: now 40%, highest 80%");
}

TEST_F(MenuSentencesTest, ARowSaysItsLabelAndItsValue) {
    EXPECT_EQ(rowSentence(*test::textRow("Threads", "233"), ""), "Threads 233");
    EXPECT_EQ(rowSentence(*test::plainRow(225, 20), ""), "");
}

TEST_F(MenuSentencesTest, AStackSaysAllThatItsRowsSay) {
    const auto stack = createMenuItem();
    stack->addSubMenuItem(test::textRow("User", "22%"), "user");
    stack->addSubMenuItem(test::plainRow(225, 3), "filler");
    stack->addSubMenuItem(test::textRow("Idle", "78%"), "idle");
    EXPECT_EQ(rowSentence(*stack, ""), "User 22%, Idle 78%");
}

TEST_F(MenuSentencesTest, RowsAreDescribedByWhatCanBeDoneWithThem) {
    test::MenuWorld menus;
    menus.menu.insertItem(createHeaderItem(nullptr, "", "CORES", 225), 0);
    MenuLayout layout;
    layout.update(menus.menu.itemArray());
    EXPECT_EQ(describedRow(layout, 0).role, Role::head);
    EXPECT_EQ(describedRow(layout, 0).sentence, "CORES");
    EXPECT_EQ(describedRow(layout, 1).role, Role::text);
    EXPECT_EQ(describedRow(layout, 2).role, Role::menu);
    EXPECT_EQ(describedRow(layout, 3).role, Role::item);
    EXPECT_EQ(describedRow(layout, 3).place, (Rect{0, 59, 225, 19}));
}

TEST_F(MenuSentencesTest, AGraphGoesByTheNameOfItsSection) {
    VTRMenu menu;
    menu.addItem(createHeaderItem(nullptr, "", "CORES", 225));
    menu.addItem(graphRow());
    measure(25, 15);
    paint(*menu.itemArray()[1]);
    MenuLayout layout;
    layout.update(menu.itemArray());
    EXPECT_EQ(describedRow(layout, 1).sentence, "Graph of CORES: now 40%, highest 40%");
}

}  // namespace
}  // namespace vantor
