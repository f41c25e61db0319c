#include "Platform/Linux/LinuxProcessorCounters.h"

#include <array>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "Tests/Platform/Linux/KernelTexts.h"
#include "Tests/Support/AllocationCounter.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor::test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

constexpr ProcessorTicks kUntouched{.user = 1, .system = 2, .idle = 3, .nice = 4};

/// A made machine: /proc and, where a test adds it, /sys.
class LinuxProcessorCountersTest : public ::testing::Test {
protected:
    KernelFiles files() const { return {.proc = folder_ / "proc", .sys = folder_ / "sys"}; }
    void writeStat(std::string_view text) { writeText(files().proc / "stat", text); }
    void writeCPUFile(const std::string& name, std::string_view text) {
        writeText(files().sys / "devices/system/cpu" / name, text);
    }

private:
    TemporaryFolder folder_;
};

std::vector<ProcessorTicks> ticksOf(LinuxProcessorCounters& counters) {
    std::vector<ProcessorTicks> ticks(counters.cpuCount(), kUntouched);
    EXPECT_TRUE(counters.readTicks(ticks));
    return ticks;
}

TEST_F(LinuxProcessorCountersTest, MapsTheKernelsFiguresToFourCounters) {
    writeStat(
        textOf(std::filesystem::path(VANTOR_SOURCE_DIR) / "Tests/Fixtures/proc/fields-10/stat"));
    LinuxProcessorCounters counters(files());
    EXPECT_THAT(ticksOf(counters),
                ElementsAre(ProcessorTicks{50001, 25003 + 206 + 257 + 308, 4500004 + 1505, 2002},
                            ProcessorTicks{49999, 24997 + 194 + 243 + 292, 4499996 + 1495, 1998}));
}

TEST_F(LinuxProcessorCountersTest, WaitsAreSumsOverAllCPUs) {
    writeStat("cpu0 1 2 3 4 5 6 7 8 0 0\ncpu1 10 20 30 40 50 60 70 80 0 0\n");
    LinuxProcessorCounters counters(files());
    EXPECT_EQ(counters.waits(), ProcessorWaits{});  // before a reading
    ticksOf(counters);
    EXPECT_EQ(counters.waits(), (ProcessorWaits{.iowait = 55, .steal = 88, .all = 36 + 360}));
}

TEST_F(LinuxProcessorCountersTest, CountersPast32BitsWrap) {
    writeStat("cpu0 4294967301 4294967296 0 8589934599\n");
    LinuxProcessorCounters counters(files());
    EXPECT_THAT(ticksOf(counters), ElementsAre(ProcessorTicks{.user = 5, .idle = 7}));
}

TEST_F(LinuxProcessorCountersTest, ThreadsOfOneCoreStandSideBySide) {
    writeCPUFile("present", "0-3\n");
    for (const char* const cpu : {"0", "1", "2", "3"})
        writeCPUFile(std::string("cpu") + cpu + "/topology/core_cpus_list",
                     *cpu % 2 == 0 ? "0,2\n" : "1,3\n");
    writeStat("cpu0 10 0 0 0\ncpu1 11 0 0 0\ncpu2 12 0 0 0\ncpu3 13 0 0 0\n");
    LinuxProcessorCounters counters(files());
    EXPECT_THAT(ticksOf(counters),
                ElementsAre(ProcessorTicks{.user = 10}, ProcessorTicks{.user = 12},
                            ProcessorTicks{.user = 11}, ProcessorTicks{.user = 13}));
    EXPECT_EQ(counters.configuredCPUs(), 4);
    EXPECT_EQ(counters.logicalCores(), 4);
    EXPECT_EQ(counters.physicalCores(), 2);
}

TEST_F(LinuxProcessorCountersTest, CPUThatGoesOfflineStandsStill) {
    writeStat("cpu0 10 0 0 0\ncpu1 11 0 0 0\n");
    LinuxProcessorCounters counters(files());
    ticksOf(counters);
    writeStat("cpu0 20 0 0 0\n");
    EXPECT_THAT(ticksOf(counters),
                ElementsAre(ProcessorTicks{.user = 20}, ProcessorTicks{.user = 11}));
    EXPECT_EQ(counters.cpuCount(), 2u);
}

TEST_F(LinuxProcessorCountersTest, PresentCPUThatComesOnlineLaterStartsAtZero) {
    writeCPUFile("present", "0-1\n");
    writeStat("cpu0 10 0 0 0\n");
    LinuxProcessorCounters counters(files());
    ticksOf(counters);
    writeStat("cpu0 10 0 0 0\ncpu1 5000 0 0 0\n");
    EXPECT_THAT(ticksOf(counters), ElementsAre(ProcessorTicks{.user = 10}, ProcessorTicks{}));
    writeStat("cpu0 10 0 0 0\ncpu1 5003 0 0 0\n");
    EXPECT_THAT(ticksOf(counters),
                ElementsAre(ProcessorTicks{.user = 10}, ProcessorTicks{.user = 3}));
}

