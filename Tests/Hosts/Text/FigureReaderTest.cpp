#include "Hosts/Text/FigureReader.h"

#include <gtest/gtest.h>

#include "Hosts/Text/ScreenUpdate.h"
#include "Platform/Simulated/SimulatedMachine.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/Collectors/LoadStatCollector.h"
#include "Shared/ProcessContext.h"
#include "Tests/Support/AllocationCounter.h"

namespace vantor {
namespace {

class FigureReaderTest : public testing::Test {
protected:
    static constexpr double kStart = simulated::SimulatedMachine::kStart;

    void measure() {
        CPUStatCollector& collector = CPUStatCollector::sharedCPUCollector();  // has a baseline
        machine.processorCounters.spend(0, {.user = 10, .system = 20, .idle = 60, .nice = 10});
        collector.updateStats();
    }

    simulated::SimulatedMachine machine;
    ProcessContext context{machine.ports()};
};

TEST_F(FigureReaderTest, WithoutCollectorsThereAreNoFigures) {
    TextFigures figures;
    figures.mean = ProcessorShares{1, 2, 3};
    readFigures(figures, Histories::read);
    EXPECT_FALSE(figures.mean);
    EXPECT_FALSE(figures.loads);
    EXPECT_TRUE(figures.cores.empty());
    EXPECT_EQ(context.existingCPUCollector(), nullptr);  // looking made none
}

TEST_F(FigureReaderTest, WithoutAMeasurementThereIsNoMean) {
    CPUStatCollector::sharedCPUCollector();
    LoadStatCollector::sharedLoadCollector();
    TextFigures figures;
    readFigures(figures, Histories::read);
    EXPECT_FALSE(figures.mean);
    EXPECT_FALSE(figures.loads);
    EXPECT_EQ(figures.cores.size(), 2u);
    EXPECT_TRUE(figures.tenMinutes.points.empty());
    EXPECT_TRUE(figures.hour.points.empty());
    EXPECT_EQ(figures.hour.newestTime, 0);
}

TEST_F(FigureReaderTest, TheNewestSampleIsRead) {
    measure();
    TextFigures figures;
    readFigures(figures, Histories::read);
    EXPECT_EQ(figures.cores[0], (ProcessorShares{10, 20, 10}));
    EXPECT_EQ(figures.cores[1], ProcessorShares{});
    EXPECT_EQ(figures.mean, (ProcessorShares{5, 10, 5}));
    ASSERT_EQ(figures.tenMinutes.points.size(), 1u);
    EXPECT_EQ(figures.tenMinutes.points[0].time, kStart);
    EXPECT_EQ(figures.tenMinutes.points[0].used, 20);
}

TEST_F(FigureReaderTest, GapsAreNoPointsButReachUpToTheirTime) {
    CPUStatCollector& collector = CPUStatCollector::sharedCPUCollector();
    SampleFields sample;
    sample.set("time", kStart);
    sample.set("user", 30);
    collector.addHourSample(sample);
    collector.addHourSample(collector.emptySampleWithIdentifier(3, kStart + 6));
    TextFigures figures;
    readFigures(figures, Histories::read);
    ASSERT_EQ(figures.hour.points.size(), 1u);
    EXPECT_EQ(figures.hour.points[0].time, kStart);
    EXPECT_EQ(figures.hour.newestTime, kStart + 6);
}

TEST_F(FigureReaderTest, APictureAfterTheFirstDoesNotAllocate) {
    const TerminalShape shape{120, 40, {Glyphs::unicode, ColourDepth::direct, Cursor::placed}};
    TextFigures figures;
    TextFrame frame;
    ScreenUpdate update;
    const auto show = [&] {
        readFigures(figures, Histories::read);
        renderInto(frame, figures, shape);
        return update.to(frame).size();
    };
    for (int warmUp = 0; warmUp < 40; ++warmUp) {
        measure();
        machine.run(1);
        show();
    }
    update.forget();  // the largest update there is
    show();
    machine.processorCounters.spend(0, {.user = 1000});  // bars and figures change
    measure();
    const test::AllocationCounter allocations;
    const std::size_t bytes = show();
    const std::size_t count = allocations.count();
    EXPECT_EQ(count, 0u);
    EXPECT_GT(bytes, 0u);
}

}  // namespace
}  // namespace vantor
