#include "Shared/DefaultSettingsTable.h"

#include <string>

#include <fmt/format.h>

#include "Shared/DefaultSettings.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

using Array = PropertyValue::Array;
using Dictionary = PropertyValue::Dictionary;

// Texts in the bar, and the shadow below them; the graphs' inks.
constexpr std::string_view kText = "0.11 0.11 0.11 1.0", kTextOnDark = "1.0 1.0 1.0 1.0";
constexpr std::string_view kShadow = "1 1 1 0.5", kShadowOnDark = "1.0 1.0 1.0 0.0";
constexpr std::int64_t kTextSize = 13;
constexpr Colour kBlue{0.098, 0.58, 0.941, 1}, kRed{1, 0.164, 0.164, 1};
constexpr Colour kGreen{0.298, 0.784, 0.318, 1}, kYellow{1, 0.8, 0, 1};
constexpr Colour kOrange{1, 0.584, 0, 1}, kGrey{0.6, 0.6, 0.6, 1};

constexpr std::int64_t integer(std::int64_t value) noexcept { return value; }

PropertyValue hidesBluetoothBatteries(const DefaultsEnvironment& environment) {
    return environment.isLaptop;
}

PropertyValue temperatureMode(const DefaultsEnvironment& environment) {
    return integer(environment.usesMetricSystem ? 0 : 1);
}

PropertyValue weekNumberFormat(const DefaultsEnvironment& environment) {
    return integer(environment.usesMetricSystem ? 1 : 0);
}

PropertyValue batteryNotifications(const DefaultsEnvironment& environment) {
    return Array{
        Dictionary{{"level", integer(10)},
                   {"type", integer(0)},
                   {"style", integer(0)},
                   {"uuid", environment.uuid.value_or(fmt::format("{:.2f}", environment.now))}}};
}

PropertyValue cities(const DefaultsEnvironment&) {
    return Array{"5128581", "2643743", "2988507", "2147714"};
}

/// The hour as the user's region writes it: padded or not, of 24 or of 12.
PropertyValue menubarTimeFormat(const DefaultsEnvironment& environment) {
    const std::string& format = environment.shortTimeFormat;
    if (format.find("HH") != format.npos)
        return Array{"EEE", " ", "HH", ":", "mm"};
    if (format.find('H') != format.npos)
        return Array{"EEE", " ", "H", ":", "mm"};
    return Array{"EEE", " ", "hh", ":", "mm", " ", "a"};
}

PropertyValue dropdownTimeFormat(const DefaultsEnvironment&) {
    return Array{"EEE", " ", "HH", ":", "mm"};
}

