#include "Shared/Collectors/StatCollectorItem.h"

#include <gtest/gtest.h>

#include "Tests/Support/TestCollector.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using test::sampleOf;
using test::TestCollector;

constexpr double kNow = simulated::SimulatedMachine::kStart;

class StatCollectorItemsTest : public testing::Test {
protected:
    StatCollectorItemsTest() {
        collector.itemMaker = [] { return std::make_unique<StatCollectorItem>(2); };
    }

    test::World world;
    TestCollector collector{world.machine.ports(), StorageKind::items};
};

TEST_F(StatCollectorItemsTest, ANumberFindsTheItemOfItsText) {
    StatCollectorItem* const item = collector.newItemWithKey("3");
    EXPECT_EQ(collector.itemWithKey(NSInt(3)), item);
}

TEST_F(StatCollectorItemsTest, ATemporaryItemIsSeenOnlyByWhoAsksForThem) {
    StatCollectorItem* const item =
        collector.itemWithKey("gpu", StatCollector::Temporary::yes);
    ASSERT_NE(item, nullptr);
    EXPECT_TRUE(item->temporary());
    EXPECT_EQ(collector.itemWithKey("gpu"), nullptr);
    EXPECT_EQ(collector.itemWithKey("gpu", StatCollector::Temporary::yes), item);
}

TEST_F(StatCollectorItemsTest, ATemporaryItemTurnsLiveWithItsHistory) {
    StatCollectorItem* const loaded =
        collector.itemWithKey("gpu", StatCollector::Temporary::yes);
    loaded->addSample(sampleOf({{"sample", 8}, {"a", 1}}), 1);
    StatCollectorItem* const live = collector.newItemWithKey("gpu");
    EXPECT_EQ(live, loaded);
    EXPECT_FALSE(live->temporary());
    EXPECT_EQ(live->lowestSampleForStorageType(1), 8);
}

TEST_F(StatCollectorItemsTest, ACollectorWithoutItemsMakesNone) {
    collector.itemMaker = nullptr;
    EXPECT_EQ(collector.itemWithKey("gpu", StatCollector::Temporary::yes), nullptr);
}

TEST_F(StatCollectorItemsTest, MissingItemsAreRemoved) {
    collector.newItemWithKey("1");
    StatCollectorItem* const kept = collector.newItemWithKey("2");
    collector.markItemsAsMissing();
    kept->exists = true;
    EXPECT_TRUE(collector.removeOldItems());
    EXPECT_EQ(collector.items().size(), 1U);
    EXPECT_FALSE(collector.removeOldItems());
}

TEST_F(StatCollectorItemsTest, MarkingAsExistingKeepsThemAll) {
    collector.newItemWithKey("1");
    collector.markItemsAsExisting();
    EXPECT_FALSE(collector.removeOldItems());
}

TEST_F(StatCollectorItemsTest, ItemsThatDoNotOrderThemselvesStayAsTheyAre) {
    for (const char* const key : {"b", "a", "c"})
        collector.newItemWithKey(key);
    collector.sort();
    EXPECT_EQ(collector.items()[0]->key, "b");
    EXPECT_EQ(collector.items()[2]->key, "c");
}

TEST_F(StatCollectorItemsTest, ItemsThatOrderThemselvesAreSorted) {
    struct ByKey final : StatCollectorItem {
        int sort(const StatCollectorItem& other) const noexcept override {
            return key->compare(*other.key);
        }
    };
    collector.itemMaker = [] { return std::make_unique<ByKey>(); };
    for (const char* const key : {"b", "c", "a"})
        collector.newItemWithKey(key);
    collector.sort();
    EXPECT_EQ(collector.items()[0]->key, "a");
    EXPECT_EQ(collector.items()[1]->key, "b");
    EXPECT_EQ(collector.items()[2]->key, "c");
}

