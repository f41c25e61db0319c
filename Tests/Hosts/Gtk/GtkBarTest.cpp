// Runs the real program on an X server of the test's own, whose screen is a file.

#include <csignal>
#include <cstdint>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <systemd/sd-bus.h>

#include "Platform/Linux/LinuxMainQueue.h"
#include "Tests/Support/BusPeer.h"
#include "Tests/Support/Child.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/QueueWorld.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/XScreen.h"

namespace vantor {
namespace {

using test::BusPeer;
using test::Child;
using test::PrivateBus;
using test::TemporaryFolder;
using test::Words;
using test::XScreen;
using testing::HasSubstr;
using testing::Not;

constexpr int kWidth = 400, kHeight = 120;
constexpr std::uint32_t kNothing = 0x000000, kLightBar = 0xEEEEEE, kDarkBar = 0x232326;
constexpr std::uint32_t kHighlight = 0x2E73EB;

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
    /// Has the server's one monitor cover the left or the right half of its screen.
    /// The server tells nobody of that: it's for those who come later.
    void moveMonitor(int left) const {
        ask({"xrandr", "--setmonitor", "half", fmt::format("200/50x120/30+{}+0", left), "screen"});
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
    XScreen screen{kWidth, kHeight};
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

TEST_F(GtkBarTest, AnyBarIsTheOneOnThisDisplay) {
    const Child bar(program({"--host", "bar"}), environment());
    EXPECT_TRUE(itemComesAtTheRight());
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

TEST_F(GtkBarTest, ABarIsAsWideAsItsMonitor) {
    moveMonitor(200);
    const Child bar(program(), environment());
    ASSERT_TRUE(comes([&] { return pixel(210, 10) == kLightBar && hasInk(360, 400); }));
    EXPECT_EQ(pixel(100, 10), kNothing);
    EXPECT_THAT(property("_NET_WM_STRUT_PARTIAL"),
                HasSubstr("= 0, 0, 22, 0, 0, 0, 0, 0, 200, 399, 0, 0"));
}

TEST_F(GtkBarTest, OneMonitorCanBeChosenByItsName) {
    Child wrong(program({"--monitor", "another"}), environment());
    EXPECT_EQ(wrong.status(), 1);
    const Child bar(program({"--monitor", "screen"}), environment());
    EXPECT_TRUE(itemComesAtTheRight());
}

TEST_F(GtkBarTest, AtTheBottomLeftOfAMonitorToo) {
    moveMonitor(200);
    const Child bar(program({"--monitor", "screen", "--bottom", "--align", "left"}), environment());
    ASSERT_TRUE(comes([&] {
        return pixel(300, kHeight - 1) == kLightBar && hasInk(200, 240, kLightBar, kHeight - 22);
    }));
    EXPECT_FALSE(hasInk(300, 400, kLightBar, kHeight - 22));
    EXPECT_EQ(pixel(100, kHeight - 1), kNothing);
    EXPECT_THAT(property("_NET_WM_STRUT_PARTIAL"),
                HasSubstr("= 0, 0, 0, 22, 0, 0, 0, 0, 0, 0, 200, 399"));
}

TEST_F(GtkBarTest, ABarFollowsTheSizeOfItsMonitor) {
    const Child bar(program(), environment());
    ASSERT_TRUE(itemComesAtTheRight());
    ask({"xrandr", "--newmode", "small", "1", "300", "300", "300", "300", "120", "120", "120",
         "120"});
    ask({"xrandr", "--addmode", "screen", "small"});
    ask({"xrandr", "--output", "screen", "--mode", "small"});
    EXPECT_TRUE(comes([&] { return hasInk(260, 300); }));
    EXPECT_THAT(property("_NET_WM_STRUT_PARTIAL"),
                HasSubstr("= 0, 0, 22, 0, 0, 0, 0, 0, 0, 299, 0, 0"));
}

TEST_F(GtkBarTest, ABarFollowsTheScaleOfItsScreen) {
    const auto setScale = [&](int scale) {
        std::ofstream(home / "settings") << "Gdk/WindowScalingFactor " << scale << '\n';
    };
    setScale(1);
    const Child settings({"xsettingsd", "-c", (home / "settings").string()}, environment());
    if (!settings.isRunning())
        GTEST_SKIP() << "there is no xsettingsd";
    const Child bar(program(), environment());
    ASSERT_TRUE(itemComesAtTheRight());
    setScale(2);
    kill(settings.id(), SIGHUP);
    EXPECT_TRUE(comes([&] { return pixel(200, 43) == kLightBar && hasInk(320, 400); }));
    EXPECT_EQ(pixel(200, 44), kNothing);
    EXPECT_TRUE(comes([&] {
        return property("_NET_WM_STRUT_PARTIAL").find("0, 0, 44, 0") != std::string::npos;
    }));
}

TEST_F(GtkBarTest, AnXServerThatDiesEndsItInGoodOrder) {
    const PrivateBus bus;
    bool isUnloaded = false;
    BusPeer listener(queue, bus.address());
    listener.setListener("com.kolbrin.vantorbar.Notifications",
                         [&](sd_bus_message*) { isUnloaded = true; });
    Child bar(program(), environment({"DBUS_SESSION_BUS_ADDRESS=" + bus.address()}));
    ASSERT_TRUE(itemComesAtTheRight());
    screen.crash();
    EXPECT_EQ(bar.status(), 1);
    EXPECT_TRUE(test::runUntil(queue, [&] { return isUnloaded; }));
}

}  // namespace
}  // namespace vantor
