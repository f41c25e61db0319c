#include "Shared/Collectors/GPUStatCollector.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Support/AllocationCounter.h"
#include "Tests/Support/GraphicsTree.h"
#include "Tests/Support/TestCollector.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using test::Card;
using test::dataOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// A card of 1000 bytes that reports its load.
Card busyCard(std::uint64_t number = 1, std::string_view model = "AMD Radeon R9 M370X") {
    return {.number = number,
            .model = dataOf(model),
            .slot = "Slot" + std::to_string(number),
            .properties = {{"VRAM,totalsize", 1000}},
            .statistics = {{"vramUsedBytes", 250}, {"Device Utilization %", 40}}};
}

class GPUStatCollectorTest : public testing::Test {
protected:
    void setCards(const std::vector<Card>& cards) {
        world.machine.registry.setTree(test::graphicsTree(cards));
    }
    /// As a module does it.
    void prime() {
        collector().addDelegate(delegate);
        collector().setEnabled(true);
        collector().loadNotifications();
        collector().fetchGPUS();
        collector().updateDisplays();
        collector().updateActiveGPU();
        collector().updateStats();
        collector().setEnabled(false);
        world.machine.run(0);
    }
    void prime(const std::vector<Card>& cards) {
        setCards(cards);
        prime();
    }
    GPUStatCollector& collector() { return GPUStatCollector::sharedGPUCollector(); }
    const GPUStatCollectorItem& gpu(std::size_t index = 0) { return collector().gpu(index); }
    statsample newest(std::size_t index = 0) {
        return gpu(index).sampleAtIndex(0, StorageType::now);
    }
    std::vector<bool> connected() {
        std::vector<bool> all;
        for (std::size_t index = 0; index < collector().items().size(); ++index)
            all.push_back(gpu(index).connected);
        return all;
    }
    /// An integrated one and a discrete one in a laptop.
    void primeLaptop(simulated::GraphicsAnswer answer) {
        world.machine.machineIdentity.setModelIdentifier("MacBookPro8,2");
        world.machine.graphicsControl.setAnswer(answer);
        prime({busyCard(1, "Intel HD Graphics 3000"), busyCard(2)});
    }

    test::World world;
    test::TestDelegate delegate;
};

TEST_F(GPUStatCollectorTest, ItsValuesLiveInItsItems) {
    EXPECT_EQ(collector().storageType(), StorageKind::items);
    EXPECT_EQ(collector().sampleValueCount(), 5U);
    EXPECT_EQ(collector().dbTablePrefix(), "gpu");
    EXPECT_EQ(collector().tableAtIndex(1), "hour_gpuidhistory");
    EXPECT_EQ(collector().itemTableAtIndex(1), "hour_gpuhistory");
    EXPECT_EQ(GPUStatCollectorItem().sampleValueCount(), 5U);
}

TEST_F(GPUStatCollectorTest, AGapHasNoFigures) {
    EXPECT_EQ(collector().emptySampleWithIdentifier(2, 3).value("memory"), std::nullopt);
}

TEST_F(GPUStatCollectorTest, ASampleHasTheShareOfTheMemoryAndTheLoad) {
    prime({busyCard()});
    EXPECT_EQ(newest().values[0], 0.25);
    EXPECT_EQ(newest().values[1], 40);
    EXPECT_EQ(newest().sampleID, 2);
    EXPECT_EQ(newest().time, world.machine.clock.now());
    EXPECT_EQ(newest().empty, 0);
    EXPECT_TRUE(gpu().exists);
}

TEST_F(GPUStatCollectorTest, TheCollectorsOwnRingHasIdentifiersAndTimesAlone) {
    prime({busyCard()});
    const statsample sample = collector().sampleAtIndex(0, StorageType::now);
    EXPECT_EQ(sample.sampleID, 2);
    EXPECT_EQ(sample.time, world.machine.clock.now());
    EXPECT_THAT(sample.values, testing::Each(0.0));
}

TEST_F(GPUStatCollectorTest, TheFiguresAreKeptAsTheyWereRead) {
    Card card = busyCard();
    card.driver = {{"SurfaceList", PropertyValue::Array{1, 2}}};
    prime({card});
    EXPECT_EQ(gpu().totalyMemory, 1000);
    EXPECT_EQ(gpu().usedMemory(), 250);
    EXPECT_EQ(gpu().freeMemory(), 0);
    EXPECT_EQ(gpu().processor(), 40);
    EXPECT_EQ(gpu().surfaceCount(), 2);
}

