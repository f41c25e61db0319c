#include "Shared/DefaultSettings.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

#include <gtest/gtest.h>

#include "Foundation/Colour.h"
#include "Shared/DefaultSettingsTable.h"

namespace vantor {
namespace {

using Array = PropertyValue::Array;
using Dictionary = PropertyValue::Dictionary;

constexpr std::string_view kKeys[] = {"MenubarSkinColor",
                                      "DropdownTheme",
                                      "MenubarTheme",
                                      "MenubarGraphOpacity",
                                      "TimerFrequency",
                                      "DropdownShowLauncher",
                                      "ProcessesCombine",
                                      "MenubarGraphOpacity-DarkMode",
                                      "Theme-SeperateStyles",
                                      "StatusItems-FixedPosition",
                                      "MenubarSkinColor-Light",
                                      "DropdownTheme-Light",
                                      "MenubarTheme-Light",
                                      "MenubarGraphOpacity-Light",
                                      "MenubarSkinColor-Dark",
                                      "DropdownTheme-Dark",
                                      "MenubarTheme-Dark",
                                      "MenubarGraphOpacity-Dark",
                                      "CPU_AppFormat",
                                      "CPU_CombineLogicalCores",
                                      "CPU_MenubarGraphWidth",
                                      "CPU_MenubarCombineCores",
                                      "CPU_MenubarGraphBreakdowns",
                                      "CPU_MenubarGraphCustomColors",
                                      "CPU_MenubarSingleHistoryGraph",
                                      "CPU_MenubarGroupItems",
                                      "CPU_MenubarMode",
                                      "CPU_MenubarTextColor",
                                      "CPU_MenubarTextShadowColor",
                                      "CPU_MenubarTextSize",
                                      "CPU_MenubarGraphOverall",
                                      "CPU_MenubarGraphUser",
                                      "CPU_MenubarGraphSystem",
                                      "Load_MenubarTextSize",
                                      "Load_MenubarTextColor",
                                      "Load_MenubarTextShadowColor",
                                      "CPU_MenubarTextColor-Dark",
                                      "Load_MenubarTextColor-Dark",
                                      "CPU_MenubarTextShadowColor-Dark",
                                      "Load_MenubarTextShadowColor-Dark",
                                      "Memory_AppFormat",
                                      "Memory_DisplayFormat",
                                      "Memory_UFUsedShadowColor",
                                      "Memory_UFFreeShadowColor",
                                      "Memory_MenubarGraphWidth",
                                      "Memory_IgnoreInactive",
                                      "Memory_MenubarGraphCustomColors",
                                      "Memory_MenubarGraphBreakdowns",
                                      "Memory_UFShowLabel",
                                      "Memory_MenubarMode",
                                      "Memory_UFUsedColor",
                                      "Memory_UFFreeColor",
                                      "Memory_MenubarPercentageColor",
                                      "Memory_MenubarGraphOverall",
                                      "Memory_MenubarGraphWired",
                                      "Memory_MenubarGraphActive",
                                      "Memory_MenubarGraphCompressed",
                                      "Memory_MenubarGraphInactive",
                                      "Memory_MenubarPercentageShadowColor",
                                      "Memory_MenubarPercentageSize",
                                      "Memory_MenubarPercentageColor-Dark",
                                      "Memory_MenubarPercentageShadowColor-Dark",
                                      "Memory_UFUsedColor-Dark",
                                      "Memory_UFFreeColor-Dark",
                                      "Memory_UFUsedShadowColor-Dark",
                                      "Memory_UFFreeShadowColor-Dark",
                                      "Disks_DropdownDisplayMode",
                                      "Disks_DropdownCombineActivity",
                                      "Disks_MenubarCombineActivity",
                                      "Disks_MenubarGraphActivityShowBackground",
                                      "Disks_MenubarRWReadColor",
                                      "Disks_MenubarRWWriteColor",
                                      "Disks_MenubarRWReadShadwColor",
                                      "Disks_MenubarRWWriteShadowColor",
                                      "Disks_MenubarRWShowLabel",
                                      "Disks_MenubarUFFreeShadowColor",
                                      "Disks_MenubarUFUsedShadowColor",
                                      "Disks_MenubarPercentageSize",
                                      "Disks_SeperateFusion",
                                      "Disks_MenubarGraphActivityRead",
                                      "Disks_MenubarGraphActivityWrite",
                                      "Disks_MenubarDotActivityRead",
                                      "Disks_MenubarDotActivityWrite",
                                      "Disks_MenubarArrowRead",
                                      "Disks_MenubarArrowWrite",
                                      "Disks_MenubarGraphActivityWidth",
                                      "Disks_DropdownShowNetwork",
                                      "Disks_DropdownShowRemovable",
                                      "Disks_DropdownShowUnmounted",
                                      "Disks_MenubarGraphCustomColors",
                                      "Disks_MenubarMode",
                                      "Disks_MenubarGroupItems",
                                      "Disks_MenubarUFShowLabel",
                                      "Disks_MenubarPercentageColor",
                                      "Disks_MenubarUFUsedColor",
                                      "Disks_MenubarUFFreeColor",
                                      "Disks_MenubarPercentageShadowColor",
                                      "Disks_MenubarGraphOverallColor",
                                      "Disks_MenubarGraphActivityCustomColors",
                                      "Disks_MonitorSMART",
                                      "Disks_ActivityGraphMode",
                                      "Disks_DropdownShowAllActivity",
                                      "Disks_MenubarPercentageColor-Dark",
                                      "Disks_MenubarPercentageShadowColor-Dark",
                                      "Disks_MenubarRWReadColor-Dark",
                                      "Disks_MenubarRWWriteColor-Dark",
                                      "Disks_MenubarRWReadShadwColor-Dark",
                                      "Disks_MenubarRWWriteShadowColor-Dark",
                                      "Disks_MenubarUFUsedColor-Dark",
                                      "Disks_MenubarUFFreeColor-Dark",
                                      "Disks_MenubarUFFreeShadowColor-Dark",
                                      "Disks_MenubarUFUsedShadowColor-Dark",
                                      "Network_GraphMode",
                                      "Network_AppSort",
                                      "Network_StatusConnected",
                                      "Network_StatusNoAddress",
                                      "Network_StatusNotConnected",
                                      "Network_GraphWidth",
                                      "Network_DataFormat",
                                      "Network_DecimalLevel",
                                      "Network_MenubarMode",
                                      "Network_GraphUpload",
                                      "Network_GraphDownload",
                                      "Network_DotUpload",
                                      "Network_DotDownload",
                                      "Network_TextUploadColor",
                                      "Network_TextDownloadColor",
                                      "Network_TextUploadShadowColor",
                                      "Network_TextDownloadShadowColor",
                                      "Network_GraphShowBackground",
                                      "Network_GraphCustomColors",
                                      "Network_StatusCustomColors",
                                      "Network_OnlyFirstIPAddress",
                                      "Network_ShowIPV6",
                                      "Network_TextUploadColor-Dark",
                                      "Network_TextDownloadColor-Dark",
                                      "Network_TextUploadShadowColor-Dark",
                                      "Network_TextDownloadShadowColor-Dark",
                                      "Sensors_MenubarTextShadowColor-Dark",
                                      "Sensors_MenubarTextColor-Dark",
                                      "Sensors_MenubarTextShadowColor",
                                      "Sensors_MenubarTextColor",
                                      "Sensors_MenubarTextSize",
                                      "Sensors_MenubarMode",
                                      "Sensors_TemperatureMode",
                                      "FanControl_Enabled",
                                      "FanControl_ChangeOnCharging",
                                      "FanControl_ChangeOnBattery",
                                      "Battery_MenubarHideBluetooth",
                                      "Battery_MenubarMode",
                                      "Battery_MebubarModeCharged",
                                      "Battery_MenubarModeCharging",
                                      "Battery_MenubarModeDraining",
                                      "Battery_MenubarHideUPS",
                                      "Battery_MenubarCustomizeStates",
                                      "Battery_ColorGraphCharging",
                                      "Battery_ColorGraphLow",
                                      "Battery_ColorGraphDraining",
                                      "Battery_ColorGraphCharged",
                                      "Battery_PercentageColor",
                                      "Battery_PercentageSize",
                                      "Battery_PercentageShadowColor",
                                      "Battery_TimeColor",
                                      "Battery_TimeSize",
                                      "Battery_TimeShadowColor",
                                      "Battery_ColorGraphCustomColors",
                                      "Battery_PercentageColor-Dark",
                                      "Battery_PercentageShadowColor-Dark",
                                      "Battery_TimeColor-Dark",
                                      "Battery_TimeShadowColor-Dark",
                                      "Battery_Notifications",
                                      "Time_DropdownCityLayout",
                                      "Time_CalendarEnabled",
                                      "Time_CalendarShowEvents",
                                      "Time_TextSize",
                                      "Time_CalendarShowWeeks",
                                      "Time_MenubarFlashSeperators",
                                      "Time_DropdownShowMoon",
                                      "Time_TextColor",
                                      "Time_TextShadowColor",
                                      "Time_Cities",
                                      "Time_TextColor-Dark",
                                      "Time_TextShadowColor-Dark",
                                      "Time_WeekNumberFormat",
                                      "Time_MenubarFormat",
                                      "Time_DropdownFormat"};

PropertyValue defaultFor(std::string_view key, const DefaultsEnvironment& environment = {}) {
    const Dictionary settings = defaultSettings(environment);
    const auto entry = settings.find(key);
    return entry == settings.end() ? PropertyValue{} : entry->second;
}

PropertyValue integer(std::int64_t value) { return value; }

TEST(DefaultSettingsTest, ThereAreAHundredAndEightySixInOrder) {
    const auto table = defaultSettingsTable();
    ASSERT_EQ(table.size(), 186u);
    ASSERT_EQ(std::size(kKeys), 186u);
    for (std::size_t row = 0; row < table.size(); ++row)
        EXPECT_EQ(table[row].key, kKeys[row]);
    EXPECT_EQ(defaultSettings({}).size(), 186u);
}

TEST(DefaultSettingsTest, GlobalDefaultsStandInTheirKinds) {
    const Dictionary expected{
        {"MenubarSkinColor", integer(0)},       {"DropdownTheme", integer(0)},
        {"MenubarTheme", integer(1)},           {"MenubarGraphOpacity", 0.5},
        {"TimerFrequency", integer(1)},         {"DropdownShowLauncher", integer(1)},
        {"ProcessesCombine", integer(1)},       {"MenubarGraphOpacity-DarkMode", integer(1)},
        {"Theme-SeperateStyles", false},        {"StatusItems-FixedPosition", true},
        {"MenubarSkinColor-Light", integer(0)}, {"DropdownTheme-Light", integer(0)},
        {"MenubarTheme-Light", integer(1)},     {"MenubarGraphOpacity-Light", 0.5},
        {"MenubarSkinColor-Dark", integer(0)},  {"DropdownTheme-Dark", integer(1)},
        {"MenubarTheme-Dark", integer(1)},      {"MenubarGraphOpacity-Dark", 1.0},
    };
    EXPECT_EQ(expected.size(), 18u);
    for (const auto& [key, value] : expected)
        EXPECT_EQ(defaultFor(key), value) << key;
}

TEST(DefaultSettingsTest, CPUAndLoadDefaultsStandInTheirKinds) {
    const Dictionary expected{
        {"CPU_AppFormat", integer(0)},
        {"CPU_CombineLogicalCores", integer(1)},
        {"CPU_MenubarGraphWidth", integer(30)},
        {"CPU_MenubarCombineCores", integer(1)},
        {"CPU_MenubarGraphBreakdowns", false},
        {"CPU_MenubarGraphCustomColors", false},
        {"CPU_MenubarSingleHistoryGraph", false},
        {"CPU_MenubarGroupItems", false},
        {"CPU_MenubarMode", "100,0"},
        {"CPU_MenubarTextColor", "0.11 0.11 0.11 1.0"},
        {"CPU_MenubarTextShadowColor", "1 1 1 0.5"},
        {"CPU_MenubarTextSize", integer(13)},
        {"CPU_MenubarGraphOverall", "0.10 0.58 0.94 1.00"},
        {"CPU_MenubarGraphUser", "0.10 0.58 0.94 1.00"},
        {"CPU_MenubarGraphSystem", "1.00 0.16 0.16 1.00"},
        {"Load_MenubarTextSize", integer(13)},
        {"Load_MenubarTextColor", "0.11 0.11 0.11 1.0"},
        {"Load_MenubarTextShadowColor", "1 1 1 0.5"},
        {"CPU_MenubarTextColor-Dark", "1.0 1.0 1.0 1.0"},
        {"Load_MenubarTextColor-Dark", "1.0 1.0 1.0 1.0"},
        {"CPU_MenubarTextShadowColor-Dark", "1.0 1.0 1.0 0.0"},
        {"Load_MenubarTextShadowColor-Dark", "1.0 1.0 1.0 0.0"},
    };
    EXPECT_EQ(expected.size(), 22u);
    for (const auto& [key, value] : expected)
        EXPECT_EQ(defaultFor(key), value) << key;
}

TEST(DefaultSettingsTest, SiblingsWidthsModesAndCitiesStand) {
    EXPECT_EQ(defaultFor("Memory_MenubarGraphWidth"), integer(30));
    EXPECT_EQ(defaultFor("Disks_MenubarGraphActivityWidth"), PropertyValue(50.0));
    EXPECT_EQ(defaultFor("Network_GraphWidth"), PropertyValue(30.0));
    EXPECT_EQ(defaultFor("Memory_MenubarMode"), PropertyValue("100,1"));
    for (const std::string_view key :
         {"Disks_MenubarMode", "Network_MenubarMode", "Sensors_MenubarMode"})
        EXPECT_EQ(defaultFor(key), PropertyValue("100,0")) << key;
    for (const std::string_view key :
         {"Battery_MenubarMode", "Battery_MebubarModeCharged", "Battery_MenubarModeCharging",
          "Battery_MenubarModeDraining"})
        EXPECT_EQ(defaultFor(key), PropertyValue("2,1")) << key;
    EXPECT_EQ(defaultFor("Time_Cities"),
              PropertyValue(Array{"5128581", "2643743", "2988507", "2147714"}));
}

TEST(DefaultSettingsTest, EveryTextSizeIsThirteen) {
    for (const auto& [key, value] : defaultSettings({})) {
        if (key.ends_with("Size")) {
            EXPECT_EQ(value, integer(13)) << key;
        }
    }
}

TEST(DefaultSettingsTest, TextColoursAreDarkOnLightAndLightOnDark) {
    for (const auto& [key, value] : defaultSettings({})) {
        const bool dark = key.ends_with("-Dark");
        if (key.ends_with("ShadowColor-Dark") || key.ends_with("ShadwColor-Dark")) {
            EXPECT_EQ(value, PropertyValue("1.0 1.0 1.0 0.0")) << key;
        } else if (dark && key.ends_with("Color-Dark") && key.find('_') != key.npos) {
            EXPECT_EQ(value, PropertyValue("1.0 1.0 1.0 1.0")) << key;
        } else if (key.ends_with("ShadowColor") || key.ends_with("ShadwColor")) {
            EXPECT_EQ(value, PropertyValue("1 1 1 0.5")) << key;
        } else if (key.ends_with("TextColor")) {
            EXPECT_EQ(value, PropertyValue("0.11 0.11 0.11 1.0")) << key;
        }
    }
}

TEST(DefaultSettingsTest, EveryColourTextIsAColour) {
    for (const auto& [key, value] : defaultSettings({})) {
        if (value.text() != nullptr && value.text()->find(' ') != std::string::npos) {
            EXPECT_TRUE(colorFromString(value)) << key;
        }
    }
}

TEST(DefaultSettingsTest, LaptopHidesBluetoothBatteries) {
    EXPECT_EQ(defaultFor("Battery_MenubarHideBluetooth", {.isLaptop = true}), PropertyValue(true));
    EXPECT_EQ(defaultFor("Battery_MenubarHideBluetooth", {.isLaptop = false}),
              PropertyValue(false));
}

TEST(DefaultSettingsTest, MetricSystemSetsTemperatureAndWeekNumbers) {
    EXPECT_EQ(defaultFor("Sensors_TemperatureMode", {.usesMetricSystem = true}), integer(0));
    EXPECT_EQ(defaultFor("Sensors_TemperatureMode", {.usesMetricSystem = false}), integer(1));
    EXPECT_EQ(defaultFor("Time_WeekNumberFormat", {.usesMetricSystem = true}), integer(1));
    EXPECT_EQ(defaultFor("Time_WeekNumberFormat", {.usesMetricSystem = false}), integer(0));
}

TEST(DefaultSettingsTest, ShortTimeFormatDecidesTheHour) {
    const auto hourOf = [](std::string format) {
        const PropertyValue pieces =
            defaultFor("Time_MenubarFormat", {.shortTimeFormat = std::move(format)});
        return pieces.array() == nullptr ? "" : pieces.array()->at(2).stringValue();
    };
    EXPECT_EQ(hourOf("HH:mm"), "HH");
    EXPECT_EQ(hourOf("H:mm"), "H");
    EXPECT_EQ(hourOf("h:mm a"), "hh");
    EXPECT_EQ(defaultFor("Time_MenubarFormat", {.shortTimeFormat = "h:mm a"}).array()->back(),
              PropertyValue("a"));
}

TEST(DefaultSettingsTest, BatteryNotificationCarriesAnIdentifierElseTheTime) {
    const auto expected = [](std::string_view identifier) {
        return PropertyValue(Array{Dictionary{{"level", integer(10)},
                                              {"type", integer(0)},
                                              {"style", integer(0)},
                                              {"uuid", identifier}}});
    };
    EXPECT_EQ(defaultFor("Battery_Notifications", {.now = 1.5, .uuid = "A-B"}), expected("A-B"));
    EXPECT_EQ(defaultFor("Battery_Notifications", {.now = 1425900000.126}),
              expected("1425900000.13"));
}

}  // namespace
}  // namespace vantor
