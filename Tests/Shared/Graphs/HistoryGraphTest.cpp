#include "Shared/Graphs/HistoryGraph.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <random>

#include <gtest/gtest.h>

#include "Platform/Simulated/SimulatedMachine.h"
#include "Targets/VantorBarCPU/Graphs/CPUGraph.h"
#include "Tests/Support/AllocationCounter.h"
#include "Tests/Support/FakeSamples.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using Painting::ImageSurface;
using test::FakeSamples;

constexpr Size kSize{304, 70};
constexpr std::uint32_t kBlueFill = 0xFF0D6189;

ImageSurface painted(View& view, double scale) {
    ImageSurface surface(view.frame().size(), scale);
    Painting::Context context = surface.context();
    view.display(context);
    return surface;
}

/// The greatest difference of any channel of any pixel, of 255.
int difference(const ImageSurface& one, const ImageSurface& other) {
    int greatest = one.heightPixels() == other.heightPixels() ? 0 : 255;
    for (int y = 0; y < one.heightPixels(); ++y)
        for (int x = 0; x < one.widthPixels(); ++x)
            for (int shift = 0; shift < 32; shift += 8) {
                const auto channel = [shift](std::uint32_t pixel) {
                    return static_cast<int>(pixel >> shift & 0xFF);
                };
                greatest = std::max(
                    greatest, std::abs(channel(one.pixel(x, y)) - channel(other.pixel(x, y))));
            }
    return greatest;
}

bool samePicture(const ImageSurface& one, const ImageSurface& other) {
    return difference(one, other) == 0;
}

// A soft edge is worked out exactly or by 15 samples a row of pixels, whichever the other edges in
// that row allow: a sample more or less is 17 of 255.
constexpr int kRounding = 17;

int opaquePixels(const ImageSurface& surface, int x) {
    int count = 0;
    for (int y = 0; y < surface.heightPixels(); ++y)
        count += surface.pixel(x, y) >> 24 == 0xFF ? 1 : 0;
    return count;
}

class HistoryGraphTest : public testing::Test {
protected:
    test::World world;
    FakeSamples samples = FakeSamples(3);
};

template <class Graph>
std::shared_ptr<Graph> makeGraph(const FakeSamples& samples, Size size = kSize) {
    auto graph = std::make_shared<Graph>(Rect{0, 0, size.width, size.height});
    graph->setCollector(&samples);
    return graph;
}

/// Adds a random number of samples, some of them gaps.
void addSome(FakeSamples& samples, std::mt19937& random, double greatest) {
    std::uniform_real_distribution<double> value(0, greatest);
    for (std::uint32_t left = random() % 4; left > 0; --left)
        if (random() % 5 == 0)
            samples.addGap();
        else
            samples.add({value(random), value(random), value(random)});
}

}  // namespace

TEST_F(HistoryGraphTest, AFullColumnReachesFromTheFrameToTheTop) {
    samples.add({100, 0, 0});
    const auto graph = makeGraph<CPUGraph>(samples);

    const ImageSurface picture = painted(*graph, 1);

    EXPECT_GE(opaquePixels(picture, 301), 60);
    EXPECT_EQ(picture.pixel(301, 40), kBlueFill);
}

TEST_F(HistoryGraphTest, AColumnWithDataIsTwoPointsHighAtLeast) {
    samples.add({0, 0, 0});
    const auto graph = makeGraph<CPUGraph>(samples);
    FakeSamples gap(3);
    gap.addGap();
    const auto without = makeGraph<CPUGraph>(gap);

    EXPECT_FALSE(samePicture(painted(*graph, 1), painted(*without, 1)));
}

