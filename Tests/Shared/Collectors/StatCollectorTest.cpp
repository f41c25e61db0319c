#include "Shared/Collectors/StatCollector.h"

#include <gtest/gtest.h>

#include "Tests/Support/TestCollector.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using test::sampleOf;
using test::TestCollector;

constexpr double kNow = simulated::SimulatedMachine::kStart;

class StatCollectorTest : public testing::Test {
protected:
    test::World world;
    TestCollector collector{world.machine.ports()};
};

TEST_F(StatCollectorTest, AnUnknownIdentifierGivesAGapOfThatIdentifier) {
    const statsample sample = collector.sampleWithIdentifier(42, StorageType::hour);
    EXPECT_EQ(sample.empty, 1);
    EXPECT_EQ(sample.sampleID, 42);
    EXPECT_EQ(sample.values[0], 0);
}

TEST_F(StatCollectorTest, AKnownIdentifierGivesItsSample) {
    collector.addHourSample(sampleOf({{"sample", 5}, {"a", 1.5}}));
    collector.addHourSample(sampleOf({{"sample", 6}, {"a", 2.5}}));
    EXPECT_EQ(collector.sampleWithIdentifier(5, StorageType::hour).values[0], 1.5);
}

TEST_F(StatCollectorTest, ASampleWithTheNewestIdentifierIsIgnored) {
    collector.addHourSample(sampleOf({{"sample", 5}, {"a", 1}}));
    collector.addHourSample(sampleOf({{"sample", 5}, {"a", 2}}));
    EXPECT_EQ(collector.sampleAtIndex(0, StorageType::hour).values[0], 1);
    EXPECT_EQ(collector.sampleAtIndex(1, StorageType::hour).sampleID, 0);
}

TEST_F(StatCollectorTest, AnOlderSampleIsIgnored) {
    collector.addHourSample(sampleOf({{"sample", 5}, {"a", 1}}));
    collector.addHourSample(sampleOf({{"sample", 4}, {"a", 2}}));
    EXPECT_EQ(collector.lastIDForType(1), 5);
}

TEST_F(StatCollectorTest, ASampleWithoutIdentifierFollowsTheNewest) {
    collector.addHourSample(sampleOf({{"sample", 5}, {"a", 1}}));
    collector.addHourSample(sampleOf({{"a", 2}}));
    EXPECT_EQ(collector.lastIDForType(1), 6);
}

TEST_F(StatCollectorTest, TheLaterIdentifierKeyWins) {
    collector.addHourSample(sampleOf({{"id", 9}, {"sample", 5}}));
    EXPECT_EQ(collector.lastIDForType(1), 9);
}

TEST_F(StatCollectorTest, AnIdentifierBelowOneIsIgnored) {
    collector.addHourSample(sampleOf({{"sample", 0.5}}));
    EXPECT_EQ(collector.lastIDForType(1), 0);
}

TEST_F(StatCollectorTest, AFigureThatIsLeftOutRepeatsTheOneBeforeIt) {
    collector.addHourSample(sampleOf({{"a", 1}, {"b", 2}}));
    collector.addHourSample(sampleOf({{"a", 3}}));
    EXPECT_EQ(collector.sampleAtIndex(0, StorageType::hour).values[1], 2);
}

TEST_F(StatCollectorTest, TimeWinsOverItsSecondSpelling) {
    collector.addHourSample(sampleOf({{"time", 20}, {"t", 10}}));
    EXPECT_EQ(collector.sampleAtIndex(0, StorageType::hour).time, 20);
    collector.addHourSample(sampleOf({{"t", 30}}));
    EXPECT_EQ(collector.sampleAtIndex(0, StorageType::hour).time, 30);
}

TEST_F(StatCollectorTest, AKeyMayCarryTheTime) {
    collector.mutableConfig().addSampleMap.push_back({"when", SampleKey::kTime});
    collector.addHourSample(sampleOf({{"when", 77}}));
    EXPECT_EQ(collector.sampleAtIndex(0, StorageType::hour).time, 77);
}

TEST_F(StatCollectorTest, APositionPastTheValuesIsLeftOut) {
    collector.mutableConfig().addSampleMap.push_back({"far", 2});
    collector.mutableConfig().addSampleMap.push_back({"t", 9});
    collector.addHourSample(sampleOf({{"far", 5}, {"t", 6}}));
    EXPECT_EQ(collector.sampleAtIndex(0, StorageType::hour).values.size(), 2U);
    EXPECT_EQ(collector.sampleAtIndex(0, StorageType::hour).time, 6);
}

TEST_F(StatCollectorTest, EmptyIsTakenFromTheSample) {
    collector.addHourSample(collector.emptySampleWithIdentifier(3, 18));
    const statsample sample = collector.sampleAtIndex(0, StorageType::hour);
    EXPECT_EQ(sample.empty, 1);
    EXPECT_EQ(sample.sampleID, 3);
    EXPECT_EQ(sample.time, 18);
}

TEST_F(StatCollectorTest, AGapCarriesZeros) {
    collector.addHourSample(sampleOf({{"a", 1}, {"b", 2}}));
    collector.addHourSample(collector.emptySampleWithIdentifier(3, 18));
    EXPECT_EQ(collector.sampleAtIndex(0, StorageType::hour).values[1], 0);
}

