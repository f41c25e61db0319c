// Runs the real program on a Wayland compositor of the test's own, and uses its dropdown as a user
// does.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "Platform/Linux/LinuxMainQueue.h"
#include "Tests/Support/Child.h"
#include "Tests/Support/Compositor.h"
#include "Tests/Support/QueueWorld.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/VirtualPointer.h"

namespace vantor {
namespace {

using test::Child;
using test::Compositor;
using test::Words;

constexpr int kWidth = 640, kHeight = 600;
constexpr std::uint32_t kNothing = 0x000000, kGround = 0xFAFAFA, kLightBar = 0xEEEEEE;

struct Pixel {
    int x, y;
};
constexpr Pixel kItem{kWidth - 8, 10}, kDropdown{520, 130}, kGraphRow{520, 60};
constexpr Pixel kSubmenu{96, 100}, kElsewhere{40, 550};

class WaylandMenuTest : public testing::Test {
protected:
    void SetUp() override {
        if (!compositor.isInstalled())
            GTEST_SKIP() << "there is no sway";
        ASSERT_TRUE(compositor.comesUp());
        pointer.emplace(compositor.socket());
        ASSERT_TRUE(pointer->isThere());
        Words variables = compositor.environment();
        variables.push_back("HOME=" + home.path().string());
        bar.emplace(Words{VANTOR_PROGRAM, "run"}, variables);
        ASSERT_TRUE(comes({kWidth - 60, 10}, kLightBar));
        ASSERT_TRUE(comes(kItem, [](std::uint32_t pixel) { return pixel != kLightBar; }));
    }

    void point(Pixel at) {
        pointer->move(static_cast<std::uint32_t>(at.x), static_cast<std::uint32_t>(at.y), kWidth,
                      kHeight);
    }
    /// As from a hand, which is never quite still: entering a window alone is no motion.
    bool submenuComesAt(Pixel at) {
        return test::runUntil(queue, [&] {
            at.x ^= 1;
            point(at);
            return compositor.photograph().pixel(kSubmenu.x, kSubmenu.y) == kGround;
        });
    }
    void press(Pixel at) {
        point(at);
        pointer->click();
    }
    void key(const std::string& name) const {
        Child({"wtype", "-k", name}, compositor.environment()).rest();
    }
    bool comes(Pixel at, const std::function<bool(std::uint32_t)>& isIt) {
        return test::runUntil(queue,
                              [&] { return isIt(compositor.photograph().pixel(at.x, at.y)); });
    }
    bool comes(Pixel at, std::uint32_t colour) {
        return comes(at, [colour](std::uint32_t pixel) { return pixel == colour; });
    }

    test::TemporaryFolder home;
    Compositor compositor{kWidth, kHeight};
    std::optional<test::VirtualPointer> pointer;
    std::optional<Child> bar;
    LinuxMainQueue queue;
};

TEST_F(WaylandMenuTest, AClickOnTheItemShowsTheDropdownAndTheNextOneTakesItAway) {
    press(kItem);
    EXPECT_TRUE(comes(kDropdown, kGround));
    press(kItem);
    EXPECT_TRUE(comes(kDropdown, kNothing));
}

TEST_F(WaylandMenuTest, APointerThatRestsOnARowOpensItsSubmenuAndAClickElsewhereClosesAll) {
    press(kItem);
    ASSERT_TRUE(comes(kDropdown, kGround));
    EXPECT_TRUE(submenuComesAt(kGraphRow));
    press(kElsewhere);
    EXPECT_TRUE(comes(kSubmenu, kNothing));
    EXPECT_TRUE(comes(kDropdown, kNothing));
}

TEST_F(WaylandMenuTest, TheKeyboardAloneDoes) {
    if (!std::filesystem::exists("/usr/bin/wtype"))
        GTEST_SKIP() << "there is no wtype";
    // A keyboard that stays: without one, nothing has the focus.
    const Child keyboard({"wtype", "-s", "60000"}, compositor.environment());
    press(kItem);
    ASSERT_TRUE(comes(kDropdown, kGround));
    key("Down");
    key("Right");
    EXPECT_TRUE(comes(kSubmenu, kGround));
    key("Left");
    EXPECT_TRUE(comes(kSubmenu, kNothing));
    key("Escape");
    EXPECT_TRUE(comes(kDropdown, kNothing));
}

}  // namespace
}  // namespace vantor