TEST_F(HistoryGraphTest, AScrolledPictureIsTheOneOfAFullRepaint) {
    std::mt19937 random(7);
    for (const double scale : {1.0, 2.0})
        for (const bool allSamples : {false, true}) {
            FakeSamples history(3);
            const auto scrolled = makeGraph<CPUGraph>(history);
            scrolled->setUseAllSamples(allSamples);
            scrolled->setBreakStroke(allSamples);
            for (int step = 0; step < 120; ++step) {
                addSome(history, random, 60);
                if (random() % 3 == 0)
                    continue;  // nobody looks
                const auto whole = makeGraph<CPUGraph>(history);
                whole->setUseAllSamples(allSamples);
                whole->setBreakStroke(allSamples);

                ASSERT_LE(difference(painted(*scrolled, scale), painted(*whole, scale)), kRounding)
                    << "step " << step << " at " << scale << (allSamples ? " merged" : "");
            }
        }
}

TEST_F(HistoryGraphTest, AScrolledPictureFollowsItsScale) {
    std::mt19937 random(11);
    const auto scrolled = makeGraph<LoadAverageGraph>(samples, {205, 50});
    for (int step = 0; step < 150; ++step) {
        addSome(samples, random, step % 40 < 20 ? 4 : 14);
        const auto whole = makeGraph<LoadAverageGraph>(samples, {205, 50});

        ASSERT_LE(difference(painted(*scrolled, 1), painted(*whole, 1)), kRounding)
            << "step " << step;
    }
}

TEST_F(HistoryGraphTest, ADifferentScreenGetsAWholePicture) {
    std::mt19937 random(3);
    const auto graph = makeGraph<CPUGraph>(samples);
    for (int step = 0; step < 20; ++step)
        addSome(samples, random, 60);
    painted(*graph, 1);

    EXPECT_TRUE(samePicture(painted(*graph, 2), painted(*makeGraph<CPUGraph>(samples), 2)));
}

TEST_F(HistoryGraphTest, AWidthChangeReadsTheHistoryAgain) {
    samples.add({50, 0, 0});
    const auto graph = makeGraph<CPUGraph>(samples);
    painted(*graph, 1);

    graph->setFrameSize({200, 70});

    EXPECT_TRUE(
        samePicture(painted(*graph, 1), painted(*makeGraph<CPUGraph>(samples, {200, 70}), 1)));
}

TEST_F(HistoryGraphTest, APaintKeepsTheScaleOfAGraphThatHasNone) {
    samples.add({1, 0, 0});
    const auto graph = makeGraph<CPUGraph>(samples);

    painted(*graph, 1);

    EXPECT_DOUBLE_EQ(graph->low(), 0);
    EXPECT_DOUBLE_EQ(graph->peak(), 1);
}

TEST_F(HistoryGraphTest, AGapCutsTheAreaDownToItsBaseLine) {
    samples.add({100, 0, 0});
    for (int gap = 0; gap < 10; ++gap)
        samples.addGap();
    samples.add({100, 0, 0});
    const auto graph = makeGraph<CPUGraph>(samples);
    graph->setBreakStroke(true);

    const ImageSurface picture = painted(*graph, 1);

    EXPECT_EQ(picture.pixel(301, 40), kBlueFill);
    EXPECT_NE(picture.pixel(296, 40), kBlueFill);
    EXPECT_EQ(picture.pixel(290, 40), kBlueFill);
}

TEST_F(HistoryGraphTest, AGraphWiderThanItsColumnsPaintsThoseThatThereAre) {
    samples.add({100, 0, 0});
    const auto graph = makeGraph<CPUGraph>(samples, {900, 70});

    const ImageSurface picture = painted(*graph, 1);

    EXPECT_EQ(picture.pixel(897, 40), kBlueFill);
    EXPECT_EQ(picture.pixel(100, 40), 0u);
}

TEST_F(HistoryGraphTest, AGraphWithoutACollectorIsEmpty) {
    const auto graph = makeGraph<CPUGraph>(samples);
    graph->setCollector(nullptr);
    samples.add({100, 0, 0});

    EXPECT_NE(painted(*graph, 1).pixel(301, 40), kBlueFill);
}

