#include "Shared/Collectors/GPUUsage.h"

#include <gtest/gtest.h>

#include "Shared/Collectors/GPUStatCollector.h"
#include "Tests/Support/AllocationCounter.h"
#include "Tests/Support/GraphicsTree.h"

namespace vantor {
namespace {

using Dictionary = PropertyValue::Dictionary;

constexpr double kTotal = 1000;

GPUUsage usageIn(const Dictionary& statistics, const GPUTraits& traits = {.totalBytes = kTotal}) {
    return usageInStatistics(&statistics, traits);
}

void expectUsage(const GPUUsage& usage, double used, double free, double load = -1) {
    EXPECT_EQ(usage.used, used);
    EXPECT_EQ(usage.free, free);
    EXPECT_EQ(usage.load, load);
}

TEST(GPUUsageTest, WithoutStatisticsNothingIsKnown) {
    expectUsage(usageInStatistics(nullptr, {.totalBytes = kTotal}), 0, 0);
    expectUsage(usageIn({}), 0, 0);
}

TEST(GPUUsageTest, MemoryIsThatOfTheCard) {
    expectUsage(usageIn({{"vramUsedBytes", 300}, {"vramFreeBytes", 700}}), 300, 700);
}

TEST(GPUUsageTest, SharedMemoryOfADiscreteOneDoesNotCount) {
    expectUsage(usageIn({{"vramUsedBytes", 300},
                         {"vramFreeBytes", 700},
                         {"gartSizeBytes", kTotal},
                         {"gartUsedBytes", 10},
                         {"gartFreeBytes", 990}}),
                300, 700);
}

TEST(GPUUsageTest, OfAnIntegratedOneItCountsWhereItIsAllOfTheMemory) {
    const GPUTraits traits{.totalBytes = kTotal, .isIntegrated = true};
    const Dictionary vram{{"vramUsedBytes", 300}, {"vramFreeBytes", 700}};
    struct Case {
        std::int32_t size, used, free;
        double wantedUsed, wantedFree;
    };
    for (const Case& each : {Case{1000, 10, 20, 10, 20},     // the size is the total
                             Case{999, 400, 600, 400, 600},  // both add up to the total
                             Case{999, 400, 601, 300, 700},  // neither
                             Case{999, 0, 1000, 300, 700},   // a sum needs both
                             Case{1000, 0, 0, 0, 0}}) {
        Dictionary statistics = vram;
        statistics["gartSizeBytes"] = each.size;
        statistics["gartUsedBytes"] = each.used;
        statistics["gartFreeBytes"] = each.free;
        expectUsage(usageIn(statistics, traits), each.wantedUsed, each.wantedFree);
    }
}

TEST(GPUUsageTest, AMissingSizeIsNotTheSizeOfAnUnknownTotal) {
    expectUsage(usageIn({{"vramUsedBytes", 300}, {"gartUsedBytes", 7}},
                        {.totalBytes = 0, .isIntegrated = true}),
                300, 0);
}

TEST(GPUUsageTest, MoreFreeMemoryThanThereIsMeansThatTheSharedOneIsInUse) {
    expectUsage(usageIn({{"vramUsedBytes", 1}, {"vramFreeBytes", 5000}, {"gartUsedBytes", 400}},
                        {.totalBytes = kTotal, .isIntegrated = true}),
                400, 600);
}

TEST(GPUUsageTest, LoadComesInTenMillionthsOrInPercent) {
    EXPECT_EQ(usageIn({{"GPU Core Utilization", 500000000}}).load, 50);
    EXPECT_EQ(usageIn({{"Device Utilization %", 42.5}}).load, 42.5);
    EXPECT_EQ(usageIn({{"GPU Core Utilization", 0}, {"Device Utilization %", 42}}).load, 0);
    EXPECT_EQ(usageIn({{"Device Utilization %", -3}}).load, -3);
}

TEST(GPUUsageTest, NewSystemsTellTheMemoryInUseDirectly) {
    const Dictionary statistics{
        {"vramUsedBytes", 300}, {"vramFreeBytes", 700}, {"inUseVidMemoryBytes", 250}};
    expectUsage(usageIn(statistics, {.totalBytes = kTotal, .tellsMemoryInUse = true}), 250, 750);
    expectUsage(usageIn(statistics), 300, 700);
}

TEST(GPUUsageTest, MemoryInUseOfZeroIsNoFigure) {
    expectUsage(usageIn({{"vramUsedBytes", 300}, {"inUseVidMemoryBytes", 0}},
                        {.totalBytes = kTotal, .tellsMemoryInUse = true}),
                300, 0);
}

TEST(GPUUsageTest, ASampleIsAShareOfTheMemoryAndALoad) {
    const GPUSample sample = sampleOfUsage({250, 750, 42}, kTotal, true);
    EXPECT_EQ(sample.memory, 0.25);
    EXPECT_EQ(sample.processor, 42);
}

TEST(GPUUsageTest, WithoutProcessorUsageASampleHasNoLoad) {
    const GPUSample sample = sampleOfUsage({250, 750, 42}, kTotal, false);
    EXPECT_EQ(sample.memory, 0.25);
    EXPECT_EQ(sample.processor, -1);
}

TEST(GPUUsageTest, FreeMemoryAloneTellsWhatIsInUse) {
    EXPECT_EQ(sampleOfUsage({0, 750, -1}, kTotal, false).memory, 0.25);
    EXPECT_EQ(sampleOfUsage({0, 1000, -1}, kTotal, false).memory, -1);
    EXPECT_EQ(sampleOfUsage({0, 0, -1}, kTotal, false).memory, -1);
}

TEST(GPUUsageTest, WithoutATotalThereIsNoShare) {
    EXPECT_EQ(sampleOfUsage({250, 750, 42}, 0, true).memory, -1);
}

TEST(GPUUsageTest, ADevicesMemoryIsToldInThreeWays) {
    EXPECT_EQ(totalMemoryInProperties({{"VRAM,totalMB", 2}, {"VRAM,totalsize", 5}}), 2097152);
    EXPECT_EQ(totalMemoryInProperties({{"VRAM,totalMB", 0}, {"VRAM,totalsize", 5}}), 5);
    EXPECT_EQ(totalMemoryInProperties({{"VRAM,totalsize", 0}, {"VRAM,memsize", 7}}), 7);
    EXPECT_EQ(totalMemoryInProperties({}), 0);
}

TEST(GPUUsageTest, ReadingStatisticsDoesNotAllocate) {
    const Dictionary statistics{{"vramUsedBytes", 300},
                                {"gartSizeBytes", 1},
                                {"Device Utilization %", 42},
                                {"inUseVidMemoryBytes", 3}};
    const test::AllocationCounter allocations;
    usageIn(statistics, {.totalBytes = 1, .isIntegrated = true, .tellsMemoryInUse = true});
    EXPECT_EQ(allocations.count(), 0U);
}

TEST(GPUUsageTest, AValueIsTheMagnitudeOfANumberOrOfFourBytes) {
    const auto convert = [](const PropertyValue& value) {
        return GPUStatCollector::convertValue(value);
    };
    EXPECT_EQ(convert(-1.5), 1.5);
    EXPECT_EQ(convert(true), 1);
    EXPECT_EQ(convert("-12.5 MB"), 12.5);
    EXPECT_EQ(convert(test::dataOf(0x1234)), 0x1234);
    EXPECT_EQ(convert(test::dataOf(0xFFFFFFFE)), 2);
    EXPECT_EQ(convert(test::dataOf(0x80000000)), 2147483648);
    EXPECT_EQ(convert(test::dataOf(std::string_view("\x01\x00\x00\x00\x01\x00\x00\x00", 8))), 1);
    EXPECT_EQ(convert(test::dataOf("\x07")), 7);
    EXPECT_EQ(convert({}), 0);
    EXPECT_EQ(convert(PropertyValue::Array{1}), 0);
}

TEST(GPUUsageTest, DataIsTextOnlyWhereItIsASCII) {
    const auto convert = [](const PropertyValue& value) {
        return GPUStatCollector::convertString(value);
    };
    EXPECT_EQ(convert(test::dataOf("display")), PropertyValue("display"));
    EXPECT_EQ(convert(test::dataOf("Radeon\xE2\x84\xA2")), PropertyValue());
    EXPECT_EQ(convert("Radeon\xE2\x84\xA2"), PropertyValue("Radeon\xE2\x84\xA2"));
    EXPECT_EQ(convert(7), PropertyValue(7));
}

TEST(GPUUsageTest, AWholeNumberIsUnsigned) {
    const auto convert = [](const PropertyValue& value) {
        return GPUStatCollector::convertCFNumber(value);
    };
    EXPECT_EQ(convert({}), 0);
    EXPECT_EQ(convert(std::uint64_t{0xFFFFFFFFFFFFFFFF}), 0x1p64);
    EXPECT_EQ(convert(std::int64_t{-1}), 0x1p64);
    EXPECT_EQ(convert(-2.0), 0x1p64);
    EXPECT_EQ(convert(-2.5), -2.5);
    EXPECT_EQ(convert(12.75), 12.75);
    EXPECT_EQ(convert(-1e30), -1e30);
    EXPECT_EQ(convert("-8"), -8);
}

}  // namespace
}  // namespace vantor
