#include <gtest/gtest.h>

#include <gmock/gmock.h>

#include "Tests/Support/AllocationCounter.h"
#include "Tests/Support/TestCollector.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using test::TestCollector;
using test::TestDelegate;
using testing::ElementsAre;

constexpr double kGrid = simulated::SimulatedMachine::kStart;  // a multiple of 6

/// A collector that was started `early` seconds before a multiple of six.
class StatCollectorScheduleTest : public testing::Test {
protected:
    void startAt(double start) {
        world.emplace(start);
        collector.emplace(world->machine.ports());
        collector->addDelegate(delegate);
        collector->startLogging();
    }
    /// Runs until `seconds` after kGrid.
    void runUntil(double seconds) { world->machine.mainQueue.runUntil(kGrid + seconds); }

    TestDelegate delegate;
    std::optional<test::World> world;
    std::optional<TestCollector> collector;
};

TEST_F(StatCollectorScheduleTest, ScalesFallDueOnTheSixSecondGrid) {
    startAt(kGrid + 0.25);
    runUntil(0.3);
    EXPECT_EQ(collector->sampleIndex()[1].nextTime, kGrid + 12);
    EXPECT_EQ(collector->sampleIndex()[2].nextTime, kGrid + 6 + 144);
    EXPECT_EQ(collector->sampleIndex()[3].nextTime, kGrid + 6 + 1008);
    EXPECT_EQ(collector->sampleIndex()[4].nextTime, 0);
}

TEST_F(StatCollectorScheduleTest, AScheduledRowIsLeftAlone) {
    startAt(kGrid);
    collector->sampleIndex()[1].nextTime = 5;
    collector->checkNextTimeAtIndex(1);
    EXPECT_EQ(collector->sampleIndex()[1].nextTime, 5);
}

TEST_F(StatCollectorScheduleTest, TheFirstTickIsTheNextWholeSecond) {
    startAt(kGrid + 0.25);
    runUntil(1.001);
    EXPECT_EQ(collector->measurements, 0);
    runUntil(1.003);
    EXPECT_EQ(collector->measurements, 1);
}

TEST_F(StatCollectorScheduleTest, AStartOnAWholeSecondWaitsAWholeSecond) {
    startAt(kGrid);
    runUntil(0.999);
    EXPECT_EQ(collector->measurements, 0);
    runUntil(1.01);
    EXPECT_EQ(collector->measurements, 1);
}

TEST_F(StatCollectorScheduleTest, CountsUpToZeroAsTheHourSampleFallsDue) {
    startAt(kGrid + 0.25);
    runUntil(1.5);
    EXPECT_THAT(delegate.asked, ElementsAre(-11));
    runUntil(12.5);
    EXPECT_EQ(delegate.asked.back(), 0);
    EXPECT_EQ(collector->sampleAtIndex(0, StorageType::hour).sampleID, 2);
}

TEST_F(StatCollectorScheduleTest, ASequenceOutsideTheCountUpIsZero) {
    world.emplace(kGrid);
    collector.emplace(world->machine.ports());
    collector->sampleIndex()[1].nextTime = kGrid + 13;
    collector->startLogging();
    runUntil(0.5);
    EXPECT_EQ(collector->updateSequence(), 0);
}

TEST_F(StatCollectorScheduleTest, NothingIsRolledUpDuringTheCountUp) {
    startAt(kGrid + 0.25);
    runUntil(0.5);
    collector->sampleIndex()[1].nextTime = kGrid + 2;
    runUntil(8.5);
    EXPECT_LT(collector->updateSequence(), 0);
    EXPECT_THAT(delegate.modes, testing::Each(0));
}

TEST_F(StatCollectorScheduleTest, ASampleOnTimeBearsTheTimeOfTheGrid) {
    startAt(kGrid + 0.25);
    collector->onMeasure = [&] { collector->addNow(5, world->machine.clock.now()); };
    runUntil(12.5);
    const statsample sample = collector->sampleAtIndex(0, StorageType::hour);
    EXPECT_EQ(sample.time, kGrid + 12);
    EXPECT_EQ(sample.empty, 0);
    EXPECT_EQ(sample.values[0], 5);
    EXPECT_EQ(collector->sampleIndex()[1].nextTime, kGrid + 18);
}

TEST_F(StatCollectorScheduleTest, TheDelegatesHearEveryRowThatWasHandled) {
    startAt(kGrid + 0.25);
    runUntil(11.5);
    delegate.modes.clear();
    runUntil(12.5);
    EXPECT_THAT(delegate.modes, ElementsAre(0, 1, 4, 5, 6, 7));
    delegate.modes.clear();
    runUntil(13.5);
    EXPECT_THAT(delegate.modes, ElementsAre(0, 4, 5, 6, 7));
}

