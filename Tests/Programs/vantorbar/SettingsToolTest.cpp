#include "Programs/vantorbar/SettingsTool.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Foundation/PropertyList.h"
#include "Platform/Simulated/SimulatedMachine.h"
#include "Shared/ProcessContext.h"
#include "Shared/VTRPreferences.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

PropertyValue integer(std::int64_t value) { return value; }

class SettingsToolTest : public testing::Test {
protected:
    PropertyValue stored(std::string_view key) { return machine.preferences.read(key); }
    std::string told() {
        machine.run(0);
        return told_;
    }
    std::string lines() const { return out.str(); }
    std::string complaints() const { return err.str(); }

    simulated::SimulatedMachine machine;
    std::ostringstream out, err;
    SettingsTool tool{machine.preferences, VTRPreferences::defaultsFor(machine.ports()),
                      machine.distributedNotifications, out, err};

private:
    Observation observe(const char* name) {
        return machine.distributedNotifications.observe(name, [this](const Notification& heard) {
            told_ += std::string(heard.name) + ":" + std::string(infoValue(heard.info, "key")) +
                     ":" + std::string(infoValue(heard.info, "resetKey")) + ";";
        });
    }
    std::string told_;
    Observation cpu_ = observe("VantorBarCPUPreferencesChanged");
    Observation global_ = observe("VantorBarGlobalDisplayChange");
};

TEST_F(SettingsToolTest, ListShowsOurSettingsAndWhereTheyComeFrom) {
    machine.preferences.write("TimerFrequency", integer(2));
    machine.preferences.write("language", "de");
    machine.preferences.write("Memory_MenubarMode", "1");
    EXPECT_EQ(tool.list(ListedKeys::ours, ListFormat::table), 0);
    EXPECT_THAT(lines(), testing::ContainsRegex("\nTimerFrequency +2 +stored\n"));
    EXPECT_THAT(lines(), testing::ContainsRegex("\nlanguage +de +stored\n"));
    EXPECT_THAT(lines(), testing::ContainsRegex("CPU_MenubarMode +100,0 +default\n"));
    EXPECT_THAT(lines(), testing::ContainsRegex("\nTheme-SeperateStyles +false +default\n"));
    EXPECT_THAT(lines(), Not(HasSubstr("Memory_")));
    EXPECT_EQ(std::ranges::count(lines(), '\n'), 41);
}

TEST_F(SettingsToolTest, ListOfAllHasTheSiblingsToo) {
    EXPECT_EQ(tool.list(ListedKeys::all, ListFormat::table), 0);
    EXPECT_THAT(lines(), HasSubstr("Memory_MenubarMode"));
    EXPECT_EQ(std::ranges::count(lines(), '\n'), 186);
}

TEST_F(SettingsToolTest, ColumnsAreAligned) {
    machine.preferences.write("language", "de");
    tool.list(ListedKeys::ours, ListFormat::table);
    std::istringstream rows(lines());
    std::string row;
    std::vector<std::size_t> lastColumns;
    while (std::getline(rows, row))
        lastColumns.push_back(row.rfind(' '));
    EXPECT_THAT(lastColumns, testing::Each(lastColumns.front()));
}

TEST_F(SettingsToolTest, ControlCharactersDoNotReachTheTerminal) {
    machine.preferences.write("language", "\x1B[2J\n");
    tool.list(ListedKeys::ours, ListFormat::table);
    EXPECT_THAT(lines(), HasSubstr("?[2J?"));
}

TEST_F(SettingsToolTest, ListIsJSONWhenAsked) {
    machine.preferences.write("TimerFrequency", integer(2));
    EXPECT_EQ(tool.list(ListedKeys::ours, ListFormat::json), 0);
    const auto json = nlohmann::json::parse(lines());
    EXPECT_EQ(json["TimerFrequency"], (nlohmann::json{{"value", 2}, {"stored", true}}));
    EXPECT_EQ(json["CPU_MenubarGroupItems"], (nlohmann::json{{"value", false}, {"stored", false}}));
    EXPECT_EQ(json.size(), 40u);
}

