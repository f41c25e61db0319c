#include "Shared/Collectors/CPUStatCollector.h"

#include <gtest/gtest.h>

#include "Tests/Support/AllocationCounter.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/TestCollector.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

class CPUStatCollectorTest : public testing::Test {
protected:
    CPUStatCollector& collector() { return CPUStatCollector::sharedCPUCollector(); }
    simulated::SimulatedProcessorCounters& counters() { return world.machine.processorCounters; }
    statsample newest() { return collector().sampleAtIndex(0, StorageType::now); }
    statsample newestOfCore(std::size_t core) {
        return collector().core(core).sampleAtIndex(0, StorageType::now);
    }

    test::World world;
};

TEST_F(CPUStatCollectorTest, ACPUWhoseCountersStandGivesZero) {
    collector().updateStats();
    EXPECT_EQ(newestOfCore(0).values[0], 0);
    EXPECT_EQ(newest().values[0], 0);
}

TEST_F(CPUStatCollectorTest, SharesAreOfAllFourStates) {
    collector();
    counters().spend(0, {.user = 20, .system = 10, .idle = 60, .nice = 10});
    collector().updateStats();
    EXPECT_EQ(newestOfCore(0).values[0], 20);
    EXPECT_EQ(newestOfCore(0).values[1], 10);
    EXPECT_EQ(newestOfCore(0).values[2], 10);
}

TEST_F(CPUStatCollectorTest, SharesAreReckonedInSinglePrecision) {
    collector();
    counters().spend(0, {.user = 1, .idle = 2});
    collector().updateStats();
    EXPECT_EQ(newestOfCore(0).values[0], double{1.0F / 3.0F * 100});
    EXPECT_EQ(newest().values[0], double{(1.0F / 3.0F * 100) / 2.0F});
}

TEST_F(CPUStatCollectorTest, ACounterThatWrappedGivesTheRightShare) {
    counters().setTicks({{{.user = 0xFFFFFFF0U}, {}}});
    collector();
    counters().spend(0, {.user = 0x30, .idle = 0x90});  // user passes 32 bits
    collector().updateStats();
    EXPECT_EQ(newestOfCore(0).values[0], 25);
}

TEST_F(CPUStatCollectorTest, WaitsAreSharesOfTheTimeBetweenTwoReadings) {
    counters().setWaits({.iowait = 100, .steal = 50, .all = 1000});
    collector();
    counters().setWaits({.iowait = 125, .steal = 55, .all = 1100});
    collector().updateStats();
    EXPECT_EQ(collector().waits(), (CPUWaits{25, 5}));
    collector().updateStats();
    EXPECT_EQ(collector().waits(), CPUWaits{});
}

TEST_F(CPUStatCollectorTest, WaitsThatCanNotBeAreNone) {
    EXPECT_EQ(waitsBetween({.iowait = 9, .all = 100}, {.iowait = 5, .all = 200}), CPUWaits{});
    EXPECT_EQ(waitsBetween({.all = 100}, {.iowait = 900, .all = 200}), (CPUWaits{100, 0}));
    EXPECT_EQ(waitsBetween({.all = 100}, {.iowait = 9, .all = 50}), CPUWaits{});
}

TEST_F(CPUStatCollectorTest, EachReadingIsComparedWithTheOneBeforeIt) {
    collector();
    counters().spend(0, {.user = 100});
    collector().updateStats();
    counters().spend(0, {.idle = 100});
    collector().updateStats();
    EXPECT_EQ(newestOfCore(0).values[0], 0);
}

TEST_F(CPUStatCollectorTest, AFailedReadingGivesZeroAndLosesNothing) {
    collector();
    counters().spend(0, {.user = 50, .idle = 50});
    counters().setFailing(true);
    collector().updateStats();
    EXPECT_EQ(newestOfCore(0).values[0], 0);
    counters().setFailing(false);
    collector().updateStats();
    EXPECT_EQ(newestOfCore(0).values[0], 50);
}

TEST_F(CPUStatCollectorTest, TheFirstSampleHasIdentifierTwo) {
    collector().updateStats();
    EXPECT_EQ(newest().sampleID, 2.0);
    EXPECT_EQ(newest().time, world.machine.clock.now());
    EXPECT_EQ(newest().empty, 0);
    EXPECT_EQ(newestOfCore(0).sampleID, 1.0);
    EXPECT_EQ(newestOfCore(0).time, 0);
}

TEST_F(CPUStatCollectorTest, TheSampleOfIdentifierOneIsZero) {
    collector().setIDForInterval(0, 0);
    counters().spend(0, {.user = 100});
    collector().updateStats();
    EXPECT_EQ(newestOfCore(0).values[0], 0);
}

TEST_F(CPUStatCollectorTest, TheMeanIsOverTheCountThatTheMachineConfesses) {
    counters().setCPUs(2, 4, 2, 2);
    collector();
    counters().spend(0, {.user = 100});
    counters().spend(1, {.user = 100});
    collector().updateStats();
    EXPECT_EQ(newest().values[0], 50);
    EXPECT_EQ(collector().coreCount(), 4);
}

TEST_F(CPUStatCollectorTest, ACoreThatIsCountedButNotReadHasNoSamples) {
    counters().setCPUs(2, 4, 2, 2);
    collector().updateStats();
    ASSERT_EQ(collector().cpuCount(), 4U);
    EXPECT_EQ(collector().core(1).history().sampleID(0), 1);
    EXPECT_EQ(collector().core(2).history().sampleID(0), 0);
}

