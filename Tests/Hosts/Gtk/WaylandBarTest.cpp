// Runs the real program on a Wayland compositor of the test's own, and takes photographs of it.

#include <cstdint>
#include <functional>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <systemd/sd-bus.h>

#include "Platform/Linux/LinuxMainQueue.h"
#include "Tests/Support/BusPeer.h"
#include "Tests/Support/Child.h"
#include "Tests/Support/Compositor.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/QueueWorld.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/VirtualPointer.h"

namespace vantor {
namespace {

using test::Child;
using test::Compositor;
using test::VirtualPointer;
using test::Words;

constexpr int kWidth = 400, kHeight = 120;
constexpr std::uint32_t kNothing = 0x000000, kLightBar = 0xEEEEEE, kHighlight = 0x2E73EB;

class WaylandBarTest : public testing::Test {
protected:
    void SetUp() override {
        if (!compositor.isInstalled())
            GTEST_SKIP() << "there is no sway";
        ASSERT_TRUE(compositor.comesUp());
    }

    Words environment(const Words& more = {}) const {
        Words variables = compositor.environment();
        variables.push_back("HOME=" + home.path().string());
        variables.insert(variables.end(), more.begin(), more.end());
        return variables;
    }
    static Words program(const Words& options = {}) {
        Words words{VANTOR_PROGRAM, "run"};
        words.insert(words.end(), options.begin(), options.end());
        return words;
    }
    std::uint32_t pixel(int x, int y) const { return photograph.pixel(x, y); }
    bool hasInk(int from, int to, int top, int bottom) const {
        for (int y = top; y < bottom; ++y)
            for (int x = from; x < to; ++x)
                if (pixel(x, y) != kLightBar)
                    return true;
        return false;
    }
    /// Waits for it, while everybody else goes on.
    bool comes(const std::function<bool()>& isDone, const std::string& screen = "HEADLESS-1") {
        return test::runUntil(queue, [&] {
            photograph = compositor.photograph(screen);
            return isDone();
        });
    }
    bool itemComesAtTheRight() {
        return comes([&] { return pixel(200, 10) == kLightBar && hasInk(360, 400, 0, 22); });
    }
    nlohmann::json workspaces() const {
        return nlohmann::json::parse(compositor.ask({"-t", "get_workspaces"}));
    }

