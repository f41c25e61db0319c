// Runs the plug-ins in real panels, on an X server of the test's own.

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Support/PanelStand.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;
using test::PanelStand;
using testing::HasSubstr;

constexpr int kWidth = 600, kHeight = 160, kPanelHeight = 26, kSideWidth = 30, kMostWidth = 60;
// Inside the panel, away from the items at its left end and its right end.
constexpr int kEmptyX = 250, kEmptyY = 6;
constexpr int kMenuX = 60, kMenuY = 60;  // inside of a menu below the item

const fs::path kPlugins = VANTOR_PLUGINS_DIR, kPanels = VANTOR_PANELS_DIR;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

class PanelTest : public testing::Test {
protected:
    void begin(const std::string& panel) {
        if (kIsSanitized && panel != "Xvfb")
            GTEST_SKIP() << "a sanitizer's library wants to be the first in the process";
        if (const std::string trouble = stand.trouble(panel); !trouble.empty())
            GTEST_SKIP() << trouble;
    }
    /// Whether the item has painted at the left end of the panel.
    bool itemComes() {
        return stand.comes([&] {
            const int width = itemWidth();
            return stand.pixel(kEmptyX, kEmptyY) != 0 && width > 10 && width < kMostWidth;
        });
    }
    /// Up to where there is ink at the panel's left.
    int itemWidth() const {
        int width = 0;
        for (int column = 0; column < kEmptyX; ++column)
            if (stand.hasInk({column, kEmptyY, 1, kPanelHeight - 2 * kEmptyY},
                             stand.pixel(kEmptyX, kEmptyY)))
                width = column + 1;
        return width;
    }
    /// Whether something is shown below the panel.
    bool menuIsThere() const { return stand.pixel(kMenuX, kMenuY) != 0; }
    void pressItem() const { stand.press(12, kPanelHeight / 2); }
    void expectMenuOnPress() {
        ASSERT_TRUE(itemComes());
        pressItem();
        EXPECT_TRUE(stand.comes([&] { return menuIsThere(); }));
    }
    void expectNoMenuOnPress() {
        pressItem();
        EXPECT_TRUE(stand.comes([&] { return !menuIsThere(); }));
    }
    void set(const std::string& key, const std::string& value) const {
        stand.run({VANTOR_PROGRAM, "prefs", "set", key, value});
    }

    PanelStand stand{kWidth, kHeight};
};

class XfcePanelTest : public PanelTest {
protected:
    void SetUp() override {
        begin("xfce4-panel");
        if (IsSkipped())
            return;
        stand.add({kPlugins / "libvantor-xfce.so",
                   fs::path("/usr/lib") / VANTOR_ARCHITECTURE / "xfce4/panel/plugins"});
        stand.add({kPanels / "xfce4/panel/plugins/vantorbar.desktop",
                   "/usr/share/xfce4/panel/plugins"});
        configure("p=6;x=0;y=0", 0, kPanelHeight);
    }

    /// One panel with our plug-in at its beginning; `mode` 1 is a panel at the side.
    void configure(const std::string& position, int mode, int size) const {
        stand.write(".config/xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml",
                    fmt::format(R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="{}"/>
      <property name="mode" type="uint" value="{}"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="{}"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="vantorbar"/>
  </property>
</channel>
)",
                                position, mode, size));
    }
    void startPanel() { stand.start({"xfce4-panel", "--disable-wm-check"}); }
};

TEST_F(XfcePanelTest, TheItemStandsInThePanel) {
    startPanel();
    EXPECT_TRUE(itemComes());
}

TEST_F(XfcePanelTest, ItsWidthFollowsTheSettings) {
    startPanel();
    ASSERT_TRUE(itemComes());
    const int before = itemWidth();
    set("CPU_MenubarGraphWidth", "90");
    EXPECT_TRUE(stand.comes([&] { return itemWidth() > before + 20; }));
}

