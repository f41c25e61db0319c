// Runs the real program in a terminal, of which the test is the screen and the keyboard.

#include <array>
#include <csignal>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::SizeIs;

constexpr std::string_view kSecondScreen = "\x1b[?1049h", kFirstScreen = "\x1b[?1049l";
constexpr std::string_view kPictureBegins = "\x1b[H", kPictureEnds = "\x1b[J";
constexpr std::string_view kLineEnds = "\x1b[K\n";
constexpr int kMostMilliseconds = 20'000;

/// The lines of the last picture in `text`.
std::vector<std::string> pictureIn(const std::string& text) {
    std::vector<std::string> lines;
    auto from = text.rfind(kPictureBegins) + kPictureBegins.size();
    for (auto end = text.find(kLineEnds, from); end != text.npos;
         end = text.find(kLineEnds, from)) {
        lines.push_back(text.substr(from, end - from));
        from = end + kLineEnds.size();
    }
    return lines;
}

class TopScreenTest : public testing::Test {
protected:
    TopScreenTest() : screen_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        if (grantpt(screen_) != 0 || unlockpt(screen_) != 0)
            throw std::runtime_error("no terminal");
    }
    ~TopScreenTest() override {
        if (id_ > 0) {
            kill(id_, SIGKILL);
            status();
        }
        close(screen_);
    }

    void resize(unsigned short rows, unsigned short columns) const {
        const winsize size{.ws_row = rows, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
        EXPECT_EQ(ioctl(screen_, TIOCSWINSZ, &size), 0);
    }
    /// The terminal is its controlling one, as a shell would have it.
    void start() {
        std::array<std::string, 2> words{VANTOR_PROGRAM, "top"};
        std::array<std::string, 5> variables{
            "HOME=" + home.path().string(), "PATH=/usr/bin:/bin", "TERM=xterm",
            "DBUS_SYSTEM_BUS_ADDRESS=unix:path=" + (home / "none").string(),
            "DBUS_SESSION_BUS_ADDRESS=" + bus.address()};
        std::array<char*, 3> arguments{words[0].data(), words[1].data(), nullptr};
        std::array<char*, 6> environment{variables[0].data(), variables[1].data(),
                                         variables[2].data(), variables[3].data(),
                                         variables[4].data(), nullptr};
        posix_spawnattr_t attributes;
        posix_spawnattr_init(&attributes);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, ptsname(screen_), O_RDWR, 0);
        posix_spawn_file_actions_adddup2(&actions, STDIN_FILENO, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions, STDIN_FILENO, STDERR_FILENO);
        ASSERT_EQ(posix_spawn(&id_, words[0].c_str(), &actions, &attributes, arguments.data(),
                              environment.data()),
                  0);
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }
    void send(int signal) const { EXPECT_EQ(kill(id_, signal), 0); }
    void type(char key) const { EXPECT_EQ(write(screen_, &key, 1), 1); }

    /// What it shows up to and with that text, or up to its end.
    std::string shownUntil(std::string_view end) const {
        std::string text;
        pollfd polled{screen_, POLLIN, 0};
        char byte = 0;
        while (text.find(end) == text.npos && poll(&polled, 1, kMostMilliseconds) == 1 &&
               read(screen_, &byte, 1) == 1)
            if (byte != '\r')  // the terminal puts more of them before line ends
                text += byte;
        return text;
    }
    std::vector<std::string> picture() const { return pictureIn(shownUntil(kPictureEnds)); }
    int status(int options = 0) {
        int status = -1;
        EXPECT_EQ(waitpid(id_, &status, options), id_);
        if (!WIFSTOPPED(status))
            id_ = -1;
        return status;
    }

    test::TemporaryFolder home;
    test::PrivateBus bus{std::filesystem::path(VANTOR_SERVICE_DIR)};

private:
    int screen_;
    pid_t id_ = -1;
};

TEST_F(TopScreenTest, AListIsAPictureOnTheSecondScreenThatFits) {
    resize(5, 30);
    start();
    const std::string text = shownUntil(kPictureEnds);
    EXPECT_THAT(text, HasSubstr(kSecondScreen));
    const auto lines = pictureIn(text);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines[0], "  CPU %  PROCESS");
    EXPECT_LE(lines.size(), 4U);
    for (const std::string& line : lines)
        EXPECT_LT(line.size(), 30U) << line;
}

TEST_F(TopScreenTest, QGivesTheTerminalBackAsItWas) {
    resize(24, 80);
    start();
    shownUntil(kPictureEnds);
    type('q');
    EXPECT_THAT(shownUntil("no such text"), HasSubstr(kFirstScreen));
    EXPECT_EQ(status(), 0);
}

TEST_F(TopScreenTest, ASignalGivesTheTerminalBackToo) {
    resize(24, 80);
    start();
    shownUntil(kPictureEnds);
    send(SIGTERM);
    EXPECT_THAT(shownUntil("no such text"), HasSubstr(kFirstScreen));
    EXPECT_EQ(status(), 0);
}

TEST_F(TopScreenTest, AnotherSizeIsPaintedAnew) {
    resize(24, 80);
    start();
    shownUntil(kPictureEnds);
    resize(2, 80);
    std::vector<std::string> lines;
    for (int pictures = 0; lines.size() != 1 && pictures < 5; ++pictures)
        lines = picture();
    EXPECT_THAT(lines, SizeIs(1));
}

TEST_F(TopScreenTest, AStopLeavesTheSecondScreenAndGoingOnReturnsToIt) {
    resize(24, 80);
    start();
    shownUntil(kPictureEnds);
    send(SIGTSTP);
    EXPECT_TRUE(WIFSTOPPED(status(WUNTRACED)));
    EXPECT_THAT(shownUntil(kFirstScreen), EndsWith(kFirstScreen));
    send(SIGCONT);
    EXPECT_THAT(shownUntil(kSecondScreen), EndsWith(kSecondScreen));
    EXPECT_FALSE(picture().empty());
}

}  // namespace
}  // namespace vantor
