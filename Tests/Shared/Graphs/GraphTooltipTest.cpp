#include "Shared/Graphs/GraphTooltip.h"

#include <cmath>
#include <memory>
#include <optional>
#include <string>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Shared/Graphs/BarGraph.h"
#include "Shared/VTRPreferenceFunctions.h"
#include "Targets/VantorBarCPU/Graphs/CPUGraph.h"
#include "Targets/VantorBarCPU/Graphs/GPUGraph.h"
#include "Tests/Support/FakeSamples.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using test::FakeSamples;
using testing::Optional;

constexpr Size kSize{304, 70};
constexpr double kNewest = 301.5;  // the middle of the newest column

/// A graph at (10, 5) of a row.
class GraphTooltipTest : public testing::Test {
protected:
    GraphTooltipTest() {
        VTRSetBoolForKey("CPU_DropdownShowTooltips", true);
        world.machine.regionalSettings.setDateWriter(
            [](double seconds, std::string_view pattern, const std::string&) {
                return fmt::format("{} in {}", seconds, pattern);
            });
    }
    template <class Graph>
    HistoryGraph& show(int storageMode = 0) {
        auto graph = std::make_shared<Graph>(Rect{10, 5, kSize.width, kSize.height});
        graph->setCollector(&samples);
        graph->setStorageMode(storageMode);
        row.addSubview(graph);
        Painting::ImageSurface surface({324, 84}, 1);
        Painting::Context context = surface.context();
        row.display(context);
        return *graph;
    }
    void addAt(double time, std::initializer_list<double> values) {
        samples.add(values);
        samples.ring.setTime(0, time);
    }
    std::optional<std::string> textAt(double x) { return tooltipAt(row, {x + 10, 30}); }

    test::World world;
    FakeSamples samples = FakeSamples(3);
    View row{Rect{0, 0, 324, 84}};
};

TEST_F(GraphTooltipTest, AColumnTellsItsMomentAndItsShares) {
    addAt(100, {33.4, 8, 0});
    addAt(101, {50, 9.6, 0});
    show<CPUGraph>();
    EXPECT_THAT(textAt(kNewest), Optional<std::string>("101 in h:mm:ss a – User 50%, System 10%"));
    EXPECT_THAT(textAt(kNewest - 1),
                Optional<std::string>("100 in h:mm:ss a – User 33%, System 8%"));
}

TEST_F(GraphTooltipTest, AGapIsCalledOne) {
    addAt(100, {33, 8, 0});
    samples.addGap();
    samples.ring.setTime(0, 101);
    show<CPUGraph>();
    EXPECT_THAT(textAt(kNewest), Optional<std::string>("101 in h:mm:ss a – No data"));
    EXPECT_THAT(textAt(20), Optional<std::string>("No data"));  // before all samples
}

TEST_F(GraphTooltipTest, BesideTheColumnsThereIsNothingToTell) {
    addAt(100, {33, 8, 0});
    show<CPUGraph>();
    for (const double x : {-5.0, 1.0, 302.0, 310.0})
        EXPECT_EQ(textAt(x), std::nullopt) << x;
    EXPECT_TRUE(textAt(2).has_value());
    EXPECT_EQ(tooltipAt(row, {100, 2}), std::nullopt);
    EXPECT_EQ(tooltipAt(row, {std::nan(""), 30}), std::nullopt);
}

TEST_F(GraphTooltipTest, CoarseScalesTellNoSeconds) {
    addAt(100, {33, 8, 0});
    samples.lastID = 1;
    show<CPUGraph>(2);
    EXPECT_THAT(textAt(kNewest), Optional<std::string>("100 in h:mm a – User 33%, System 8%"));
    EXPECT_EQ(tooltipText(100, 3, "1"), "100 in EEE h:mm a – 1");
}

TEST_F(GraphTooltipTest, LoadsAreToldAllThree) {
    addAt(100, {1.5, 0.25, 12});
    show<LoadAverageGraph>();
    EXPECT_THAT(textAt(kNewest), Optional<std::string>("100 in h:mm:ss a – 1.50, 0.25, 12.00"));
}

TEST_F(GraphTooltipTest, AnUnknownShareIsAGapToo) {
    addAt(100, {0.456, -1, 0});
    const HistoryGraph& memory = show<GPUMemoryGraph>();
    const HistoryGraph& load = show<GPUProcessorGraph>();
    EXPECT_EQ(memory.tooltipAt({kNewest, 1}), "100 in h:mm:ss a – 46%");
    EXPECT_EQ(load.tooltipAt({kNewest, 1}), "100 in h:mm:ss a – No data");
}

TEST_F(GraphTooltipTest, ABarTellsItsShare) {
    const auto bar = std::make_shared<BarGraph>(Rect{10, 5, 100, 17});
    row.addSubview(bar);
    bar->setPercentage(0.456F);
    EXPECT_EQ(tooltipAt(row, {50, 10}), "46%");
    bar->setPercentage(std::nanf(""));
    EXPECT_EQ(tooltipAt(row, {50, 10}), "No data");
    EXPECT_EQ(tooltipAt(row, {50, 30}), std::nullopt);
}

TEST_F(GraphTooltipTest, NothingIsToldUnlessTheUserWantsThat) {
    addAt(100, {33, 8, 0});
    show<CPUGraph>();
    VTRRemoveObjectForKey("CPU_DropdownShowTooltips");
    EXPECT_EQ(textAt(kNewest), std::nullopt);
}

}  // namespace
}  // namespace vantor