TEST_F(StatCollectorScheduleTest, AHeldUpQueueGivesTheMissedSlotAGap) {
    startAt(kGrid + 0.25);
    collector->onMeasure = [&] { collector->addNow(5, world->machine.clock.now()); };
    runUntil(16.5);
    world->machine.mainQueue.moveTo(kGrid + 18.5);  // the next second is 19: 18 is stepped over
    runUntil(21);
    const statsample gap = collector->sampleAtIndex(0, StorageType::hour);
    EXPECT_EQ(gap.empty, 1);
    EXPECT_EQ(gap.time, kGrid + 18);
    EXPECT_EQ(gap.sampleID, 3);
    EXPECT_EQ(collector->sampleIndex()[1].nextTime, kGrid + 24);
    runUntil(24.5);
    EXPECT_EQ(collector->sampleAtIndex(0, StorageType::hour).empty, 0);
    EXPECT_EQ(collector->sampleAtIndex(0, StorageType::hour).sampleID, 4);
}

TEST_F(StatCollectorScheduleTest, AMissedFirstSampleOnlyMovesTheRowOn) {
    startAt(kGrid + 0.25);
    runUntil(10.5);
    world->machine.mainQueue.moveTo(kGrid + 13.5);
    runUntil(15.5);
    EXPECT_EQ(collector->lastIDForType(1), 0);
    EXPECT_EQ(collector->sampleIndex()[1].nextTime, kGrid + 18);
}

TEST_F(StatCollectorScheduleTest, AClockSetBackRollsUpNothingUntilItCatchesUp) {
    startAt(kGrid + 0.25);
    runUntil(12.5);
    world->machine.clock.step(-30);
    const int measurements = collector->measurements;
    runUntil(40.5);
    EXPECT_EQ(collector->lastIDForType(1), 2);
    EXPECT_GT(collector->measurements, measurements + 25);
    runUntil(48.5);  // the clock shows 18.5
    EXPECT_EQ(collector->lastIDForType(1), 3);
}

TEST_F(StatCollectorScheduleTest, ALongGapCostsNoMoreSlotsThanARingHas) {
    startAt(kGrid + 0.25);
    runUntil(12.5);
    world->machine.clock.step(86400.0 * 365);
    runUntil(14.5);
    const double now = world->machine.clock.now();
    const statsample oldest = collector->sampleAtIndex(601, StorageType::hour);
    EXPECT_EQ(oldest.empty, 1);
    EXPECT_GE(oldest.time, now - 603 * 6);
    EXPECT_LE(collector->lastIDForType(1), 2 + 603);
    EXPECT_GT(collector->sampleIndex()[1].nextTime, now);
}

TEST_F(StatCollectorScheduleTest, ASlotInsideTheWindowIsFilledAndOneBeforeItIsNot) {
    startAt(kGrid);
    collector->sampleIndex()[1].time = kGrid - 86400;
    collector->sampleIndex()[1].sampleID = 7;
    collector->fillGapsAtIndex(1);
    EXPECT_EQ(collector->sampleAtIndex(0, StorageType::hour).time, kGrid);
    EXPECT_EQ(collector->lastIDForType(1), 7 + 603);  // both ends of the window
}

TEST_F(StatCollectorScheduleTest, AFullyStoppedHourIsFilledSlotBySlot) {
    startAt(kGrid);
    collector->sampleIndex()[1].time = kGrid - 3600;
    collector->fillGapsAtIndex(1);
    EXPECT_EQ(collector->lastIDForType(1), 601);
    EXPECT_EQ(collector->sampleAtIndex(599, StorageType::hour).time, kGrid - 3594);
    EXPECT_EQ(collector->sampleIndex()[1].nextTime, kGrid + 6);
}

TEST_F(StatCollectorScheduleTest, TheLongTermRowFillsEverySlot) {
    startAt(kGrid);
    collector->sampleIndex()[8].time = kGrid - 300 * 700;
    collector->fillGapsAtIndex(8);
    EXPECT_EQ(collector->idForInterval(8), 701);
}

TEST_F(StatCollectorScheduleTest, ATickNeverStandsForTheSameSecondTwice) {
    startAt(kGrid + 0.25);
    runUntil(1.5);
    EXPECT_EQ(collector->updateTime(), kGrid + 2);
    world->machine.clock.step(-0.75);  // the tick of second 2 comes at 1.252
    runUntil(2.6);
    EXPECT_EQ(collector->updateTime(), kGrid + 3);
}

