#include "Targets/VantorBarCPU/Classes/VantorCPUMenuExtraView.h"

#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Foundation/Image.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/Collectors/GPUStatCollector.h"
#include "Shared/VTRPreferences.h"
#include "Tests/Support/AllocationCounter.h"
#include "Tests/Support/BarCanvas.h"
#include "Tests/Support/GraphicsTree.h"
#include "Tests/Support/Pictures.h"
#include "Tests/Support/PlainPicture.h"
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

TEST_F(VantorCPUMenuExtraViewTest, TheGPUIconShowsTheFamilyOfTheActiveOne) {
    world.machine.directories.setResources(std::filesystem::path(VANTOR_BUNDLE_DIR).parent_path());
    struct Case {
        PropertyValue model;
        bool isBuiltIn;
        const char* image;
        std::int64_t width;
    };
    const Case cases[] = {{test::dataOf("Intel Iris Pro"), false, "intelorintegrated", 10},
                          {test::dataOf("NVIDIA GeForce 9400M"), true, "intelorintegrated", 10},
                          {test::dataOf("NVIDIA Radeon"), false, "nvidia", 18},
                          {test::dataOf("ATI,RV370"), false, "ati", 16},
                          {test::dataOf("RADEON X1600"), false, "ati", 16},
                          {test::dataOf("Amd FirePro"), false, "ati", 16},
                          {test::dataOf("Matrox"), false, "discrete", 16},
                          {{}, false, "nvidia", 18}};
    for (const Case& each : cases) {
        GPUStatCollector::cleanupShared();
        test::Card card{.model = each.model};
        if (each.isBuiltIn)
            card.properties["built-in"] = true;
        world.machine.registry.setTree(test::graphicsTree({card}));
        GPUStatCollector& collector = GPUStatCollector::sharedGPUCollector();
        collector.fetchGPUS();
        collector.updateActiveGPU();
        EXPECT_EQ(widthOf("5"), each.width - 4) << each.image;
        test::BarCanvas canvas(30);
        view.drawAtOffset(canvas.context, 0);
        test::PlainPicture wanted(30, 1);
        wanted.draw(*Image::fromFile(std::filesystem::path(VANTOR_BUNDLE_DIR) /
                                     (std::string("menubar-gpu-") + each.image + ".png")),
                    0, 2, 1);
        EXPECT_EQ(wanted.differenceFrom(canvas.surface), "") << each.image;
    }
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
    EXPECT_EQ(canvas.heightAt(4, 3), 12);                   // both
    EXPECT_EQ(canvas.pixel(4, 3 + 7), canvas.pixel(4, 3));  // user up to 8
    EXPECT_NE(canvas.pixel(4, 3 + 8), canvas.pixel(4, 3));
    EXPECT_EQ(canvas.pixel(4, 3 + 8) >> 16 & 0xFF, 0xFFU);  // the system's red
}

