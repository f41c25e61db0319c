#include "Targets/VantorBarCPU/Classes/VantorCPUMenuExtraView.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/VTRPreferences.h"
#include "Tests/Support/AllocationCounter.h"
#include "Tests/Support/BarCanvas.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

class VantorCPUMenuExtraViewTest : public testing::Test {
protected:
    void setCores(std::int64_t logical, std::int64_t physical) {
        world.machine.processorCounters.setCPUs(static_cast<std::size_t>(logical), logical, logical,
                                                physical);
    }
    std::int64_t widthOf(const char* modes, std::int64_t offset = 0) {
        VTRSetObjectForKey("CPU_MenubarMode", modes);
        test::BarCanvas canvas(400);
        return view.drawAtOffset(canvas.context, offset);
    }

    test::World world;
    VantorCPUMenuExtraView view{{0, 0, 20, 22}, nullptr};
};

TEST_F(VantorCPUMenuExtraViewTest, TheDefaultIsALabelAndAHistory) {
    EXPECT_EQ(widthOf("100,0"), 12 + 30 + 4 - 4);
}

TEST_F(VantorCPUMenuExtraViewTest, ALabelStandsOnceBeforeABarForEachCore) {
    setCores(4, 4);
    VTRSetBoolForKey("CPU_MenubarCombineCores", false);
    EXPECT_EQ(widthOf("100,1"), 12 + 4 * 13 - 4);
}

TEST_F(VantorCPUMenuExtraViewTest, TheCombinedGraphIsPaintedOnce) {
    setCores(4, 4);
    EXPECT_EQ(widthOf("6,6"), 6 * 4 + 5 - 4);
    setCores(8, 4);
    CPUStatCollector::cleanupShared();
    EXPECT_EQ(widthOf("6"), 6 * 4 + 5 - 4);  // a bar for each physical core
    VTRSetBoolForKey("CPU_CombineLogicalCores", false);
    EXPECT_EQ(widthOf("6"), 6 * 8 + 5 - 4);
}

TEST_F(VantorCPUMenuExtraViewTest, TheLoadIsPaintedOnce) {
    setCores(4, 4);
    const std::int64_t once = widthOf("4");
    VTRSetBoolForKey("CPU_MenubarCombineCores", false);
    EXPECT_EQ(widthOf("4,4"), once);
}

TEST_F(VantorCPUMenuExtraViewTest, TheGPUIconDoesNotDependOnTheCores) {
    setCores(4, 4);
    VTRSetBoolForKey("CPU_MenubarCombineCores", false);
    EXPECT_EQ(widthOf("5"), 18 - 4);
}

TEST_F(VantorCPUMenuExtraViewTest, ASingleHistoryStandsForAllCores) {
    setCores(4, 4);
    VTRSetBoolForKey("CPU_MenubarCombineCores", false);
    EXPECT_EQ(widthOf("0"), 4 * 34 - 4);
    VTRSetBoolForKey("CPU_MenubarSingleHistoryGraph", true);
    EXPECT_EQ(widthOf("0,1"), 34 + 4 * 13 - 4);
}

TEST_F(VantorCPUMenuExtraViewTest, PairsOfThreadsAreHalfAsManyAndTruncate) {
    world.machine.processorCounters.setCPUs(4, 5, 4, 2);
    VTRSetBoolForKey("CPU_MenubarCombineCores", false);
    EXPECT_EQ(widthOf("1"), 2 * 13 - 4);
}

TEST_F(VantorCPUMenuExtraViewTest, WithoutCoresOnlyTheGapIsTakenBack) {
    world.machine.processorCounters.setCPUs(2, 0, 2, 2);
    VTRSetBoolForKey("CPU_MenubarCombineCores", false);
    EXPECT_EQ(widthOf("1"), 0);
    EXPECT_EQ(widthOf("1", 30), 26);
}

TEST_F(VantorCPUMenuExtraViewTest, WhatIsNotANumberIsAHistory) {
    EXPECT_EQ(widthOf(""), 34 - 4);
    EXPECT_EQ(widthOf("history"), 34 - 4);
    EXPECT_EQ(widthOf("77"), 0);
}

TEST_F(VantorCPUMenuExtraViewTest, TenThousandModesAreWalked) {
    std::string modes = "1";
    for (int mode = 1; mode < 10000; ++mode)
        modes += ",1";
    EXPECT_EQ(widthOf(modes.c_str()), 10000 * 13 - 4);
}

TEST_F(VantorCPUMenuExtraViewTest, TheBreakdownShowsTheSystemAboveTheUser) {
    VTRSetBoolForKey("CPU_MenubarGraphBreakdowns", true);
    CPUStatCollector& collector = CPUStatCollector::sharedCPUCollector();
    for (std::size_t cpu : {0, 1})
        world.machine.processorCounters.spend(cpu, {.user = 50, .system = 25, .idle = 25});
    collector.updateStats();
    VTRSetObjectForKey("CPU_MenubarMode", "1");
    test::BarCanvas canvas(20);
    view.drawAtOffset(canvas.context, 0);
    EXPECT_EQ(canvas.heightAt(4, 3), 12);                      // both
    EXPECT_EQ(canvas.pixel(4, 3 + 7), canvas.pixel(4, 3));     // user up to 8
    EXPECT_NE(canvas.pixel(4, 3 + 8), canvas.pixel(4, 3));
    EXPECT_EQ(canvas.pixel(4, 3 + 8) >> 16 & 0xFF, 0xFFU);     // the system's red
}

TEST_F(VantorCPUMenuExtraViewTest, ARepaintAllocatesNothing) {
    world.machine.directories.setResources(
        std::filesystem::path(VANTOR_BUNDLE_DIR).parent_path());
    VTRSetObjectForKey("CPU_MenubarMode", "100,0,1,2,3,4,6");
    CPUStatCollector& collector = CPUStatCollector::sharedCPUCollector();
    for (const int scale : {1, 2}) {
        test::BarCanvas canvas(400, scale);
        const auto paintASample = [&] {
            world.machine.processorCounters.spend(0, {.user = 40, .idle = 60});
            collector.updateStats();
            view.drawAtOffset(canvas.context, 0);
        };
        paintASample();
        paintASample();
        const test::AllocationCounter allocations;
        view.drawAtOffset(canvas.context, 0);
        EXPECT_EQ(allocations.count(), 0) << scale;
    }
}

TEST_F(VantorCPUMenuExtraViewTest, LoadingTheConfigurationKeepsTextAttributes) {
    view.percentageAttributes("cpu-percentage");
    view.loadConfig();
    EXPECT_EQ(view.keptTextAttributes(), 1U);
}

}  // namespace
}  // namespace vantor
