#include "Programs/vantorbar-preferences/Model/ProgramUsage.h"

#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

/// A kernel's folder with processes that a test makes up.
class ProgramUsageTest : public testing::Test {
protected:
    void write(const fs::path& file, const std::string& text) const {
        fs::create_directories((proc / file).parent_path());
        std::ofstream(proc / file, std::ios::binary) << text;
    }
    void makeProcess(int id, const std::string& cmdline) const {
        const std::string folder = std::to_string(id);
        const auto ticks = sysconf(_SC_CLK_TCK);
        write(folder + "/stat", folder + " (vantor (bar) S 1 1 1 0 -1 4194304 1 0 0 0 " +
                                    std::to_string(2 * ticks) + " " + std::to_string(ticks) +
                                    " 0 0 20 0 1 0 " + std::to_string(40 * ticks) +
                                    " 1000 100 18446744073709551615\n");
        write(folder + "/cmdline", cmdline);
        write(folder + "/smaps_rollup",
              "5581-7ffd ---p 00000000 00:00 0 [rollup]\n"
              "Rss:               12000 kB\nPss:                7000 kB\n");
    }

    ProgramUsageTest() { write("uptime", "100.25 180.00\n"); }
    test::TemporaryFolder proc;
};

const std::string kItem("/usr/bin/vantorbar\0run\0--host\0x11\0", 34);

TEST_F(ProgramUsageTest, UsageIsWhatTheKernelTells) {
    makeProcess(7, kItem);
    const auto usage = usageOfProcess(proc.path(), 7);
    ASSERT_TRUE(usage);
    EXPECT_DOUBLE_EQ(usage->processorSeconds, 3);
    EXPECT_DOUBLE_EQ(usage->runningSeconds, 60.25);
    EXPECT_EQ(usage->memoryBytes, 7000u * 1024);
}

TEST_F(ProgramUsageTest, MemoryOfAnotherKindServesWhereTheShareIsHidden) {
    makeProcess(7, kItem);
    fs::remove(proc / "7/smaps_rollup");
    write("7/status", "Name:\tvantorbar\nVmHWM:\t   9999 kB\nVmRSS:\t   8000 kB\n");
    EXPECT_EQ(usageOfProcess(proc.path(), 7)->memoryBytes, 8000u * 1024);
}

TEST_F(ProgramUsageTest, ProcessThatIsGoneHasNone) {
    EXPECT_FALSE(usageOfProcess(proc.path(), 7));
    makeProcess(7, kItem);
    write("7/stat", "7 (vantor");
    EXPECT_FALSE(usageOfProcess(proc.path(), 7));
}

TEST_F(ProgramUsageTest, ItemsAreTheRunsOfTheProgram) {
    makeProcess(7, kItem);
    makeProcess(8, std::string("vantorbar\0prefs\0list\0", 21));
    makeProcess(9, std::string("/bin/sh\0run\0", 12));
    write("self/cmdline", kItem);
    const auto items = usageOfItems(proc.path(), getuid());
    ASSERT_EQ(items.size(), 1u);
    EXPECT_EQ(items.front().process, 7);
}

TEST_F(ProgramUsageTest, ItemsOfOthersAreTheirAffair) {
    makeProcess(7, kItem);
    EXPECT_TRUE(usageOfItems(proc.path(), getuid() + 1).empty());
}

TEST_F(ProgramUsageTest, ThisProcessIsThere) {
    const auto own = usageOfProcess("/proc", getpid());
    ASSERT_TRUE(own);
    EXPECT_GT(own->memoryBytes, 100'000u);
    EXPECT_GE(own->runningSeconds, 0);
}

}  // namespace
}  // namespace vantor
