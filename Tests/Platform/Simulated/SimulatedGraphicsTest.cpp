#include "Platform/Simulated/SimulatedGraphics.h"

#include <gtest/gtest.h>

#include "Platform/Simulated/SimulatedMachine.h"

namespace vantor::simulated {
namespace {

TEST(SimulatedGraphicsTest, ScreenIsWhereItsDisplayIs) {
    SimulatedMachine machine;
    machine.registry.setTree({1, "Root", "Root", {}, {{2, "AppleDisplay", "panel", {}, {}}}});
    machine.displays.setScreens({{.display = 2, .screen = {}}, {.display = 3, .screen = {}}});
    const auto screens = machine.ports().displays.screens();
    ASSERT_EQ(screens.size(), 2u);
    EXPECT_EQ(screens[0].location, "IOService:/panel");
    EXPECT_EQ(screens[1].location, std::nullopt);
}

TEST(SimulatedGraphicsTest, ObserversHearOfAReconfiguration) {
    SimulatedMachine machine;
    int heard = 0;
    const auto observation = machine.displays.notificationCenter().observe(
        std::string(kDisplaysReconfigured), [&](const Notification&) { ++heard; });
    machine.displays.reconfigure();
    EXPECT_EQ(heard, 1);
}

TEST(SimulatedGraphicsTest, GraphicsControlIsThereOnlyWhenToldSo) {
    SimulatedMachine machine;
    GraphicsControl& control = machine.ports().graphicsControl;
    EXPECT_FALSE(control.open());
    machine.graphicsControl.setAnswer({.isThere = true, .active = 0});
    EXPECT_TRUE(control.open());
    EXPECT_EQ(control.activeGPU(), GraphicsControl::kDiscrete);
}

}  // namespace
}  // namespace vantor::simulated
