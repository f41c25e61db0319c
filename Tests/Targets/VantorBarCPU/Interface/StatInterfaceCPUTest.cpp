#include "Targets/VantorBarCPU/Interface/StatInterfaceCPU.h"

#include <cmath>
#include <filesystem>
#include <optional>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Foundation/TimeZoneRules.h"
#include "Hosts/Offscreen/OffscreenMenu.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/Collectors/LoadStatCollector.h"
#include "Shared/Collectors/UptimeStatCollector.h"
#include "Shared/Graphs/HistoryGraph.h"
#include "Shared/Textfields/StatInterfaceTextField.h"
#include "Shared/VTRPreferenceFunctions.h"
#include "Shared/Views/StatInterfaceView.h"
#include "Tests/Support/AllocationCounter.h"
#include "Tests/Support/World.h"
#include "Tests/Support/ZoneFiles.h"

namespace vantor {
namespace {

using testing::ElementsAre;

class StatInterfaceCPUTest : public testing::Test {
protected:
    StatInterfaceCPUTest() { world.machine.processorCounters.setCPUs(4, 4, 4, 2); }

    StatInterfaceCPU& interface() {
        if (!made)
            made = std::make_shared<StatInterfaceCPU>();
        return *made;
    }
    void open() { interface().menuWillOpen(*interface().menu()); }
    /// The newest sample of now.
    void setShares(double user, double system) {
        SampleRing& now = CPUStatCollector::sharedCPUCollector().storageForType(0);
        now.mutableValues(0)[0] = user;
        now.mutableValues(0)[1] = system;
    }
    /// By key, as a rebuild finds it; "" for a row that isn't in the cache.
    std::vector<std::string> keys(VTRMenu& menu) {
        std::vector<std::string> keys;
        for (const auto& item : menu.itemArray()) {
            keys.emplace_back();
            for (const auto& [key, cached] : menu.cache())
                if (cached == item)
                    keys.back() = key;
        }
        return keys;
    }
    VTRMenuItem& legend() { return *interface().menu()->itemArray()[2]; }
    std::string legendText(std::string_view key) {
        return legend().itemWithKey(key)->field->stringValue();
    }
    const VTRMenuItem& processRow(std::size_t index) {
        return *interface().menu()->itemArray()[5 + index];
    }
    static PropertyValue process(const char* name, PropertyValue use) {
        return PropertyValue::Dictionary{{"name", name}, {"c", std::move(use)}};
    }
    void tell(PropertyValue::Array processes) {
        interface().processesUpdated({{"type", "1"}, {"processes", std::move(processes)}});
    }