TEST_F(HistoryGraphTest, ACollectorThatWentLeavesTheGraphEmpty) {
    auto going = std::make_unique<FakeSamples>(3);
    going->add({100, 0, 0});
    const auto graph = makeGraph<CPUGraph>(*going);
    going.reset();

    EXPECT_NE(painted(*graph, 1).pixel(301, 40), kBlueFill);
}

TEST_F(HistoryGraphTest, TheEndOfTheModuleTakesTheCollectorAway) {
    const auto graph = makeGraph<CPUGraph>(samples);

    world.machine.localNotifications.post("HISTORYGRAPH_SHUTDOWN_CPU");

    EXPECT_FALSE(graph->hasCollector());
}

TEST_F(HistoryGraphTest, FramesWithoutAreaAreQuiet) {
    samples.add({100, 0, 0});
    for (const Size size : {Size{0, 0}, Size{-5, 70}, Size{2, 3}, Size{304, -1}}) {
        const auto graph = makeGraph<CPUGraph>(samples, size);
        ImageSurface surface({10, 10}, 1);
        Painting::Context context = surface.context();
        graph->display(context);
    }
}

TEST_F(HistoryGraphTest, TheScaleIsNamedInTheUsersLanguage) {
    const auto graph = makeGraph<CPUGraph>(samples);
    graph->setStorageMode(0);
    EXPECT_EQ(graph->range(), std::nullopt);
    graph->setForceLabel(true);
    EXPECT_EQ(graph->range(), "5 Mins");
    graph->setStorageMode(2);
    EXPECT_EQ(graph->range(), "24 Hours");
    graph->setStorageMode(8);
    EXPECT_EQ(graph->range(), std::nullopt);
}

TEST_F(HistoryGraphTest, TheLoadsScaleGoesInStepsOfFive) {
    const struct { double load, peak; } cases[] = {{0.2, 5}, {5.1, 10}, {10, 10}};
    for (const auto& one : cases) {
        FakeSamples loads(3);
        loads.add({one.load, 0, 0});
        const auto graph = makeGraph<LoadAverageGraph>(loads, {205, 50});

        painted(*graph, 1);

        EXPECT_DOUBLE_EQ(graph->peak(), one.peak) << one.load;
    }
}

TEST_F(HistoryGraphTest, WithoutSamplesTheLoadsScaleIsFive) {
    const auto graph = makeGraph<LoadAverageGraph>(samples, {205, 50});

    painted(*graph, 1);

    EXPECT_DOUBLE_EQ(graph->peak(), 5);
}

TEST_F(HistoryGraphTest, LinesThatAreNotPaintedRaiseTheScaleAllTheSame) {
    samples.add({0.2, 0, 12});
    const auto graph = makeGraph<LoadAverageGraph>(samples, {205, 50});
    graph->setStorageMode(2);

    painted(*graph, 1);

    EXPECT_DOUBLE_EQ(graph->peak(), 15);
}

TEST_F(HistoryGraphTest, ANewSampleAllocatesNothing) {
    world.machine.directories.setResources(std::filesystem::path(VANTOR_BUNDLE_DIR).parent_path());
    const auto graph = makeGraph<CPUGraph>(samples);
    const auto load = makeGraph<LoadAverageGraph>(samples);
    ImageSurface surface(kSize, 2);
    const auto paint = [&](double value) {
        samples.add({value, value / 2, 1});
        for (HistoryGraph* const each :
             {static_cast<HistoryGraph*>(graph.get()), static_cast<HistoryGraph*>(load.get())}) {
            Painting::Context context = surface.context();
            each->display(context);
        }
    };
    for (int sample = 0; sample < 310; ++sample)
        paint(sample % 4);  // the path has its room, and each text its layout

    const test::AllocationCounter allocations;
    for (int sample = 0; sample < 20; ++sample)
        paint(sample % 4);

    EXPECT_EQ(allocations.count(), 0u);
}

}  // namespace vantor
