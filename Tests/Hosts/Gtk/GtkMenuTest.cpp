// Runs the real program on an X server of the test's own, and uses its dropdown as a user does.

#include <csignal>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Platform/Linux/LinuxMainQueue.h"
#include "Tests/Support/Child.h"
#include "Tests/Support/QueueWorld.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/XScreen.h"

namespace vantor {
namespace {

using test::Child;
using test::Words;

constexpr int kWidth = 640, kHeight = 600;
constexpr std::uint32_t kNothing = 0x000000, kGround = 0xFAFAFA, kLightBar = 0xEEEEEE;

struct Pixel {
    int x, y;
};
// The dropdown is 225 wide and slides to the screen's right edge; its submenus are at its left.
constexpr Pixel kItem{kWidth - 8, 10}, kDropdown{520, 130}, kGraphRow{520, 60};
constexpr Pixel kPill{420, 60}, kSubmenu{96, 100}, kElsewhere{40, 550};

class GtkMenuTest : public testing::Test {
protected:
    void SetUp() override {
        if (!screen.isInstalled())
            GTEST_SKIP() << "there is no Xvfb";
        ASSERT_TRUE(screen.isThere());
    }

    Words environment() const {
        return {"HOME=" + home.path().string(), "XDG_RUNTIME_DIR=" + home.path().string(),
                "DISPLAY=" + screen.display(), "PATH=/usr/bin:/bin", "NO_AT_BRIDGE=1"};
    }
    Words program(const Words& options = {}) const {
        Words words{VANTOR_PROGRAM, "run"};
        words.insert(words.end(), options.begin(), options.end());
        return words;
    }
    void point(Pixel at, const Words& more = {}) const {
        Words words{"xdotool", "mousemove", std::to_string(at.x), std::to_string(at.y)};
        words.insert(words.end(), more.begin(), more.end());
        Child(words, environment()).rest();
    }
    void press(Pixel at) const { point(at, {"click", "1"}); }
    void key(const std::string& name) const {
        Child({"xdotool", "key", name}, environment()).rest();
    }
    bool comes(Pixel at, const std::function<bool(std::uint32_t)>& isIt) {
        return test::runUntil(queue, [&] {
            const std::vector<std::uint32_t> pixels = screen.pixels();
            return !pixels.empty() && isIt(pixels[static_cast<std::size_t>(at.y * kWidth + at.x)]);
        });
    }
    bool comes(Pixel at, std::uint32_t colour) {
        return comes(at, [colour](std::uint32_t pixel) { return pixel == colour; });
    }
    bool highlightComes() {
        return comes(kPill, [](std::uint32_t pixel) {
            return (pixel & 0xFF) > (pixel >> 16) + 0x20;  // bluer than red
        });
    }
    /// The item is there when its end of the bar isn't plain any more.
    void openDropdown() {
        ASSERT_TRUE(comes({kWidth - 60, 10}, kLightBar));
        ASSERT_TRUE(comes(kItem, [](std::uint32_t pixel) { return pixel != kLightBar; }));
        press(kItem);
        ASSERT_TRUE(comes(kDropdown, kGround));
    }

    test::TemporaryFolder home;
    test::XScreen screen{kWidth, kHeight};
    LinuxMainQueue queue;
};

TEST_F(GtkMenuTest, AClickOnTheItemShowsTheDropdownAndTheNextOneTakesItAway) {
    const Child bar(program(), environment());
    openDropdown();
    press(kItem);
    EXPECT_TRUE(comes(kDropdown, kNothing));
    press(kItem);
    EXPECT_TRUE(comes(kDropdown, kGround));
}

TEST_F(GtkMenuTest, AClickElsewhereClosesIt) {
    const Child bar(program(), environment());
    openDropdown();
    press(kElsewhere);
    EXPECT_TRUE(comes(kDropdown, kNothing));
}

TEST_F(GtkMenuTest, APointerThatRestsOnARowOpensItsSubmenu) {
    const Child bar(program(), environment());
    openDropdown();
    point(kGraphRow);
    EXPECT_TRUE(highlightComes());
    EXPECT_TRUE(comes(kSubmenu, kGround));
    point(kDropdown);
    EXPECT_TRUE(comes(kSubmenu, [](std::uint32_t pixel) { return pixel != kGround; }));
}

TEST_F(GtkMenuTest, TheKeyboardAloneDoes) {
    const Child bar(program(), environment());
    openDropdown();
    key("Down");
    EXPECT_TRUE(highlightComes());
    key("Right");
    EXPECT_TRUE(comes(kSubmenu, kGround));
    key("Left");
    EXPECT_TRUE(comes(kSubmenu, kNothing));
    key("Escape");
    EXPECT_TRUE(comes(kDropdown, kNothing));
}

TEST_F(GtkMenuTest, AtTheBottomItOpensUpwards) {
    const Child bar(program({"--bottom"}), environment());
    ASSERT_TRUE(comes({kWidth - 60, kHeight - 10}, kLightBar));
    ASSERT_TRUE(
        comes({kWidth - 8, kHeight - 12}, [](std::uint32_t pixel) { return pixel != kLightBar; }));
    press({kWidth - 8, kHeight - 12});
    EXPECT_TRUE(comes({600, kHeight - 60}, [](std::uint32_t pixel) { return pixel != kNothing; }));
}

TEST_F(GtkMenuTest, AProgramThatEndsWithItsMenusOpenEndsInGoodOrder) {
    Child bar(program(), environment());
    openDropdown();
    point(kGraphRow);
    ASSERT_TRUE(comes(kSubmenu, kGround));
    kill(bar.id(), SIGTERM);
    EXPECT_EQ(bar.status(), 0);
}

}  // namespace
}  // namespace vantor
