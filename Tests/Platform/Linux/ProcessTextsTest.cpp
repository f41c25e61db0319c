#include "Platform/Linux/ProcessTexts.h"

#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Platform/Linux/KernelTexts.h"
#include "Tests/Support/AllocationCounter.h"

namespace vantor {
namespace {

using namespace std::string_literals;
using test::AllocationCounter;
using testing::ElementsAre;
using testing::IsEmpty;

std::string fixture(const std::string& process, const std::string& file = "stat") {
    return test::textOf(std::filesystem::path(VANTOR_SOURCE_DIR) / "Tests/Fixtures/proc/processes" /
                        process / file);
}

std::vector<std::string> argumentsIn(std::string_view cmdline) {
    std::vector<std::string> arguments;
    ArgumentReader reader(cmdline);
    while (const auto argument = reader.next())
        arguments.emplace_back(*argument);
    return arguments;
}

TEST(ProcessTextsTest, FiguresStandWhereTheKernelPutsThem) {
    const auto process = processIn(fixture("script"));
    ASSERT_TRUE(process);
    EXPECT_EQ(process->id, 29921);
    EXPECT_EQ(process->parent, 29911);
    EXPECT_EQ(process->session, 17290);
    EXPECT_EQ(process->ticks, 3u + 0u);
    EXPECT_EQ(process->startTicks, 1343080u);
    EXPECT_EQ(process->name(), "python3");
    EXPECT_FALSE(process->isKernelThread);
}

TEST(ProcessTextsTest, UserAndSystemTimeAreAddedUpAndThoseOfChildrenAreNot) {
    const auto process =
        processIn("7 (a) S 1 7 7 0 -1 4194304 1 2 3 4 500 60 7000 8000 20 0 1 0 90 0\n");
    ASSERT_TRUE(process);
    EXPECT_EQ(process->ticks, 560u);
    EXPECT_EQ(process->startTicks, 90u);
}

TEST(ProcessTextsTest, NameMayHoldBracketsAndBlanks) {
    const auto process = processIn(fixture("brackets"));
    ASSERT_TRUE(process);
    EXPECT_EQ(process->name(), "a) b (c");
    EXPECT_EQ(process->startTicks, 1343079u);
}

TEST(ProcessTextsTest, NameThatLooksLikeFiguresIsStillAName) {
    const auto process =
        processIn("7 (x) R 1 2 3\n4) S 1 7 8 0 -1 0 1 2 3 4 5 6 7 8 20 0 1 0 90 0\n");
    ASSERT_TRUE(process);
    EXPECT_EQ(process->name(), "x) R 1 2 3\n4");
    EXPECT_EQ(process->session, 8);
}

TEST(ProcessTextsTest, ThreadsOfTheKernelAreToldApart) {
    EXPECT_TRUE(processIn(fixture("kthreadd"))->isKernelThread);
    const auto worker = processIn(fixture("kworker"));
    ASSERT_TRUE(worker);
    EXPECT_TRUE(worker->isKernelThread);
    EXPECT_EQ(worker->name(), "kworker/u8:3-ext4-rsv-conversion");
    EXPECT_EQ(worker->ticks, 130u);
}

TEST(ProcessTextsTest, ZombieIsAProcess) {
    const auto process = processIn(fixture("zombie"));
    ASSERT_TRUE(process);
    EXPECT_EQ(process->name(), "python3");
    EXPECT_THAT(argumentsIn(fixture("zombie", "cmdline")), IsEmpty());
}

/// The text without the rest lies at the end of its own memory, so that the address sanitizer
/// sees a single byte read behind it.
TEST(ProcessTextsTest, TextCutAnywhereIsNone) {
    const std::string text = fixture("brackets");
    for (std::size_t size = 0; size < text.size(); ++size) {
        const auto cut = std::make_unique<char[]>(size);
        std::memcpy(cut.get(), text.data(), size);
        ASSERT_FALSE(processIn({cut.get(), size})) << size;
    }
    EXPECT_TRUE(processIn(text));
}

TEST(ProcessTextsTest, TextsThatAreNoProcessAreNone) {
    for (const char* const text :
         {"", "\n", "()\n", "7 (a)\n", "7 (a) S\n",
          "x (a) S 1 7 7 0 -1 0 1 2 3 4 5 6 7 8 9 1 1 0 9 0\n",
          "7 (a) S 1 7 7 0 -1 0 1 2 3 4 -5 6 7 8 20 0 1 0 90 0\n",
          "7 (a) S 1 7 7 0 -1 0 1 2 3 4 5 6x 7 8 20 0 1 0 90 0\n",
          "7 (a) S 1 7 99999999999 0 -1 0 1 2 3 4 5 6 7 8 20 0 1 0 90 0\n",
          "7 (a) S 1 7 7 0 -1 0 1 2 3 4 5 6 7 8 20 0 1 0\n", ") 7 (a S 1\n"})
        EXPECT_FALSE(processIn(text)) << text;
}

TEST(ProcessTextsTest, TicksBeyond64BitsReadAsTheMost) {
    const auto process =
        processIn("7 (a) S 1 7 7 0 -1 0 1 2 3 4 18446744073709551616 6 7 8 20 0 1 0 90 0\n");
    ASSERT_TRUE(process);
    EXPECT_EQ(process->ticks, std::numeric_limits<std::uint64_t>::max());
}

TEST(ProcessTextsTest, ApplicationIsTheLastScopeOrService) {
    const std::string user = "0::/user.slice/user-1000.slice/user@1000.service";
    struct Case {
        std::string text, application;
    };
    const std::vector<Case> cases{
        {user + "/app.slice/app-gnome-firefox-4711.scope\n",
         "/user.slice/user-1000.slice/user@1000.service/app.slice/app-gnome-firefox-4711.scope"},
        {user + "/app.slice/foot.service/sub/more\n",
         "/user.slice/user-1000.slice/user@1000.service/app.slice/foot.service"},
        {"0::/system.slice/cron.service\n", "/system.slice/cron.service"},
        {"12:pids:/a.service\n1:name=systemd:/system.slice/ssh.service\n0::/\n",
         "/system.slice/ssh.service"},
        {"0::/system.slice/a:0::b.service\n", "/system.slice/a:0::b.service"},
        {user + "/init.scope\n", ""},
        {user + "/app.slice\n", ""},
        {"0::/user.slice/user-1000.slice/session-2.scope\n", ""},
        {"0::/init.scope\n", ""},
        {"0::/\n", ""},
        {"0::\n", ""},
        {"", ""},
        {"4:memory:/system.slice/cron.service\n", ""},
        {"no cgroup at all", ""},
    };
    for (const auto& [text, application] : cases)
        EXPECT_EQ(applicationPathIn(text), application) << text;
}

TEST(ProcessTextsTest, ArgumentsEndWithAZeroByteEach) {
    EXPECT_THAT(argumentsIn("a\0b c\0\0d\0"s), ElementsAre("a", "b c", "", "d"));
    EXPECT_THAT(argumentsIn("a\0cut"s), ElementsAre("a"));
    EXPECT_THAT(argumentsIn(""), IsEmpty());
}

TEST(ProcessTextsTest, ReadingDoesNotAllocate) {
    const std::string stat = fixture("brackets");
    const std::string cgroup = "0::/user.slice/app.slice/foot.service/sub\n";
    const AllocationCounter counter;
    const bool isRead = processIn(stat).has_value() && !applicationPathIn(cgroup).empty();
    EXPECT_EQ(counter.count(), 0u);
    EXPECT_TRUE(isRead);
}

}  // namespace
}  // namespace vantor
