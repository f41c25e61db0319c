#include "Shared/VTRPreferences.h"

#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Foundation/PropertyList.h"
#include "Tests/Support/PropertyLists.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;
using Array = PropertyValue::Array;
using Dictionary = PropertyValue::Dictionary;
using Outcome = PreferenceMigration::Outcome;
using testing::ElementsAre;
using testing::IsEmpty;

PropertyValue integer(std::int64_t value) { return value; }

PropertyValue::Data dataOf(std::string_view bytes) {
    const auto raw = std::as_bytes(std::span(bytes));
    return {raw.begin(), raw.end()};
}

std::string archivedColour(std::string_view components) {
    return test::archiveXML("NSColor", test::colourFields(2, "NSRGB", components));
}

class VTRPreferencesMigrationTest : public testing::Test {
protected:
    VTRPreferencesMigrationTest() {
        world.machine.directories.setRoot(folder.path());
        world.machine.directories.setResources(folder / "Resources");
    }

    VTRPreferences& store() { return *VTRPreferences::sharedPreferences(); }
    Dictionary domain() { return world.machine.preferences.readAll(); }
    fs::path formerFile() const { return formerFileIn("Library/Preferences"); }
    fs::path formerFileIn(const char* preferences) const {
        return folder / preferences / "com.kolbrin.vantorbar.extras.plist";
    }
    static void write(const fs::path& file, std::string_view bytes) {
        fs::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
    }
    /// What the previous version left; to be called before the store is made.
    void leave(const Dictionary& settings) { write(formerFile(), propertyListXML(settings)); }
    void leaveCityMap(const Dictionary& map) {
        write(folder / "Resources/VantorBar.bundle/citymap.plist", propertyListXML(map));
    }
    /// As a process does it that may write what it migrates.
    PreferenceMigration migrate() {
        store().setSupportsMigration(true);
        return store().migrateIfNeeded();
    }

    test::TemporaryFolder folder;
    test::World world;
};

// --- In an extra -------------------------------------------------------------------------------

TEST_F(VTRPreferencesMigrationTest, ExtraShowsTheFormerSettings) {
    leave({{"CPUGraphWidth", integer(41)}});
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarGraphWidth"), 41);
    EXPECT_TRUE(store().didMigratePreferences());
    EXPECT_FALSE(store().supportsMigration());
}

TEST_F(VTRPreferencesMigrationTest, ExtraLeavesTheDomainUntouched) {
    leave({{"CPUGraphWidth", integer(41)}, {"unknown", true}});
    VTRIntegerForKey("CPU_MenubarGraphWidth");
    EXPECT_THAT(domain(), IsEmpty());
    EXPECT_EQ(world.machine.preferences.synchronisations(), 0);
}

TEST_F(VTRPreferencesMigrationTest, FormerSettingSitsInTheCacheOnly) {
    leave({{"CPUGraphWidth", integer(41)}});
    EXPECT_TRUE(VTRObjectForKeyWithoutCache("CPU_MenubarGraphWidth").isNothing());
    EXPECT_EQ(VTRObjectForKey("CPU_MenubarGraphWidth"), integer(41));
}

TEST_F(VTRPreferencesMigrationTest, FormerSettingHidesTheStoredOneUntilItIsRefreshed) {
    world.machine.preferences.write("CPU_MenubarGraphWidth", integer(50));
    leave({{"CPUGraphWidth", integer(41)}});
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarGraphWidth"), 41);
    VTRRefreshKey("CPU_MenubarGraphWidth");
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarGraphWidth"), 50);
}

TEST_F(VTRPreferencesMigrationTest, WrittenSettingReplacesTheFormerOne) {
    leave({{"CPUGraphWidth", integer(41)}});
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarGraphWidth"), 41);
    VTRSetIntegerForKey("CPU_MenubarGraphWidth", 50);
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarGraphWidth"), 50);
}

