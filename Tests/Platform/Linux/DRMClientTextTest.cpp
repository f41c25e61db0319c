#include "Platform/Linux/DRMClientText.h"

#include <gtest/gtest.h>

namespace vantor::test {
namespace {

// As Documentation/gpu/drm-usage-stats.rst of Linux 6.11 has it.
constexpr const char* kI915 = "pos:\t0\nflags:\t02100002\ndrm-driver:\ti915\n"
                              "drm-pdev:\t0000:00:02.0\ndrm-client-id:\t7\n"
                              "drm-total-system0:\t64 MiB\ndrm-resident-system0:\t48 MiB\n"
                              "drm-resident-stolen-system0:\t512 KiB\n"
                              "drm-engine-render:\t9288864723 ns\n"
                              "drm-engine-video:\t100 ns\ndrm-engine-capacity-video:\t2\n";
constexpr const char* kXe = "drm-driver:\txe\ndrm-pdev:\t0000:03:00.0\ndrm-client-id:\t9\n"
                            "drm-resident-vram0:\t1 GiB\ndrm-resident-system:\t4096\n"
                            "drm-cycles-rcs:\t28257900\ndrm-total-cycles-rcs:\t7655183225\n";

constexpr std::size_t kRender = 0, kVideo = 2, kRCS = 5;

TEST(DRMClientTextTest, EnginesAreReadByName) {
    const DRMClientFigures figures = drmClientFiguresOf(kI915);
    EXPECT_EQ(figures.address, "0000:00:02.0");
    EXPECT_EQ(figures.client, 7u);
    EXPECT_EQ(figures.engines[kRender].nanoseconds, 9288864723u);
    EXPECT_EQ(figures.engines[kVideo].capacity, 2u);
    EXPECT_EQ(drmClientFiguresOf(kXe).engines[kRCS].totalCycles, 7655183225u);
}

TEST(DRMClientTextTest, ResidentMemoryIsAddedUpByItsPlace) {
    EXPECT_EQ(drmClientFiguresOf(kI915).systemBytes, (48u << 20) + (512u << 10));
    EXPECT_EQ(drmClientFiguresOf(kXe).localBytes, 1u << 30);
    EXPECT_EQ(drmClientFiguresOf(kXe).systemBytes, 4096u);
}

TEST(DRMClientTextTest, NonsenseCountsAsAbsent) {
    const DRMClientFigures figures = drmClientFiguresOf(
        "drm-engine-render:\t-5 ns\ndrm-client-id:\tx\ndrm-resident-system0:\t99999999999999999 "
        "GiB\ndrm-engine-quantum:\t7 ns\n::\n\ndrm-pdev");
    EXPECT_EQ(figures.client, 0u);
    EXPECT_EQ(figures.systemBytes, 0u);
    for (const auto& engine : figures.engines)
        EXPECT_EQ(engine.nanoseconds, 0u);
}

std::array<double, 10> loadsBetween(const DRMClientFigures& before, const DRMClientFigures& after,
                                    double seconds) {
    std::array<double, 10> loads{};
    addEngineLoads(before, after, seconds, loads);
    return loads;
}

TEST(DRMClientTextTest, LoadIsTimeOverTimeAndCapacity) {
    DRMClientFigures before, after;
    after.engines[kRender].nanoseconds = 500'000'000;
    after.engines[kVideo].nanoseconds = 500'000'000;
    after.engines[kVideo].capacity = 2;
    const auto loads = loadsBetween(before, after, 1);
    EXPECT_DOUBLE_EQ(loads[kRender], 50);
    EXPECT_DOUBLE_EQ(loads[kVideo], 25);
}

TEST(DRMClientTextTest, CyclesAreSharesOfAllCycles) {
    DRMClientFigures before, after;
    after.engines[kRCS].cycles = 30;
    after.engines[kRCS].totalCycles = 40;
    EXPECT_DOUBLE_EQ(loadsBetween(before, after, 1)[kRCS], 75);
}

TEST(DRMClientTextTest, CountersThatStepBackAndTimeThatStandsStillAreNoLoad) {
    DRMClientFigures before, after;
    before.engines[kRender].nanoseconds = 10;
    before.engines[kRCS] = {.cycles = 10, .totalCycles = 10};
    EXPECT_EQ(loadsBetween(before, after, 1)[kRender], 0);
    EXPECT_EQ(loadsBetween(before, after, 1)[kRCS], 0);
    EXPECT_EQ(loadsBetween(after, before, 0)[kRender], 0);
}

}  // namespace
}  // namespace vantor::test
