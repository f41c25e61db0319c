#include "Platform/Linux/DetachedProcesses.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Tests/Support/QueueWorld.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;
using test::runUntil;

std::string contentsOf(const fs::path& file) {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Runs `script` and answers what it wrote into the file "out".
std::string outputOf(const std::string& script) {
    const test::TemporaryFolder folder;
    LinuxMainQueue queue;
    DetachedProcesses processes(queue);
    const std::string out = folder / "out", done = folder / "done";
    EXPECT_TRUE(processes.start({"/bin/sh", "-c", script + "; mv \"$0\" \"$1\"", out, done}));
    EXPECT_TRUE(runUntil(queue, [&] { return fs::exists(done); }));
    return contentsOf(done);
}

TEST(DetachedProcessesTest, ArgumentsArriveAsTheyAre) {
    EXPECT_EQ(outputOf(R"(printf %s 'a  b' >"$0")"), "a  b");
}

TEST(DetachedProcessesTest, ProgramIsTheLeaderOfItsOwnSession) {
    // The sixth field is the session; "sh" has no blank in it, so that counting works.
    EXPECT_EQ(outputOf(R"(set -- $(cat /proc/$$/stat) "$1"; [ "$6" = "$$" ] && echo own >"$0";
                          eval shift $(($# - 1)))"),
              "own\n");
}

TEST(DetachedProcessesTest, ProgramInheritsNoDescriptors) {
    const int open = fcntl(0, F_DUPFD, 200);  // without CLOEXEC; the shell's own are below
    ASSERT_GE(open, 200);
    const std::string script =
        R"(ls /proc/$$/fd | grep -c -x )" + std::to_string(open) + R"( >"$0")";
    EXPECT_EQ(outputOf(script), "0\n");
    close(open);
}

TEST(DetachedProcessesTest, ProgramHasNoOtherDescriptorsThanTheThreeOfAll) {
    // The fourth is the folder that is being listed.
    EXPECT_EQ(outputOf(R"((exec ls /proc/self/fd) >"$0")"), "0\n1\n2\n3\n");
}

TEST(DetachedProcessesTest, ProgramReadsAndWritesNothingOfOurs) {
    EXPECT_EQ(outputOf(R"(found=$(readlink /proc/$$/fd/[012]); echo "$found" >"$0")"),
              "/dev/null\n/dev/null\n/dev/null\n");
}

TEST(DetachedProcessesTest, EndedProgramLeavesNoZombie) {
    while (waitpid(-1, nullptr, 0) > 0) {  // what earlier tests left
    }
    LinuxMainQueue queue;
    DetachedProcesses processes(queue);
    ASSERT_TRUE(processes.start({"/bin/true"}));
    ASSERT_TRUE(processes.start({"/bin/true"}));
    EXPECT_TRUE(runUntil(queue, [] {
        siginfo_t info{};
        return waitid(P_ALL, 0, &info, WEXITED | WNOWAIT | WNOHANG) != 0 && errno == ECHILD;
    }));
}

TEST(DetachedProcessesTest, WhatIsNoProgramIsNotStarted) {
    LinuxMainQueue queue;
    DetachedProcesses processes(queue);
    EXPECT_FALSE(processes.start({"/nowhere/to/be/found"}));
    EXPECT_FALSE(processes.start({}));
}

}  // namespace
}  // namespace vantor