TEST_F(VantorCPUMenuExtraViewTest, ARepaintAllocatesNothing) {
    world.machine.directories.setResources(std::filesystem::path(VANTOR_BUNDLE_DIR).parent_path());
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

// --- The walk over modes and cores --------------------------------------------------------------

/// What is to be drawn, in order: a mode, and the cores whose figures it shows.
struct Drawn {
    VantorCPUMenuExtraView::Mode mode;
    std::vector<int> cores;
};
constexpr int kMachine = -1;  // in place of a core: the figures of all of them

struct Walk {
    const char* modes;
    bool combine, single, pairs, group;
    std::vector<Drawn> drawn;
};

/// Four cores of two processors, each core with a load of its own; what is drawn is told apart by
/// its pixels.
TEST_F(VantorCPUMenuExtraViewTest, ModesAndCoresAreWalkedInTheirOrder) {
    using enum VantorCPUMenuExtraView::Mode;
    const std::vector<Walk> walks{
        {"1,2", true, false, false, false, {{kVertical, {kMachine}}, {kPercentage, {kMachine}}}},
        {"1,2",
         false,
         false,
         false,
         false,
         {{kVertical, {0}},
          {kPercentage, {0}},
          {kVertical, {1}},
          {kPercentage, {1}},
          {kVertical, {2}},
          {kPercentage, {2}},
          {kVertical, {3}},
          {kPercentage, {3}}}},
        {"1,2",
         false,
         false,
         false,
         true,
         {{kVertical, {0}},
          {kVertical, {1}},
          {kVertical, {2}},
          {kVertical, {3}},
          {kPercentage, {0}},
          {kPercentage, {1}},
          {kPercentage, {2}},
          {kPercentage, {3}}}},
        {"1,2",
         false,
         false,
         true,
         false,
         {{kVertical, {0, 1}}, {kPercentage, {0, 1}}, {kVertical, {1, 2}}, {kPercentage, {1, 2}}}},
        {"3,100,0,4,5,1",
         false,
         true,
         false,
         false,
         {{kPie, {0}},
          {kLabel, {}},
          {kHistory, {kMachine}},
          {kLoad, {}},
          {kGPU, {}},
          {kVertical, {0}},
          {kPie, {1}},
          {kVertical, {1}},
          {kPie, {2}},
          {kVertical, {2}},
          {kPie, {3}},
          {kVertical, {3}}}},
        {"1,0,4",
         false,
         true,
         false,
         true,
         {{kVertical, {0}},
          {kVertical, {1}},
          {kVertical, {2}},
          {kVertical, {3}},
          {kHistory, {kMachine}},
          {kLoad, {}}}},
        {"0,0", true, true, false, false, {{kHistory, {kMachine}}, {kHistory, {kMachine}}}},
        {"100,100", false, false, false, true, {{kLabel, {}}, {kLabel, {}}}},
        {"6,1,6",
         false,
         false,
         false,
         true,
         {{kCombinedVertical, {0, 1, 2, 3}},
          {kVertical, {0}},
          {kVertical, {1}},
          {kVertical, {2}},
          {kVertical, {3}}}},
        {" 1x,,7,-1,1.9,+3",
         true,
         false,
         false,
         false,
         {{kVertical, {kMachine}},
          {kHistory, {kMachine}},
          {kVertical, {kMachine}},
          {kPie, {kMachine}}}},
    };
    world.machine.directories.setResources(std::filesystem::path(VANTOR_BUNDLE_DIR).parent_path());
    setCores(4, 2);
    CPUStatCollector& collector = CPUStatCollector::sharedCPUCollector();
    for (std::size_t cpu = 0; cpu < 4; ++cpu) {
        const auto busy = static_cast<std::uint32_t>(12 + 22 * cpu);
        world.machine.processorCounters.spend(cpu, {.user = busy, .idle = 100 - busy});
    }
    collector.updateStats();
    for (const Walk& walk : walks) {
        VTRSetBoolForKey("CPU_MenubarCombineCores", walk.combine);
        VTRSetBoolForKey("CPU_MenubarSingleHistoryGraph", walk.single);
        VTRSetBoolForKey("CPU_CombineLogicalCores", walk.pairs);
        VTRSetBoolForKey("CPU_MenubarGroupItems", walk.group);
        VTRSetObjectForKey("CPU_MenubarMode", walk.modes);
        test::BarCanvas canvas(400), wanted(400);
        std::int64_t offset = 5;
        for (const Drawn& each : walk.drawn) {
            std::vector<const StatSamples*> collectors;
            for (const int core : each.cores)
                collectors.push_back(core == kMachine
                                         ? static_cast<const StatSamples*>(&collector)
                                         : &collector.core(static_cast<std::size_t>(core)));
            offset += view.drawWithMode(wanted.context, each.mode, offset, collectors);
        }
        EXPECT_EQ(view.drawAtOffset(canvas.context, 5), offset - 4) << walk.modes;
        EXPECT_EQ(test::pixelsOf(canvas.surface), test::pixelsOf(wanted.surface)) << walk.modes;
    }
}

TEST_F(VantorCPUMenuExtraViewTest, ThreadsOfACoreShareACombinedBar) {
    setCores(4, 2);
    CPUStatCollector& collector = CPUStatCollector::sharedCPUCollector();
    world.machine.processorCounters.spend(0, {.user = 100});
    world.machine.processorCounters.spend(1, {.idle = 100});
    collector.updateStats();
    VTRSetObjectForKey("CPU_MenubarMode", "6");
    test::BarCanvas canvas(40);
    EXPECT_EQ(view.drawAtOffset(canvas.context, 0), 6 * 2 + 1);
    EXPECT_EQ(canvas.heightAt(3, 3), 8);  // one of its two threads is busy
    EXPECT_EQ(canvas.heightAt(9, 3), 0);
}

TEST_F(VantorCPUMenuExtraViewTest, APairOfThreadsShowsItsSumInABarAndItsMeanInAText) {
    setCores(4, 2);
    CPUStatCollector& collector = CPUStatCollector::sharedCPUCollector();
    for (std::size_t cpu = 0; cpu < 4; ++cpu)
        world.machine.processorCounters.spend(cpu, {.user = 30, .idle = 70});
    collector.updateStats();
    VTRSetBoolForKey("CPU_MenubarCombineCores", false);
    VTRSetObjectForKey("CPU_MenubarMode", "1");
    test::BarCanvas bars(40);
    view.drawAtOffset(bars.context, 0);
    EXPECT_EQ(bars.heightAt(4, 3), 9);  // 0.6 of 16
}

TEST_F(VantorCPUMenuExtraViewTest, AnOpenMenuKeepsBothColoursOfABreakdownOnDarkPanelsAlone) {
    VTRSetBoolForKey("CPU_MenubarGraphBreakdowns", true);
    CPUStatCollector& collector = CPUStatCollector::sharedCPUCollector();
    for (int sample = 0; sample < 40; ++sample) {
        for (std::size_t cpu : {0, 1})
            world.machine.processorCounters.spend(cpu, {.user = 50, .system = 25, .idle = 25});
        collector.updateStats();
    }
    view.setIsMenuDown(true);
    for (const std::int64_t theme : {0, 1}) {
        VTRSetIntegerForKey("MenubarTheme", theme);
        for (const char* const mode : {"0", "1", "3", "6"}) {
            VTRSetObjectForKey("CPU_MenubarMode", mode);
            test::BarCanvas canvas(60);
            view.drawAtOffset(canvas.context, 0);
            const bool pie = *mode == '3';
            const std::uint32_t user = canvas.pixel(pie ? 12 : 4, 6);
            const std::uint32_t system = canvas.pixel(4, pie ? 9 : 13);
            EXPECT_EQ(user == system, theme == 0) << mode << ", theme " << theme;
            EXPECT_EQ(user == test::kOpaqueWhite, theme == 0) << mode << ", theme " << theme;
        }
    }
}

TEST_F(VantorCPUMenuExtraViewTest, BeforeDarkBarsTheWhiteSkinMakesIconsWhite) {
    world.machine.machineIdentity.setSystemVersion({10, 9, 0});
    world.machine.directories.setResources(std::filesystem::path(VANTOR_BUNDLE_DIR).parent_path());
    const auto shows = [&](const char* mode, const std::string& name) {
        VTRSetObjectForKey("CPU_MenubarMode", mode);
        test::BarCanvas canvas(30);
        view.drawAtOffset(canvas.context, 0);
        test::PlainPicture wanted(30, 1);
        wanted.draw(*Image::fromFile(std::filesystem::path(VANTOR_BUNDLE_DIR) / (name + ".png")), 0,
                    2, 1);
        return wanted.differenceFrom(canvas.surface).empty();
    };
    VTRSetIntegerForKey("MenubarSkinColor", 7);
    EXPECT_TRUE(shows("100", "menubar-label-cpu"));
    EXPECT_TRUE(shows("5", "menubar-gpu-nvidia"));
    VTRSetIntegerForKey("MenubarSkinColor", 8);
    EXPECT_TRUE(shows("100", "menubar-label-cpu-white"));
    EXPECT_TRUE(shows("5", "menubar-gpu-nvidia-white"));
    VTRSetBoolForKey("Theme-SeperateStyles", true);
    VTRSetIntegerForKey("MenubarSkinColor-Light", 3);
    EXPECT_TRUE(shows("100", "menubar-label-cpu")) << "the label alone knows of separate styles";
    EXPECT_TRUE(shows("5", "menubar-gpu-nvidia-white"));
}

TEST_F(VantorCPUMenuExtraViewTest, WithoutImagesEverythingElseIsPainted) {
    CPUStatCollector& collector = CPUStatCollector::sharedCPUCollector();
    for (std::size_t cpu : {0, 1})
        world.machine.processorCounters.spend(cpu, {.user = 100});
    collector.updateStats();
    VTRSetObjectForKey("CPU_MenubarMode", "100,1");
    test::BarCanvas canvas(40);
    EXPECT_EQ(view.drawAtOffset(canvas.context, 0), 12 + 13 - 4);
    EXPECT_EQ(canvas.heightAt(12 + 4, 3), 16);
    EXPECT_FALSE(canvas.painted(4, 10));
}

TEST_F(VantorCPUMenuExtraViewTest, TenThousandWideHistoriesArePaintedInBoundedTime) {
    VTRSetIntegerForKey("CPU_MenubarGraphWidth", 100000);
    std::string modes = "0";
    for (int mode = 1; mode < 1000; ++mode)
        modes += ",0";
    EXPECT_EQ(widthOf(modes.c_str()), 1000 * 100004 - 4);
}

TEST_F(VantorCPUMenuExtraViewTest, WidthsAtTheEndsOfTheRangeDoNotRunOver) {
    setCores(64, 64);
    VTRSetBoolForKey("CPU_MenubarCombineCores", false);
    VTRSetIntegerForKey("CPU_MenubarGraphWidth", std::numeric_limits<std::int64_t>::max());
    EXPECT_GT(widthOf("0,0,0"), std::int64_t{1} << 40);
    VTRSetIntegerForKey("CPU_MenubarGraphWidth", std::numeric_limits<std::int64_t>::min());
    EXPECT_LT(widthOf("0,0,0"), 0);
}

}  // namespace
}  // namespace vantor