TEST_F(SettingsToolTest, GetShowsTheBareValue) {
    EXPECT_EQ(tool.get("CPU_MenubarMode"), 0);
    machine.preferences.write("CPU_MenubarMode", "2");
    EXPECT_EQ(tool.get("CPU_MenubarMode"), 0);
    EXPECT_EQ(lines(), "100,0\n2\n");
}

TEST_F(SettingsToolTest, GetOfWhatHasNoValueSaysSo) {
    EXPECT_EQ(tool.get("language"), 1);
    EXPECT_EQ(lines(), "");
    EXPECT_EQ(complaints(), "vantorbar: language has no value\n");
}

TEST_F(SettingsToolTest, SetStoresSynchronisesAndTells) {
    EXPECT_EQ(tool.set("CPU_MenubarTextSize", "11", UnknownKeys::refused), 0);
    EXPECT_EQ(stored("CPU_MenubarTextSize"), integer(11));
    EXPECT_EQ(machine.preferences.synchronisations(), 1);
    EXPECT_EQ(told(), "VantorBarCPUPreferencesChanged:CPU_MenubarTextSize:text;");
    EXPECT_EQ(complaints(), "");
}

TEST_F(SettingsToolTest, ResetRemovesAndTells) {
    machine.preferences.write("DropdownTheme", integer(1));
    EXPECT_EQ(tool.reset("DropdownTheme"), 0);
    EXPECT_TRUE(stored("DropdownTheme").isNothing());
    EXPECT_EQ(machine.preferences.synchronisations(), 1);
    EXPECT_EQ(told(), "VantorBarGlobalDisplayChange:DropdownTheme:dropdown;");
}

TEST_F(SettingsToolTest, WrongValueIsExplainedInOneLineAndNothingHappens) {
    EXPECT_EQ(tool.set("CPU_MenubarTextColor", "red", UnknownKeys::refused), 2);
    EXPECT_EQ(complaints(), "vantorbar: CPU_MenubarTextColor takes a colour: \"RED GREEN BLUE "
                            "ALPHA\", each from 0 to 1, or #RRGGBB\n");
    EXPECT_TRUE(stored("CPU_MenubarTextColor").isNothing());
    EXPECT_EQ(told(), "");
}

TEST_F(SettingsToolTest, OddValueIsStoredAndWarnedOf) {
    EXPECT_EQ(tool.set("TimerFrequency", "9", UnknownKeys::refused), 0);
    EXPECT_EQ(stored("TimerFrequency"), integer(9));
    EXPECT_THAT(complaints(), HasSubstr("usually 0 to 2"));
}

TEST_F(SettingsToolTest, SettingWithoutADefaultNeedsForce) {
    EXPECT_EQ(tool.set("language", "de", UnknownKeys::refused), 2);
    EXPECT_THAT(complaints(), HasSubstr("--force"));
    EXPECT_TRUE(stored("language").isNothing());
    EXPECT_EQ(tool.set("language", "de", UnknownKeys::allowed), 0);
    EXPECT_EQ(tool.set("count", "3", UnknownKeys::allowed), 0);
    EXPECT_EQ(stored("language"), PropertyValue("de"));
    EXPECT_EQ(stored("count"), integer(3));
    EXPECT_EQ(told(),
              "VantorBarGlobalDisplayChange:language:;VantorBarGlobalDisplayChange:count:;");
}

TEST_F(SettingsToolTest, ForceDoesNotBendTheKindOfAKnownSetting) {
    EXPECT_EQ(tool.set("TimerFrequency", "fast", UnknownKeys::allowed), 2);
}

TEST_F(SettingsToolTest, SettingWithoutANameIsWrongUsage) {
    EXPECT_EQ(tool.set("", "1", UnknownKeys::allowed), 2);
    EXPECT_EQ(tool.reset("no such setting"), 1);
    EXPECT_THAT(machine.preferences.readAll(), IsEmpty());
}

TEST_F(SettingsToolTest, FailingWriteGivesTheReasonAndTellsNobody) {
    machine.preferences.setFailing(true);
    EXPECT_EQ(tool.set("TimerFrequency", "2", UnknownKeys::refused), 1);
    EXPECT_THAT(complaints(), HasSubstr("the domain can't be written"));
    EXPECT_EQ(told(), "");
}

