#include "Shared/Views/MenubarGraphSamples.h"

#include <limits>

#include <gtest/gtest.h>

#include "Shared/VTRPreferences.h"
#include "Tests/Support/FakeSamples.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using test::FakeSamples;

GraphDictionary graphOf(std::vector<int> keys) {
    GraphDictionary graph;
    graph.keys = std::move(keys);
    return graph;
}

double scaledNewest(const GraphDictionary& graph, SampleSources collectors, std::int64_t count = 1) {
    MenubarGraphRun run(count, collectors);
    run.scale(graph);
    return run.records()[0].graphValues[static_cast<std::size_t>(graph.index)];
}

TEST(MenubarGraphSamplesTest, TheLastCollectorDecidesWhetherAColumnIsEmpty) {
    const FakeSamples empty, full{5, 6, 7};
    const StatSamples* const emptyFirst[] = {&empty, &full};
    const MenubarGraphRun first(1, emptyFirst);
    EXPECT_EQ(first.records()[0].empty, 0);
    EXPECT_EQ(first.records()[0].values[0], 5);

    const StatSamples* const emptyLast[] = {&full, &empty};
    const MenubarGraphRun last(1, emptyLast);
    EXPECT_EQ(last.records()[0].empty, 1);
    EXPECT_EQ(last.records()[0].values[0], 5);
}

TEST(MenubarGraphSamplesTest, ATemporaryCollectorDoesNotCount) {
    FakeSamples temporary{5};
    temporary.isTemporary = true;
    const StatSamples* const collectors[] = {&temporary};
    const MenubarGraphRun run(1, collectors);
    EXPECT_EQ(run.records()[0].values[0], 0);
    EXPECT_EQ(run.records()[0].empty, 0);
}

TEST(MenubarGraphSamplesTest, ACollectorWithoutValuesIsEmpty) {
    FakeSamples none(0);
    none.add({});
    const StatSamples* const collectors[] = {&none};
    EXPECT_EQ(MenubarGraphRun(1, collectors).records()[0].empty, 1);
}

TEST(MenubarGraphSamplesTest, ASeriesIsTheSumOfItsKeysOverItsDivisor) {
    const FakeSamples samples{30, 20, 5};
    const StatSamples* const collectors[] = {&samples};
    GraphDictionary graph = graphOf({0, 1});
    graph.divide = 100;
    EXPECT_EQ(scaledNewest(graph, collectors), 0.5);
}

TEST(MenubarGraphSamplesTest, TheDivisorIsReadInSinglePrecision) {
    const FakeSamples samples{1};
    const StatSamples* const collectors[] = {&samples};
    GraphDictionary graph = graphOf({0});
    graph.divide = 0.1;
    EXPECT_EQ(scaledNewest(graph, collectors), 1 / double{0.1F});
}

TEST(MenubarGraphSamplesTest, APeakIndexNeverDividesByLessThanOne) {
    const FakeSamples small{8, 0.5}, large{8, 4};
    GraphDictionary graph = graphOf({0});
    graph.peakIndex = 1;
    const StatSamples* const first[] = {&small};
    EXPECT_EQ(scaledNewest(graph, first), 8);
    const StatSamples* const second[] = {&large};
    EXPECT_EQ(scaledNewest(graph, second), 2);
}

TEST(MenubarGraphSamplesTest, ADynamicPeakIsThatOfTheSamplesInView) {
    FakeSamples samples(2);
    samples.add({1000, 0});  // out of view
    samples.add({40, 80});
    samples.add({20, 10});
    const StatSamples* const collectors[] = {&samples};
    GraphDictionary graph = graphOf({0});
    graph.dynamicPeak = true;
    graph.peakIndexes = {0, 1};
    EXPECT_EQ(scaledNewest(graph, collectors, 2), 0.25);
    graph.individualPeaks = true;
    EXPECT_EQ(scaledNewest(graph, collectors, 2), 0.5);
}

TEST(MenubarGraphSamplesTest, AnAllZeroRunIsDividedByNothing) {
    const FakeSamples samples{0, 0};
    const StatSamples* const collectors[] = {&samples};
    GraphDictionary graph = graphOf({0});
    graph.dynamicPeak = true;
    graph.peakIndexes = {0};
    EXPECT_EQ(scaledNewest(graph, collectors), 0);
}

TEST(MenubarGraphSamplesTest, WhatIsNotFiniteIsZero) {
    const FakeSamples samples{1, std::numeric_limits<double>::quiet_NaN()};
    const StatSamples* const collectors[] = {&samples};
    GraphDictionary graph = graphOf({0});
    graph.divide = 0;
    EXPECT_EQ(scaledNewest(graph, collectors), 0);
    EXPECT_EQ(scaledNewest(graphOf({1}), collectors), 0);
}