TEST_F(StatCollectorItemsTest, AnItemsSampleIsNeverAGap) {
    StatCollectorItem* const item = collector.newItemWithKey("gpu");
    item->addSample(sampleOf({{"sample", 3}, {"empty", 1}}), 1);
    EXPECT_EQ(item->sampleAtIndex(0, StorageType::hour).empty, 0);
}

TEST_F(StatCollectorItemsTest, AnItemIgnoresWhatIsNotNewer) {
    StatCollectorItem* const item = collector.newItemWithKey("gpu");
    item->addSample(sampleOf({{"sample", 3}, {"a", 1}}), 1);
    item->addSample(sampleOf({{"sample", 3}, {"a", 2}}), 1);
    EXPECT_EQ(item->sampleAtIndex(0, StorageType::hour).values[0], 1);
}

TEST_F(StatCollectorItemsTest, HistoryIsFilledBehindWithoutMovingTheRest) {
    StatCollectorItem* const item = collector.newItemWithKey("gpu");
    item->addSample(sampleOf({{"sample", 9}, {"a", 1}}), 1);
    item->addSample(sampleOf({{"sample", 4}, {"time", 40}, {"a", 2}}), 1, std::size_t{1});
    EXPECT_EQ(item->sampleAtIndex(0, StorageType::hour).sampleID, 9);
    EXPECT_EQ(item->sampleAtIndex(1, StorageType::hour).sampleID, 4);
    EXPECT_EQ(item->sampleAtIndex(1, StorageType::hour).time, 40);
    EXPECT_EQ(item->sampleAtIndex(1, StorageType::hour).empty, 0);
}

TEST_F(StatCollectorItemsTest, ClearingAnItemClearsItsTimes) {
    StatCollectorItem* const item = collector.newItemWithKey("gpu");
    item->addSample(sampleOf({{"sample", 9}, {"time", 40}}), 1);
    collector.clearStorageForType(1);
    EXPECT_EQ(item->sampleAtIndex(0, StorageType::hour).time, 0);
}

TEST_F(StatCollectorItemsTest, AnUnknownIdentifierGivesAGap) {
    StatCollectorItem* const item = collector.newItemWithKey("gpu");
    EXPECT_EQ(item->sampleWithIdentifier(12, StorageType::day).sampleID, 12);
    EXPECT_EQ(item->sampleWithIdentifier(12, StorageType::day).empty, 1);
}

TEST_F(StatCollectorItemsTest, AnAverageWithoutCutOffLeavesOldIdentifiersOut) {
    StatCollectorItem* const item = collector.newItemWithKey("gpu");
    for (const double sampleID : {2.0, 7.0, 8.0})
        item->addSample(sampleOf({{"sample", sampleID}, {"a", sampleID}}), 1);
    const SampleFields average =
        item->averageForSamples(item->storageForType(1), 3, 0, 0, 9);  // from 6 on
    EXPECT_EQ(average.value("a"), 7.5);
    EXPECT_EQ(average.value("time"), 0);
}

TEST_F(StatCollectorItemsTest, AnItemWithoutKeyGivesNoSample) {
    collector.newItemWithKey("gpu")->key.reset();
    EXPECT_FALSE(collector.items()[0]->sampleFromStorage(0, 1, 0, 1));
    EXPECT_TRUE(collector.sampleItemsFromStorage(0, 1, kNow, 0).items.empty());
}

TEST_F(StatCollectorItemsTest, ARollUpHoldsEveryLiveItemAndIsNeverEmptyItself) {
    collector.newItemWithKey("a")->addSample(
        sampleOf({{"sample", 1}, {"time", kNow - 1}, {"a", 4}}), 0);
    collector.newItemWithKey("b");
    collector.newItemWithKey("c")->nohistory = true;
    collector.itemWithKey("d", StatCollector::Temporary::yes);
    const SampleFields sample = collector.hourSample(kNow);
    ASSERT_EQ(sample.items.size(), 2U);
    EXPECT_EQ(sample.value("empty"), 0);
    EXPECT_EQ(sample.items[0].uuid, "a");
    EXPECT_EQ(sample.items[0].value("a"), 4);
    EXPECT_EQ(sample.items[0].value("time"), kNow - 6);
    EXPECT_EQ(sample.items[1].value("empty"), 1);
}

