#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Hosts/Offscreen/OffscreenMenu.h"
#include "Shared/Collectors/GPUStatCollector.h"
#include "Shared/Graphs/BarGraph.h"
#include "Shared/Graphs/HistoryGraph.h"
#include "Shared/Textfields/StatInterfaceTextField.h"
#include "Shared/Views/StatInterfaceView.h"
#include "Targets/VantorBarCPU/Interface/StatInterfaceCPU.h"
#include "Tests/Support/GraphicsTree.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using test::Card;
using test::dataOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using Item = std::shared_ptr<VTRMenuItem>;

/// A card of 1000 bytes that is a quarter full.
Card card(std::uint64_t number, PropertyValue::Dictionary more = {}) {
    more.emplace("vramUsedBytes", 250);
    return {.number = number,
            .model = dataOf("Card " + std::to_string(number)),
            .slot = "Slot" + std::to_string(number),
            .properties = {{"VRAM,totalsize", 1000}},
            .statistics = std::move(more)};
}
Card busyCard(std::uint64_t number) { return card(number, {{"Device Utilization %", 40}}); }

/// The sections of the graphics processors in a dropdown that is open.
class StatInterfaceGPUSectionsTest : public testing::Test {
protected:
    void setCards(const std::vector<Card>& cards) {
        world.machine.registry.setTree(test::graphicsTree(cards));
    }
    GPUStatCollector& collector() { return GPUStatCollector::sharedGPUCollector(); }
    GPUStatCollectorItem& gpu(std::size_t index) {
        return static_cast<GPUStatCollectorItem&>(*collector().items()[index]);
    }
    /// As a module does when it begins to listen.
    void findCards(const std::vector<Card>& cards) {
        setCards(cards);
        collector().fetchGPUS();
        collector().updateDisplays();
        collector().updateActiveGPU();
        collector().updateStats();
    }
    void open(const std::vector<Card>& cards) {
        findCards(cards);
        made = std::make_shared<StatInterfaceCPU>();
        made->menuWillOpen(menu());
    }
    VTRMenu& menu() { return *made->menu(); }
    void update(int mode = 0) { made->gpuCollectorUpdatedForMode(mode); }
    bool shows(const Item& row) { return row->menu() == &menu(); }
    Item memoryRow(const std::string& key) { return made->gpuItemWithKey(key)->memoryMenuitem; }
    Item loadRow(const std::string& key) { return made->gpuItemWithKey(key)->processorMenuitem; }
    void pointAt(const Item& row) {
        made->menuWillHighlightItem(menu(), row.get());
        world.machine.run(0.01);
    }
    static HistoryGraph& graphIn(VTRMenu& submenu, const char* key) {
        return *submenu.itemArray().at(1)->itemWithKey(key)->historyGraph;
    }
    static void paint(View& view) {
        Painting::ImageSurface surface(view.frame().size(), 1);
        Painting::Context context = surface.context();
        view.display(context);
    }
    /// The titles of the heads, and the labels of the rows that have one.
    std::vector<std::string> sections() {
        std::vector<std::string> texts;
        bool isWithin = false;
        for (const Item& row : menu().itemArray()) {
            const auto* const header = dynamic_cast<const HeaderView*>(row->view());
            if (header != nullptr)
                isWithin =
                    header->title().starts_with("CARD") || header->title().starts_with("ATI");
            if (isWithin && header != nullptr)
                texts.push_back(header->title());
            else if (isWithin && row->label)
                texts.push_back(row->label->stringValue());
        }
        return texts;
    }

    test::World world;
    std::shared_ptr<StatInterfaceCPU> made;
};

TEST_F(StatInterfaceGPUSectionsTest, FramesAreToldUnderTheFirstHeadOnly) {
    open({busyCard(1), busyCard(2)});
    EXPECT_THAT(sections(), ElementsAre("CARD 1", "Frames Per Second", "Memory", "Processor",
                                        "CARD 2", "Memory", "Processor"));
}