TEST_F(StatCollectorScheduleTest, TheNextTickIsAtMostTwoSecondsAhead) {
    startAt(kGrid + 0.25);
    runUntil(1.5);
    world->machine.clock.step(-0.999);
    runUntil(2.1);  // the clock shows 1.0 something: the tick's second is 2, the next one is 3
    const int measurements = collector->measurements;
    runUntil(4.2);
    EXPECT_GT(collector->measurements, measurements);
}

TEST_F(StatCollectorScheduleTest, AStoppedCollectorArmsNothing) {
    startAt(kGrid + 0.25);
    runUntil(1.5);
    collector->cleanup();
    runUntil(5);
    EXPECT_EQ(collector->measurements, 1);
    EXPECT_FALSE(world->machine.mainQueue.nextDue());
    EXPECT_TRUE(collector->stopped());
}

TEST_F(StatCollectorScheduleTest, WithoutDelegatesItMeasures) {
    world.emplace(kGrid);
    collector.emplace(world->machine.ports());
    collector->startLogging();
    runUntil(3.5);
    EXPECT_EQ(collector->measurements, 3);
}

TEST_F(StatCollectorScheduleTest, TheFirstDelegateThatWantsItDecides) {
    startAt(kGrid);
    TestDelegate second;
    delegate.answer = false;
    collector->addDelegate(second);
    EXPECT_TRUE(collector->shouldUpdateStateForSequence(0));
    second.answer.reset();  // has no opinion
    EXPECT_FALSE(collector->shouldUpdateStateForSequence(0));
    delegate.answer = true;
    second.asked.clear();
    EXPECT_TRUE(collector->shouldUpdateStateForSequence(0));
    EXPECT_TRUE(second.asked.empty());
}

TEST_F(StatCollectorScheduleTest, ASecondDelegateIsLogged) {
    startAt(kGrid);
    collector->addDelegate(delegate);  // is there already
    EXPECT_TRUE(world->journal.systemLogLines.empty());
    TestDelegate second;
    collector->addDelegate(second);
    EXPECT_THAT(world->journal.systemLogLines,
                ElementsAre("multiiple delegates <TestCollector>"));
}

TEST_F(StatCollectorScheduleTest, WithoutAutomaticUpdatesNoScaleRollsUp) {
    startAt(kGrid);
    collector->setAutomaticSampleUpdates(false);
    runUntil(30);
    EXPECT_GT(collector->measurements, 25);
    EXPECT_THAT(delegate.modes, testing::Each(0));
}

TEST_F(StatCollectorScheduleTest, TheDatabaseRestsFromSleepUntilAMinuteAfterWake) {
    startAt(kGrid);
    world->machine.workspace.willSleep();
    EXPECT_FALSE(collector->databaseEnabled());
    world->machine.workspace.didWake();
    runUntil(59.9);
    EXPECT_FALSE(collector->databaseEnabled());
    runUntil(60.1);
    EXPECT_TRUE(collector->databaseEnabled());
}

TEST_F(StatCollectorScheduleTest, AnotherSleepCallsOffTheWakening) {
    startAt(kGrid);
    world->machine.workspace.willSleep();
    world->machine.workspace.didWake();
    runUntil(30);
    world->machine.workspace.willSleep();
    runUntil(90);
    EXPECT_FALSE(collector->databaseEnabled());
}

TEST_F(StatCollectorScheduleTest, NextTimeFollowsTheRowThenTheLastSample) {
    startAt(kGrid + 0.25);
    EXPECT_EQ(collector->nextTimeForType(1, 6), kGrid + 12);
    collector->addHourSample(test::sampleOf({{"time", 100}}));
    EXPECT_EQ(collector->nextTimeForType(1, 6), 112);  // twice the interval, for 6 alone
    EXPECT_EQ(collector->nextTimeForType(1, 144), 244);
    collector->sampleIndex()[1].nextTime = 55;
    EXPECT_EQ(collector->nextTimeForType(1, 6), 55);
}

TEST_F(StatCollectorScheduleTest, ADroppedCollectorsTickDoesNothing) {
    startAt(kGrid);
    collector.reset();
    runUntil(5);
    EXPECT_FALSE(world->machine.mainQueue.nextDue());
}

TEST_F(StatCollectorScheduleTest, MeasuringTellsTheWitnessItsSequence) {
    startAt(kGrid + 0.25);
    runUntil(1.5);
    collector->updateStats();
    ASSERT_EQ(world->journal.measurements.size(), 2U);
    EXPECT_EQ(world->journal.measurements[0].sequence, -11);
    EXPECT_FALSE(world->journal.measurements[1].sequence);
}

}  // namespace
}  // namespace vantor
