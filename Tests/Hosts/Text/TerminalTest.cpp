#include "Hosts/Text/Terminal.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace vantor {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

constexpr std::string_view kSecondScreen = "\x1b[?1049h";
constexpr std::string_view kFirstScreen = "\x1b[?1049l";
constexpr std::string_view kShowCursor = "\x1b[?25h";

/// A terminal without a screen, of which the test is the other end.
class TerminalTest : public testing::Test {
protected:
    TerminalTest() : screen_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        if (grantpt(screen_) == 0 && unlockpt(screen_) == 0)
            terminal_ = open(ptsname(screen_), O_RDWR | O_NOCTTY | O_CLOEXEC);
    }
    ~TerminalTest() override {
        close(terminal_);
        close(screen_);
    }

    int terminal() const { return terminal_; }
    tcflag_t modes() const {
        termios settings{};
        EXPECT_EQ(tcgetattr(terminal_, &settings), 0);
        return settings.c_lflag;
    }
    /// What was written to the terminal since the last time.
    std::string shown() const {
        std::string text;
        pollfd polled{screen_, POLLIN, 0};
        while (poll(&polled, 1, 0) == 1 && (polled.revents & POLLIN) != 0) {
            std::array<char, 4096> bytes;
            const auto size = read(screen_, bytes.data(), bytes.size());
            if (size <= 0)
                break;
            text.append(bytes.data(), static_cast<std::size_t>(size));
        }
        return text;
    }
    /// Has another process use the terminal and end by that signal.
    int statusAfter(int signal) const {
        const pid_t child = fork();
        if (child == 0) {
            // A sanitizer has much to say of a crash.
            dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
            const Terminal used(terminal_);
            raise(signal);
            _exit(0);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        return status;
    }

private:
    int screen_, terminal_ = -1;
};

TEST_F(TerminalTest, TheSecondScreenIsInUseWhileItLives) {
    {
        const Terminal used(terminal());
        EXPECT_THAT(shown(), HasSubstr(kSecondScreen));
        EXPECT_EQ(modes() & (ECHO | ICANON), 0u);
        EXPECT_NE(modes() & ISIG, 0u);  // Ctrl-C still works
    }
    const std::string left = shown();
    EXPECT_THAT(left, HasSubstr(kShowCursor));
    EXPECT_THAT(left, EndsWith(kFirstScreen));
    EXPECT_EQ(modes() & (ECHO | ICANON), tcflag_t{ECHO | ICANON});
}

TEST_F(TerminalTest, WhoLeavesMayEnterAgain) {
    Terminal used(terminal());
    used.leave();
    EXPECT_NE(modes() & ECHO, 0u);
    shown();
    used.enter();
    EXPECT_EQ(modes() & ECHO, 0u);
    EXPECT_THAT(shown(), HasSubstr(kSecondScreen));
}

TEST_F(TerminalTest, LeavingTwiceWritesOnce) {
    Terminal used(terminal());
    used.leave();
    shown();
    used.leave();
    EXPECT_EQ(shown(), "");
}

TEST_F(TerminalTest, ACrashLeavesTheTerminalAsItWas) {
    for (const int signal : {SIGABRT, SIGSEGV, SIGQUIT}) {
        const int status = statusAfter(signal);
        EXPECT_THAT(shown(), EndsWith(kFirstScreen)) << signal;
        EXPECT_NE(modes() & ECHO, 0u) << signal;
        EXPECT_FALSE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << signal;
    }
}

TEST_F(TerminalTest, WhatStandardErrorIsToldMeanwhileWaitsForTheEnd) {
    const pid_t child = fork();
    if (child == 0) {
        dup2(terminal(), STDERR_FILENO);
        {
            const Terminal used(terminal());
            if (write(STDERR_FILENO, "trouble", 7) != 7)
                _exit(1);
        }
        _exit(0);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_THAT(shown(), EndsWith(std::string(kFirstScreen) + "trouble"));
}

TEST_F(TerminalTest, AfterItCrashesAreNoAffairOfOurs) {
    struct sigaction before {
    }, after{};
    sigaction(SIGABRT, nullptr, &before);
    { const Terminal used(terminal()); }
    sigaction(SIGABRT, nullptr, &after);
    EXPECT_EQ(before.sa_handler, after.sa_handler);
}

TEST_F(TerminalTest, ItsSizeIsWhatTheTerminalSays) {
    const winsize size{33, 121, 0, 0};
    ASSERT_EQ(ioctl(terminal(), TIOCSWINSZ, &size), 0);
    EXPECT_EQ(terminalSize(terminal()).columns, 121u);
    EXPECT_EQ(terminalSize(terminal()).rows, 33u);
}

TEST_F(TerminalTest, ATerminalThatDoesNotSayIsOfTheUsualSize) {
    EXPECT_EQ(terminalSize(-1).columns, 80u);
    EXPECT_EQ(terminalSize(-1).rows, 24u);
}

}  // namespace
}  // namespace vantor