TEST_F(LinuxProcessorCountersTest, CPUThatIsOfflineFromTheStartIsNotConfigured) {
    writeCPUFile("present", "0-3\n");
    writeStat("cpu0 10 0 0 0\ncpu2 12 0 0 0\n");
    const LinuxProcessorCounters counters(files());
    EXPECT_EQ(counters.cpuCount(), 4u);
    EXPECT_EQ(counters.configuredCPUs(), 2);
}

TEST_F(LinuxProcessorCountersTest, CPUThatWasNotPresentIsLeftOut) {
    writeStat("cpu0 10 0 0 0\n");
    LinuxProcessorCounters counters(files());
    writeStat("cpu0 11 0 0 0\ncpu1 5 0 0 0\ncpu8191 5 0 0 0\n");
    EXPECT_THAT(ticksOf(counters), ElementsAre(ProcessorTicks{.user = 11}));
}

TEST_F(LinuxProcessorCountersTest, FailedReadingLeavesIntoUntouched) {
    writeCPUFile("present", "0-1\n");
    LinuxProcessorCounters counters(files());  // there is no /proc/stat
    std::array<ProcessorTicks, 2> ticks{kUntouched, kUntouched};
    EXPECT_FALSE(counters.readTicks(ticks));
    EXPECT_THAT(ticks, Each(kUntouched));
}

TEST_F(LinuxProcessorCountersTest, TextWithoutCPUsIsNoReading) {
    writeCPUFile("present", "0\n");
    writeStat("");
    LinuxProcessorCounters counters(files());
    std::array<ProcessorTicks, 1> ticks{kUntouched};
    EXPECT_FALSE(counters.readTicks(ticks));
    writeStat("cpu0 1 2 3 4");  // cut before its line feed
    EXPECT_FALSE(counters.readTicks(ticks));
    EXPECT_THAT(ticks, Each(kUntouched));
}

TEST_F(LinuxProcessorCountersTest, FileThatAppearsLaterIsRead) {
    writeCPUFile("present", "0\n");
    LinuxProcessorCounters counters(files());
    std::array<ProcessorTicks, 1> ticks{kUntouched};
    EXPECT_FALSE(counters.readTicks(ticks));
    writeStat("cpu0 7 0 0 0\n");
    EXPECT_TRUE(counters.readTicks(ticks));
    EXPECT_THAT(ticks, ElementsAre(ProcessorTicks{.user = 7}));
}

TEST_F(LinuxProcessorCountersTest, MachineThatSaysNothingHasNoCPUs) {
    LinuxProcessorCounters counters(files());
    EXPECT_EQ(counters.cpuCount(), 0u);
    EXPECT_FALSE(counters.readTicks({}));
    EXPECT_EQ(counters.logicalCores(), 0);
}

TEST_F(LinuxProcessorCountersTest, IntoOfAnotherSizeIsFilledAsFarAsBothGo) {
    writeStat("cpu0 10 0 0 0\ncpu1 11 0 0 0\n");
    LinuxProcessorCounters counters(files());
    std::array<ProcessorTicks, 1> fewer{};
    EXPECT_TRUE(counters.readTicks(fewer));
    EXPECT_THAT(fewer, ElementsAre(ProcessorTicks{.user = 10}));
    std::array<ProcessorTicks, 3> more{kUntouched, kUntouched, kUntouched};
    EXPECT_TRUE(counters.readTicks(more));
    EXPECT_THAT(more,
                ElementsAre(ProcessorTicks{.user = 10}, ProcessorTicks{.user = 11}, kUntouched));
}

TEST_F(LinuxProcessorCountersTest, ManyCPUsAreAllRead) {
    for (const std::uint32_t cpus : {1u, 7u, 128u, 4096u}) {
        writeStat(statText(cpus));
        LinuxProcessorCounters counters(files());
        const auto before = ticksOf(counters);
        writeStat(statText(cpus, 9));
        const auto after = ticksOf(counters);
        ASSERT_EQ(after.size(), cpus);
        for (std::size_t cpu = 0; cpu < cpus; ++cpu) {
            ASSERT_EQ(after[cpu].user - before[cpu].user, 9u);
            ASSERT_EQ(after[cpu].idle - before[cpu].idle, 9u);
            ASSERT_EQ(after[cpu].system, before[cpu].system);
        }
    }
}