    test::World world;
    std::shared_ptr<StatInterfaceCPU> made;
};

}  // namespace

TEST_F(StatInterfaceCPUTest, TheRowsStandInTheirFixedOrder) {
    EXPECT_THAT(keys(*interface().menu()),
                ElementsAre("header-cpu", "", "", "header-processes", "spacer-processes-top", "",
                            "", "", "", "", "spacer-processes-bottom", "filler-gpus", "header-load",
                            "", "header-uptime", "filler-uptime-top", "", "spacer-launcher", ""));
}

TEST_F(StatInterfaceCPUTest, WithoutTheLauncherAFillerEndsTheMenu) {
    VTRSetBoolForKey("DropdownShowLauncher", false);

    EXPECT_EQ(keys(*interface().menu()).back(), "filler-nolauncher");
    EXPECT_EQ(interface().menu()->itemArray().back()->view()->frame().height, 5);
}

TEST_F(StatInterfaceCPUTest, ARebuildKeepsTheRows) {
    const VTRMenu::Items before = interface().menu()->itemArray();

    interface().rebuildMenu();

    EXPECT_EQ(interface().menu()->itemArray(), before);
}

TEST_F(StatInterfaceCPUTest, OneStackOfCoresStandsBehindTheirHeader) {
    const std::size_t rows = interface().coresMenu().itemArray().size();

    interface().updateCoresMenu();
    interface().updateCoresMenu();

    EXPECT_EQ(interface().coresMenu().itemArray().size(), rows);
    EXPECT_FALSE(interface().coresMenu().itemArray()[3]->menuItemsOrdered().empty());
}

TEST_F(StatInterfaceCPUTest, PairsOfThreadsShareAGraphWhereTheUserWantsThat) {
    VTRSetBoolForKey("CPU_CombineLogicalCores", true);
    EXPECT_EQ(interface().coresMenu().itemArray()[3]->menuItemsOrdered().size(), 2u + 1);

    VTRSetBoolForKey("CPU_CombineLogicalCores", false);
    interface().updateCoresMenu();

    EXPECT_EQ(interface().coresMenu().itemArray()[3]->menuItemsOrdered().size(), 4u + 1);
}

TEST_F(StatInterfaceCPUTest, WithoutPairsEachCoreHasItsGraph) {
    world.machine.processorCounters.setCPUs(2, 2, 2, 2);
    VTRSetBoolForKey("CPU_CombineLogicalCores", true);

    EXPECT_EQ(interface().coresMenu().itemArray()[3]->menuItemsOrdered().size(), 2u + 1);
}

TEST_F(StatInterfaceCPUTest, TheThreeSharesAddUp) {
    const struct {
        double user, system;
        const char *userText, *systemText, *idleText;
    } cases[] = {{33.4, 33.4, "33%", "33%", "34%"}, {99.6, 0.6, "100%", "1%", "-1%"}};
    open();
    for (const auto& one : cases) {
        setShares(one.user, one.system);

        interface().cpuCollectorUpdatedForMode(0);

        EXPECT_EQ(legendText("user"), one.userText);
        EXPECT_EQ(legendText("system"), one.systemText);
        EXPECT_EQ(legendText("idle"), one.idleText);
    }
}

TEST_F(StatInterfaceCPUTest, ClosedItWritesNoFigure) {
    interface();
    setShares(50, 10);

    interface().cpuCollectorUpdatedForMode(0);

    EXPECT_EQ(legendText("user"), "100%");  // as it was made
}

TEST_F(StatInterfaceCPUTest, ClosedOnlyTheCombinedGraphIsPaintedAnew) {
    interface();
    HistoryGraph& combined = *interface().combinedItem()->historyGraph;
    HistoryGraph& own = *interface().menu()->itemArray()[1]->historyGraph;
    Painting::ImageSurface surface({225, 70}, 1);
    Painting::Context context = surface.context();
    combined.display(context);
    own.display(context);

    interface().cpuCollectorUpdatedForMode(0);

    EXPECT_TRUE(combined.needsDisplay());
    EXPECT_FALSE(own.needsDisplay());
}

TEST_F(StatInterfaceCPUTest, AModeWithoutAGraphDoesNothing) {
    open();
    const std::string shown = legendText("user");
    setShares(50, 10);

    interface().cpuCollectorUpdatedForMode(4);
    interface().loadCollectorUpdatedForMode(4);

    EXPECT_EQ(legendText("user"), shown);
}

TEST_F(StatInterfaceCPUTest, OpeningAsksTheDaemonAndClosingEndsThat) {
    open();
    world.machine.run(0);
    interface().menuDidClose(*interface().menu());
    world.machine.run(0);

    EXPECT_THAT(world.journal.daemonCalls,
                ElementsAre("enableHierachy", "startRequestWithKey: 1", "stopRequestWithKey: 1"));
    EXPECT_FALSE(interface().enabled());
}

TEST_F(StatInterfaceCPUTest, FiveOfSevenProcessesAreShown) {
    tell({process("a", 7.0), process("b", 6.0), process("c", 5.0), process("d", 4.0),
          process("e", 3.0), process("f", 2.0), process("g", 1.0)});

    EXPECT_EQ(processRow(0).label->stringValue(), "a");
    EXPECT_EQ(processRow(4).label->stringValue(), "e");
    EXPECT_EQ(processRow(4).field->stringValue(), "3.0%");
}

TEST_F(StatInterfaceCPUTest, AShorterListLeavesTheOtherRows) {
    tell({process("a", 7.0), process("b", 6.0)});

    tell({process("c", 5.0)});

    EXPECT_EQ(processRow(0).label->stringValue(), "c");
    EXPECT_EQ(processRow(1).label->stringValue(), "b");
}

TEST_F(StatInterfaceCPUTest, UseIsOfACoreOrOfTheMachine) {
    tell({process("a", 250.0)});
    EXPECT_EQ(processRow(0).field->stringValue(), "250.0%");

    VTRSetIntegerForKey("CPU_AppFormat", 1);
    tell({process("a", 250.0), process("b", 0.0)});

    EXPECT_EQ(processRow(0).field->stringValue(), "62.5%");
    EXPECT_EQ(processRow(1).field->stringValue(), "0.0%");
}

TEST_F(StatInterfaceCPUTest, ARecordThatLacksSomethingShowsTheRest) {
    tell({PropertyValue::Dictionary{{"c", 2.0}}, PropertyValue::Dictionary{{"name", "b"}}, 5.0});

    EXPECT_EQ(processRow(0).label->stringValue(), "");
    EXPECT_EQ(processRow(0).field->stringValue(), "2.0%");
    EXPECT_EQ(processRow(1).field->stringValue(), "0.0%");
}

TEST_F(StatInterfaceCPUTest, AResponseWithoutProcessesChangesNothing) {
    tell({process("a", 7.0)});

    interface().processesUpdated({{"type", "1"}});

    EXPECT_EQ(processRow(0).label->stringValue(), "a");
}

TEST_F(StatInterfaceCPUTest, AListMayBeEmptyOrLong) {
    tell({process("a", 7.0)});

    tell({});
    EXPECT_EQ(processRow(0).label->stringValue(), "a");
    tell(PropertyValue::Array(5000, process("b", 1.0)));

    EXPECT_EQ(processRow(4).label->stringValue(), "b");
    EXPECT_EQ(interface().menu()->itemArray()[10]->label, nullptr);  // no sixth row
}

TEST_F(StatInterfaceCPUTest, AUseThatIsNoNumberStaysInItsRow) {
    tell({process("a", std::nan("")), process("b", HUGE_VAL), process("c", "busy"),
          process("d", PropertyValue::Array{}), process("e", -1.0)});

    EXPECT_EQ(processRow(0).field->stringValue(), "nan%");
    EXPECT_EQ(processRow(1).field->stringValue(), "inf%");
    EXPECT_EQ(processRow(2).field->stringValue(), "0.0%");
    EXPECT_EQ(processRow(3).field->stringValue(), "0.0%");
    EXPECT_EQ(processRow(4).field->stringValue(), "-1.0%");
}

TEST_F(StatInterfaceCPUTest, AnEndlessNameIsCutBeforeItsFigure) {
    const auto figureOf = [this](const std::string& name) {
        tell({process(name.c_str(), 12.5)});
        Painting::ImageSurface surface({225, 15}, 2);
        Painting::Context context = surface.context(Painting::Origin::upperLeft);
        processRow(0).view()->display(context);
        const auto left = static_cast<int>(processRow(0).field->frame().x * 2);
        std::vector<std::uint32_t> pixels;
        for (int y = 0; y < surface.heightPixels(); ++y)
            for (int x = left; x < surface.widthPixels(); ++x)
                pixels.push_back(surface.pixel(x, y));
        return pixels;
    };
    EXPECT_EQ(figureOf(std::string(4096, 'W')), figureOf("a"));
}

TEST_F(StatInterfaceCPUTest, ManyCoresHaveAGraphEach) {
    world.machine.processorCounters.setCPUs(256, 256, 256, 128);
    const VTRMenuItem& stack = *interface().coresMenu().itemArray()[3];

    EXPECT_EQ(stack.menuItemsOrdered().size(), 256U + 1);
    EXPECT_EQ(stack.view()->frame().height, 256 * 59 + 5);
}

TEST_F(StatInterfaceCPUTest, AwakeIsNeverLongerThanUp) {
    world.machine.bootTime.setBootSeconds(
        static_cast<std::int64_t>(simulated::SimulatedMachine::kStart) - 120);
    UptimeStatCollector::sharedUptimeCollector().loadUptime();
    world.machine.processorCounters.setTicks(std::vector<ProcessorTicks>(4, {.user = 100'000}));
    interface();
    CPUStatCollector::sharedCPUCollector().updateStats();

    EXPECT_EQ(interface().uptime(), "2 minutes");
    EXPECT_EQ(interface().awakeTime(), "2 minutes");
    EXPECT_EQ(interface().sleepTime(), "0 minutes");
}

TEST_F(StatInterfaceCPUTest, ItRunsSinceAMomentOnTheUsersClock) {
    const double boot = simulated::SimulatedMachine::kStart - 120;
    world.machine.bootTime.setBootSeconds(static_cast<std::int64_t>(boot));
    UptimeStatCollector::sharedUptimeCollector().loadUptime();
    world.machine.timeZone.setRules(
        *TimeZoneRules::fromZoneFile(test::zoneBlock('\0', 4, {}, {-5 * 3600})));
    world.machine.regionalSettings.setDateWriter(
        [](double seconds, std::string_view pattern, const std::string&) {
            return fmt::format("{} in {}", seconds, pattern);
        });

    EXPECT_EQ(interface().bootTime(), fmt::format("{} in EEEE d MMM, h:mm a", boot - 5 * 3600));
}

TEST_F(StatInterfaceCPUTest, WaitingIsToldBelowIdleWhereTheUserWantsThat) {
    const double height = legend().view()->frame().height;
    EXPECT_EQ(legend().itemWithKey("iowait"), nullptr);

    VTRSetBoolForKey("CPU_DropdownShowIOWait", true);
    open();
    world.machine.processorCounters.setWaits({.iowait = 204, .steal = 26, .all = 1000});
    CPUStatCollector::sharedCPUCollector().updateStats();
    interface().cpuCollectorUpdatedForMode(0);

    EXPECT_EQ(legendText("iowait"), "20%");
    EXPECT_EQ(legendText("steal"), "3%");
    EXPECT_EQ(legend().view()->frame().height, height + 2 * 15);
    EXPECT_EQ(legend().menuItemsOrdered().back()->key(), "spacer-bottom");
}

TEST_F(StatInterfaceCPUTest, WaitingIsToldInTheColoursOfTheTheme) {
    interface();
    VTRSetIntegerForKey("DropdownTheme", 1);
    world.machine.localNotifications.post("DropdownThemeChanged");

    VTRSetBoolForKey("CPU_DropdownShowIOWait", true);
    open();

    EXPECT_EQ(legend().itemWithKey("iowait")->label->textColor(),
              legend().itemWithKey("idle")->label->textColor());
}

TEST_F(StatInterfaceCPUTest, WaitingIsNoLongerToldOnceTheUserHasEnough) {
    const double height = legend().view()->frame().height;
    VTRSetBoolForKey("CPU_DropdownShowIOWait", true);
    open();
    interface().menuDidClose(*interface().menu());

    VTRSetBoolForKey("CPU_DropdownShowIOWait", false);
    open();

    EXPECT_EQ(legend().itemWithKey("steal"), nullptr);
    EXPECT_EQ(legend().view()->frame().height, height);
}

TEST_F(StatInterfaceCPUTest, AnOpenDropdownUpdatesWithoutTheHeap) {
    world.machine.directories.setResources(std::filesystem::path(VANTOR_BUNDLE_DIR).parent_path());
    world.machine.bootTime.setBootSeconds(
        static_cast<std::int64_t>(simulated::SimulatedMachine::kStart));  // no text is long
    UptimeStatCollector::sharedUptimeCollector().loadUptime();
    interface();
    OffscreenMenu shown(*interface().menu());
    OffscreenMenu cores(interface().coresMenu());
    CPUStatCollector& cpu = CPUStatCollector::sharedCPUCollector();
    const auto update = [&] {
        cpu.updateStats();
        LoadStatCollector::sharedLoadCollector().updateStats();
        interface().cpuCollectorUpdatedForMode(0);
        interface().loadCollectorUpdatedForMode(0);
        interface().gpuCollectorUpdatedForMode(0);
        shown.displayIfNeeded();
        cores.displayIfNeeded();
    };
    for (int time = 0; time < 5; ++time)
        update();

    const test::AllocationCounter allocations;
    update();

    EXPECT_EQ(allocations.count(), 0U);
}

TEST_F(StatInterfaceCPUTest, WhatIsNotKnownYetIsEmpty) {
    EXPECT_EQ(interface().bootTime(), "");
    EXPECT_EQ(interface().awakeTime(), "");
    EXPECT_EQ(interface().sleepTime(), "");
}

TEST_F(StatInterfaceCPUTest, TheBootIsToldByTheClocksAroundTheUser) {
    world.machine.timeZone.setRules(
        *TimeZoneRules::fromZoneFile(test::zoneFile({}, {0}, "IST-5:30")));
    world.machine.regionalSettings.setDateWriter(
        [](double localSeconds, std::string_view, const std::string&) {
            return fmt::format("{:.0f}", localSeconds);
        });
    world.machine.bootTime.setBootSeconds(1'425'000'000);
    UptimeStatCollector::sharedUptimeCollector().loadUptime();

    EXPECT_EQ(interface().bootTime(), "1425019800");
}

TEST_F(StatInterfaceCPUTest, AHighlightTakesEffectWhenTheQueueRuns) {
    open();
    const auto row = interface().menu()->itemArray()[1];

    interface().menuWillHighlightItem(*interface().menu(), row.get());
    EXPECT_FALSE(row->view()->menuItemHighlighted());
    world.machine.run(0.01);

    EXPECT_TRUE(row->view()->menuItemHighlighted());
}

}  // namespace vantor