TEST_F(GPUStatCollectorTest, CoreUtilizationIsInTenMillionths) {
    Card card = busyCard();
    card.statistics["GPU Core Utilization"] = 500000000;
    prime({card});
    EXPECT_EQ(newest().values[1], 50);
}

TEST_F(GPUStatCollectorTest, WithoutProcessorUsageThereIsAMemorySampleAlone) {
    Card card = busyCard();
    card.statistics.erase("Device Utilization %");
    prime({card});
    EXPECT_FALSE(gpu().hasProcessorUsage());
    EXPECT_EQ(newest().values[0], 0.25);
    EXPECT_EQ(newest().values[1], -1);
}

TEST_F(GPUStatCollectorTest, ProcessorUsageIsForGood) {
    prime({busyCard()});
    Card card = busyCard();
    card.statistics.erase("Device Utilization %");
    setCards({card});
    collector().updateStats();
    EXPECT_TRUE(gpu().hasProcessorUsage());
    EXPECT_EQ(gpu().processor(), -1);
    EXPECT_EQ(newest().values[1], -1);
}

TEST_F(GPUStatCollectorTest, AnUnknownTotalIsAskedForAtEachUpdate) {
    Card card = busyCard();
    card.properties.clear();
    prime({card});
    EXPECT_EQ(newest().values[0], -1);
    card.driver["VRAM,memsize"] = 500;
    setCards({card});
    collector().updateStats();
    EXPECT_EQ(newest().values[0], -1) << "the retry doesn't ask for that";
    card.driver["VRAM,totalsize"] = 500;
    setCards({card});
    collector().updateStats();
    EXPECT_EQ(newest().values[0], 0.5);
    card.driver["VRAM,totalMB"] = 9;
    setCards({card});
    collector().updateStats();
    EXPECT_EQ(gpu().totalyMemory, 500);
}

TEST_F(GPUStatCollectorTest, TheRetryTakesMegabytesFirst) {
    Card card = busyCard();
    card.properties.clear();
    prime({card});
    card.driver = {{"VRAM,totalMB", 1}, {"VRAM,totalsize", 500}};
    setCards({card});
    collector().updateStats();
    EXPECT_EQ(gpu().totalyMemory, 1048576);
}

TEST_F(GPUStatCollectorTest, OfAnIdleOneNothingIsDrawn) {
    Card card = busyCard();
    card.display.reset();
    prime({card});
    EXPECT_EQ(newest().values[0], -1);
    EXPECT_EQ(newest().values[1], -1);
    EXPECT_EQ(gpu().usedMemory(), 250);
    EXPECT_TRUE(gpu().hasProcessorUsage());
}

TEST_F(GPUStatCollectorTest, OneWithoutADisplayIsDrawnWhereItHasSurfaces) {
    Card card = busyCard();
    card.display.reset();
    for (const PropertyValue& surfaces : {PropertyValue(PropertyValue::Array{1}),
                                          PropertyValue(PropertyValue::Dictionary{{"a", 1}})}) {
        card.driver["SurfaceList"] = surfaces;
        GPUStatCollector::cleanupShared();
        prime({card});
        EXPECT_EQ(newest().values[0], 0.25);
    }
    card.driver["SurfaceList"] = "many";
    GPUStatCollector::cleanupShared();
    prime({card});
    EXPECT_EQ(gpu().surfaceCount(), 0);
}

TEST_F(GPUStatCollectorTest, WithoutStatisticsNothingIsKnown) {
    Card card = busyCard();
    card.driver["PerformanceStatistics"] = "none";
    prime({card});
    EXPECT_EQ(newest().values[0], -1);
    EXPECT_EQ(newest().values[1], -1);
}

TEST_F(GPUStatCollectorTest, MemoryInUseCountsFromElCapitanOn) {
    Card card = busyCard();
    card.statistics["inUseVidMemoryBytes"] = 500;
    prime({card});
    EXPECT_EQ(gpu().usedMemory(), 500);
    EXPECT_EQ(gpu().freeMemory(), 500);

    test::World older;
    older.machine.machineIdentity.setSystemVersion({10, 10, 5});
    older.machine.registry.setTree(test::graphicsTree({card}));
    collector().fetchGPUS();
    collector().updateStats();
    EXPECT_EQ(gpu().usedMemory(), 250);
}

