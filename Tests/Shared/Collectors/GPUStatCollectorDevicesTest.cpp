#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Shared/Collectors/GPUStatCollector.h"
#include "Tests/Support/GraphicsTree.h"
#include "Tests/Support/World.h"

// How the collector finds graphics processors and their displays.

namespace vantor {
namespace {

using test::Card;
using test::dataOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class GPUStatCollectorDevicesTest : public testing::Test {
protected:
    void fetch(const std::vector<Card>& cards) {
        world.machine.registry.setTree(test::graphicsTree(cards));
        collector().fetchGPUS();
    }
    void fetchDisplays(const std::vector<Card>& cards) {
        fetch(cards);
        collector().updateDisplays();
    }
    GPUStatCollector& collector() { return GPUStatCollector::sharedGPUCollector(); }
    const GPUStatCollectorItem& gpu(std::size_t index = 0) { return collector().gpu(index); }
    std::vector<std::string> keys() {
        std::vector<std::string> all;
        for (const auto& item : collector().items())
            all.push_back(item->key.value_or("none"));
        return all;
    }
    std::vector<bool> integrated() {
        std::vector<bool> all;
        for (std::size_t index = 0; index < collector().items().size(); ++index)
            all.push_back(gpu(index).intergrated);
        return all;
    }
    RegistryObject object(std::uint64_t id) { return world.machine.registry.objectWithID(id); }

    test::World world;
};

TEST_F(GPUStatCollectorDevicesTest, OnlyDisplaysAmongTheDevicesCount) {
    fetch({{}});
    EXPECT_THAT(keys(), ElementsAre("Slot1"));
    EXPECT_EQ(gpu().registryEntry, object(12));
    EXPECT_EQ(gpu().registryEntryStats, object(13));
    EXPECT_EQ(gpu().model, "AMD Radeon R9 M370X");
    EXPECT_FALSE(gpu().temporary());
}

TEST_F(GPUStatCollectorDevicesTest, ANameMayBeData) {
    fetch({{.properties = {{"IOName", dataOf("display")}}}});
    EXPECT_THAT(keys(), SizeIs(1));
}

TEST_F(GPUStatCollectorDevicesTest, AMachineWithoutGraphicsHasNoItems) {
    fetch({});
    EXPECT_THAT(keys(), IsEmpty());
    EXPECT_EQ(collector().activeGPU(), nullptr);
}

TEST_F(GPUStatCollectorDevicesTest, AKeyIsTheLettersAndDigitsOfTheBestName) {
    struct Case {
        PropertyValue slot, model;
        PropertyValue::Dictionary above;
        const char* key;
    };
    const Case cases[] = {
        {"Slot - 1", dataOf("Radeon"), {{"device-id", 7}}, "Slot1"},
        {dataOf("PCI 2"), dataOf("Radeon"), {{"device-id", 7}}, "PCI2"},
        {{}, dataOf("Radeon"), {{"device-id", dataOf(0x67EF)}}, "26607"},
        {{}, dataOf("Radeon"), {{"device-id", -7.4}}, "7"},
        {{}, dataOf("Radeon R9 (2)"), {{"device-id", 0}}, "RadeonR92"},
        {dataOf("\xFF"), dataOf("Radeon\xC2\xAE \xC3\xA9"), {}, "Radeon\xC3\xA9"},
        {{}, "Radeon HD-4850", {}, "RadeonHD4850"},
        {12, dataOf("Radeon"), {}, "12"},
    };
    for (const Case& each : cases) {
        GPUStatCollector::cleanupShared();
        fetch({{.model = each.model, .slot = each.slot, .above = each.above}});
        EXPECT_THAT(keys(), ElementsAre(each.key));
    }
}

TEST_F(GPUStatCollectorDevicesTest, ADeviceWithoutAKeyIsLeftOut) {
    fetch({{.number = 1, .model = {}, .slot = {}}, {.number = 2, .slot = "--"}});
    EXPECT_THAT(keys(), IsEmpty());
}

TEST_F(GPUStatCollectorDevicesTest, ADeviceWithoutAModelHasNone) {
    fetch({{.model = {}}, {.number = 2, .model = dataOf("Radeon\xC2\xAE"), .slot = "B"}});
    EXPECT_EQ(gpu(0).model, std::nullopt);
    EXPECT_EQ(gpu(1).model, std::nullopt) << "it isn't ASCII";
}

TEST_F(GPUStatCollectorDevicesTest, AnAllInOneHidesTheIntelProcessor) {
    world.machine.machineIdentity.setModelIdentifier("iMac12,1");
    fetch({{.number = 1, .model = dataOf("Intel HD Graphics 3000"), .slot = "A"},
           {.number = 2, .model = dataOf("AMD Radeon HD 6750M"), .slot = "B"}});
    EXPECT_THAT(keys(), ElementsAre("B"));
}

TEST_F(GPUStatCollectorDevicesTest, OtherMachinesShowBoth) {
    world.machine.machineIdentity.setModelIdentifier("MacBookPro8,2");
    fetch({{.number = 1, .model = dataOf("INTEL HD Graphics 3000"), .slot = "A"},
           {.number = 2, .model = dataOf("AMD Radeon HD 6750M"), .slot = "B"}});
    EXPECT_THAT(keys(), ElementsAre("A", "B"));
    EXPECT_THAT(integrated(), ElementsAre(true, false));
}

TEST_F(GPUStatCollectorDevicesTest, TheFirstIsIntegratedWhereItIsBuiltIn) {
    const PropertyValue::Dictionary builtIn{{"built-in", dataOf("")}};
    fetch({{.number = 1, .slot = "A", .properties = builtIn},
           {.number = 2, .slot = "B", .properties = builtIn}});
    EXPECT_THAT(integrated(), ElementsAre(true, false));
}

TEST_F(GPUStatCollectorDevicesTest, OneThatWasLeftOutIsNotTheFirst) {
    fetch({{.number = 1, .slot = "-"},
           {.number = 2, .slot = "B", .properties = {{"built-in", dataOf("")}}}});
    EXPECT_THAT(integrated(), ElementsAre(true));
}

TEST_F(GPUStatCollectorDevicesTest, BesideAnIntelProcessorBuiltInSaysNothing) {
    fetch({{.number = 1, .slot = "A", .properties = {{"built-in", dataOf("")}}},
           {.number = 2, .model = dataOf("Intel Iris"), .slot = "B"}});
    EXPECT_THAT(integrated(), ElementsAre(false, true));
}

TEST_F(GPUStatCollectorDevicesTest, MemoryIsTheDevicesOrTheFirstChildsThatTellsIt) {
    fetch({{.properties = {{"VRAM,totalMB", 1}}, .driver = {{"VRAM,totalMB", 2}}}});
    EXPECT_EQ(gpu().totalyMemory, 1048576);
    GPUStatCollector::cleanupShared();
    fetch({{.driver = {{"VRAM,totalsize", dataOf(4096)}}}});
    EXPECT_EQ(gpu().totalyMemory, 4096);
}

TEST_F(GPUStatCollectorDevicesTest, TheWalkOverTheChildrenEndsAtTheStatistics) {
    auto tree = test::graphicsTree({{}});
    auto& children = tree.children[0].children[0].children[0].children;
    children.insert(children.begin(), {50, "Child", "early", {{"VRAM,memsize", 11}}, {}});
    children.push_back(
        {51, "Child", "late", {{"PerformanceStatistics", PropertyValue::Dictionary{}}}, {}});
    world.machine.registry.setTree(tree);
    collector().fetchGPUS();
    EXPECT_EQ(gpu().totalyMemory, 11);
    EXPECT_EQ(gpu().registryEntryStats, object(13));
}

TEST_F(GPUStatCollectorDevicesTest, OneWithAHistoryTurnsIntoALiveItem) {
    StatCollectorItem* const loaded =
        collector().itemWithKey("Slot1", StatCollector::Temporary::yes);
    fetch({{}});
    EXPECT_THAT(keys(), SizeIs(1));
    EXPECT_FALSE(loaded->temporary());
    EXPECT_EQ(gpu().registryEntry, object(12));
}

TEST_F(GPUStatCollectorDevicesTest, ADisplayIsDescribedUnderItsGraphicsProcessor) {
    fetchDisplays({{.number = 1, .slot = "A", .display = std::nullopt},
                   {.number = 2,
                    .slot = "B",
                    .display = PropertyValue::Dictionary{{"DisplayProductID", 1},
                                                         {"DisplaySerialNumber", 2},
                                                         {"IODisplayGUID", 3},
                                                         {"IODisplayLocation", "here"},
                                                         {"DisplaySerialString", "S"},
                                                         {"DisplayProductName", "Panel"},
                                                         {"DisplayVendorID", 4},
                                                         {"Other", 5}}}});
    EXPECT_THAT(gpu(0).displays, IsEmpty());
    EXPECT_THAT(gpu(1).displays, ElementsAre(PropertyValue::Dictionary{{"product-id", 1},
                                                                       {"serial", 2},
                                                                       {"guid", 3},
                                                                       {"location", "here"},
                                                                       {"serial-string", "S"},
                                                                       {"display-name", "Panel"},
                                                                       {"vendor", 4}}));
}

TEST_F(GPUStatCollectorDevicesTest, AScreenTellsItsNameAndItsSize) {
    Screen other, screen;
    other.resolution = Size{1, 1};
    screen.productNames = {{"fr", "Ecran"}, {"en", "Screen"}};
    screen.resolution = Size{109, 110};
    screen.size = Size{2560, 1440.5};
    world.machine.displays.setScreens(
        {{.display = 13, .screen = other}, {.display = 15, .screen = screen}});
    fetchDisplays({{.display = PropertyValue::Dictionary{{"DisplayProductName", "Panel"}}}});
    EXPECT_THAT(gpu().displays,
                ElementsAre(PropertyValue::Dictionary{
                    {"display-name", "Ecran"}, {"ppi", 109.0}, {"resolution", "{2560, 1440.5}"}}));
}

TEST_F(GPUStatCollectorDevicesTest, AScreenThatTellsNothingChangesNothing) {
    world.machine.displays.setScreens({{.display = 15, .screen = {}}});
    fetchDisplays({{.display = PropertyValue::Dictionary{{"DisplayProductName", "Panel"}}}});
    EXPECT_THAT(gpu().displays, ElementsAre(PropertyValue::Dictionary{{"display-name", "Panel"}}));
}

TEST_F(GPUStatCollectorDevicesTest, DisplaysAreListedAnewEachTime) {
    fetchDisplays({{}});
    collector().updateDisplays();
    EXPECT_THAT(gpu().displays, SizeIs(1));
    world.machine.registry.setTree(test::graphicsTree({{.display = std::nullopt}}));
    collector().updateDisplays();
    EXPECT_THAT(gpu().displays, IsEmpty());
}

TEST_F(GPUStatCollectorDevicesTest, APlugMayBeTenStepsBelowItsProcessorAndNoFarther) {
    for (const bool isNear : {true, false}) {
        auto tree = test::graphicsTree({{.display = std::nullopt}});
        auto* above = &tree.children[0].children[0].children[0];
        for (std::uint64_t step = 1; step < (isNear ? 10 : 11); ++step)
            above = &above->children.emplace_back(
                simulated::RegistryNode{100 + step, "Step", "step", {}, {}});
        above->children.push_back(
            {90, "IODisplayConnect", "plug", {}, {{91, "IODisplay", "display", {}, {}}}});
        world.machine.registry.setTree(tree);
        collector().fetchGPUS();
        collector().updateDisplays();
        EXPECT_THAT(gpu().displays, SizeIs(isNear ? 1 : 0));
    }
}

}  // namespace
}  // namespace vantor