TEST(MenubarGraphSamplesTest, ARunIsNeverLongerThanARing) {
    const FakeSamples samples{1};
    const StatSamples* const collectors[] = {&samples};
    EXPECT_EQ(MenubarGraphRun(100000, collectors).records().size(), SampleRing::kSlots);
    EXPECT_TRUE(MenubarGraphRun(0, collectors).records().empty());
    EXPECT_TRUE(MenubarGraphRun(-1, collectors).records().empty());
}

TEST(MenubarGraphSamplesTest, AGraphIsPaintedOnlyWhenItsConditionsHold) {
    test::World world;
    VTRSetBoolForKey("CPU_MenubarGraphBreakdowns", true);
    GraphDictionary shown = graphOf({0}), hidden = graphOf({0});
    shown.conditions = {{"CPU_MenubarGraphBreakdowns", 1}, {"MenubarTheme", 1}};
    hidden.conditions = {{"CPU_MenubarGraphBreakdowns", 1}, {"MenubarTheme", 0}};
    int painted = 0;
    drawGraphWithBlock(1, {shown, hidden}, {}, [&](auto, auto&) { ++painted; });
    EXPECT_EQ(painted, 1);
}

TEST(MenubarGraphSamplesTest, AGraphWithoutSamplesIsPaintedAllTheSame) {
    int painted = 0;
    drawGraphWithBlock(0, {graphOf({0})}, {}, [&](auto records, auto&) {
        ++painted;
        EXPECT_TRUE(records.empty());
    });
    EXPECT_EQ(painted, 1);
}

TEST(MenubarGraphSamplesTest, TextsShowTheMeanOverTheCollectors) {
    FakeSamples first{40, 0}, second{50, 10};
    const StatSamples* const collectors[] = {&first, &second};
    const int keys[] = {0, 1};
    EXPECT_EQ(sumOfNewestSamples(collectors, keys, false), 50);
    EXPECT_EQ(sumOfNewestSamples(collectors, keys, true), 100);
    second.isTemporary = true;  // counted all the same
    EXPECT_EQ(sumOfNewestSamples(collectors, keys, false), 20);
    EXPECT_EQ(sumOfNewestSamples({}, keys, false), 0);
}

TEST(MenubarGraphSamplesTest, ASampleWithoutDataIsZeroAndSaysSo) {
    FakeSamples samples{60};
    samples.ring.setEmpty(0, 1);  // its figure is still there
    const StatSamples* const collectors[] = {&samples};
    MenubarGraphRun run(1, collectors);
    run.scale(graphOf({0}));
    EXPECT_EQ(run.records()[0].graphValues[0], 0);
    EXPECT_EQ(run.records()[0].empty, 1);
}

TEST(MenubarGraphSamplesTest, TextsOfWhatIsNotFiniteShowZero) {
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    constexpr double kFar = std::numeric_limits<double>::infinity();
    const int first[] = {0}, both[] = {0, 1};
    for (const double value : {kNone, kFar, -kFar}) {
        const FakeSamples samples{value, 5}, sound{7, 8};
        const StatSamples* const alone[] = {&samples};
        const StatSamples* const together[] = {&sound, &samples};
        EXPECT_EQ(sumOfNewestSamples(alone, first, false), 0);
        EXPECT_EQ(sumOfNewestSamples(alone, both, true), 0);
        EXPECT_EQ(sumOfNewestSamples(together, first, false), 0);
    }
    const FakeSamples opposite{kFar, -kFar}, later{1, kNone};
    const StatSamples* const cancelling[] = {&opposite};
    EXPECT_EQ(sumOfNewestSamples(cancelling, both, false), 0);
    const StatSamples* const unread[] = {&later};
    EXPECT_EQ(sumOfNewestSamples(unread, first, false), 1) << "only what is shown counts";
}

TEST(MenubarGraphSamplesTest, AFigureThatIsNoneDoesNotRaiseAPeak) {
    FakeSamples samples(1);
    samples.add({std::numeric_limits<double>::quiet_NaN()});
    samples.add({4});
    const StatSamples* const collectors[] = {&samples};
    GraphDictionary graph = graphOf({0});
    graph.dynamicPeak = graph.individualPeaks = true;
    EXPECT_EQ(scaledNewest(graph, collectors, 2), 1);
}

}  // namespace
}  // namespace vantor