    test::TemporaryFolder home;
    Compositor compositor{kWidth, kHeight};
    LinuxMainQueue queue;
    Compositor::Photograph photograph;
};

TEST_F(WaylandBarTest, ABarAtTheTopCarriesTheItemAtItsRight) {
    const Child bar(program(), environment());
    ASSERT_TRUE(itemComesAtTheRight());
    EXPECT_EQ(pixel(200, 21), kLightBar);
    EXPECT_EQ(pixel(200, 22), kNothing);
    EXPECT_FALSE(hasInk(0, kWidth - 100, 0, 22));
}

TEST_F(WaylandBarTest, WindowsKeepClearOfTheBar) {
    const Child bar(program(), environment());
    ASSERT_TRUE(itemComesAtTheRight());
    const auto room = workspaces().at(0).at("rect");
    EXPECT_EQ(room.at("y"), 22);
    EXPECT_EQ(room.at("height"), kHeight - 22);
}

TEST_F(WaylandBarTest, TheBottomAndTheLeftCanBeChosen) {
    const Child bar(program({"--host", "wayland", "--bottom", "--align", "left"}), environment());
    ASSERT_TRUE(comes([&] {
        return pixel(200, kHeight - 1) == kLightBar && hasInk(0, 40, kHeight - 22, kHeight);
    }));
    EXPECT_EQ(pixel(200, kHeight - 23), kNothing);
    EXPECT_FALSE(hasInk(100, kWidth, kHeight - 22, kHeight));
}

TEST_F(WaylandBarTest, APressOpensTheMenuAndTheNextOneClosesIt) {
    VirtualPointer pointer(compositor.socket());
    ASSERT_TRUE(pointer.isThere());
    const Child bar(program(), environment());
    ASSERT_TRUE(itemComesAtTheRight());
    pointer.move(kWidth - 8, 10, kWidth, kHeight);
    pointer.click();
    EXPECT_TRUE(comes([&] { return pixel(kWidth - 8, 0) == kHighlight; }));
    pointer.click();
    EXPECT_TRUE(comes([&] { return pixel(kWidth - 8, 0) == kLightBar; }));
}

TEST_F(WaylandBarTest, AMonitorByNumberIsWaitedForWhenItWent) {
    compositor.ask({"create_output"});
    const Child bar(program({"--monitor", "1"}), environment());
    ASSERT_TRUE(comes([&] { return pixel(200, 10) == kLightBar; }, "HEADLESS-2"));
    compositor.ask({"output", "HEADLESS-2", "disable"});
    ASSERT_TRUE(comes([&] { return pixel(200, 10) == kNothing; }));
    compositor.ask({"output", "HEADLESS-2", "enable"});
    EXPECT_TRUE(comes([&] { return pixel(200, 10) == kLightBar; }, "HEADLESS-2"));
    EXPECT_TRUE(comes([&] { return pixel(200, 10) == kNothing; }));
}

TEST_F(WaylandBarTest, TheMenuIsOpenInTheBarThatWasPressed) {
    compositor.ask({"create_output"});
    compositor.ask({"output", "HEADLESS-2", "resolution", "400x120", "position", "400", "0"});
    VirtualPointer pointer(compositor.socket());
    const Child bar(program(), environment());
    ASSERT_TRUE(itemComesAtTheRight());
    pointer.move(kWidth - 8, 10, 2 * kWidth, kHeight);
    pointer.click();
    ASSERT_TRUE(comes([&] { return pixel(kWidth - 8, 0) == kHighlight; }));
    pointer.move(2 * kWidth - 8, 10, 2 * kWidth, kHeight);
    pointer.click();
    EXPECT_TRUE(comes([&] { return pixel(kWidth - 8, 0) == kHighlight; }, "HEADLESS-2"));
    EXPECT_TRUE(comes([&] { return pixel(kWidth - 8, 0) == kLightBar; }));
}

TEST_F(WaylandBarTest, ABarFollowsTheScaleOfItsScreen) {
    const Child bar(program(), environment());
    ASSERT_TRUE(itemComesAtTheRight());
    compositor.ask({"output", "HEADLESS-1", "scale", "2"});
    EXPECT_TRUE(comes([&] { return pixel(200, 43) == kLightBar && hasInk(320, 400, 0, 44); }));
    EXPECT_EQ(pixel(200, 44), kNothing);
}

TEST_F(WaylandBarTest, AMonitorThatComesGetsABarAndLosesItWhenItGoes) {
    const Child bar(program(), environment());
    ASSERT_TRUE(itemComesAtTheRight());
    compositor.ask({"create_output"});
    EXPECT_TRUE(comes([&] { return pixel(200, 10) == kLightBar; }, "HEADLESS-2"));
    compositor.ask({"output", "HEADLESS-2", "disable"});
    ASSERT_TRUE(itemComesAtTheRight());
    compositor.ask({"output", "HEADLESS-2", "enable"});
    EXPECT_TRUE(comes([&] { return pixel(200, 10) == kLightBar; }, "HEADLESS-2"));
}

TEST_F(WaylandBarTest, ACompositorThatDiesEndsItInGoodOrder) {
    const test::PrivateBus bus;
    bool isUnloaded = false;
    test::BusPeer listener(queue, bus.address());
    listener.setListener("com.kolbrin.vantorbar.Notifications",
                         [&](sd_bus_message*) { isUnloaded = true; });
    Child bar(program(), environment({"DBUS_SESSION_BUS_ADDRESS=" + bus.address()}));
    ASSERT_TRUE(itemComesAtTheRight());
    compositor.crash();
    EXPECT_EQ(bar.status(), 1);
    EXPECT_TRUE(test::runUntil(queue, [&] { return isUnloaded; }));
}

}  // namespace
}  // namespace vantor