TEST_F(StatCollectorItemsTest, TheCollectorsRingsHoldOnlyIdentifiersAndTimes) {
    collector.addHourSample(sampleOf({{"sample", 5}, {"time", 30}, {"a", 9}}));
    const statsample sample = collector.sampleAtIndex(0, StorageType::hour);
    EXPECT_EQ(sample.sampleID, 5);
    EXPECT_EQ(sample.time, 30);
    EXPECT_EQ(sample.empty, 1);
    EXPECT_EQ(sample.values[0], 0);
}

TEST_F(StatCollectorItemsTest, ASampleWithItemsReachesThemByKey) {
    SampleFields sample = sampleOf({{"sample", 5}, {"time", 30}});
    sample.items.push_back(sampleOf({{"a", 9}}));
    sample.items[0].uuid = "gpu";
    collector.addHourSample(sample);
    StatCollectorItem* const item =
        collector.itemWithKey("gpu", StatCollector::Temporary::yes);
    EXPECT_TRUE(item->temporary());
    EXPECT_EQ(item->sampleAtIndex(0, StorageType::hour).sampleID, 5);
    EXPECT_EQ(item->sampleAtIndex(0, StorageType::hour).time, 30);
    EXPECT_EQ(item->sampleAtIndex(0, StorageType::hour).values[0], 9);
}

TEST_F(StatCollectorItemsTest, AnItemsOwnTimeWinsOverThatOfTheWholeSample) {
    SampleFields sample = sampleOf({{"sample", 5}, {"time", 30}});
    sample.items.push_back(sampleOf({{"a", 9}, {"time", 24}}));
    sample.items[0].uuid = "gpu";
    collector.addHourSample(sample);
    const StatCollectorItem* const item =
        collector.itemWithKey("gpu", StatCollector::Temporary::yes);
    EXPECT_EQ(item->sampleAtIndex(0, StorageType::hour).time, 24);
}

TEST_F(StatCollectorItemsTest, TheLowestNewestIdentifierIsTheItems) {
    EXPECT_EQ(collector.lowestSampleForStorageType(1), -1);
    collector.newItemWithKey("a")->addSample(sampleOf({{"sample", 9}}), 1);
    collector.newItemWithKey("b")->addSample(sampleOf({{"sample", 7}}), 1);
    EXPECT_EQ(collector.lowestSampleForStorageType(1), 7);
}

TEST_F(StatCollectorItemsTest, SelectionKeysAreAListWithoutRepeats) {
    collector.addSelectionKeyItem("a");
    collector.addSelectionKeyItem("b");
    collector.addSelectionKeyItem("a");
    EXPECT_EQ(collector.selectionKey(), "a,b");
    EXPECT_EQ(world.journal.systemLogLines.back(), "selection key 'a,b'");
}

TEST_F(StatCollectorItemsTest, RemovingTheOnlySelectionKeyLeavesNothing) {
    collector.addSelectionKeyItem("a");
    collector.removeSelectionKeyItem("a");
    EXPECT_FALSE(collector.selectionKey());
}

TEST_F(StatCollectorItemsTest, RemovingOneOfTheSelectionKeysKeepsTheOthers) {
    collector.setSelectionKey("a,b,c");
    collector.removeSelectionKeyItem("b");
    EXPECT_EQ(collector.selectionKey(), "a,c");
}

TEST_F(StatCollectorItemsTest, AnEmptySelectionKeyBecomesNothingOnRemoval) {
    collector.setSelectionKey("");
    collector.removeSelectionKeyItem("b");
    EXPECT_FALSE(collector.selectionKey());
}

}  // namespace
}  // namespace vantor
