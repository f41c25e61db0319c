#include "Shared/PreferenceMigrationTable.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>

#include <gtest/gtest.h>

namespace vantor {
namespace {

TEST(PreferenceMigrationTableTest, TableHas138PairsAndNoNameTwice) {
    std::set<std::string_view> formerKeys, keys;
    for (const MigratedKey& row : preferenceMigrationTable()) {
        formerKeys.insert(row.formerKey);
        keys.insert(row.key);
        EXPECT_NE(row.formerKey, row.key);
    }
    EXPECT_EQ(preferenceMigrationTable().size(), 138u);
    EXPECT_EQ(formerKeys.size(), 138u);
    EXPECT_EQ(keys.size(), 138u);
}

TEST(PreferenceMigrationTableTest, TableKeepsItsOrder) {
    const auto table = preferenceMigrationTable();
    EXPECT_EQ(table[0].formerKey, "skinColor");
    EXPECT_EQ(table[21].formerKey, "CPUDisplayMode");
    EXPECT_EQ(table[22].formerKey, "CalendarShowEvents");
    EXPECT_EQ(table[137].formerKey, "BatteryHideUPSFromMenubar");
}

TEST(PreferenceMigrationTableTest, EveryModuleHasItsShareOfTheTable) {
    std::map<std::string_view, int> shares;
    for (const MigratedKey& row : preferenceMigrationTable())
        ++shares[row.key.substr(0, row.key.find('_'))];
    EXPECT_EQ(shares, (std::map<std::string_view, int>{{"Battery", 18},
                                                       {"CPU", 15},
                                                       {"Diagnostics", 1},
                                                       {"Disks", 32},
                                                       {"DropdownShowLauncher", 1},
                                                       {"DropdownTheme", 1},
                                                       {"FanControl", 6},
                                                       {"Load", 3},
                                                       {"Memory", 20},
                                                       {"MenubarSkinColor", 1},
                                                       {"Network", 21},
                                                       {"Sensors", 6},
                                                       {"Time", 13}}));
}

TEST(PreferenceMigrationTableTest, FormerNameBecomesThePresentOne) {
    EXPECT_EQ(migratedKey("CPUGraphWidth"), "CPU_MenubarGraphWidth");
    EXPECT_EQ(migratedKey("MemoryIncludeInactive"), "Memory_IgnoreInactive");
    EXPECT_EQ(migratedKey("DisksReadTextShadowColor"), "Disks_MenubarRWReadShadwColor");
    EXPECT_EQ(migratedKey("BatteryDisplayModeCharged"), "Battery_MebubarModeCharged");
}

TEST(PreferenceMigrationTableTest, UnknownNameStays) {
    EXPECT_EQ(migratedKey("TimerFrequency"), "TimerFrequency");
    EXPECT_EQ(migratedKey("cpugraphwidth"), "cpugraphwidth");
    EXPECT_EQ(migratedKey(""), "");
}

TEST(PreferenceMigrationTableTest, ThreeSettingsAreLeftBehind) {
    const auto leftBehind = keysLeftBehind();
    EXPECT_EQ(std::set<std::string_view>(leftBehind.begin(), leftBehind.end()),
              (std::set<std::string_view>{"updateCheckerEnabled", "SensorsFanControlEnabled",
                                          "migratedExtras4.0"}));
    EXPECT_EQ(leftBehind.size(), 3u);
}

}  // namespace
}  // namespace vantor
