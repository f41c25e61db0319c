#include "Platform/Linux/LinuxDisplays.h"

#include <gtest/gtest.h>

#include "Platform/Linux/LinuxClock.h"
#include "Platform/Linux/LinuxMainQueue.h"
#include "Platform/Linux/LinuxRegistry.h"
#include "Tests/Support/DeviceTree.h"

namespace vantor::test {
namespace {

class LinuxDisplaysTest : public testing::Test {
protected:
    LinuxDisplaysTest() { tree.add(discreteAMD()); }

    DeviceTree tree;
    SystemDeviceFiles files;
    LinuxClock clock;
    LinuxMainQueue queue;
    LinuxRegistry registry{clock, files, {.kernel = tree.kernel(), .root = tree.root()}};
    LinuxDisplays displays{queue, registry};
};

TEST_F(LinuxDisplaysTest, ScreenIsADisplayThatShowsAPicture) {
    tree.addCard(kDiscreteAddress, 0,
                 {{.name = "DP-1", .edid = edidBytes(), .modes = "3840x2160\n1920x1080i\n"},
                  {.name = "DP-2", .enabled = "disabled", .edid = edidBytes()}});
    const auto screens = displays.screens();
    ASSERT_EQ(screens.size(), 1u);
    EXPECT_EQ(screens[0].number, 1u);
    EXPECT_EQ(screens[0].productNames.at(0).second, "U2720Q");
    EXPECT_EQ(screens[0].size, (Size{3840, 2160}));
    EXPECT_NEAR(screens[0].resolution->width, 162.56, 0.01);
    ASSERT_TRUE(screens[0].location);
    EXPECT_EQ(registry.objectAtPath(*screens[0].location)->className(), "IODisplay");
}

TEST_F(LinuxDisplaysTest, SizeIsThatOfTheEDIDWhereNoModeIsTold) {
    tree.addCard(kDiscreteAddress, 0, {{.name = "DP-1", .edid = edidBytes(), .modes = ""}});
    EXPECT_EQ(displays.screens().at(0).size, (Size{3840, 2160}));
}

TEST_F(LinuxDisplaysTest, WithoutAnEDIDThereIsNoResolution) {
    tree.addCard(kDiscreteAddress, 0, {{.name = "Virtual-1", .modes = "1024x768\n"}});
    const Screen screen = displays.screens().at(0);
    EXPECT_EQ(screen.size, (Size{1024, 768}));
    EXPECT_FALSE(screen.resolution);
}

TEST_F(LinuxDisplaysTest, ModesThatMakeNoSenseAreNoSize) {
    for (const char* const modes : {"x", "1920", "1920x", "x1080", "-1x5", "99999999x1", "a x b"}) {
        tree.addCard(kDiscreteAddress, 0, {{.name = "Virtual-1", .modes = modes}});
        displays.devicesChanged();
        EXPECT_FALSE(displays.screens().at(0).size) << modes;
    }
}

TEST_F(LinuxDisplaysTest, ChangeIsToldAndSeen) {
    EXPECT_TRUE(displays.screens().empty());
    int told = 0;
    const auto observation = displays.notificationCenter().observe(
        std::string(kDisplaysReconfigured), [&](const Notification&) { ++told; });
    tree.addCard(kDiscreteAddress, 0, {{.name = "DP-1"}});
    EXPECT_TRUE(displays.screens().empty());
    displays.devicesChanged();
    EXPECT_EQ(told, 1);
    EXPECT_EQ(displays.screens().size(), 1u);
}

}  // namespace
}  // namespace vantor::test
