#include "Programs/vantorbar-preferences/Model/SettingCatalogue.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Programs/Common/SettingValue.h"
#include "Shared/DefaultSettings.h"

namespace vantor {
namespace {

using testing::Contains;
using testing::Not;
using testing::UnorderedElementsAreArray;

std::vector<const SettingDescription*> allSettings() {
    std::vector<const SettingDescription*> all;
    for (const SettingsPage& page : settingsPages())
        for (const SettingGroup& group : page.groups)
            for (const SettingDescription& setting : group.settings)
                all.push_back(&setting);
    return all;
}

std::vector<std::string> allKeys() {
    std::vector<std::string> keys;
    for (const SettingDescription* setting : allSettings())
        keys.emplace_back(setting->key);
    return keys;
}

bool isOurs(std::string_view key) {
    return key.starts_with("CPU_") || key.starts_with("Load_") || key.find('_') == key.npos;
}

TEST(SettingCatalogueTest, EverySettingOfThisItemIsOnAPageOrHasNoEffect) {
    std::vector<std::string> expected{"language", "CPU_DropdownShowTooltips",
                                      "CPU_DropdownShowIOWait"};  // have no default
    for (const auto& [key, value] : defaultSettings({}))
        if (isOurs(key))
            expected.push_back(key);
    std::vector<std::string> offered = allKeys();
    for (const std::string_view key : settingsWithoutEffect())
        offered.emplace_back(key);
    EXPECT_THAT(offered, UnorderedElementsAreArray(expected));
}

TEST(SettingCatalogueTest, PagesStandInTheOrderOfTheirIDs) {
    for (const SettingsPage& page : settingsPages())
        EXPECT_EQ(&settingsPage(page.id), &page);
    EXPECT_EQ(settingsPages().size(), static_cast<std::size_t>(PageID::about) + 1);
}

TEST(SettingCatalogueTest, DefaultsAreAmongWhatCanBeChosen) {
    const PropertyValue::Dictionary defaults = defaultSettings({});
    for (const SettingDescription* setting : allSettings()) {
        const auto standard = defaults.find(setting->key);
        if (standard == defaults.end())
            continue;
        const double number = standard->second.doubleValue();
        if (setting->kind == SettingKind::choice) {
            EXPECT_TRUE(std::ranges::any_of(setting->choices, [&](const SettingChoice& choice) {
                return static_cast<double>(choice.value) == number;
            })) << setting->key;
        }
        if (setting->kind == SettingKind::number || setting->kind == SettingKind::fraction) {
            EXPECT_GE(number, usualRange(setting->key).from) << setting->key;
            EXPECT_LE(number, usualRange(setting->key).to) << setting->key;
        }
    }
}

TEST(SettingCatalogueTest, ChoicesAreWhatTheCommandLineTakesWithoutAWord) {
    for (const SettingDescription* setting : allSettings())
        for (const SettingChoice& choice : setting->choices) {
            const ParsedSetting parsed =
                parsedSetting(setting->key, std::to_string(choice.value), std::int64_t{0});
            EXPECT_TRUE(parsed.value) << setting->key;
            EXPECT_EQ(parsed.unusual, "") << setting->key;
        }
}

TEST(SettingCatalogueTest, NeedsAreSettingsOfTheSamePage) {
    for (const SettingsPage& page : settingsPages())
        for (const SettingGroup& group : page.groups)
            for (const SettingDescription& setting : group.settings)
                for (const SettingNeed& need : setting.needs) {
                    if (need.key.empty())
                        continue;
                    bool isThere = false;
                    for (const SettingGroup& other : page.groups)
                        for (const SettingDescription& candidate : other.settings)
                            isThere = isThere || candidate.key == need.key;
                    EXPECT_TRUE(isThere) << setting.key << " needs " << need.key;
                }
}

TEST(SettingCatalogueTest, SettingsAreFoundByTheirKeys) {
    for (const std::string& key : allKeys())
        EXPECT_EQ(settingDescription(key)->key, key);
    EXPECT_EQ(settingDescription("Memory_MenubarMode"), nullptr);
}

TEST(SettingCatalogueTest, EveryModeThatThePaintersKnowIsDescribed) {
    std::set<std::int64_t> modes;
    for (const ModeDescription& mode : modeDescriptions())
        modes.insert(mode.mode);
    EXPECT_EQ(modes, (std::set<std::int64_t>{0, 1, 2, 3, 4, 5, 6, 100}));
}

}  // namespace
}  // namespace vantor