TEST_F(XfcePanelTest, APressOpensTheDropdownAndEscapeClosesIt) {
    startPanel();
    expectMenuOnPress();
    stand.run({"xdotool", "key", "Escape"});
    EXPECT_TRUE(stand.comes([&] { return !menuIsThere(); }));
}

TEST_F(XfcePanelTest, TheSecondPressClosesTheDropdown) {
    startPanel();
    expectMenuOnPress();
    expectNoMenuOnPress();
}

TEST_F(XfcePanelTest, ThePanelEndsWithTheItemInIt) {
    startPanel();
    ASSERT_TRUE(itemComes());
    stand.end();
    EXPECT_TRUE(stand.comes([&] { return stand.pixel(kEmptyX, kEmptyY) == 0; }));
}

TEST_F(XfcePanelTest, InAPanelAtTheSideItIsNoWiderThanThePanel) {
    configure("p=5;x=0;y=0", 1, kSideWidth);
    startPanel();
    ASSERT_TRUE(stand.comes([&] {
        const std::uint32_t panel = stand.pixel(kSideWidth / 2, kHeight - 20);
        return panel != 0 && stand.hasInk({4, 2, kSideWidth - 8, 30}, panel);
    }));
    EXPECT_FALSE(stand.hasInk({kSideWidth + 1, 0, 60, kHeight}, 0));
}

class MatePanelTest : public PanelTest {
protected:
    void SetUp() override {
        begin("mate-panel");
        if (IsSkipped())
            return;
        stand.add({kPanels / "mate-panel/applets/com.kolbrin.vantorbar.mate-panel-applet",
                   "/usr/share/mate-panel/applets"});
        stand.write("vantorbar.layout", R"([Toplevel top]
expand=true
orientation=top
size=26

[Object vantorbar]
object-type=applet
applet-iid=VantorBarCPUFactory::VantorBarCPUApplet
toplevel-id=top
position=0
locked=true
)");
        stand.add({stand.home() / "vantorbar.layout", "/usr/share/mate-panel/layouts"});
        stand.run({"gsettings", "set", "org.mate.panel", "default-layout", "vantorbar"});
    }
};

TEST_F(MatePanelTest, TheItemStandsInThePanel) {
    stand.start({"mate-panel"});
    EXPECT_TRUE(itemComes());
}

TEST_F(MatePanelTest, APressOpensTheDropdown) {
    stand.start({"mate-panel"});
    expectMenuOnPress();
}

class ModuleTest : public PanelTest {
protected:
    void SetUp() override { begin("Xvfb"); }

    const std::string module = (kPlugins / "libvantor-waybar.so").string();
};

TEST_F(ModuleTest, TheItemStandsInTheBar) {
    stand.start({VANTOR_PANEL_STAGE, module});
    EXPECT_TRUE(itemComes());
}

TEST_F(ModuleTest, APressOpensTheDropdown) {
    stand.start({VANTOR_PANEL_STAGE, module});
    expectMenuOnPress();
}

TEST_F(ModuleTest, TheSecondPressClosesTheDropdown) {
    stand.start({VANTOR_PANEL_STAGE, module});
    expectMenuOnPress();
    expectNoMenuOnPress();
}

TEST_F(ModuleTest, ComingAndGoingLeavesNothingBehind) {
    if (kIsSanitized)
        GTEST_SKIP() << "a sanitizer keeps what was freed for a while";
    std::istringstream figures(stand.run({VANTOR_PANEL_STAGE, module, "300"}));
    int kilobytes[2]{}, descriptors[2]{}, threads[2]{};
    for (const int round : {0, 1})
        figures >> kilobytes[round] >> descriptors[round] >> threads[round];
    ASSERT_GT(kilobytes[0], 0);
    EXPECT_LE(kilobytes[1], kilobytes[0] + 1024);
    EXPECT_EQ(descriptors[1], descriptors[0]);
    EXPECT_EQ(threads[1], threads[0]);
}

}  // namespace
}  // namespace vantor
