#include "Shared/Graphs/HistoryColumns.h"

#include <limits>

#include <gtest/gtest.h>

#include "Tests/Support/FakeSamples.h"

namespace vantor {
namespace {

using test::FakeSamples;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// Columns over collectors that hold one value each.
struct Graphed {
    explicit Graphed(bool allSamples = false) : useAllSamples(allSamples) { columns.clear(1); }

    HistoryUpdate update(double latest, std::vector<const StatSamples*> sources) {
        return columns.update(latest, sources, StorageType::now, useAllSamples);
    }
    HistoryUpdate update() { return update(samples.lastID, {&samples}); }
    double shown(std::size_t index) {
        columns.scale({.keys = {0}}, HistoryColumns::kColumns, HistoryColumns::kColumns);
        return columns.value(0, index);
    }

    bool useAllSamples;
    FakeSamples samples = FakeSamples(1);
    HistoryColumns columns;
};

}  // namespace

TEST(HistoryColumnsTest, EachNewSampleIsAColumn) {
    Graphed graph;
    graph.samples.add({1});
    graph.samples.add({2});

    EXPECT_EQ(graph.update().added, 2u);
    EXPECT_DOUBLE_EQ(graph.shown(0), 2);
    EXPECT_DOUBLE_EQ(graph.shown(1), 1);
}

TEST(HistoryColumnsTest, NothingNewAddsNothing) {
    Graphed graph;
    graph.samples.add({1});
    graph.update();

    EXPECT_EQ(graph.update().added, 0u);
}

TEST(HistoryColumnsTest, AGapInTheStorageIsAnEmptyColumn) {
    Graphed graph;
    graph.samples.add({1});
    graph.samples.addGap();
    graph.samples.add({3});
    graph.update();

    graph.shown(0);

    EXPECT_EQ(graph.columns.state(0), ColumnState::data);
    EXPECT_EQ(graph.columns.state(1), ColumnState::gap);
    EXPECT_EQ(graph.columns.state(2), ColumnState::data);
}

TEST(HistoryColumnsTest, AnIDThatTheStorageNoLongerHoldsIsAnEmptyColumn) {
    Graphed graph;
    graph.samples.add({1});
    graph.samples.lastID = 5;  // 2 to 5 were never there
    graph.samples.add({6});

    EXPECT_EQ(graph.update().added, 6u);
    EXPECT_DOUBLE_EQ(graph.shown(0), 6);
    EXPECT_EQ(graph.columns.state(1), ColumnState::gap);
}

TEST(HistoryColumnsTest, AnEvenSampleJoinsTheOddOneBeforeIt) {
    Graphed graph(true);
    graph.samples.lastID = 10;
    graph.samples.add({10});
    graph.update(11, {&graph.samples});
    graph.samples.add({30});

    const HistoryUpdate update = graph.update();

    EXPECT_EQ(update.added, 0u);
    EXPECT_TRUE(update.merged);
    EXPECT_DOUBLE_EQ(graph.shown(0), 20);
}

TEST(HistoryColumnsTest, OfAnOddAndAnEvenSampleOneColumnIsAdded) {
    Graphed graph(true);
    graph.samples.lastID = 9;
    graph.samples.add({4});  // 10
    graph.update();
    graph.samples.add({10});
    graph.samples.add({20});

    EXPECT_EQ(graph.update().added, 1u);
    EXPECT_DOUBLE_EQ(graph.shown(0), 15);
}

TEST(HistoryColumnsTest, AZeroDoesNotDragItsNeighbourDown) {
    const struct {
        double first, second, shown;
    } cases[] = {{10, 0, 10}, {0, 10, 10}, {10, 30, 20}};
    for (const auto& one : cases) {
        Graphed graph(true);
        graph.samples.add({one.first});
        graph.samples.add({one.second});

        graph.update();

        EXPECT_DOUBLE_EQ(graph.shown(0), one.shown) << one.first << " and " << one.second;
    }
}

TEST(HistoryColumnsTest, AnIDBelowTheNewestAddsNoColumn) {
    Graphed graph;
    for (int sample = 0; sample < 5; ++sample)
        graph.samples.add({1});
    graph.update();

    EXPECT_EQ(graph.update(2, {&graph.samples}).added, 0u);
    EXPECT_DOUBLE_EQ(graph.columns.newestSampleID(), 5);
}

TEST(HistoryColumnsTest, SeveralCollectorsAreAddedUp) {
    Graphed graph;
    FakeSamples other(1);
    graph.samples.add({1});
    other.add({2});

    graph.update(1, {&graph.samples, &other});

    EXPECT_DOUBLE_EQ(graph.shown(0), 3);
}

TEST(HistoryColumnsTest, WithoutACollectorThereAreNoColumns) {
    Graphed graph;

    EXPECT_EQ(graph.update(7, {}).added, 0u);
}

TEST(HistoryColumnsTest, AValueAtTheLowEndStaysVisible) {
    Graphed graph;
    graph.samples.add({3});
    graph.update();
    graph.shown(0);
    std::array<double, kGraphSlots> peaks;
    peaks.fill(5);

    graph.columns.rescale(1, peaks, 3);

    EXPECT_DOUBLE_EQ(graph.columns.value(0, 0), 0.01);
}

TEST(HistoryColumnsTest, AFigureThatIsNoNumberShowsAsNothing) {
    Graphed graph;
    graph.samples.add({kNaN});
    graph.samples.add({std::numeric_limits<double>::infinity()});
    graph.update();

    EXPECT_DOUBLE_EQ(graph.shown(0), 0);
    EXPECT_DOUBLE_EQ(graph.shown(1), 0);
}

TEST(HistoryColumnsTest, AnIDThatIsNoNumberIsQuiet) {
    Graphed graph;
    graph.samples.add({1});

    graph.update(kNaN, {&graph.samples});
    graph.update();

    EXPECT_DOUBLE_EQ(graph.columns.newestSampleID(), 1);
    EXPECT_DOUBLE_EQ(graph.shown(0), 1);
}

TEST(HistoryColumnsTest, ColumnsPastTheMarginAreInThePicture) {
    Graphed graph;
    for (int sample = 0; sample < 6; ++sample)
        graph.samples.add({1});
    graph.update();

    graph.columns.scale({.keys = {0}}, 6, 3);

    EXPECT_EQ(graph.columns.state(3), ColumnState::data);
    EXPECT_EQ(graph.columns.state(4), ColumnState::painted);
}

}  // namespace vantor
