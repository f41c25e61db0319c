#include "Programs/vantorbar/OverlaidPorts.h"

#include <gtest/gtest.h>

#include "Platform/Simulated/SimulatedPreferenceDomain.h"

namespace vantor {
namespace {

class OverlaidPortsTest : public testing::Test {
protected:
    OverlaidPortsTest() {
        below.write("CPU_MenubarGraphWidth", std::int64_t{50});
        below.write("CPU_MenubarMode", "100,1");
    }

    simulated::SimulatedPreferenceDomain below;
    OverlaidPreferences preferences{below};
};

TEST_F(OverlaidPortsTest, WhatIsNotOverlaidShowsThrough) {
    EXPECT_EQ(preferences.read("CPU_MenubarMode"), PropertyValue("100,1"));
    EXPECT_TRUE(preferences.read("MenubarTheme").isNothing());
    below.write("CPU_MenubarMode", "6");
    EXPECT_EQ(preferences.read("CPU_MenubarMode"), PropertyValue("6"));
}

TEST_F(OverlaidPortsTest, WritingChangesOnlyTheOverlay) {
    preferences.write("CPU_MenubarMode", "0");
    preferences.write("MenubarTheme", std::int64_t{1});
    preferences.synchronise();
    EXPECT_EQ(preferences.read("CPU_MenubarMode"), PropertyValue("0"));
    EXPECT_EQ(below.read("CPU_MenubarMode"), PropertyValue("100,1"));
    EXPECT_TRUE(below.read("MenubarTheme").isNothing());
}

TEST_F(OverlaidPortsTest, ARemovedKeyIsGoneThoughTheDomainHasIt) {
    preferences.write("CPU_MenubarMode", {});
    EXPECT_TRUE(preferences.read("CPU_MenubarMode").isNothing());
    EXPECT_FALSE(preferences.readAll().contains("CPU_MenubarMode"));
    EXPECT_TRUE(below.readAll().contains("CPU_MenubarMode"));
}

TEST_F(OverlaidPortsTest, AllIsWhatBothHaveAndTheOverlayWins) {
    preferences.write("CPU_MenubarGraphWidth", std::int64_t{20});
    preferences.write("MenubarTheme", std::int64_t{0});
    EXPECT_EQ(preferences.readAll(),
              (PropertyValue::Dictionary{{"CPU_MenubarGraphWidth", std::int64_t{20}},
                                         {"CPU_MenubarMode", "100,1"},
                                         {"MenubarTheme", std::int64_t{0}}}));
}

TEST_F(OverlaidPortsTest, AFixedAppearanceIsAsItWasMade) {
    const FixedAppearance plain(false, false), dark(true, false), contrast(false, true);
    EXPECT_FALSE(plain.isDark() || plain.increasesContrast());
    EXPECT_TRUE(dark.isDark() && !dark.increasesContrast());
    EXPECT_TRUE(!contrast.isDark() && contrast.increasesContrast());
}

}  // namespace
}  // namespace vantor