TEST_F(VTRPreferencesMigrationTest, AppearanceChangeBringsTheDomainAndTheDefaultsBack) {
    leave({{"CPUFontSize", integer(11)}, {"CPUPercentageColor", "1 0 0 1"}});
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarTextSize"), 11);
    EXPECT_EQ(VTRColorForKey("CPU_MenubarTextColor"), (Colour{1, 0, 0, 1}));
    world.machine.distributedNotifications.arrive("AppleInterfaceThemeChangedNotification", {});
    world.machine.run(0);
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarTextSize"), 13);
    EXPECT_EQ(VTRColorForKey("CPU_MenubarTextColor"), colorFromString("0.11 0.11 0.11 1.0"));
}

TEST_F(VTRPreferencesMigrationTest, ExtraRepeatsThePassAtEachStart) {
    leave({{"CPUGraphWidth", integer(41)}});
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarGraphWidth"), 41);
    leave({{"CPUGraphWidth", integer(42)}});
    const ProcessContext restarted(world.machine.ports());
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarGraphWidth"), 42);
}

TEST_F(VTRPreferencesMigrationTest, OldSystemMigratesToo) {
    world.machine.machineIdentity.setSystemVersion({10, 9, 5});
    leave({{"CPUGraphWidth", integer(41)}});
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarGraphWidth"), 41);
}

// --- In a process that writes ------------------------------------------------------------------

TEST_F(VTRPreferencesMigrationTest, MigratedSettingsAndTheMarkerGoIntoTheDomain) {
    leave({{"CPUGraphWidth", integer(41)}, {"skinColor", integer(3)}});
    const PreferenceMigration migration = migrate();
    EXPECT_EQ(migration.outcome, Outcome::carriedOver);
    EXPECT_EQ(migration.formerSettings, formerFile());
    EXPECT_THAT(migration.carriedOver, ElementsAre("CPU_MenubarGraphWidth", "MenubarSkinColor"));
    EXPECT_THAT(migration.dropped, IsEmpty());
    EXPECT_EQ(migration.failure, "");
    EXPECT_EQ(domain(), (Dictionary{{"CPU_MenubarGraphWidth", integer(41)},
                                    {"MenubarSkinColor", integer(3)},
                                    {"Migrated_5.0", true}}));
    EXPECT_GE(world.machine.preferences.synchronisations(), 1);
}

TEST_F(VTRPreferencesMigrationTest, MarkerHasTheFormerFileIgnored) {
    world.machine.preferences.write("Migrated_5.0", true);
    leave({{"CPUFontSize", integer(11)}});
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarTextSize"), 13);
    EXPECT_FALSE(store().didMigratePreferences());
    EXPECT_EQ(migrate().outcome, Outcome::alreadyMigrated);
    EXPECT_EQ(domain(), (Dictionary{{"Migrated_5.0", true}}));
    EXPECT_EQ(world.machine.preferences.synchronisations(), 0);
}

TEST_F(VTRPreferencesMigrationTest, SecondMigrationFindsTheFirstDone) {
    leave({{"CPUGraphWidth", integer(41)}});
    migrate();
    VTRSetIntegerForKey("CPU_MenubarGraphWidth", 50);
    EXPECT_EQ(migrate().outcome, Outcome::alreadyMigrated);
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarGraphWidth"), 50);
}

TEST_F(VTRPreferencesMigrationTest, ExtraThatStartsAfterItTakesTheDomain) {
    leave({{"CPUGraphWidth", integer(41)}});
    migrate();
    world.machine.preferences.write("CPU_MenubarGraphWidth", integer(50));
    const ProcessContext restarted(world.machine.ports());
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarGraphWidth"), 50);
    EXPECT_FALSE(store().didMigratePreferences());
}

TEST_F(VTRPreferencesMigrationTest, MigratedValueIsReadAfterwardsWhateverWasCached) {
    leave({{"CPUGraphWidth", integer(41)}});
    store().clearCache();
    world.machine.preferences.write("CPU_MenubarGraphWidth", integer(50));
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarGraphWidth"), 50);
    migrate();
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarGraphWidth"), 41);
}

