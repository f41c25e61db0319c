#include "Platform/Linux/ProcStat.h"

#include <cstring>
#include <limits>
#include <memory>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Platform/Linux/KernelTexts.h"
#include "Tests/Support/AllocationCounter.h"

namespace vantor::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string statFixture(const std::string& name) {
    return textOf(std::filesystem::path(VANTOR_SOURCE_DIR) / "Tests/Fixtures/proc" / name / "stat");
}

std::vector<ProcessorFigures> processorsIn(std::string_view text) {
    std::vector<ProcessorFigures> processors;
    ProcStatReader reader(text);
    for (ProcessorFigures figures; reader.next(figures);)
        processors.push_back(figures);
    return processors;
}

std::vector<std::uint32_t> numbersIn(std::string_view text) {
    std::vector<std::uint32_t> numbers;
    for (const ProcessorFigures& figures : processorsIn(text))
        numbers.push_back(figures.cpu);
    return numbers;
}

TEST(ProcStatTest, FourFieldsLeaveTheYoungerOnesAtZero) {
    const ProcessorFigures first{.user = 566, .nice = 17, .system = 720, .idle = 5655859};
    const ProcessorFigures second{
        .cpu = 1, .user = 566, .nice = 17, .system = 721, .idle = 5655859};
    EXPECT_THAT(processorsIn(statFixture("fields-4")), ElementsAre(first, second));
}

TEST(ProcStatTest, SevenFieldsEndWithSoftirq) {
    const ProcessorFigures first{.cpu = 0,
                                 .user = 1132,
                                 .nice = 34,
                                 .system = 1441,
                                 .idle = 11311718,
                                 .iowait = 3675,
                                 .irq = 127,
                                 .softirq = 438};
    EXPECT_EQ(processorsIn(statFixture("fields-7")).at(0), first);
}

TEST(ProcStatTest, EighthFieldIsSteal) {
    const auto processors = processorsIn(statFixture("fields-8"));
    ASSERT_EQ(processors.size(), 2u);
    EXPECT_EQ(processors[1].softirq, 11u);
    EXPECT_EQ(processors[1].steal, 17u);
    EXPECT_EQ(processors[1].guest, 0u);
}

TEST(ProcStatTest, NinthFieldIsGuest) {
    const auto processors = processorsIn(statFixture("fields-9"));
    ASSERT_EQ(processors.size(), 1u);
    EXPECT_EQ(processors[0].steal, 66u);
    EXPECT_EQ(processors[0].guest, 900u);
    EXPECT_EQ(processors[0].guestNice, 0u);
}

TEST(ProcStatTest, TenFieldsGiveAllFigures) {
    const ProcessorFigures first{.cpu = 0,
                                 .user = 50001,
                                 .nice = 2002,
                                 .system = 25003,
                                 .idle = 4500004,
                                 .iowait = 1505,
                                 .irq = 206,
                                 .softirq = 257,
                                 .steal = 308,
                                 .guest = 3509,
                                 .guestNice = 40};
    EXPECT_EQ(processorsIn(statFixture("fields-10")).at(0), first);
}

TEST(ProcStatTest, FieldsOfYearsToComeAreIgnored) {
    const auto processors = processorsIn("cpu0 1 2 3 4 5 6 7 8 9 10 11 12\n");
    ASSERT_EQ(processors.size(), 1u);
    EXPECT_EQ(processors[0].guestNice, 10u);
}

