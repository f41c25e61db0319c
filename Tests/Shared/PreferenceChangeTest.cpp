#include "Shared/PreferenceChange.h"

#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Platform/Simulated/SimulatedMachine.h"

namespace vantor {
namespace {

constexpr std::string_view kGlobal = "VantorBarGlobalDisplayChange";
constexpr std::string_view kCPU = "VantorBarCPUPreferencesChanged";
constexpr std::string_view kCombined = "VantorBarCombinedDisplayChange";

TEST(PreferenceChangeTest, KeyDecidesWhoIsToldAndWhatToRebuild) {
    const std::map<std::string_view, PreferenceChange> expected{
        {"CPU_MenubarGraphWidth", {kCPU, "graph"}},
        {"CPU_MenubarGraphBreakdowns", {kCPU, "graph"}},
        {"CPU_MenubarGraphCustomColors", {kCPU, "graph"}},
        {"CPU_MenubarGraphSystem", {kCPU, "graph"}},
        {"CPU_MenubarTextColor", {kCPU, "text"}},
        {"CPU_MenubarTextShadowColor-Dark", {kCPU, "text"}},
        {"CPU_MenubarTextSize", {kCPU, "text"}},
        {"Load_MenubarTextSize", {kCPU, "text"}},
        {"CPU_CombineLogicalCores", {kCPU, "logicalcores"}},
        {"CPU_MenubarMode", {kCPU, ""}},
        {"CPU_MenubarCombineCores", {kCPU, ""}},
        {"CPU_MenubarGroupItems", {kCPU, ""}},
        {"CPU_AppFormat", {kCPU, ""}},
        {"DropdownTheme", {kGlobal, "dropdown"}},
        {"DropdownTheme-Dark", {kGlobal, "dropdown"}},
        {"Theme-SeperateStyles", {kGlobal, "styles"}},
        {"DropdownShowLauncher", {kGlobal, "launcher"}},
        {"MenubarTheme", {kGlobal, ""}},
        {"TimerFrequency", {kGlobal, ""}},
        {"language", {kGlobal, ""}},
        {"Memory_MenubarMode", {kGlobal, ""}},
        {"CombinedDropdownDisplayMode", {kCombined, ""}},
    };
    for (const auto& [key, change] : expected)
        EXPECT_EQ(preferenceChange(key), change) << key;
}

class PreferenceChangePostTest : public testing::Test {
protected:
    std::vector<NotificationInfo> toldFor(std::string_view key, std::string_view name) {
        std::vector<NotificationInfo> told;
        const Observation observation = machine.distributedNotifications.observe(
            std::string(name), [&](const Notification& heard) { told.push_back(heard.info); });
        postPreferenceChange(key, machine.distributedNotifications);
        machine.run(1);
        return told;
    }
    simulated::SimulatedMachine machine;
};

TEST_F(PreferenceChangePostTest, NotificationCarriesKeyAndResetKey) {
    EXPECT_EQ(
        toldFor("CPU_MenubarTextSize", kCPU),
        (std::vector<NotificationInfo>{{{"key", "CPU_MenubarTextSize"}, {"resetKey", "text"}}}));
}

TEST_F(PreferenceChangePostTest, ResetKeyIsAbsentWhereNothingIsRebuilt) {
    EXPECT_EQ(toldFor("TimerFrequency", kGlobal),
              (std::vector<NotificationInfo>{{{"key", "TimerFrequency"}}}));
}

}  // namespace
}  // namespace vantor