TEST_F(VTRPreferencesMigrationTest, FailingWritesDropTheirKeysAndTheReasonIsKept) {
    leave({{"CPUGraphWidth", integer(41)}, {"skinColor", integer(3)}});
    store();
    world.machine.preferences.setFailing(true);
    const PreferenceMigration migration = migrate();
    EXPECT_THAT(migration.carriedOver, IsEmpty());
    EXPECT_THAT(migration.dropped, ElementsAre("CPUGraphWidth", "skinColor"));
    EXPECT_EQ(migration.failure, "the domain can't be written");
    EXPECT_THAT(domain(), IsEmpty());
    EXPECT_TRUE(store().didMigratePreferences());
}

TEST_F(VTRPreferencesMigrationTest, PassAsksNobodyAndWritesNoMarker) {
    world.machine.preferences.write("Migrated_5.0", true);
    leave({{"CPUGraphWidth", integer(41)}});
    store().setSupportsMigration(true);
    store().migrateToV5();
    EXPECT_EQ(domain(),
              (Dictionary{{"CPU_MenubarGraphWidth", integer(41)}, {"Migrated_5.0", true}}));
    EXPECT_EQ(world.machine.preferences.synchronisations(), 1);
    EXPECT_TRUE(store().didMigratePreferences());
}

// --- The file ----------------------------------------------------------------------------------

TEST_F(VTRPreferencesMigrationTest, WithoutAFormerFileNothingHappens) {
    EXPECT_EQ(migrate().outcome, Outcome::noFormerSettings);
    EXPECT_FALSE(store().didMigratePreferences());
    EXPECT_THAT(domain(), IsEmpty());
    EXPECT_EQ(world.machine.preferences.synchronisations(), 0);
}

TEST_F(VTRPreferencesMigrationTest, UserWithoutFoldersHasNoFormerFile) {
    world.machine.directories.setRoot(std::nullopt);
    EXPECT_EQ(migrate().outcome, Outcome::noFormerSettings);
    EXPECT_FALSE(store().didMigratePreferences());
}

TEST_F(VTRPreferencesMigrationTest, DamagedFileIsAsGoodAsNoneButForTheFlag) {
    for (const std::string_view bytes :
         {"", "bplist00", "<plist><dict><key>CPUGraphWidth</key>", "CPUGraphWidth = 41;"}) {
        const ProcessContext restarted(world.machine.ports());
        write(formerFile(), bytes);
        EXPECT_TRUE(store().didMigratePreferences()) << bytes;
        EXPECT_TRUE(store().cache().empty()) << bytes;
        EXPECT_EQ(migrate().outcome, Outcome::damaged) << bytes;
        EXPECT_THAT(domain(), IsEmpty()) << "so that a mended file is carried over: " << bytes;
    }
}

TEST_F(VTRPreferencesMigrationTest, ListThatIsNoDictionaryIsDamaged) {
    write(formerFile(), propertyListXML(Array{"CPUGraphWidth"}));
    EXPECT_EQ(migrate().outcome, Outcome::damaged);
}

TEST_F(VTRPreferencesMigrationTest, FolderOfTheFilesNameIsNoFile) {
    fs::create_directories(formerFile());
    EXPECT_EQ(migrate().outcome, Outcome::noFormerSettings);
}

TEST_F(VTRPreferencesMigrationTest, BinaryFileIsReadLikeXML) {
    const Dictionary settings{{"CPUGraphWidth", integer(41)},
                              {"CPUPercentageColor", dataOf(archivedColour("1 0.5 0.25"))}};
    write(formerFile(), test::binaryList(propertyListXML(settings)));
    migrate();
    EXPECT_EQ(domain(), (Dictionary{{"CPU_MenubarGraphWidth", integer(41)},
                                    {"CPU_MenubarTextColor", "1.00 0.50 0.25 1.00"},
                                    {"Migrated_5.0", true}}));
}