TEST(ProcStatTest, TextOfARealMachineGivesItsTwoCPUs) {
    const auto processors = processorsIn(statFixture("linux-6.18"));
    ASSERT_EQ(processors.size(), 2u);
    EXPECT_EQ(processors[1].cpu, 1u);
    EXPECT_GT(processors[0].idle, 10'000u);
}

TEST(ProcStatTest, OfflineCPUsLeaveGapsInTheNumbers) {
    EXPECT_THAT(numbersIn(statFixture("offline")), ElementsAre(0u, 2u, 3u, 7u));
}

TEST(ProcStatTest, AnyNumberOfCPUsIsRead) {
    for (const std::uint32_t cpus : {1u, 2u, 8u, 255u, 1024u, 4096u, 8192u}) {
        const auto processors = processorsIn(statText(cpus));
        ASSERT_EQ(processors.size(), cpus);
        EXPECT_EQ(processors.back().cpu, cpus - 1);
        EXPECT_EQ(processors.back().user, 9'604'311u + cpus - 1);
    }
}

TEST(ProcStatTest, CPUNumberBeyondTheLargestIsRefused) {
    EXPECT_THAT(numbersIn("cpu8191 1 2 3 4\ncpu8192 1 2 3 4\n"), ElementsAre(8191u));
}

/// The text without the rest lies at the end of its own memory, so that the address sanitizer
/// sees a single byte read behind it.
TEST(ProcStatTest, TextCutAtAnyByteGivesTheWholeLinesBeforeTheCut) {
    const std::string text = statFixture("fields-10");
    const auto all = processorsIn(text);
    for (std::size_t size = 0; size <= text.size(); ++size) {
        const auto cut = std::make_unique<char[]>(size);
        std::memcpy(cut.get(), text.data(), size);
        const std::string_view rest(cut.get(), size);
        const auto processors = processorsIn(rest);
        const std::size_t whole = (size > text.find("cpu1") - 1) + (size > text.find("intr") - 1);
        ASSERT_EQ(processors.size(), whole) << size;
        ASSERT_TRUE(std::equal(processors.begin(), processors.end(), all.begin())) << size;
        ASSERT_EQ(bootSecondsIn(rest).has_value(), size > text.find("processes") - 1) << size;
    }
}

TEST(ProcStatTest, GarbageLinesArePassedOver) {
    EXPECT_THAT(numbersIn(statFixture("garbage")), ElementsAre(9u));
}

TEST(ProcStatTest, EmptyTextGivesNothing) {
    EXPECT_THAT(processorsIn(statFixture("empty")), IsEmpty());
    EXPECT_EQ(bootSecondsIn(statFixture("empty")), std::nullopt);
}

TEST(ProcStatTest, RefusedLineLeavesTheFiguresUntouched) {
    ProcessorFigures figures{.cpu = 7, .user = 42};
    EXPECT_FALSE(ProcStatReader("cpu1 1 2 3\ncpu2 1 2 3 4 x\n").next(figures));
    EXPECT_EQ(figures, (ProcessorFigures{.cpu = 7, .user = 42}));
}

TEST(ProcStatTest, NumberBeyond64BitsReadsAsTheLargest) {
    constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
    EXPECT_THAT(
        processorsIn(statFixture("overflow")),
        ElementsAre(ProcessorFigures{.user = kMost, .nice = kMost, .system = kMost, .idle = 4}));
}

TEST(ProcStatTest, BootTimeStandsBehindAnyOtherLine) {
    EXPECT_EQ(bootSecondsIn(statFixture("fields-4")), 995201823);
    EXPECT_EQ(bootSecondsIn("btime 5\n"), 5);
}

TEST(ProcStatTest, BootTimeThatIsNoWholeNumberIsNone) {
    for (const char* const text : {"btime \n", "btime x\n", "btime -4\n", "btime 12x\n", "btime 12",
                                   "btimes 12\n", "btime 9223372036854775808\n"})
        EXPECT_EQ(bootSecondsIn(text), std::nullopt) << text;
}

TEST(ProcStatTest, ReadingDoesNotAllocate) {
    const std::string text = statText(64);
    std::uint32_t lines = 0;
    const AllocationCounter counter;
    ProcStatReader reader(text);
    for (ProcessorFigures figures; reader.next(figures);)
        ++lines;
    const bool booted = bootSecondsIn(text).has_value();
    EXPECT_EQ(counter.count(), 0u);
    EXPECT_EQ(lines, 64u);
    EXPECT_TRUE(booted);
}

}  // namespace
}  // namespace vantor::test
