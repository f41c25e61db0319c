#include "Platform/Linux/LinuxBootTime.h"

#include <ctime>

#include <gtest/gtest.h>

#include "Tests/Platform/Linux/KernelTexts.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor::test {
namespace {

std::optional<std::int64_t> bootSecondsOf(std::string_view statText) {
    const TemporaryFolder folder;
    writeText(folder / "stat", statText);
    return LinuxBootTime({.proc = folder.path()}).bootSeconds();
}

TEST(LinuxBootTimeTest, BootTimeIsThatOfTheStatFile) {
    EXPECT_EQ(bootSecondsOf("cpu0 1 2 3 4\nbtime 1700000000\nprocesses 3\n"), 1700000000);
}

TEST(LinuxBootTimeTest, BootTimeBehindAVeryLongLineIsFound) {
    EXPECT_EQ(bootSecondsOf("intr " + std::string(200'000, '0') + "\nbtime 17\n"), 17);
}

TEST(LinuxBootTimeTest, NothingIsAnsweredWithoutABootTime) {
    EXPECT_EQ(bootSecondsOf("cpu0 1 2 3 4\n"), std::nullopt);
    EXPECT_EQ(bootSecondsOf("btime 0\n"), std::nullopt);
    EXPECT_EQ(bootSecondsOf(""), std::nullopt);
}

TEST(LinuxBootTimeTest, NothingIsAnsweredWithoutTheFile) {
    const TemporaryFolder folder;
    EXPECT_EQ(LinuxBootTime({.proc = folder.path()}).bootSeconds(), std::nullopt);
}

TEST(LinuxBootTimeTest, ChangeOfTheMachinesClockIsFollowed) {
    const TemporaryFolder folder;
    writeText(folder / "stat", "btime 1000\n");
    const LinuxBootTime bootTime({.proc = folder.path()});
    EXPECT_EQ(bootTime.bootSeconds(), 1000);
    writeText(folder / "stat", "btime 1060\n");
    EXPECT_EQ(bootTime.bootSeconds(), 1060);
}

TEST(LinuxBootTimeTest, ThisMachineStartedInThePast) {
    const auto seconds = LinuxBootTime().bootSeconds();
    ASSERT_TRUE(seconds);
    EXPECT_GT(*seconds, 0);
    EXPECT_LE(*seconds, std::time(nullptr) + 1);
}

}  // namespace
}  // namespace vantor::test