// clang-format off
constexpr DefaultSetting kTable[] = {
    // Global
    {"MenubarSkinColor", integer(0)},
    {"DropdownTheme", integer(0)},
    {"MenubarTheme", integer(1)},
    {"MenubarGraphOpacity", 0.5},
    {"TimerFrequency", integer(1)},
    {"DropdownShowLauncher", integer(1)},
    {"ProcessesCombine", integer(1)},
    {"MenubarGraphOpacity-DarkMode", integer(1)},
    {"Theme-SeperateStyles", false},
    {"StatusItems-FixedPosition", true},
    {"MenubarSkinColor-Light", integer(0)},
    {"DropdownTheme-Light", integer(0)},
    {"MenubarTheme-Light", integer(1)},
    {"MenubarGraphOpacity-Light", 0.5},
    {"MenubarSkinColor-Dark", integer(0)},
    {"DropdownTheme-Dark", integer(1)},
    {"MenubarTheme-Dark", integer(1)},
    {"MenubarGraphOpacity-Dark", 1.0},
    // CPU and load
    {"CPU_AppFormat", integer(0)},
    {"CPU_CombineLogicalCores", integer(1)},
    {"CPU_MenubarGraphWidth", integer(30)},
    {"CPU_MenubarCombineCores", integer(1)},
    {"CPU_MenubarGraphBreakdowns", false},
    {"CPU_MenubarGraphCustomColors", false},
    {"CPU_MenubarSingleHistoryGraph", false},
    {"CPU_MenubarGroupItems", false},
    {"CPU_MenubarMode", "100,0"},
    {"CPU_MenubarTextColor", kText},
    {"CPU_MenubarTextShadowColor", kShadow},
    {"CPU_MenubarTextSize", kTextSize},
    {"CPU_MenubarGraphOverall", kBlue},
    {"CPU_MenubarGraphUser", kBlue},
    {"CPU_MenubarGraphSystem", kRed},
    {"Load_MenubarTextSize", kTextSize},
    {"Load_MenubarTextColor", kText},
    {"Load_MenubarTextShadowColor", kShadow},
    {"CPU_MenubarTextColor-Dark", kTextOnDark},
    {"Load_MenubarTextColor-Dark", kTextOnDark},
    {"CPU_MenubarTextShadowColor-Dark", kShadowOnDark},
    {"Load_MenubarTextShadowColor-Dark", kShadowOnDark},
    // Memory
    {"Memory_AppFormat", integer(0)},
    {"Memory_DisplayFormat", integer(0)},
    {"Memory_UFUsedShadowColor", kShadow},
    {"Memory_UFFreeShadowColor", kShadow},
    {"Memory_MenubarGraphWidth", integer(30)},
    {"Memory_IgnoreInactive", true},
    {"Memory_MenubarGraphCustomColors", false},
    {"Memory_MenubarGraphBreakdowns", true},
    {"Memory_UFShowLabel", true},
    {"Memory_MenubarMode", "100,1"},
    {"Memory_UFUsedColor", kText},
    {"Memory_UFFreeColor", kText},
    {"Memory_MenubarPercentageColor", kText},
    {"Memory_MenubarGraphOverall", kBlue},
    {"Memory_MenubarGraphWired", kRed},
    {"Memory_MenubarGraphActive", kBlue},
    {"Memory_MenubarGraphCompressed", kOrange},
    {"Memory_MenubarGraphInactive", kGrey},
    {"Memory_MenubarPercentageShadowColor", kShadow},
    {"Memory_MenubarPercentageSize", kTextSize},
    {"Memory_MenubarPercentageColor-Dark", kTextOnDark},
    {"Memory_MenubarPercentageShadowColor-Dark", kShadowOnDark},
    {"Memory_UFUsedColor-Dark", kTextOnDark},
    {"Memory_UFFreeColor-Dark", kTextOnDark},
    {"Memory_UFUsedShadowColor-Dark", kShadowOnDark},
    {"Memory_UFFreeShadowColor-Dark", kShadowOnDark},
    // Disks
    {"Disks_DropdownDisplayMode", integer(0)},
    {"Disks_DropdownCombineActivity", false},
    {"Disks_MenubarCombineActivity", true},
    {"Disks_MenubarGraphActivityShowBackground", true},
    {"Disks_MenubarRWReadColor", kText},
    {"Disks_MenubarRWWriteColor", kText},
    {"Disks_MenubarRWReadShadwColor", kShadow},
    {"Disks_MenubarRWWriteShadowColor", kShadow},
    {"Disks_MenubarRWShowLabel", true},
    {"Disks_MenubarUFFreeShadowColor", kShadow},
    {"Disks_MenubarUFUsedShadowColor", kShadow},
    {"Disks_MenubarPercentageSize", kTextSize},
    {"Disks_SeperateFusion", false},
    {"Disks_MenubarGraphActivityRead", kBlue},
    {"Disks_MenubarGraphActivityWrite", kRed},
    {"Disks_MenubarDotActivityRead", kBlue},
    {"Disks_MenubarDotActivityWrite", kRed},
    {"Disks_MenubarArrowRead", kBlue},
    {"Disks_MenubarArrowWrite", kRed},
    {"Disks_MenubarGraphActivityWidth", 50.0},
    {"Disks_DropdownShowNetwork", true},
    {"Disks_DropdownShowRemovable", true},
    {"Disks_DropdownShowUnmounted", false},
    {"Disks_MenubarGraphCustomColors", false},
    {"Disks_MenubarMode", "100,0"},
    {"Disks_MenubarGroupItems", false},
    {"Disks_MenubarUFShowLabel", true},
    {"Disks_MenubarPercentageColor", kText},
    {"Disks_MenubarUFUsedColor", kText},
    {"Disks_MenubarUFFreeColor", kText},
    {"Disks_MenubarPercentageShadowColor", kShadow},
    {"Disks_MenubarGraphOverallColor", kBlue},
    {"Disks_MenubarGraphActivityCustomColors", false},
    {"Disks_MonitorSMART", true},
    {"Disks_ActivityGraphMode", integer(0)},
    {"Disks_DropdownShowAllActivity", false},
    {"Disks_MenubarPercentageColor-Dark", kTextOnDark},
    {"Disks_MenubarPercentageShadowColor-Dark", kShadowOnDark},
    {"Disks_MenubarRWReadColor-Dark", kTextOnDark},
    {"Disks_MenubarRWWriteColor-Dark", kTextOnDark},
    {"Disks_MenubarRWReadShadwColor-Dark", kShadowOnDark},
    {"Disks_MenubarRWWriteShadowColor-Dark", kShadowOnDark},
    {"Disks_MenubarUFUsedColor-Dark", kTextOnDark},
    {"Disks_MenubarUFFreeColor-Dark", kTextOnDark},
    {"Disks_MenubarUFFreeShadowColor-Dark", kShadowOnDark},
    {"Disks_MenubarUFUsedShadowColor-Dark", kShadowOnDark},
    // Network
    {"Network_GraphMode", integer(0)},
    {"Network_AppSort", integer(0)},
    {"Network_StatusConnected", kGreen},
    {"Network_StatusNoAddress", kYellow},
    {"Network_StatusNotConnected", kRed},
    {"Network_GraphWidth", 30.0},
    {"Network_DataFormat", integer(0)},
    {"Network_DecimalLevel", integer(1)},
    {"Network_MenubarMode", "100,0"},
    {"Network_GraphUpload", kRed},
    {"Network_GraphDownload", kBlue},
    {"Network_DotUpload", kRed},
    {"Network_DotDownload", kBlue},
    {"Network_TextUploadColor", kText},
    {"Network_TextDownloadColor", kText},
    {"Network_TextUploadShadowColor", kShadow},
    {"Network_TextDownloadShadowColor", kShadow},
    {"Network_GraphShowBackground", true},
    {"Network_GraphCustomColors", false},
    {"Network_StatusCustomColors", false},
    {"Network_OnlyFirstIPAddress", false},
    {"Network_ShowIPV6", true},
    {"Network_TextUploadColor-Dark", kTextOnDark},
    {"Network_TextDownloadColor-Dark", kTextOnDark},
    {"Network_TextUploadShadowColor-Dark", kShadowOnDark},
    {"Network_TextDownloadShadowColor-Dark", kShadowOnDark},
    // Sensors
    {"Sensors_MenubarTextShadowColor-Dark", kShadowOnDark},
    {"Sensors_MenubarTextColor-Dark", kTextOnDark},
    {"Sensors_MenubarTextShadowColor", kShadow},
    {"Sensors_MenubarTextColor", kText},
    {"Sensors_MenubarTextSize", kTextSize},
    {"Sensors_MenubarMode", "100,0"},
    {"Sensors_TemperatureMode", &temperatureMode},
    // Fans
    {"FanControl_Enabled", false},
    {"FanControl_ChangeOnCharging", false},
    {"FanControl_ChangeOnBattery", false},
    // Battery
    {"Battery_MenubarHideBluetooth", &hidesBluetoothBatteries},
    {"Battery_MenubarMode", "2,1"},
    {"Battery_MebubarModeCharged", "2,1"},
    {"Battery_MenubarModeCharging", "2,1"},
    {"Battery_MenubarModeDraining", "2,1"},
    {"Battery_MenubarHideUPS", false},
    {"Battery_MenubarCustomizeStates", false},
    {"Battery_ColorGraphCharging", kGreen},
    {"Battery_ColorGraphLow", kRed},
    {"Battery_ColorGraphDraining", kBlue},
    {"Battery_ColorGraphCharged", kGreen},
    {"Battery_PercentageColor", kText},
    {"Battery_PercentageSize", kTextSize},
    {"Battery_PercentageShadowColor", kShadow},
    {"Battery_TimeColor", kText},
    {"Battery_TimeSize", kTextSize},
    {"Battery_TimeShadowColor", kShadow},
    {"Battery_ColorGraphCustomColors", false},
    {"Battery_PercentageColor-Dark", kTextOnDark},
    {"Battery_PercentageShadowColor-Dark", kShadowOnDark},
    {"Battery_TimeColor-Dark", kTextOnDark},
    {"Battery_TimeShadowColor-Dark", kShadowOnDark},
    {"Battery_Notifications", &batteryNotifications},
    // Time
    {"Time_DropdownCityLayout", integer(0)},
    {"Time_CalendarEnabled", true},
    {"Time_CalendarShowEvents", true},
    {"Time_TextSize", kTextSize},
    {"Time_CalendarShowWeeks", false},
    {"Time_MenubarFlashSeperators", false},
    {"Time_DropdownShowMoon", true},
    {"Time_TextColor", kText},
    {"Time_TextShadowColor", kShadow},
    {"Time_Cities", &cities},
    {"Time_TextColor-Dark", kTextOnDark},
    {"Time_TextShadowColor-Dark", kShadowOnDark},
    {"Time_WeekNumberFormat", &weekNumberFormat},
    {"Time_MenubarFormat", &menubarTimeFormat},
    {"Time_DropdownFormat", &dropdownTimeFormat},
};
// clang-format on

}  // namespace

std::span<const DefaultSetting> defaultSettingsTable() noexcept { return kTable; }

}  // namespace vantor::inline VANTOR_MODULE