TEST_F(VTRPreferencesMigrationTest, FirstFileThatIsFoundWins) {
    write(formerFileIn("Preferences"), propertyListXML(Dictionary{{"CPUGraphWidth", integer(1)}}));
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarGraphWidth"), 1);
    leave({{"CPUGraphWidth", integer(2)}});
    const ProcessContext restarted(world.machine.ports());
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarGraphWidth"), 2);
}

TEST_F(VTRPreferencesMigrationTest, MigrationLeavesTheFormerFileAsItWas) {
    leave({{"CPUGraphWidth", integer(41)}});
    const auto written = fs::last_write_time(formerFile());
    migrate();
    EXPECT_EQ(fs::last_write_time(formerFile()), written);
}

// --- The values --------------------------------------------------------------------------------

TEST_F(VTRPreferencesMigrationTest, UnknownKeyKeepsItsName) {
    leave({{"unknown", "a text"}, {"TimerFrequency", integer(2)}});
    migrate();
    EXPECT_EQ(domain(),
              (Dictionary{
                  {"Migrated_5.0", true}, {"TimerFrequency", integer(2)}, {"unknown", "a text"}}));
}

TEST_F(VTRPreferencesMigrationTest, KeysThatMeanNothingNowStayBehind) {
    leave({{"updateCheckerEnabled", true},
           {"SensorsFanControlEnabled", true},
           {"migratedExtras4.0", true},
           {"", true}});
    const PreferenceMigration migration = migrate();
    EXPECT_THAT(migration.carriedOver, IsEmpty());
    EXPECT_THAT(migration.dropped, IsEmpty()) << "nobody misses them";
    EXPECT_EQ(domain(), (Dictionary{{"Migrated_5.0", true}}));
}