TEST_F(StatInterfaceGPUSectionsTest, OneThatVanishesLosesItsSectionAtTheNextNews) {
    open({busyCard(1), busyCard(2)});

    gpu(0).connected = false;
    update();

    EXPECT_THAT(sections(), ElementsAre("CARD 2", "Frames Per Second", "Memory", "Processor"));
    EXPECT_EQ(made->gpuItemWithKey("Slot1"), nullptr);
}

TEST_F(StatInterfaceGPUSectionsTest, OneThatIsOnlyRememberedHasNoSection) {
    open({busyCard(1), busyCard(2)});

    gpu(1).setTemporary(true);
    update();

    EXPECT_THAT(sections(), Not(Contains("CARD 2")));
}

TEST_F(StatInterfaceGPUSectionsTest, OneThatComesBackHasNewRows) {
    open({busyCard(1)});
    const Item before = memoryRow("Slot1");
    gpu(0).connected = false;
    update();

    gpu(0).connected = true;
    update();

    EXPECT_NE(memoryRow("Slot1"), before);
    EXPECT_TRUE(shows(memoryRow("Slot1")));
    EXPECT_EQ(before->menu(), nullptr);
}

TEST_F(StatInterfaceGPUSectionsTest, ASectionMayGoWhileItsHistoryIsShown) {
    open({busyCard(1), busyCard(2)});
    OffscreenMenu shown(menu());
    pointAt(memoryRow("Slot2"));
    OffscreenMenu history(*memoryRow("Slot2")->submenu());
    shown.displayIfNeeded();
    history.displayIfNeeded();

    gpu(1).connected = false;
    update();
    update(1);
    shown.displayIfNeeded();
    history.displayIfNeeded();
    pointAt(memoryRow("Slot1"));

    EXPECT_EQ(memoryRow("Slot1")->submenu()->itemArray().size(), 2U);
}

TEST_F(StatInterfaceGPUSectionsTest, WhichOneIsShownFollowsTheDisplays) {
    world.machine.machineIdentity.setModelIdentifier("MacBookPro8,2");
    world.machine.graphicsControl.setAnswer(
        {.isThere = true, .active = GraphicsControl::kDiscrete});
    collector().loadNotifications();
    Card integrated = busyCard(2);
    integrated.model = dataOf("Card Intel HD Graphics 3000");
    open({busyCard(1), integrated});
    ASSERT_THAT(sections(), Not(Contains("CARD INTEL HD GRAPHICS 3000")));

    world.machine.graphicsControl.setAnswer(
        {.isThere = true, .active = GraphicsControl::kIntegrated});
    world.machine.displays.reconfigure();
    update();

    EXPECT_THAT(sections(), ElementsAre("CARD INTEL HD GRAPHICS 3000", "Frames Per Second",
                                        "Memory", "Processor"));
}

TEST_F(StatInterfaceGPUSectionsTest, ALoadThatIsKnownNowHasARowAtOnce) {
    open({card(1)});
    ASSERT_FALSE(shows(loadRow("Slot1")));

    setCards({busyCard(1)});
    collector().updateStats();
    update();

    EXPECT_TRUE(shows(loadRow("Slot1")));
    EXPECT_FLOAT_EQ(loadRow("Slot1")->graph->percentage(), 0.4F);
}

TEST_F(StatInterfaceGPUSectionsTest, ALoadThatIsLostKeepsItsRowUntilTheNextRebuild) {
    open({busyCard(1)});
    GPUStatCollector::cleanupShared();
    findCards({card(1)});

    update();
    EXPECT_TRUE(shows(loadRow("Slot1")));
    EXPECT_FLOAT_EQ(loadRow("Slot1")->graph->percentage(), 0.4F);  // its last one
    made->rebuildMenu();

    EXPECT_FALSE(shows(loadRow("Slot1")));
}