TEST_F(GPUStatCollectorTest, SharedMemoryCountsForAnIntegratedOne) {
    Card card = busyCard(1, "Intel Iris");
    card.statistics = {{"gartSizeBytes", 1000}, {"gartUsedBytes", 100}, {"gartFreeBytes", 900}};
    prime({card});
    EXPECT_EQ(newest().values[0], 0.1);
}

TEST_F(GPUStatCollectorTest, OneThatOnlyHasAHistoryGoesOnWithoutFigures) {
    StatCollectorItem* const gone = collector().itemWithKey("gone", StatCollector::Temporary::yes);
    prime({busyCard()});
    EXPECT_EQ(gone->sampleAtIndex(0, StorageType::now).sampleID, 2);
    EXPECT_EQ(gone->sampleAtIndex(0, StorageType::now).values[0], -1);
    EXPECT_TRUE(gone->temporary());
}

TEST_F(GPUStatCollectorTest, WithoutAControlServiceAllAreActive) {
    primeLaptop({});
    EXPECT_THAT(connected(), ElementsAre(true, true));
    EXPECT_EQ(collector().activeGPU(), &gpu(0));
}

TEST_F(GPUStatCollectorTest, AMachineThatIgnoresTheServiceHasAllActive) {
    world.machine.machineIdentity.setModelIdentifier("MacPro5,1");
    world.machine.graphicsControl.setAnswer({.isThere = true, .active = 0});
    prime({busyCard(1, "Intel HD Graphics 3000"), busyCard(2)});
    EXPECT_THAT(connected(), ElementsAre(true, true));
}

TEST_F(GPUStatCollectorTest, TheServiceSaysWhichIsActive) {
    struct Case {
        std::optional<std::int64_t> answer;
        std::vector<bool> connected;
    };
    for (const Case& each :
         {Case{1, {true, false}}, Case{0, {false, true}}, Case{std::nullopt, {false, false}},
          Case{-1, {false, false}}, Case{2, {false, false}}}) {
        GPUStatCollector::cleanupShared();
        primeLaptop({.isThere = true, .active = each.answer});
        EXPECT_EQ(connected(), each.connected);
    }
    EXPECT_EQ(collector().activeGPU(), nullptr);
}

TEST_F(GPUStatCollectorTest, ADisabledOneMeasuresAtEveryThirdTick) {
    collector().setEnabled(false);
    for (const int sequence : {0, 3, 6, -3})
        EXPECT_TRUE(collector().shouldUpdateStateForSequence(sequence));
    for (const int sequence : {1, 2, 4, -1})
        EXPECT_FALSE(collector().shouldUpdateStateForSequence(sequence));
    collector().setEnabled(true);
    EXPECT_TRUE(collector().shouldUpdateStateForSequence(1));
}

TEST_F(GPUStatCollectorTest, DelegatesAreNotAsked) {
    collector().addDelegate(delegate);
    delegate.answer = false;
    EXPECT_TRUE(collector().shouldUpdateStateForSequence(1));
    EXPECT_THAT(delegate.asked, IsEmpty());
}

TEST_F(GPUStatCollectorTest, DelegatesAreToldLaterOnTheMainQueue) {
    collector().addDelegate(delegate);
    collector().updateStats();
    EXPECT_THAT(delegate.modes, IsEmpty());
    world.machine.run(0);
    EXPECT_THAT(delegate.modes, ElementsAre(0));
}

TEST_F(GPUStatCollectorTest, OneThatEndedTellsNobody) {
    collector().addDelegate(delegate);
    collector().updateStats();
    GPUStatCollector::cleanupShared();
    world.machine.run(0);
    EXPECT_THAT(delegate.modes, IsEmpty());
}

TEST_F(GPUStatCollectorTest, AFrameRateThatIsNotToldStaysWhatItWas) {
    collector().updateStats();
    EXPECT_EQ(collector().fps(), 0);
    world.machine.windowServer.setFrameRate(59.5);
    collector().updateStats();
    world.machine.windowServer.setFrameRate(std::nullopt);
    collector().updateStats();
    EXPECT_EQ(collector().fps(), 59.5F);
}