TEST_F(VTRPreferencesMigrationTest, ValuesStayWhatTheyAre) {
    const Dictionary settings{{"MemoryIncludeInactive", true},
                              {"TempFontSize", integer(-1)},
                              {"NetworkGraphWidth", 30.5},
                              {"CPUDisplayMode", "2,1"},
                              {"FanSpeedSets", Array{Dictionary{{"name", "quiet"}}}},
                              {"ClockDisplayMode", Array{"EEE", " ", "HH"}},
                              {"installed", PropertyValue::Date{1'400'000'000}}};
    leave(settings);
    migrate();
    EXPECT_EQ(domain(), (Dictionary{{"Memory_IgnoreInactive", true},
                                    {"Sensors_MenubarTextSize", integer(-1)},
                                    {"Network_GraphWidth", 30.5},
                                    {"CPU_MenubarMode", "2,1"},
                                    {"FanControl_Sets", settings.at("FanSpeedSets")},
                                    {"Time_MenubarFormat", settings.at("ClockDisplayMode")},
                                    {"installed", settings.at("installed")},
                                    {"Migrated_5.0", true}}));
}

TEST_F(VTRPreferencesMigrationTest, ArchivedColourArrivesAsText) {
    const std::string archive = archivedColour("0.254 0.5 1 0.125");
    leave({{"CPUUserGraphColor", dataOf(archive)},
           {"CPUSystemGraphColor", dataOf(test::binaryList(archive))},
           {"ownColour", dataOf(archive)}});
    migrate();
    EXPECT_EQ(domain(), (Dictionary{{"CPU_MenubarGraphUser", "0.25 0.50 1.00 0.12"},
                                    {"CPU_MenubarGraphSystem", "0.25 0.50 1.00 0.12"},
                                    {"ownColour", "0.25 0.50 1.00 0.12"},
                                    {"Migrated_5.0", true}}));
}

TEST_F(VTRPreferencesMigrationTest, ExtraPaintsWithTheArchivedColour) {
    leave({{"CPUUserGraphColor", dataOf(archivedColour("1 0.5 0"))}});
    EXPECT_EQ(VTRColorForKey("CPU_MenubarGraphUser"), (Colour{1, 0.5, 0, 1}));
}

TEST_F(VTRPreferencesMigrationTest, DataThatIsNoArchivedColourIsDroppedAndTheRestGoesOn) {
    leave({{"CPUUserGraphColor", dataOf("no archive")},
           {"CPUOverallGraphColor", dataOf("")},
           {"CPUSystemGraphColor", dataOf(test::archiveXML("NSFont", ""))},
           {"CPUGraphWidth", integer(41)}});
    const PreferenceMigration migration = migrate();
    EXPECT_THAT(migration.dropped,
                ElementsAre("CPUOverallGraphColor", "CPUSystemGraphColor", "CPUUserGraphColor"));
    EXPECT_EQ(migration.failure, "");
    EXPECT_EQ(domain(),
              (Dictionary{{"CPU_MenubarGraphWidth", integer(41)}, {"Migrated_5.0", true}}));
}

TEST_F(VTRPreferencesMigrationTest, ValueOfNoKindOfOursIsDroppedAndTheDefaultStands) {
    write(formerFile(), test::binaryList(test::listXML("<dict><key>CPUFontSize</key>" +
                                                       test::referenceElement(3) + "</dict>")));
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarTextSize"), 13);
    EXPECT_THAT(migrate().dropped, ElementsAre("CPUFontSize"));
}

TEST_F(VTRPreferencesMigrationTest, LaterKeyWinsWhereTwoBecomeOne) {
    leave({{"CPUGraphWidth", integer(1)}, {"CPU_MenubarGraphWidth", integer(2)}});
    migrate();
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarGraphWidth"), 2);
}

// --- Cities ------------------------------------------------------------------------------------

TEST_F(VTRPreferencesMigrationTest, CitiesArriveUnderTheirPresentIdentifiers) {
    leaveCityMap({{"123", "5128581"}});
    leave({{"cities", Array{integer(123), "456"}}});
    migrate();
    EXPECT_EQ(domain()["Time_Cities"], PropertyValue(Array{"5128581"}));
}

TEST_F(VTRPreferencesMigrationTest, CitiesKeepTheirOrder) {
    leaveCityMap({{"1", "one"}, {"2", "two"}, {"3", "three"}});
    EXPECT_EQ(store().migratedCities(Array{"3", integer(1), "0", 2.0, true, Array{}, {}}),
              (Array{"three", "one", "two", "one"}));
}

TEST_F(VTRPreferencesMigrationTest, MissingListOfCitiesIsAnEmptyOne) {
    leaveCityMap({{"1", "one"}});
    EXPECT_THAT(store().migratedCities({}), IsEmpty());
}

TEST_F(VTRPreferencesMigrationTest, CitiesThatAreNoListAreDropped) {
    leaveCityMap({{"1", "one"}});
    leave({{"cities", "1"}});
    EXPECT_THAT(migrate().dropped, ElementsAre("cities"));
    EXPECT_TRUE(domain()["Time_Cities"].isNothing());
}

TEST_F(VTRPreferencesMigrationTest, WithoutAMapNoCityIsKnown) {
    leave({{"cities", Array{"1"}}});
    migrate();
    EXPECT_EQ(domain()["Time_Cities"], PropertyValue(Array{}));
}

TEST_F(VTRPreferencesMigrationTest, MapAmongTheBundlesContentsIsFound) {
    write(folder / "Resources/VantorBar.bundle/Contents/Resources/citymap.plist",
          test::binaryList(propertyListXML(Dictionary{{"1", "one"}})));
    EXPECT_EQ(store().migratedCities(Array{"1"}), Array{"one"});
}

TEST_F(VTRPreferencesMigrationTest, OurOwnMapKnowsTheDefaultCities) {
    fs::create_directories(folder / "Resources/VantorBar.bundle");
    fs::copy_file(fs::path(VANTOR_SOURCE_DIR) / "Resources/citymap.plist",
                  folder / "Resources/VantorBar.bundle/citymap.plist");
    const PropertyValue cities = store().defaults().at("Time_Cities");
    ASSERT_NE(cities.array(), nullptr);
    EXPECT_EQ(store().migratedCities(cities), *cities.array());
}

}  // namespace
}  // namespace vantor