TEST_F(StatInterfaceGPUSectionsTest, ALoadThatIsLostEvenPutsOffAnotherOnesSection) {
    open({busyCard(2)});
    GPUStatCollector::cleanupShared();
    findCards({card(1), card(2)});

    update();
    EXPECT_NE(made->gpuItemWithKey("Slot1"), nullptr);
    EXPECT_THAT(sections(), Not(Contains("CARD 1")));
    made->rebuildMenu();

    EXPECT_THAT(sections(), Contains("CARD 1"));
}

TEST_F(StatInterfaceGPUSectionsTest, AScaleOfTheHistoryIsPaintedForTheMemoryAlone) {
    open({busyCard(1)});
    pointAt(loadRow("Slot1"));
    pointAt(memoryRow("Slot1"));
    VTRMenu& memory = *memoryRow("Slot1")->submenu();
    VTRMenu& load = *loadRow("Slot1")->submenu();
    for (VTRMenu* const submenu : {&memory, &load})
        for (const char* const key : {"graph-1", "graph-2", "graph-3"})
            paint(graphIn(*submenu, key));

    update(2);

    EXPECT_TRUE(graphIn(memory, "graph-2").needsDisplay());
    EXPECT_FALSE(graphIn(memory, "graph-1").needsDisplay());
    EXPECT_FALSE(graphIn(memory, "graph-3").needsDisplay());
    EXPECT_FALSE(graphIn(load, "graph-2").needsDisplay());
}

TEST_F(StatInterfaceGPUSectionsTest, TheHistoryGoesWithThePointer) {
    open({busyCard(1), busyCard(2)});
    pointAt(memoryRow("Slot1"));
    VTRMenu& first = *memoryRow("Slot1")->submenu();
    VTRMenu& second = *memoryRow("Slot2")->submenu();
    ASSERT_EQ(first.itemArray().size(), 2U);

    pointAt(memoryRow("Slot2"));

    EXPECT_EQ(first.itemArray().size(), 1U);
    EXPECT_EQ(second.itemArray().size(), 2U);
    EXPECT_TRUE(graphIn(second, "graph-3").hasCollector());
    EXPECT_EQ(graphIn(second, "graph-3").peak(), 1);  // begun anew
}

TEST_F(StatInterfaceGPUSectionsTest, ARowWithoutATitleMovesNoHistory) {
    open({busyCard(1)});
    pointAt(memoryRow("Slot1"));
    HistoryGraph& graph = graphIn(*memoryRow("Slot1")->submenu(), "graph-1");
    graph.setLatestSampleID(77);

    pointAt(menu().itemArray()[1]);

    EXPECT_EQ(graph.latestSampleID(), 77);
    EXPECT_EQ(memoryRow("Slot1")->submenu()->itemArray().size(), 2U);
}

TEST_F(StatInterfaceGPUSectionsTest, AMakersOldNameIsItsNewOneInCapitals) {
    Card old = busyCard(1);
    old.model = dataOf("ATY,RadeonX1600");
    open({old});
    EXPECT_EQ(sections().front(), "ATI,RADEONX1600");
}

TEST_F(StatInterfaceGPUSectionsTest, NamesThatPeopleKnowStandForOthers) {
    EXPECT_EQ(gpuModelName("ATI,RadeonX1600"), "Radeon X1600");
    EXPECT_EQ(gpuModelName("ATY,RV370"), "Radeon X600 Pro");
    EXPECT_EQ(gpuModelName("ATYATY"), "ATIATI");
}

TEST_F(StatInterfaceGPUSectionsTest, AMemoryOfUnknownSizeShowsNoBar) {
    Card unknown = busyCard(1);
    unknown.properties = {};
    unknown.statistics["vramUsedBytes"] = 0;
    open({unknown});
    EXPECT_TRUE(std::isnan(memoryRow("Slot1")->graph->percentage()));
    EXPECT_EQ(filledWidth(memoryRow("Slot1")->graph->percentage(), 103) > 0, false);
    paint(*memoryRow("Slot1")->view());
}

}  // namespace
}  // namespace vantor