TEST_F(LinuxProcessorCountersTest, NoCounterFallsUnderRandomStepsBack) {
    std::mt19937 random(3);
    std::array<std::array<std::uint32_t, 10>, 2> figures{};
    const auto step = [&random](std::uint32_t figure) {
        const auto by = static_cast<std::uint32_t>(random() >> (12 + random() % 20));
        return random() % 3 == 0 ? figure - std::min(figure, by) : figure + by;
    };
    const auto line = [&](int cpu) {
        for (std::uint32_t& figure : figures[static_cast<std::size_t>(cpu)])
            figure = step(figure);
        return fmt::format("cpu{} {}\n", cpu,
                           fmt::join(figures[static_cast<std::size_t>(cpu)], " "));
    };
    writeStat(line(0) + line(1));
    LinuxProcessorCounters counters(files());
    auto before = ticksOf(counters);
    for (int reading = 0; reading < 300; ++reading) {
        writeStat(line(0) + (random() % 4 == 0 ? "" : line(1)));
        const auto after = ticksOf(counters);
        for (std::size_t cpu = 0; cpu < 2; ++cpu) {
            // Modulo 2^32 a fall would show as a step of more than half the range.
            ASSERT_LT(after[cpu].user - before[cpu].user, 0x80000000u);
            ASSERT_LT(after[cpu].system - before[cpu].system, 0x80000000u);
            ASSERT_LT(after[cpu].idle - before[cpu].idle, 0x80000000u);
            ASSERT_LT(after[cpu].nice - before[cpu].nice, 0x80000000u);
        }
        before = after;
    }
}

TEST_F(LinuxProcessorCountersTest, ReadingsDoNotAllocate) {
    writeStat(statText(64));
    writeText(files().proc / "loadavg", "0.20 0.18 0.12 1/80 11206\n");
    LinuxProcessorCounters counters(files());
    std::vector<ProcessorTicks> ticks(counters.cpuCount());
    const AllocationCounter counter;
    const bool read = counters.readTicks(ticks);
    const ProcessCounts counts = counters.readProcessCounts();
    EXPECT_EQ(counter.count(), 0u);
    EXPECT_TRUE(read);
    EXPECT_EQ(counts.threads, 80);
}

TEST_F(LinuxProcessorCountersTest, ProcessesAreTheLinksThatAreNoOtherFolders) {
    for (const char* const name : {"1", "42", "31415", "sys", "irq", "bus"})
        std::filesystem::create_directories(files().proc / name);
    struct stat status {};
    ASSERT_EQ(::stat(files().proc.c_str(), &status), 0);
    if (status.st_nlink != 2 + 6)
        GTEST_SKIP() << "this file system doesn't count folders as links";
    LinuxProcessorCounters counters(files());
    EXPECT_EQ(counters.readProcessCounts().tasks, 3);
    std::filesystem::create_directories(files().proc / "50000");
    EXPECT_EQ(counters.readProcessCounts().tasks, 4);
}

TEST_F(LinuxProcessorCountersTest, ProcessCountIsNeverNegative) {
    std::filesystem::create_directories(files().proc / "sys");
    LinuxProcessorCounters counters(files());
    std::filesystem::remove(files().proc / "sys");
    EXPECT_EQ(counters.readProcessCounts().tasks, 0);
    std::filesystem::remove(files().proc);
    EXPECT_EQ(counters.readProcessCounts().tasks, 0);
}

TEST_F(LinuxProcessorCountersTest, ThreadsMayBeMoreThan16Bits) {
    writeText(files().proc / "loadavg", "1.00 2.00 3.00 5/70123 99\n");
    EXPECT_EQ(LinuxProcessorCounters(files()).readProcessCounts().threads, 70123);
}

TEST_F(LinuxProcessorCountersTest, ThreadsComeFromTheSystemCallWhereTheFileSaysNothing) {
    EXPECT_GT(LinuxProcessorCounters(files()).readProcessCounts().threads, 0);
}

TEST_F(LinuxProcessorCountersTest, ThreadsAreTheNumberBehindTheSlash) {
    EXPECT_EQ(threadsIn("0.20 0.18 0.12 1/80 11206\n"), 80);
    EXPECT_EQ(threadsIn("0/99999999999 1"), 2147483647);
    for (const char* const text : {"", "0.20 0.18", "1/", "1/x 2", "1/0 2", "1/-5 2", "1/8x 2"})
        EXPECT_EQ(threadsIn(text), std::nullopt) << text;
}

/// What runs here starts and ends while we count, so a few may be missing.
TEST_F(LinuxProcessorCountersTest, ThisMachinesFiguresAreTrue) {
    LinuxProcessorCounters counters;
    std::vector<ProcessorTicks> ticks(counters.cpuCount());
    ASSERT_TRUE(counters.readTicks(ticks));
    EXPECT_GT(ticks.at(0).idle, 0u);
    std::int32_t folders = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc"))
        folders +=
            entry.path().filename().string().find_first_not_of("0123456789") == std::string::npos;
    const ProcessCounts counts = counters.readProcessCounts();
    EXPECT_GE(counts.tasks + 20, folders);
    EXPECT_GE(counts.threads + 20, counts.tasks);
}

}  // namespace
}  // namespace vantor::test
