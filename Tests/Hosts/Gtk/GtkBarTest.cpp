// Runs the real program on an X server of the test's own, whose screen is a file.

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include "Platform/Linux/LinuxMainQueue.h"
#include "Tests/Support/BusPeer.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/QueueWorld.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

using test::BusPeer;
using test::PrivateBus;
using test::TemporaryFolder;
using testing::HasSubstr;
using testing::Not;

constexpr int kWidth = 400, kHeight = 120;
constexpr std::uint32_t kNothing = 0x000000, kLightBar = 0xEEEEEE, kDarkBar = 0x232326;
constexpr std::uint32_t kHighlight = 0x2E73EB;

using Words = std::vector<std::string>;

std::vector<char*> pointers(Words& words) {
    std::vector<char*> all;
    for (std::string& word : words)
        all.push_back(word.data());
    all.push_back(nullptr);
    return all;
}

/// A process with a pipe at its standard output.
class Child {
public:
    Child(Words words, Words environment) {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) != 0)
            return;
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        if (posix_spawnp(&id_, words.front().c_str(), &actions, nullptr, pointers(words).data(),
                         pointers(environment).data()) != 0)
            id_ = -1;
        posix_spawn_file_actions_destroy(&actions);
        close(ends[1]);
        output_ = ends[0];
    }
    ~Child() {
        if (isRunning()) {
            kill(id_, SIGKILL);
            status();
        }
        close(output_);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    bool isRunning() const { return id_ > 0; }
    pid_t id() const { return id_; }
    std::string line() {
        std::string text;
        for (char byte = 0; read(output_, &byte, 1) == 1 && byte != '\n';)
            text += byte;
        return text;
    }
    std::string rest() {
        std::string text;
        for (char byte = 0; read(output_, &byte, 1) == 1;)
            text += byte;
        return text;
    }
    /// Waits for the end; -1 where a signal ended it.
    int status() {
        int status = 0;
        while (waitpid(id_, &status, 0) < 0 && errno == EINTR) {
        }
        id_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    pid_t id_ = -1;
    int output_ = -1;
};

/// An X server with one screen, in a file in the format of window dumps.
class Screen {
public:
    Screen()
        : server_({"Xvfb", "-displayfd", "1", "-screen", "0",
                   fmt::format("{}x{}x24", kWidth, kHeight), "-fbdir", folder_.path().string(),
                   "-nolisten", "tcp", "-noreset"},
                  {"PATH=/usr/bin:/bin"}),
          display_(server_.isRunning() ? ":" + server_.line() : "") {}

    bool isThere() const { return display_.size() > 1; }
    bool isInstalled() const { return server_.isRunning(); }
    const std::string& display() const { return display_; }

    /// Rows of red, green and blue from the top.
    std::vector<std::uint32_t> pixels() const {
        std::ifstream file(folder_ / "Xvfb_screen0", std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(file), {});
        const auto bigEndian = [&](std::size_t place) {
            std::uint32_t number = 0;
            for (std::size_t byte = 4 * place; byte < 4 * place + 4; ++byte)
                number = number << 8 | static_cast<unsigned char>(bytes.at(byte));
            return number;
        };
        constexpr std::size_t kHeaderSize = 0, kColours = 19, kColourSize = 12;
        std::vector<std::uint32_t> pixels(std::size_t{kWidth} * kHeight);
        const std::size_t begin = bigEndian(kHeaderSize) + bigEndian(kColours) * kColourSize;
        if (begin + pixels.size() * 4 > bytes.size())
            return {};
        std::memcpy(pixels.data(), bytes.data() + begin, pixels.size() * 4);
        for (std::uint32_t& pixel : pixels)
            pixel &= 0xFFFFFF;
        return pixels;
    }

private:
    TemporaryFolder folder_;
    Child server_;
    std::string display_;
};

class GtkBarTest : public testing::Test {
protected:
    void SetUp() override {
        if (!screen.isInstalled())
            GTEST_SKIP() << "there is no Xvfb";
        ASSERT_TRUE(screen.isThere());
    }

    Words environment(const Words& more = {}) const {
        Words variables{"HOME=" + home.path().string(), "XDG_RUNTIME_DIR=" + home.path().string(),
                        "DISPLAY=" + screen.display(), "PATH=/usr/bin:/bin", "NO_AT_BRIDGE=1"};
        variables.insert(variables.end(), more.begin(), more.end());
        return variables;
    }
    static Words program(const Words& options = {}) {
        Words words{VANTOR_PROGRAM, "run"};
        words.insert(words.end(), options.begin(), options.end());
        return words;
    }
    std::string ask(const Words& words) const { return Child(words, environment()).rest(); }
    std::string property(const std::string& name) const {
        return ask({"xprop", "-name", "Vantor Bar CPU", name});
    }
    void press(int x, int y) const {
        ask({"xdotool", "mousemove", std::to_string(x), std::to_string(y), "click", "1"});
    }
    /// As `comes` saw it last.
    std::uint32_t pixel(int x, int y) const {
        return pixels.empty() ? kNothing : pixels[static_cast<std::size_t>(y * kWidth + x)];
    }
    /// Whether something in those columns of the bar has another colour than the bar itself.
    bool hasInk(int from, int to, std::uint32_t bar = kLightBar, int top = 0) const {
        for (int y = top; y < top + 22; ++y)
            for (int x = from; x < to; ++x)
                if (pixel(x, y) != bar)
                    return true;
        return false;
    }
    /// Waits for it, while everybody else goes on.
    bool comes(const std::function<bool()>& isDone) {
        return test::runUntil(queue, [&] {
            pixels = screen.pixels();
            return !pixels.empty() && isDone();
        });
    }
    bool itemComesAtTheRight(std::uint32_t bar = kLightBar) {
        return comes([&] { return pixel(200, 10) == bar && hasInk(kWidth - 40, kWidth, bar); });
    }

    TemporaryFolder home;
    Screen screen;
    LinuxMainQueue queue;
    std::vector<std::uint32_t> pixels;
};

TEST_F(GtkBarTest, ABarAtTheTopCarriesTheItemAtItsRight) {
    const Child bar(program(), environment());
    ASSERT_TRUE(itemComesAtTheRight());
    EXPECT_EQ(pixel(200, 0), kLightBar);
    EXPECT_EQ(pixel(200, 21), kLightBar);
    EXPECT_EQ(pixel(200, 22), kNothing);
    EXPECT_FALSE(hasInk(0, kWidth - 100));
}

TEST_F(GtkBarTest, TheDockReservesItsSpace) {
    const Child bar(program(), environment());
    ASSERT_TRUE(itemComesAtTheRight());
    EXPECT_THAT(property("_NET_WM_WINDOW_TYPE"), HasSubstr("_NET_WM_WINDOW_TYPE_DOCK"));
    EXPECT_THAT(property("_NET_WM_STRUT_PARTIAL"),
                HasSubstr("= 0, 0, 22, 0, 0, 0, 0, 0, 0, 399, 0, 0"));
}

TEST_F(GtkBarTest, AScreenOfTwicePixelsHasABarTwiceAsHigh) {
    const Child bar(program(), environment({"GDK_SCALE=2"}));
    ASSERT_TRUE(itemComesAtTheRight());
    EXPECT_EQ(pixel(200, 43), kLightBar);
    EXPECT_EQ(pixel(200, 44), kNothing);
    EXPECT_THAT(property("_NET_WM_STRUT_PARTIAL"),
                HasSubstr("= 0, 0, 44, 0, 0, 0, 0, 0, 0, 399, 0, 0"));
}

TEST_F(GtkBarTest, TheBottomAndTheLeftCanBeChosen) {
    const Child bar(program({"--host", "x11", "--bottom", "--align", "left"}), environment());
    ASSERT_TRUE(comes([&] { return pixel(200, kHeight - 1) == kLightBar; }));
    EXPECT_EQ(pixel(200, kHeight - 22), kLightBar);
    EXPECT_EQ(pixel(200, kHeight - 23), kNothing);
    EXPECT_TRUE(comes([&] { return hasInk(0, 40, kLightBar, kHeight - 22); }));
    EXPECT_FALSE(hasInk(100, kWidth, kLightBar, kHeight - 22));
}

TEST_F(GtkBarTest, APressOpensTheMenuAndTheNextOneClosesIt) {
    const Child bar(program(), environment());
    ASSERT_TRUE(itemComesAtTheRight());
    press(kWidth - 8, 10);
    EXPECT_TRUE(comes([&] { return pixel(kWidth - 8, 0) == kHighlight; }));
    EXPECT_EQ(pixel(200, 0), kLightBar);
    press(kWidth - 8, 10);
    EXPECT_TRUE(comes([&] { return pixel(kWidth - 8, 0) == kLightBar; }));
}

TEST_F(GtkBarTest, APressBesideTheItemOpensNothing) {
    const Child bar(program(), environment());
    ASSERT_TRUE(itemComesAtTheRight());
    press(200, 10);
    press(kWidth - 8, 10);  // told after the one before
    EXPECT_TRUE(comes([&] { return pixel(kWidth - 8, 0) == kHighlight; }));
}

TEST_F(GtkBarTest, SignalsThatAskItToEndEndItInGoodOrder) {
    Child bar(program(), environment());
    ASSERT_TRUE(itemComesAtTheRight());
    kill(bar.id(), SIGTERM);
    EXPECT_EQ(bar.status(), 0);
    EXPECT_TRUE(comes([&] { return pixel(200, 10) == kNothing; }));
}

TEST_F(GtkBarTest, WithoutADisplayItWritesText) {
    Words noDisplay = environment();
    std::erase(noDisplay, "DISPLAY=" + screen.display());
    Child text(program({"--count", "1"}), noDisplay);
    EXPECT_THAT(text.rest(), HasSubstr("\"user\""));
    EXPECT_EQ(text.status(), 0);
}

TEST_F(GtkBarTest, WhatShowsNoBarLoadsNoToolkit) {
    Child text(program({"--json"}), environment());
    ASSERT_THAT(text.line(), HasSubstr("\"user\""));
    std::ifstream file(fmt::format("/proc/{}/maps", text.id()));
    const std::string maps(std::istreambuf_iterator<char>(file), {});
    EXPECT_THAT(maps, HasSubstr("libstdc++"));
    EXPECT_THAT(maps, Not(HasSubstr("libgtk")));
    EXPECT_THAT(maps, Not(HasSubstr("libvantor-gtk")));
}

TEST_F(GtkBarTest, AMonitorThatIsNotThereIsAMistake) {
    Child bar(program({"--monitor", "7"}), environment());
    EXPECT_EQ(bar.status(), 1);
}

TEST_F(GtkBarTest, TheBarFollowsTheDesktopsAppearance) {
    const PrivateBus bus;
    BusPeer portal(queue, bus.address(), "org.freedesktop.portal.Desktop");
    std::uint32_t scheme = 1;  // dark
    portal.setAnswer([&](sd_bus_message* call) {
        return sd_bus_reply_method_return(call, "v", "v", "u", scheme);
    });
    const Child bar(program(), environment({"DBUS_SESSION_BUS_ADDRESS=" + bus.address()}));
    ASSERT_TRUE(itemComesAtTheRight(kDarkBar));
    portal.emitSignal({.peer = "",
                       .path = "/org/freedesktop/portal/desktop",
                       .interface = "org.freedesktop.portal.Settings",
                       .member = "SettingChanged"},
                      "ssv", "org.freedesktop.appearance", "color-scheme", "u", 2u);
    EXPECT_TRUE(itemComesAtTheRight(kLightBar));
}

}  // namespace
}  // namespace vantor
