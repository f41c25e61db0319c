#include "Programs/vantorbar-preferences/Model/SettingCatalogue.h"

#include <algorithm>
#include <cstddef>

namespace vantor {
namespace {

using enum SettingKind;

constexpr SettingNeed kPerCore{"CPU_MenubarCombineCores", 0};
constexpr SettingNeed kOwnColours{"CPU_MenubarGraphCustomColors", 1};
constexpr SettingNeed kApart{"CPU_MenubarGraphBreakdowns", 1, Unmet::hides};
constexpr SettingNeed kTogether{"CPU_MenubarGraphBreakdowns", 0, Unmet::hides};
constexpr SettingNeed kOneTheme{"Theme-SeperateStyles", 0, Unmet::hides};
constexpr SettingNeed kTwoThemes{"Theme-SeperateStyles", 1, Unmet::hides};
constexpr SettingNeed kLightBackground{"MenubarTheme", 0};

constexpr SettingChoice kSkins[]{{0, "Blue"},  {1, "Orange"}, {2, "Slate"},
                                 {3, "Green"}, {4, "Pink"},   {5, "Purple"},
                                 {6, "Red"},   {7, "Black"},  {8, "White"}};
constexpr SettingChoice kBackgrounds[]{{0, "Light"}, {1, "Dark"}};
constexpr SettingChoice kDropdownThemes[]{{0, "Light"}, {1, "Dark"}};
constexpr SettingChoice kRates[]{
    {2, "Every second"}, {1, "Every 2 seconds"}, {0, "Every 3 seconds"}};
constexpr SettingChoice kShares[]{{0, "Of one core"}, {1, "Of the whole machine"}};

// clang-format off
constexpr SettingDescription kModes[]{
    {"CPU_MenubarMode", modes, "What the item shows"}};

constexpr SettingDescription kPercentage[]{
    {"CPU_MenubarTextSize", number, "Text size"},
    {"CPU_MenubarTextColor", colour, "Colour on a light bar"},
    {"CPU_MenubarTextShadowColor", colour, "Shadow on a light bar"},
    {"CPU_MenubarTextColor-Dark", colour, "Colour on a dark bar"}};
constexpr SettingDescription kLoad[]{
    {"Load_MenubarTextSize", number, "Text size"},
    {"Load_MenubarTextColor", colour, "Colour on a light bar"},
    {"Load_MenubarTextShadowColor", colour, "Shadow on a light bar"},
    {"Load_MenubarTextColor-Dark", colour, "Colour on a dark bar"}};

constexpr SettingDescription kCores[]{
    {"CPU_MenubarCombineCores", flag, "One item for the whole machine",
     "Otherwise each core has graphs and figures of its own"},
    {"CPU_MenubarGroupItems", flag, "Keep what is alike together",
     "The graphs of all cores, then their figures, rather than core by core", {}, {kPerCore}},
    {"CPU_MenubarSingleHistoryGraph", flag, "One history graph for all cores", "", {}, {kPerCore}}};
constexpr SettingDescription kThreads[]{
    {"CPU_CombineLogicalCores", flag, "Count the threads of a core as one",
     "Where a core runs two threads at once; in the dropdown, too"}};

constexpr SettingDescription kGraphs[]{
    {"CPU_MenubarGraphWidth", number, "Width of the history graph",
     "In points, one for each moment"},
    {"CPU_MenubarGraphBreakdowns", flag, "Show user and system apart",
     "What programs do, and what the system does for them"}};
constexpr SettingDescription kGraphColours[]{
    {"CPU_MenubarGraphCustomColors", flag, "Colours of your own", "In place of those of the theme"},
    {"CPU_MenubarGraphOverall", colour, "All work", "", {}, {kOwnColours, kTogether}},
    {"CPU_MenubarGraphUser", colour, "User", "", {}, {kOwnColours, kApart}},
    {"CPU_MenubarGraphSystem", colour, "System", "", {}, {kOwnColours, kApart}}};

constexpr SettingDescription kDesktops[]{
    {"Theme-SeperateStyles", flag, "One look for light desktops, another for dark ones"}};
constexpr SettingDescription kBarThemes[]{
    {"MenubarSkinColor", choice, "Graph colour", "", kSkins, {kOneTheme}},
    {"MenubarSkinColor-Light", choice, "Graph colour, light desktop", "", kSkins, {kTwoThemes}},
    {"MenubarSkinColor-Dark", choice, "Graph colour, dark desktop", "", kSkins, {kTwoThemes}},
    {"MenubarTheme", choice, "Graph background, light bar", "", kBackgrounds},
    {"MenubarGraphOpacity", fraction, "Background strength, light bar", "", {}, {kLightBackground}},
    {"MenubarGraphOpacity-DarkMode", fraction, "Background strength, dark bar"}};
constexpr SettingDescription kMenuThemes[]{
    {"DropdownTheme", choice, "Appearance", "", kDropdownThemes, {kOneTheme}},
    {"DropdownTheme-Light", choice, "Appearance, light desktop", "", kDropdownThemes, {kTwoThemes}},
    {"DropdownTheme-Dark", choice, "Appearance, dark desktop", "", kDropdownThemes, {kTwoThemes}}};

constexpr SettingDescription kUpdateRate[]{
    {"TimerFrequency", choice, "How often the item measures", "", kRates}};

constexpr SettingDescription kProcesses[]{
    {"CPU_AppFormat", choice, "Show what a process uses as a share", "", kShares},
    {"ProcessesCombine", flag, "Add up the processes of an application"}};
constexpr SettingDescription kExplanations[]{
    {"CPU_DropdownShowTooltips", flag, "Explain figures under the pointer"},
    {"CPU_DropdownShowIOWait", flag, "Show the time spent waiting for disks"},
    {"DropdownShowLauncher", flag, "Show buttons that open other programs"}};

constexpr SettingDescription kLanguage[]{
    {"language", language, "Language"}};

constexpr SettingGroup kMenuBarGroups[]{{"", kModes}};
constexpr SettingGroup kSizeGroups[]{{"Percentage", kPercentage}, {"Load average", kLoad}};
constexpr SettingGroup kCoreGroups[]{{"", kCores}, {"Threads", kThreads}};
constexpr SettingGroup kGraphGroups[]{{"", kGraphs}, {"Colours", kGraphColours}};
constexpr SettingGroup kThemeGroups[]{
    {"", kDesktops}, {"The item in the bar", kBarThemes}, {"Dropdown", kMenuThemes}};
constexpr SettingGroup kRateGroups[]{{"How often the item measures", kUpdateRate}};
constexpr SettingGroup kDropdownGroups[]{{"Processes", kProcesses}, {"Contents", kExplanations}};
constexpr SettingGroup kLanguageGroups[]{{"Language", kLanguage}};

constexpr SettingsPage kPages[]{
    {PageID::menuBar, "Menu Bar", true, kMenuBarGroups},
    {PageID::sizesAndColours, "Sizes and Colours", true, kSizeGroups},
    {PageID::cores, "Cores", true, kCoreGroups},
    {PageID::graphs, "Graphs", true, kGraphGroups},
    {PageID::themes, "Themes", true, kThemeGroups},
    {PageID::updateRate, "Update Rate", true, kRateGroups},
    {PageID::dropdown, "Dropdown", false, kDropdownGroups},
    {PageID::language, "Language", false, kLanguageGroups},
    {PageID::history, "History", false, {}},
    {PageID::about, "About", false, {}},
};

/// Painters and rows read neither the shadows of dark bars, which have none, nor these themes and
/// strengths of light and dark desktops.
constexpr std::string_view kWithoutEffect[]{
    "CPU_MenubarTextShadowColor-Dark", "Load_MenubarTextShadowColor-Dark",
    "MenubarTheme-Light", "MenubarTheme-Dark",
    "MenubarGraphOpacity-Light", "MenubarGraphOpacity-Dark",
    "StatusItems-FixedPosition"};

constexpr ModeDescription kModeDescriptions[]{
    {100, "Label", "The letters CPU, upright"},
    {0, "History graph", "The last moments, one column each"},
    {1, "Bar", "How busy the processors are now"},
    {6, "Bars of the cores", "One thin bar for each core"},
    {3, "Pie", "As part of a circle"},
    {2, "Percentage", "As a number"},
    {4, "Load average", "How many programs wanted to run in the last minute"},
    {5, "Graphics processor", "Which kind of graphics processor is at work"},
};

constexpr LanguageDescription kLanguages[]{
    {"de", "Deutsch"}, {"en", "English"},  {"es", "Español"},
    {"fr", "Français"}, {"ja", "日本語"}, {"zh-Hans", "简体中文"}};
// clang-format on

}  // namespace

std::span<const SettingsPage> settingsPages() noexcept { return kPages; }

const SettingsPage& settingsPage(PageID id) noexcept {
    return kPages[static_cast<std::size_t>(id)];  // they stand in the order of their IDs
}

const SettingDescription* settingDescription(std::string_view key) noexcept {
    for (const SettingsPage& page : kPages)
        for (const SettingGroup& group : page.groups)
            for (const SettingDescription& setting : group.settings)
                if (setting.key == key)
                    return &setting;
    return nullptr;
}

std::span<const std::string_view> settingsWithoutEffect() noexcept { return kWithoutEffect; }
std::span<const ModeDescription> modeDescriptions() noexcept { return kModeDescriptions; }
std::span<const LanguageDescription> languageDescriptions() noexcept { return kLanguages; }

}  // namespace vantor