TEST_F(StatCollectorTest, AnyOtherTypeMeansTheRingOfNow) {
    EXPECT_EQ(&collector.storageForType(5), &collector.storageForType(0));
    EXPECT_EQ(&collector.storageForType(-1), &collector.storageForType(0));
    EXPECT_NE(&collector.storageForType(3), &collector.storageForType(0));
}

TEST_F(StatCollectorTest, TimesByType) {
    EXPECT_EQ(StatCollector::timeForType(3), 1008);
    EXPECT_EQ(StatCollector::timeForType(2), 144);
    EXPECT_EQ(StatCollector::timeForType(1), 6);
    EXPECT_EQ(StatCollector::timeForType(8), 6);
}

TEST_F(StatCollectorTest, LastTimeAndIdentifierAreZeroAboveType7) {
    collector.addNow(1, kNow);
    EXPECT_EQ(collector.lastTimeForType(8), 0.0);
    EXPECT_EQ(collector.lastIDForType(8), 0.0);
    EXPECT_EQ(collector.lastTimeForType(7), kNow);  // the ring of now
    EXPECT_EQ(collector.lastTimeForType(1), 0.0);   // never filled
}

TEST_F(StatCollectorTest, TheScheduleBeginsUnscheduled) {
    const double intervals[] = {1, 6, 144, 1008, 4320, 12960, 25920, 52560, 300};
    for (std::size_t index = 0; index < kScaleCount; ++index) {
        EXPECT_EQ(collector.sampleIndex()[index].sampleID, 1);
        EXPECT_EQ(collector.sampleIndex()[index].time, 0);
        EXPECT_EQ(collector.sampleIndex()[index].nextTime, 0);
        EXPECT_EQ(collector.sampleIndex()[index].interval, intervals[index]);
    }
}

TEST_F(StatCollectorTest, AnAverageOverOnlyEmptySlotsIsEmpty) {
    const SampleFields average =
        collector.averageForSamples(collector.storageForType(0), 0, 1000, 0);
    EXPECT_EQ(average.value("empty"), 1);
    EXPECT_EQ(average.value("a"), 0);
}

TEST_F(StatCollectorTest, AnAverageWithoutCutOffTakesTheNewest) {
    for (const double value : {1.0, 2.0, 4.0})
        collector.addNow(value, kNow);
    const SampleFields average = collector.averageForSamples(collector.storageForType(0), 2, 0, 0);
    EXPECT_EQ(average.value("a"), 3);
    EXPECT_EQ(average.value("time"), kNow);
}

TEST_F(StatCollectorTest, ASampleAtTheCutOffIsLeftOut) {
    collector.addNow(100, kNow - 6);
    collector.addNow(10, kNow - 1);
    collector.addNow(20, kNow);
    EXPECT_EQ(collector.hourSample(kNow).value("a"), 15);
}

TEST_F(StatCollectorTest, OneSampleIsEnoughForAnHourSample) {
    collector.addNow(10, kNow - 1);
    EXPECT_EQ(collector.hourSample(kNow).value("empty"), 0);
    EXPECT_EQ(collector.hourSample(kNow).value("a"), 10);
}

TEST_F(StatCollectorTest, ThreeHourSamplesAreTooFewForADaySample) {
    for (int sample = 3; sample > 0; --sample)
        collector.addHourSample(sampleOf({{"time", kNow - 6 * sample}, {"a", 10}}));
    EXPECT_EQ(collector.daySample(kNow).value("empty"), 1);
    collector.addHourSample(sampleOf({{"time", kNow}, {"a", 10}}));
    EXPECT_EQ(collector.daySample(kNow).value("empty"), 0);
}

TEST_F(StatCollectorTest, AWeekSampleIsAMeanOfHourSamples) {
    for (int sample = 24; sample > 0; --sample) {
        EXPECT_EQ(collector.weekSample(kNow).value("empty"), 1);
        collector.addHourSample(sampleOf({{"time", kNow - 6 * sample}, {"a", sample <= 12 ? 4 : 2}}));
    }
    EXPECT_EQ(collector.weekSample(kNow).value("a"), 3);
}

TEST_F(StatCollectorTest, GapsDoNotCountInAnAverage) {
    collector.addNow(10, kNow - 2);
    collector.storageForType(0).setEmpty(0, 1);
    collector.addNow(30, kNow - 1);
    EXPECT_EQ(collector.hourSample(kNow).value("a"), 30);
}

TEST_F(StatCollectorTest, ClearingKeepsTheTimesOfTheSlots) {
    collector.addHourSample(sampleOf({{"time", 50}, {"a", 1}}));
    collector.clearAllStorages();
    EXPECT_EQ(collector.sampleAtIndex(0, StorageType::hour).sampleID, 0);
    EXPECT_EQ(collector.sampleAtIndex(0, StorageType::hour).time, 50);
}

TEST_F(StatCollectorTest, ASessionBeginsWithTheCollector) {
    EXPECT_EQ(collector.sessionID(), static_cast<std::int64_t>(kNow));
}

}  // namespace
}  // namespace vantor
