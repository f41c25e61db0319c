#include "Shared/VTRMenuItemGraphBuilders.h"

#include <gtest/gtest.h>

#include "Shared/VTRMenuItemBuilders.h"
#include "Shared/Views/StatInterfaceView.h"
#include "Targets/VantorBarCPU/Graphs/CPUGraph.h"
#include "Tests/Support/FakeSamples.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

class VTRMenuItemGraphBuildersTest : public testing::Test {
protected:
    VTRMenuItemGraphBuildersTest() {
        world.machine.directories.setResources(VANTOR_SOURCE_DIR "/Resources");
    }
    test::World world;
    test::FakeSamples samples;
};

std::vector<std::string> keysOf(const VTRMenuItem& stack) {
    std::vector<std::string> keys;
    for (const auto& item : stack.menuItemsOrdered())
        keys.push_back(item->key());
    return keys;
}

}  // namespace

TEST_F(VTRMenuItemGraphBuildersTest, AGraphStandsBetweenItsMargins) {
    const auto item = createHistoryGraph<CPUGraph>(VTRMakeRect(225, 50, 10, 3));
    EXPECT_EQ(item->view()->frame(), (Rect{0, 0, 225, 63}));
    EXPECT_EQ(item->historyGraph->frame(), (Rect{10, 10, 205, 50}));
    EXPECT_EQ(item->historyGraph->className(), "CPUGraph");
    EXPECT_EQ(item->historyGraph->resizing(), Resizing::width);
}

TEST_F(VTRMenuItemGraphBuildersTest, HistoriesAreStackedUnderTheirNames) {
    const auto stack = createHistoryGraphs<LoadAverageGraph>(3, 1, &samples);
    EXPECT_EQ(keysOf(*stack),
              (std::vector<std::string>{"header-1", "graph-1", "header-2", "graph-2", "header-3",
                                        "graph-3", "filler-bottom"}));
    EXPECT_EQ(stack->view()->frame(), (Rect{0, 0, 324, 3 * (20 + 84) + 5}));
    const auto& header =
        dynamic_cast<const HeaderView&>(*stack->itemWithKey("header-2")->alternateView());
    EXPECT_EQ(header.title(), "LAST 24 HOURS");
    EXPECT_EQ(header.frame(), (Rect{0, 104, 324, 20}));
    const VTRMenuItem& item = *stack->itemWithKey("graph-3");
    EXPECT_EQ(item.alternateView()->frame(), (Rect{0, 228, 324, 84}));
    EXPECT_EQ(item.historyGraph->frame(), (Rect{10, 10, 304, 70}));
    EXPECT_EQ(item.historyGraph->storageMode(), 3);
    EXPECT_EQ(item.historyGraph->sizeType(), 1);
    EXPECT_TRUE(item.historyGraph->hasCollector());
}

TEST_F(VTRMenuItemGraphBuildersTest, HistoriesMayWaitForTheirCollector) {
    const auto stack = createHistoryGraphs<CPUGraph>(1, 2, nullptr);
    EXPECT_FALSE(stack->itemWithKey("graph-2")->historyGraph->hasCollector());
    EXPECT_EQ(keysOf(*createHistoryGraphs<CPUGraph>(0, 1, nullptr)),
              std::vector<std::string>{"filler-bottom"});
    EXPECT_EQ(keysOf(*createHistoryGraphs<CPUGraph>(-4, 1, nullptr)).size(), 1u);
}

TEST_F(VTRMenuItemGraphBuildersTest, EachCollectorHasItsGraph) {
    test::FakeSamples other;
    const auto stack = createGraphs<CPUGraph>({&samples, &other}, VTRMakeRect(205, 50, 9, 0));
    EXPECT_EQ(keysOf(*stack), (std::vector<std::string>{"graph-0", "graph-1", "filler-bottom"}));
    EXPECT_EQ(stack->view()->frame(), (Rect{0, 0, 225, 2 * 59 + 5}));
    const VTRMenuItem& second = *stack->itemWithKey("graph-1");
    EXPECT_EQ(second.alternateView()->frame(), (Rect{0, 59, 225, 59}));
    EXPECT_EQ(second.historyGraph->frame(), (Rect{10, 9, 205, 50})) << "it follows the stack";
    EXPECT_EQ(second.historyGraph->storageMode(), 0);
    EXPECT_EQ(second.historyGraph->sizeType(), 0);
}

TEST_F(VTRMenuItemGraphBuildersTest, WithoutCollectorsThereIsOnlyTheGapBelow) {
    const auto stack = createGraphs<CPUGraph>({}, VTRMakeRect(205, 50, 9, 0));
    EXPECT_EQ(stack->view()->frame(), (Rect{0, 0, 225, 5}));
}

TEST_F(VTRMenuItemGraphBuildersTest, OnlyTheThreeScalesHaveNames) {
    EXPECT_EQ(historyLabelForIndex(1), "LAST HOUR");
    EXPECT_EQ(historyLabelForIndex(2), "LAST 24 HOURS");
    EXPECT_EQ(historyLabelForIndex(3), "LAST 7 DAYS");
    EXPECT_EQ(historyLabelForIndex(0), "");
    EXPECT_EQ(historyLabelForIndex(4), "");
    EXPECT_EQ(historyLabelForIndex(-1), "");
}

}  // namespace vantor