TEST_F(CPUStatCollectorTest, WithoutACountTheMeanIsZero) {
    counters().setCPUs(2, 0, 2, 2);
    collector();
    counters().spend(0, {.user = 100});
    collector().updateStats();
    EXPECT_EQ(newest().values[0], 0);
}

TEST_F(CPUStatCollectorTest, APhysicalCoreIsTheMeanOfItsTwoThreads) {
    counters().setCPUs(4, 4, 4, 2);
    collector();
    counters().spend(2, {.user = 50, .system = 10, .idle = 40});
    counters().spend(3, {.user = 10, .system = 30, .idle = 40, .nice = 20});
    collector().updateStats();
    ASSERT_EQ(collector().physicalCores().size(), 2U);
    const statsample second = collector().physicalCores()[1]->sampleAtIndex(0, StorageType::now);
    EXPECT_EQ(second.values[0], 30);
    EXPECT_EQ(second.values[1], 20);
    EXPECT_EQ(second.values[2], 0);  // nice isn't kept at this level
}

TEST_F(CPUStatCollectorTest, SixThreadsOnFourCoresAreNoHyperThreading) {
    counters().setCPUs(6, 6, 6, 4);
    EXPECT_FALSE(collector().hyperThreading());
    EXPECT_TRUE(collector().physicalCores().empty());
}

TEST_F(CPUStatCollectorTest, MoreThan64CoresTurnHyperThreadingOff) {
    counters().setCPUs(128, 128, 128, 64);
    EXPECT_EQ(collector().logicalCoreCount(), 0);
    EXPECT_EQ(collector().physicalCoreCount(), 64);
    EXPECT_FALSE(collector().hyperThreading());
    counters().setCPUs(2, 2, 64, 32);
    EXPECT_EQ(collector().logicalCoreCount(), 64);
}

TEST_F(CPUStatCollectorTest, RunningTimeIsAllThatTheFirstCPUSpent) {
    EXPECT_EQ(collector().runningTime(), -1.0);
    counters().setTicks({{{1, 2, 3, 4}, {100, 100, 100, 100}}});
    collector().updateStats();
    EXPECT_EQ(collector().runningTime(), 10);
}

TEST_F(CPUStatCollectorTest, TasksAndThreadsAreReadWithEachMeasurement) {
    counters().setProcessCounts({.tasks = 7, .threads = 70});
    EXPECT_EQ(collector().taskCount(), 0);
    collector().updateStats();
    EXPECT_EQ(collector().taskCount(), 7);
    EXPECT_EQ(collector().threadCount(), 70);
}

TEST_F(CPUStatCollectorTest, AnUnknownIdentifierOfACoreGivesAGap) {
    const statsample sample = collector().core(0).sampleWithIdentifier(5, StorageType::now);
    EXPECT_EQ(sample.empty, 1);
    EXPECT_EQ(sample.sampleID, 5);
    EXPECT_EQ(sample.values.size(), 3U);
}

TEST_F(CPUStatCollectorTest, ACoreAnswersItsOwnIdentifierForEveryScale) {
    collector().updateStats();
    collector().updateStats();
    EXPECT_EQ(collector().core(1).idForInterval(3), 2);
    EXPECT_EQ(collector().core(1).sampleAtIndex(1, StorageType::week).sampleID, 1);
}

TEST_F(CPUStatCollectorTest, TheDelegatesHearAMeasurement) {
    test::TestDelegate delegate;
    collector().addDelegate(delegate);
    collector().updateStats();
    EXPECT_EQ(delegate.modes, std::vector<int>{0});
}

TEST_F(CPUStatCollectorTest, CleanupMakesRoomForANewOne) {
    collector().updateStats();
    CPUStatCollector::cleanupShared();
    EXPECT_EQ(world.context.existingCPUCollector(), nullptr);
    EXPECT_EQ(newest().sampleID, 0);
}

TEST_F(CPUStatCollectorTest, ATickAllocatesNothing) {
    counters().setCPUs(8, 8, 8, 4);
    test::TestDelegate delegate;
    delegate.modes.reserve(100000);
    delegate.asked.reserve(100000);
    simulated::SimulatedMachine quiet;  // without a journal, which keeps what it hears
    quiet.processorCounters.setCPUs(8, 8, 8, 4);
    CPUStatCollector measured(quiet.ports());
    measured.setup();
    measured.addDelegate(delegate);
    measured.startLogging();
    quiet.run(200);
    const test::AllocationCounter allocations;
    quiet.run(2000);  // ticks, and roll-ups of all three scales
    EXPECT_EQ(allocations.count(), 0);
    EXPECT_GT(measured.lastIDForType(3), 1);
}

TEST_F(CPUStatCollectorTest, ATickThatWritesHistoryAllocatesNothing) {
    const test::TemporaryFolder folder;
    simulated::SimulatedMachine quiet;
    ProcessContext context(quiet.ports());
    CPUStatCollector& measured = CPUStatCollector::sharedCPUCollector();
    measured.setDbpath(folder / "cpu.db");
    measured.prepareDatabase(false);
    measured.startLogging();
    quiet.run(602 * 6 + 300);  // tables are pruned by now
    const test::AllocationCounter allocations;
    quiet.run(1100);  // ticks and roll-ups of all scales, and their way into the file
    EXPECT_EQ(allocations.count(), 0);
    EXPECT_GT(measured.lastIDForType(3), 3);
}

}  // namespace
}  // namespace vantor
