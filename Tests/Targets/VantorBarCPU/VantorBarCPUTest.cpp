#include "Targets/VantorBarCPU/VantorBarCPU.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Platform/Simulated/SimulatedMenuExtraHost.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/Collectors/LoadStatCollector.h"
#include "Shared/VTRDaemonConnection.h"
#include "Shared/VTRPreferences.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using testing::ElementsAre;

class VantorBarCPUTest : public testing::Test {
protected:
    void changePreferences(NotificationInfo info) {
        world.machine.distributedNotifications.arrive("VantorBarCPUPreferencesChanged",
                                                      std::move(info));
        world.machine.run(0);
    }

    test::World world;
    simulated::SimulatedMenuExtraHost host{&world.journal};
    VantorBarCPU extra{host};
};

TEST_F(VantorBarCPUTest, HasAName) {
    EXPECT_EQ(extra.extraName(), "cpu");
    EXPECT_EQ(extra.AXDescription(), "Vantor Bar CPU");
}

TEST_F(VantorBarCPUTest, MeasuresBothCollectorsAfterItsStart) {
    world.machine.run(3.5);
    EXPECT_GT(CPUStatCollector::sharedCPUCollector().idForInterval(0), 1);
    EXPECT_GT(LoadStatCollector::sharedLoadCollector().idForInterval(0), 1);
}

TEST_F(VantorBarCPUTest, AProcessorSampleShowsTheItemAnew) {
    world.machine.run(0.5);
    host.displayIfNeeded();
    CPUStatCollector::sharedCPUCollector().updateStats();
    EXPECT_TRUE(host.needsDisplay());
}

TEST_F(VantorBarCPUTest, ALoadSampleDoesNot) {
    world.machine.run(0.5);
    host.displayIfNeeded();
    LoadStatCollector::sharedLoadCollector().updateStats();
    EXPECT_FALSE(host.needsDisplay());
}

TEST_F(VantorBarCPUTest, TheUpdateFrequencyThinsOutTheMeasuring) {
    const auto measurements = [this] {  // the graphics have a pace of their own
        return std::ranges::count_if(world.journal.measurements, [](const auto& measurement) {
            return measurement.collector != "gpu";
        });
    };
    VTRSetIntegerForKey("TimerFrequency", 2);
    world.machine.run(60.5);
    const auto everySecond = measurements();
    world.journal.measurements.clear();
    VTRSetIntegerForKey("TimerFrequency", 0);
    world.machine.run(60);
    EXPECT_EQ(everySecond, 2 * 60);
    EXPECT_EQ(measurements(), 2 * 20);
}

TEST_F(VantorBarCPUTest, AChangedPreferenceIsReadAnewAndTheItemShown) {
    world.machine.run(0.5);
    VTRSetIntegerForKey("CPU_MenubarGraphWidth", 40);
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarGraphWidth"), 40);
    world.machine.preferences.write("CPU_MenubarGraphWidth", std::int64_t{60});
    host.displayIfNeeded();
    changePreferences({{"key", "CPU_MenubarGraphWidth"}, {"resetKey", "graph"}});
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarGraphWidth"), 60);
    EXPECT_TRUE(host.needsDisplay());
}

TEST_F(VantorBarCPUTest, TheWordTextStandsForAGroupOfKeys) {
    world.machine.run(0.5);
    world.machine.preferences.write("Load_MenubarTextSize", std::int64_t{9});
    EXPECT_EQ(VTRIntegerForKey("Load_MenubarTextSize"), 9);
    world.machine.preferences.write("Load_MenubarTextSize", std::int64_t{11});
    EXPECT_EQ(VTRIntegerForKey("Load_MenubarTextSize"), 9);  // remembered
    changePreferences({{"key", "CPU_MenubarTextSize"}, {"resetKey", "text"}});
    EXPECT_EQ(VTRIntegerForKey("Load_MenubarTextSize"), 11);
}

TEST_F(VantorBarCPUTest, AChangeOfTheLogicalCoresRefreshesNoTextKey) {
    world.machine.run(0.5);
    world.machine.preferences.write("Load_MenubarTextSize", std::int64_t{9});
    EXPECT_EQ(VTRIntegerForKey("Load_MenubarTextSize"), 9);
    world.machine.preferences.write("Load_MenubarTextSize", std::int64_t{11});
    host.displayIfNeeded();
    changePreferences({{"key", "CPU_CombineLogicalCores"}, {"resetKey", "logicalcores"}});
    EXPECT_EQ(VTRIntegerForKey("Load_MenubarTextSize"), 9);
    EXPECT_TRUE(host.needsDisplay());
}

TEST_F(VantorBarCPUTest, UnloadingEndsTheCollectors) {
    world.machine.run(2.5);
    world.journal.notifications.clear();
    extra.willUnload();
    EXPECT_EQ(world.context.existingCPUCollector(), nullptr);
    EXPECT_EQ(world.context.existingLoadCollector(), nullptr);
    EXPECT_THAT(world.journal.notifications,
                ElementsAre("local HISTORYGRAPH_SHUTDOWN_CPU",
                            "distributed VantorBarUnloadedExtra"));
    world.journal.measurements.clear();
    world.machine.run(5);
    EXPECT_TRUE(world.journal.measurements.empty());
}

TEST_F(VantorBarCPUTest, UnloadingClosesTheLinkToTheDaemon) {
    world.machine.run(0.5);
    VTRDaemonConnection::sharedConnection().connect();
    extra.willUnload();
    EXPECT_EQ(world.machine.daemon.linkCount(), 0U);
    EXPECT_EQ(world.context.existingDaemonConnection(), nullptr);
}

TEST_F(VantorBarCPUTest, OpensApplicationsOnceTheMenuHasClosed) {
    extra.openActivityMonitor();
    extra.openConsole();
    extra.openPreferencePane();
    world.machine.run(0.1);
    EXPECT_TRUE(world.machine.workspace.launched().empty());
    world.machine.run(0.01);
    EXPECT_THAT(world.machine.workspace.launched(),
                ElementsAre("Activity Monitor.app", "Console.app", "Vantor Bar.app"));
}

}  // namespace
}  // namespace vantor
