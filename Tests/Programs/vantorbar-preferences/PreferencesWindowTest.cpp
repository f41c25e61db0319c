// Runs the real window on an X server of the test's own, without a window manager.

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Platform/Linux/LinuxMainQueue.h"
#include "Tests/Support/Child.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/QueueWorld.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/XScreen.h"

namespace vantor {
namespace {

using test::Child;
using test::PrivateBus;
using test::TemporaryFolder;
using test::Words;
using test::XScreen;
using testing::HasSubstr;

/// Beside the other program.
const std::string kProgram =
    std::filesystem::path(VANTOR_PROGRAM).replace_filename("vantorbar-preferences").string();

class PreferencesWindowTest : public testing::Test {
protected:
    void SetUp() override {
        if (!screen.isInstalled())
            GTEST_SKIP() << "there is no Xvfb";
        ASSERT_TRUE(screen.isThere());
    }

    Words environment(const std::string& bus = "") const {
        Words variables{"HOME=" + home.path().string(), "XDG_RUNTIME_DIR=" + home.path().string(),
                        "DISPLAY=" + screen.display(), "PATH=/usr/bin:/bin", "NO_AT_BRIDGE=1"};
        variables.push_back("ASAN_OPTIONS=detect_leaks=0");  // the toolkit's own, at the end
        if (!bus.empty())
            variables.push_back("DBUS_SESSION_BUS_ADDRESS=" + bus);
        return variables;
    }
    std::string ask(const Words& words) const { return Child(words, environment()).rest(); }
    std::string windows() const {
        return ask({"xdotool", "search", "--onlyvisible", "--class", "vantorbar-preferences"});
    }
    /// Waits for the window, and gives it the keyboard.
    bool windowComes() {
        const bool came = test::runUntil(queue, [this] { return !windows().empty(); });
        const std::string all = windows();
        ask({"xdotool", "windowfocus", "--sync", all.substr(0, all.find('\n'))});
        return came;
    }
    void press(const std::string& key) const { ask({"xdotool", "key", key}); }
    void set(const std::string& key, const std::string& value) const {
        ask({VANTOR_PROGRAM, "prefs", "set", key, value});
    }
    std::string stored() const {
        std::ifstream file(home / ".config/Vantor Bar/com.kolbrin.vantorbar5.extras.plist");
        return {std::istreambuf_iterator<char>(file), {}};
    }
    bool isStored(const std::string& value) {
        return test::runUntil(queue, [&] { return stored().find(value) != std::string::npos; });
    }
    /// Presses it until that is stored: the window comes up before it hears keys.
    bool isStoredAfter(const std::string& key, const std::string& value) {
        return test::runUntil(queue, [&] {
            if (stored().find(value) == std::string::npos)
                press(key);
            return stored().find(value) != std::string::npos;
        });
    }

    TemporaryFolder home;
    XScreen screen{900, 720};
    LinuxMainQueue queue;
};

TEST_F(PreferencesWindowTest, ModesAreTickedAndOrderedByTheKeyboard) {
    const Child window({kProgram}, environment());
    ASSERT_TRUE(windowComes());
    press("alt+p");  // the pie
    ASSERT_TRUE(isStored("<string>100,0,3</string>")) << stored();
    for (int row = 0; row < 3; ++row)  // past two that aren't shown
        press("alt+Up");
    ASSERT_TRUE(isStored("<string>100,3,0</string>")) << stored();
    press("space");
    EXPECT_TRUE(isStored("<string>100,0</string>")) << stored();
}

TEST_F(PreferencesWindowTest, WhatIsSetElsewhereShowsInTheWindowWithoutABus) {
    set("CPU_MenubarMode", "100");
    const Child window({kProgram}, environment());
    ASSERT_TRUE(windowComes());
    set("CPU_MenubarMode", "2");
    ASSERT_TRUE(isStored("<string>2</string>"));
    EXPECT_TRUE(isStoredAfter("alt+p", "<string>2,3</string>")) << stored();
}

TEST_F(PreferencesWindowTest, WhatIsSetElsewhereShowsInTheWindowThroughTheBus) {
    const PrivateBus bus;
    const Child window({kProgram}, environment(bus.address()));
    ASSERT_TRUE(windowComes());
    Child({VANTOR_PROGRAM, "prefs", "set", "CPU_MenubarMode", "4"}, environment(bus.address()))
        .rest();
    EXPECT_TRUE(isStoredAfter("alt+p", "<string>4,3</string>")) << stored();
}

TEST_F(PreferencesWindowTest, SecondStartShowsTheWindowThatIsThere) {
    const PrivateBus bus;
    Child first({kProgram}, environment(bus.address()));
    ASSERT_TRUE(windowComes());
    const std::string before = windows();
    Child second({kProgram}, environment(bus.address()));
    EXPECT_EQ(second.status(), 0);
    EXPECT_EQ(windows(), before);
    press("ctrl+w");
    EXPECT_EQ(first.status(), 0);
}

TEST_F(PreferencesWindowTest, EveryPageOpens) {
    Child window({kProgram}, environment());
    ASSERT_TRUE(windowComes());
    for (int page = 0; page < 10; ++page)
        press("ctrl+Next");
    press("ctrl+w");
    EXPECT_EQ(window.status(), 0);
}

}  // namespace
}  // namespace vantor
