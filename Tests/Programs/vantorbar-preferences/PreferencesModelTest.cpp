#include "Programs/vantorbar-preferences/Model/PreferencesModel.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Platform/Simulated/SimulatedMachine.h"
#include "Shared/DefaultSettings.h"
#include "Shared/PreferenceChange.h"

namespace vantor {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class PreferencesModelTest : public testing::Test {
protected:
    PreferencesModelTest() {
        changes = model.observe([this](std::string_view key) { told.emplace_back(key); });
        for (const char* const name :
             {"VantorBarGlobalDisplayChange", "VantorBarCPUPreferencesChanged"})
            posts.push_back(machine.distributedNotifications.observe(
                name, [this](const Notification& notification) {
                    posted.push_back(std::string(notification.name) + " " +
                                     std::string(infoValue(notification.info, "key")) + " " +
                                     std::string(infoValue(notification.info, "resetKey")));
                }));
    }
    const SettingDescription& setting(std::string_view key) { return *settingDescription(key); }

    simulated::SimulatedMachine machine;
    int arrivals = 0;
    PreferencesModel model{machine.preferences, defaultSettings({}),
                           machine.distributedNotifications, [this] { ++arrivals; }};
    std::vector<std::string> told, posted;
    Observation changes;
    std::vector<Observation> posts;
};

TEST_F(PreferencesModelTest, DefaultsAnswerForWhatIsNotStored) {
    EXPECT_EQ(model.integer("CPU_MenubarTextSize"), 13);
    machine.preferences.write("CPU_MenubarTextSize", std::int64_t{10});
    EXPECT_EQ(model.integer("CPU_MenubarTextSize"), 10);
    EXPECT_FALSE(model.value("language"));
    EXPECT_FALSE(model.flag("CPU_DropdownShowTooltips"));
}

TEST_F(PreferencesModelTest, ChangeIsStoredAndToldToTheRunningItem) {
    EXPECT_TRUE(model.setInteger("CPU_MenubarGraphWidth", 60));
    machine.run(0.1);
    EXPECT_EQ(machine.preferences.read("CPU_MenubarGraphWidth"), PropertyValue(std::int64_t{60}));
    EXPECT_THAT(posted, ElementsAre("VantorBarCPUPreferencesChanged CPU_MenubarGraphWidth graph"));
    EXPECT_THAT(told, Contains("CPU_MenubarGraphWidth"));
}

TEST_F(PreferencesModelTest, FlagsAreStoredInTheKindOfTheirDefault) {
    model.setFlag("CPU_CombineLogicalCores", false);
    model.setFlag("CPU_MenubarGraphBreakdowns", true);
    model.setFlag("CPU_DropdownShowIOWait", true);
    EXPECT_EQ(machine.preferences.read("CPU_CombineLogicalCores"), PropertyValue(std::int64_t{0}));
    EXPECT_EQ(machine.preferences.read("CPU_MenubarGraphBreakdowns"), PropertyValue(true));
    EXPECT_EQ(machine.preferences.read("CPU_DropdownShowIOWait"), PropertyValue(true));
}

TEST_F(PreferencesModelTest, ColoursAreStoredAsTexts) {
    model.setColour("CPU_MenubarGraphUser", {1, 0.5, 0.25, 1});
    EXPECT_EQ(machine.preferences.read("CPU_MenubarGraphUser"),
              PropertyValue("1.00 0.50 0.25 1.00"));
    EXPECT_EQ(model.colour("CPU_MenubarGraphUser"), (Colour{1, 0.5, 0.25, 1}));
    machine.preferences.write("CPU_MenubarGraphUser", "no colour");
    EXPECT_EQ(model.colour("CPU_MenubarGraphUser"), kBlack);
}

TEST_F(PreferencesModelTest, ValueThatStandsAlreadyIsNotToldToOthers) {
    model.setValue("CPU_MenubarMode", "2");
    machine.run(0.1);
    posted.clear();
    model.setValue("CPU_MenubarMode", "2");
    machine.run(0.1);
    EXPECT_THAT(posted, IsEmpty());
}

TEST_F(PreferencesModelTest, ChangeMadeElsewhereIsToldWhenItIsPosted) {
    machine.preferences.write("TimerFrequency", std::int64_t{2});
    postPreferenceChange("TimerFrequency", machine.distributedNotifications);
    machine.run(0.1);
    EXPECT_THAT(told, ElementsAre("TimerFrequency"));
    EXPECT_EQ(arrivals, 1);
    EXPECT_EQ(model.integer("TimerFrequency"), 2);
}

TEST_F(PreferencesModelTest, WithoutAKeyOnlyADifferenceIsTold) {
    model.setInteger("TimerFrequency", 2);
    told.clear();
    model.noteChanged();
    EXPECT_THAT(told, IsEmpty());
    machine.preferences.write("TimerFrequency", std::int64_t{0});
    model.noteChanged();
    model.noteChanged();
    EXPECT_THAT(told, ElementsAre(""));
}

TEST_F(PreferencesModelTest, FailureLeavesTheSettingAndTellsWhy) {
    machine.preferences.setFailing(true);
    EXPECT_FALSE(model.setInteger("CPU_MenubarTextSize", 9));
    machine.run(0.1);
    EXPECT_EQ(model.integer("CPU_MenubarTextSize"), 13);
    EXPECT_NE(model.failure(), "");
    EXPECT_THAT(told, ElementsAre("CPU_MenubarTextSize"));
    EXPECT_THAT(posted, IsEmpty());
}

TEST_F(PreferencesModelTest, SettingsHaveAnEffectAsOthersAre) {
    EXPECT_FALSE(model.isEffective(setting("CPU_MenubarGroupItems")));
    EXPECT_TRUE(model.isShown(setting("CPU_MenubarGroupItems")));
    model.setFlag("CPU_MenubarCombineCores", false);
    EXPECT_TRUE(model.isEffective(setting("CPU_MenubarGroupItems")));
}

TEST_F(PreferencesModelTest, OfSettingsThatStandInForEachOtherOneIsShown) {
    EXPECT_TRUE(model.isShown(setting("CPU_MenubarGraphOverall")));
    EXPECT_FALSE(model.isEffective(setting("CPU_MenubarGraphOverall")));
    EXPECT_FALSE(model.isShown(setting("CPU_MenubarGraphUser")));
    model.setFlag("CPU_MenubarGraphBreakdowns", true);
    EXPECT_FALSE(model.isShown(setting("CPU_MenubarGraphOverall")));
    EXPECT_TRUE(model.isShown(setting("CPU_MenubarGraphUser")));
    model.setFlag("CPU_MenubarGraphCustomColors", true);
    EXPECT_TRUE(model.isEffective(setting("CPU_MenubarGraphUser")));
}

TEST_F(PreferencesModelTest, ResetTakesBackOnePageAndCanBeUndone) {
    const SettingsPage& page = settingsPage(PageID::graphs);
    model.setInteger("CPU_MenubarGraphWidth", 60);
    model.setInteger("CPU_MenubarTextSize", 9);
    EXPECT_FALSE(model.isAtDefaults(page));
    const std::vector<FormerSetting> former = model.reset(page);
    EXPECT_TRUE(model.isAtDefaults(page));
    EXPECT_EQ(model.integer("CPU_MenubarGraphWidth"), 30);
    EXPECT_EQ(model.integer("CPU_MenubarTextSize"), 9);
    model.restore(former);
    EXPECT_EQ(model.integer("CPU_MenubarGraphWidth"), 60);
}

}  // namespace
}  // namespace vantor