// --- Migration ---------------------------------------------------------------------------------

class SettingsToolMigrationTest : public SettingsToolTest {
protected:
    SettingsToolMigrationTest() { machine.directories.setRoot(folder.path()); }
    fs::path formerFile() const {
        return folder / "Library/Preferences/com.kolbrin.vantorbar.extras.plist";
    }
    void leave(std::string_view bytes) const {
        fs::create_directories(formerFile().parent_path());
        std::ofstream(formerFile(), std::ios::binary) << bytes;
    }
    void leave(const PropertyValue::Dictionary& settings) const {
        leave(propertyListXML(settings));
    }
    int migrate() {
        const ProcessContext process(machine.ports());
        return tool.migrate(*VTRPreferences::sharedPreferences());
    }

    test::TemporaryFolder folder;
};

TEST_F(SettingsToolMigrationTest, MigrationStoresTellsAndSaysHowMany) {
    leave({{"CPUFontSize", integer(11)}, {"SkinType", integer(1)}});
    EXPECT_EQ(migrate(), 0);
    EXPECT_EQ(lines(), "2 settings carried over from \"" + formerFile().string() + "\"\n");
    EXPECT_EQ(complaints(), "");
    EXPECT_EQ(stored("CPU_MenubarTextSize"), integer(11));
    EXPECT_EQ(stored("Migrated_5.0"), PropertyValue(true));
    EXPECT_EQ(told(), "VantorBarCPUPreferencesChanged:CPU_MenubarTextSize:text;"
                      "VantorBarGlobalDisplayChange:DropdownTheme:dropdown;");
}

TEST_F(SettingsToolMigrationTest, OneSettingIsOne) {
    leave({{"CPUFontSize", integer(11)}});
    migrate();
    EXPECT_THAT(lines(), testing::StartsWith("1 setting carried"));
}

TEST_F(SettingsToolMigrationTest, SettingsThatCouldNotBeReadAreNamed) {
    leave({{"CPUFontSize", integer(11)},
           {"CPUUserGraphColor", PropertyValue::Data{}},
           {"own\x7Fkey", PropertyValue::Data{}}});
    EXPECT_EQ(migrate(), 0);
    EXPECT_EQ(complaints(), "vantorbar: not carried over: CPUUserGraphColor, own?key\n");
}

TEST_F(SettingsToolMigrationTest, MissingFileIsNoFault) {
    EXPECT_EQ(migrate(), 0);
    EXPECT_EQ(lines(), "There are no settings of the previous version\n");
    EXPECT_THAT(machine.preferences.readAll(), IsEmpty());
}

TEST_F(SettingsToolMigrationTest, SecondMigrationSaysThatItWasDoneBefore) {
    leave({{"CPUFontSize", integer(11)}});
    migrate();
    told();
    EXPECT_EQ(migrate(), 0);
    EXPECT_THAT(lines(), testing::EndsWith("were carried over before\n"));
    EXPECT_EQ(told(), "VantorBarCPUPreferencesChanged:CPU_MenubarTextSize:text;");
}

TEST_F(SettingsToolMigrationTest, DamagedFileIsToldOf) {
    leave("no property list");
    EXPECT_EQ(migrate(), 0);
    EXPECT_EQ(complaints(), "vantorbar: \"" + formerFile().string() +
                                "\" is damaged; nothing was carried over\n");
    EXPECT_EQ(lines(), "");
    EXPECT_THAT(machine.preferences.readAll(), IsEmpty());
}

TEST_F(SettingsToolMigrationTest, FailingWriteEndsWithOneAndTheReason) {
    leave({{"CPUFontSize", integer(11)}});
    machine.preferences.setFailing(true);
    EXPECT_EQ(migrate(), 1);
    EXPECT_THAT(complaints(), HasSubstr("not carried over: CPUFontSize\n"));
    EXPECT_THAT(complaints(), HasSubstr("the domain can't be written"));
    EXPECT_EQ(told(), "");
}

}  // namespace
}  // namespace vantor