TEST_F(GPUStatCollectorTest, AChangeOfTheDisplaysIsLookedAtTwice) {
    prime({busyCard()});
    const double start = world.machine.clock.now();
    const auto measurements = [this] { return world.journal.measurements.size(); };
    const std::size_t before = measurements();
    Card card = busyCard();
    card.display.reset();
    setCards({card});
    world.machine.displays.reconfigure();
    EXPECT_EQ(measurements(), before + 1);
    EXPECT_THAT(gpu().displays, IsEmpty());
    setCards({busyCard()});
    world.machine.run(0.4);
    EXPECT_THAT(gpu().displays, IsEmpty());
    world.machine.run(0.2);
    EXPECT_EQ(measurements(), before + 2);
    EXPECT_THAT(gpu().displays, SizeIs(1));
    EXPECT_NEAR(collector().sampleAtIndex(0, StorageType::now).time, start + 0.5, 0.01);
    EXPECT_FALSE(collector().enabled());
    world.machine.run(5);
    EXPECT_EQ(measurements(), before + 2);
}

TEST_F(GPUStatCollectorTest, AChangeMayMakeAnotherOneActive) {
    primeLaptop({.isThere = true, .active = 1});
    world.machine.graphicsControl.setAnswer({.isThere = true, .active = 0});
    world.machine.displays.reconfigure();
    EXPECT_THAT(connected(), ElementsAre(false, true));
}

TEST_F(GPUStatCollectorTest, OneThatEndedHearsOfNoChange) {
    prime({busyCard()});
    world.machine.displays.reconfigure();
    collector().cleanup();
    world.journal.measurements.clear();
    world.machine.displays.reconfigure();
    EXPECT_THAT(world.journal.measurements, IsEmpty());
    GPUStatCollector::cleanupShared();
    world.machine.run(1);
    EXPECT_EQ(world.context.existingGPUCollector(), nullptr);
    EXPECT_THAT(world.journal.measurements, IsEmpty());
}

TEST_F(GPUStatCollectorTest, ACardThatLeftKeepsItsLastFigures) {
    prime({busyCard()});
    setCards({});
    world.machine.displays.reconfigure();
    EXPECT_EQ(gpu().usedMemory(), 250);
    EXPECT_THAT(gpu().displays, IsEmpty());
    EXPECT_EQ(newest().values[0], -1);
}

TEST_F(GPUStatCollectorTest, HourSamplesAreTheMeansOfTheItems) {
    prime({busyCard()});
    collector().setEnabled(true);
    collector().startLogging();
    world.machine.run(19);
    const statsample hour = gpu().sampleAtIndex(0, StorageType::hour);
    const statsample own = collector().sampleAtIndex(0, StorageType::hour);
    EXPECT_EQ(hour.sampleID, own.sampleID);
    EXPECT_EQ(hour.values[0], 0.25);
    EXPECT_EQ(hour.values[1], 40);
    EXPECT_EQ(hour.time, own.time - 6) << "an item's mean bears the time from which it was taken";
}

TEST_F(GPUStatCollectorTest, TheOverviewDescribesEachItem) {
    collector().itemWithKey("gone", StatCollector::Temporary::yes);
    prime({busyCard(1, "Intel Iris")});
    const PropertyValue::Dictionary overview = collector().overview();
    const auto& items = *overview.at("items").array();
    ASSERT_THAT(items, SizeIs(2));
    EXPECT_EQ(items[0].dictionary()->at("description").stringValue(),
              "key = 'gone', model = (null), intergrated = 0, connected = 1, temporary 1");
    EXPECT_EQ(items[1].dictionary()->at("description").stringValue(),
              "key = 'Slot1', model = Intel Iris, intergrated = 1, connected = 1, temporary 0");
}

TEST_F(GPUStatCollectorTest, ASampleDoesNotAllocate) {
    Card intel = busyCard(2, "Intel Iris");
    intel.properties.clear();
    intel.driver["SurfaceList"] = PropertyValue::Array{1};
    prime({busyCard(), intel});
    for (int sample = 0; sample < 4; ++sample) {
        collector().updateStats();
        world.machine.run(0);
    }
    const test::AllocationCounter allocations;
    collector().updateGPUS();
    EXPECT_EQ(allocations.count(), 0U);
}

TEST_F(GPUStatCollectorTest, WhileSamplesAreHiddenNoneIsActive) {
    prime({busyCard()});
    collector().hideSamples();
    EXPECT_EQ(collector().activeGPU(), nullptr);
    collector().showSamples();
    EXPECT_NE(collector().activeGPU(), nullptr);
}

}  // namespace
}  // namespace vantor
