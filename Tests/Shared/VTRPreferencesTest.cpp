#include "Shared/VTRPreferences.h"

#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <png.h>

#include "Foundation/Image.h"
#include "Platform/Simulated/SimulatedMachine.h"
#include "Shared/ProcessContext.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

PropertyValue integer(std::int64_t value) { return value; }

void writePNG(const fs::path& file) {
    fs::create_directories(file.parent_path());
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = image.height = 1;
    image.format = PNG_FORMAT_RGBA;
    const unsigned char pixel[]{1, 2, 3, 255};
    ASSERT_NE(png_image_write_to_file(&image, file.c_str(), 0, pixel, 0, nullptr), 0);
}

class VTRPreferencesTest : public testing::Test {
protected:
    VTRPreferences& store() { return *VTRPreferences::sharedPreferences(); }
    /// As another process does it: the store isn't told.
    void writeBehind(std::string_view key, const PropertyValue& value) {
        machine.preferences.write(key, value);
    }
    /// The desktop says that something changed, and the program hears it.
    void tell(std::string_view name) {
        machine.distributedNotifications.arrive(std::string(name), {});
        machine.run(0);
    }
    int menubarThemeChanges() const { return menubarThemeChanges_; }

    simulated::SimulatedMachine machine;
    ProcessContext context{machine.ports()};

private:
    int menubarThemeChanges_ = 0;
    Observation observation_ = machine.localNotifications.observe(
        "VantorBarMenubarThemeChanged", [this](const Notification& heard) {
            EXPECT_TRUE(heard.info.empty());
            ++menubarThemeChanges_;
        });
};

// --- Reading and writing -----------------------------------------------------------------------

TEST_F(VTRPreferencesTest, DefaultAnswersOnlyWithTheCache) {
    EXPECT_TRUE(VTRObjectForKeyWithoutCache("CPU_MenubarMode").isNothing());
    EXPECT_TRUE(VTRStoredObjectForKey("CPU_MenubarMode").isNothing());
    EXPECT_TRUE(VTRPreferenceForKey("CPU_MenubarMode").isNothing());
    EXPECT_EQ(VTRObjectForKey("CPU_MenubarMode"), PropertyValue("100,0"));
}

TEST_F(VTRPreferencesTest, StoredValueComesBeforeTheDefault) {
    writeBehind("CPU_MenubarMode", "2");
    EXPECT_EQ(VTRObjectForKey("CPU_MenubarMode"), PropertyValue("2"));
    EXPECT_EQ(VTRObjectForKeyWithoutCache("CPU_MenubarMode"), PropertyValue("2"));
}

TEST_F(VTRPreferencesTest, EmptyDomainReadsAsTheDefaults) {
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarTextSize"), 13);
    EXPECT_TRUE(VTRBoolForKey("CPU_CombineLogicalCores"));
    EXPECT_EQ(VTRDoubleForKey("MenubarGraphOpacity"), 0.5);
    EXPECT_EQ(VTRFloatForKey("MenubarGraphOpacity"), 0.5f);
    EXPECT_EQ(VTRColorForKey("CPU_MenubarGraphSystem"),
              colorFromString(PropertyValue("1.00 0.16 0.16 1.00")));
}

TEST_F(VTRPreferencesTest, KeyWithoutDefaultReadsAsNothingFalseAndZero) {
    EXPECT_TRUE(VTRObjectForKey("language").isNothing());
    EXPECT_TRUE(VTRDictionaryForKey("language").isNothing());
    EXPECT_FALSE(VTRBoolForKey("language"));
    EXPECT_EQ(VTRIntegerForKey("language"), 0);
    EXPECT_EQ(VTRFloatForKey("language"), 0);
    EXPECT_EQ(VTRDoubleForKey("language"), 0);
}

TEST_F(VTRPreferencesTest, StoredValueOfAnotherKindIsReadAsItCanBe) {
    writeBehind("TimerFrequency", "2 a second");
    EXPECT_EQ(VTRIntegerForKey("TimerFrequency"), 2);
    EXPECT_TRUE(VTRBoolForKey("TimerFrequency"));
    EXPECT_EQ(VTRDictionaryForKey("TimerFrequency"), PropertyValue("2 a second"));
}

TEST_F(VTRPreferencesTest, StoredKeyIsReadFromTheDomainOnce) {
    writeBehind("TimerFrequency", integer(2));
    store();
    const int before = machine.preferences.reads();
    for (int round = 0; round < 5; ++round)
        EXPECT_EQ(VTRIntegerForKey("TimerFrequency"), 2);
    EXPECT_EQ(machine.preferences.reads(), before + 1);
}

TEST_F(VTRPreferencesTest, DefaultIsNotCachedSoThatAStoredValueShowsAtOnce) {
    EXPECT_EQ(VTRIntegerForKey("TimerFrequency"), 1);
    writeBehind("TimerFrequency", integer(2));
    EXPECT_EQ(VTRIntegerForKey("TimerFrequency"), 2);
}

TEST_F(VTRPreferencesTest, ReadingWithoutTheCacheNeitherAsksNorFillsIt) {
    writeBehind("TimerFrequency", integer(2));
    EXPECT_EQ(VTRObjectForKeyWithoutCache("TimerFrequency"), integer(2));
    EXPECT_TRUE(store().cache().empty());
    EXPECT_EQ(VTRIntegerForKey("TimerFrequency"), 2);
    writeBehind("TimerFrequency", integer(0));
    EXPECT_EQ(VTRObjectForKeyWithoutCache("TimerFrequency"), integer(0));
    EXPECT_EQ(VTRIntegerForKey("TimerFrequency"), 2) << "the cached one";
}

TEST_F(VTRPreferencesTest, AnotherProcessesValueShowsAfterTheKeyIsRefreshed) {
    writeBehind("TimerFrequency", integer(2));
    EXPECT_EQ(VTRIntegerForKey("TimerFrequency"), 2);
    writeBehind("TimerFrequency", integer(0));
    EXPECT_EQ(VTRIntegerForKey("TimerFrequency"), 2);
    VTRRefreshKey("TimerFrequency");
    EXPECT_EQ(VTRIntegerForKey("TimerFrequency"), 0);
}

TEST_F(VTRPreferencesTest, WrittenValueIsReadAlsoWhereTheOldOneWasCached) {
    writeBehind("TimerFrequency", integer(2));
    EXPECT_EQ(VTRIntegerForKey("TimerFrequency"), 2);
    VTRSetIntegerForKey("TimerFrequency", 0);
    EXPECT_EQ(VTRIntegerForKey("TimerFrequency"), 0);
    VTRRemoveObjectForKey("TimerFrequency");
    EXPECT_EQ(VTRIntegerForKey("TimerFrequency"), 1) << "the default";
}

TEST_F(VTRPreferencesTest, WritingSynchronisesAndReadingDoesNot) {
    VTRSetObjectForKey("TimerFrequency", integer(2));
    EXPECT_EQ(machine.preferences.synchronisations(), 1);
    VTRIntegerForKey("TimerFrequency");
    VTRObjectForKeyWithoutCache("TimerFrequency");
    EXPECT_EQ(machine.preferences.synchronisations(), 1);
}

TEST_F(VTRPreferencesTest, SettersBoxTheirKinds) {
    VTRSetBoolForKey("a", true);
    VTRSetIntegerForKey("b", 5);
    VTRSetFloatForKey("c", 0.5f);
    VTRSetDoubleForKey("d", 0.25);
    store().setBool(false, "e");
    store().setInteger(-1, "f");
    store().setFloat(1.5f, "g");
    EXPECT_EQ(machine.preferences.readAll(), (PropertyValue::Dictionary{{"a", true},
                                                                        {"b", integer(5)},
                                                                        {"c", 0.5f},
                                                                        {"d", 0.25},
                                                                        {"e", false},
                                                                        {"f", integer(-1)},
                                                                        {"g", 1.5f}}));
}

TEST_F(VTRPreferencesTest, WithoutAKeyNothingIsReadWrittenOrForgotten) {
    writeBehind("TimerFrequency", integer(2));
    EXPECT_EQ(VTRIntegerForKey("TimerFrequency"), 2);
    VTRColorForKey("CPU_MenubarTextColor");
    const int reads = machine.preferences.reads();
    VTRSetObjectForKey("", integer(1));
    VTRRefreshKey("");
    EXPECT_TRUE(VTRObjectForKey("").isNothing());
    EXPECT_TRUE(VTRObjectForKeyWithoutCache("").isNothing());
    EXPECT_EQ(machine.preferences.reads(), reads);
    EXPECT_EQ(machine.preferences.synchronisations(), 0);
    EXPECT_EQ(machine.preferences.readAll().size(), 1u);
    EXPECT_EQ(store().cache().size(), 1u);
    EXPECT_EQ(store().colorCache().size(), 1u);
}

TEST_F(VTRPreferencesTest, FailingWriteIsIgnoredAndTheStepsBehindItRun) {
    writeBehind("TimerFrequency", integer(2));
    EXPECT_EQ(VTRIntegerForKey("TimerFrequency"), 2);
    machine.preferences.setFailing(true);
    EXPECT_NO_THROW(VTRSetIntegerForKey("TimerFrequency", 0));
    EXPECT_EQ(machine.preferences.synchronisations(), 1);
    EXPECT_TRUE(store().cache().empty());
    EXPECT_EQ(VTRIntegerForKey("TimerFrequency"), 2);
}

TEST_F(VTRPreferencesTest, ClearCacheKeepsTheColours) {
    writeBehind("CPU_MenubarTextColor", "1 0 0 1");
    VTRColorForKey("CPU_MenubarTextColor");
    store().clearCache();
    EXPECT_TRUE(store().cache().empty());
    EXPECT_EQ(store().colorCache().size(), 1u);
}

// --- Colours -----------------------------------------------------------------------------------

TEST_F(VTRPreferencesTest, MissingColourIsBlackOnALightDesktopAndStays) {
    EXPECT_EQ(VTRColorForKey("no such colour"), kBlack);
    writeBehind("no such colour", "1 0 0 1");
    EXPECT_EQ(VTRColorForKey("no such colour"), kBlack) << "kept until refreshed";
    VTRRefreshKey("no such colour");
    EXPECT_EQ(VTRColorForKey("no such colour"), (Colour{1, 0, 0, 1}));
}

TEST_F(VTRPreferencesTest, MissingColourIsWhiteOnADarkDesktop) {
    machine.appearance.setDark(true);
    EXPECT_EQ(VTRColorForKey("no such colour"), kWhite);
    EXPECT_EQ(VTRColorForKey("no such colour"), kWhite);
}

TEST_F(VTRPreferencesTest, ColourThatIsNoneIsTheFallback) {
    for (const PropertyValue& value : {PropertyValue(integer(5)), PropertyValue("1 0 0"),
                                       PropertyValue("red"), PropertyValue(true)}) {
        VTRSetObjectForKey("CPU_MenubarTextColor", value);
        EXPECT_EQ(VTRColorForKey("CPU_MenubarTextColor"), kBlack) << value.stringValue();
    }
}

TEST_F(VTRPreferencesTest, WrittenColourShows) {
    VTRColorForKey("CPU_MenubarTextColor");
    VTRSetObjectForKey("CPU_MenubarTextColor", "1 0 0 0.5");
    EXPECT_EQ(VTRColorForKey("CPU_MenubarTextColor"), (Colour{1, 0, 0, 0.5}));
}

// --- Appearance --------------------------------------------------------------------------------

TEST_F(VTRPreferencesTest, AppearanceIsReadAtTheStart) {
    machine.appearance.setDark(true);
    machine.appearance.setContrast(true);
    EXPECT_TRUE(store().isMenubarDark());
    EXPECT_TRUE(store().increaseContrast());
}

TEST_F(VTRPreferencesTest, ThemeChangeForgetsEverythingAndIsToldInProcess) {
    writeBehind("TimerFrequency", integer(2));
    VTRIntegerForKey("TimerFrequency");
    VTRColorForKey("no such colour");
    machine.appearance.setDark(true);
    machine.appearance.setContrast(true);
    tell("AppleInterfaceThemeChangedNotification");
    EXPECT_TRUE(store().cache().empty());
    EXPECT_TRUE(store().colorCache().empty());
    EXPECT_TRUE(store().isMenubarDark());
    EXPECT_FALSE(store().increaseContrast()) << "its own notification hasn't come";
    EXPECT_EQ(menubarThemeChanges(), 1);
    EXPECT_EQ(VTRColorForKey("no such colour"), kWhite);
}

TEST_F(VTRPreferencesTest, ContrastChangeIsToldUnderTheThemesName) {
    writeBehind("TimerFrequency", integer(2));
    VTRIntegerForKey("TimerFrequency");
    VTRColorForKey("no such colour");
    machine.appearance.setDark(true);
    machine.appearance.setContrast(true);
    tell("AXInterfaceIncreaseContrastStatusDidChange");
    EXPECT_TRUE(store().cache().empty());
    EXPECT_TRUE(store().colorCache().empty());
    EXPECT_TRUE(store().increaseContrast());
    EXPECT_FALSE(store().isMenubarDark());
    EXPECT_EQ(menubarThemeChanges(), 1);
}

TEST_F(VTRPreferencesTest, OldSystemHasNoAppearanceAndNoObserver) {
    machine.machineIdentity.setSystemVersion({10, 9, 5});
    machine.appearance.setDark(true);
    machine.appearance.setContrast(true);
    EXPECT_TRUE(store().isMavericks());
    EXPECT_FALSE(store().isYosemite());
    tell("AppleInterfaceThemeChangedNotification");
    tell("AXInterfaceIncreaseContrastStatusDidChange");
    EXPECT_FALSE(store().isMenubarDark());
    EXPECT_FALSE(store().increaseContrast());
    EXPECT_EQ(menubarThemeChanges(), 0);
}

TEST_F(VTRPreferencesTest, DropdownThemeFollowsTheAppearanceWhereStylesAreSeparate) {
    VTRSetIntegerForKey("DropdownTheme", 5);
    VTRSetIntegerForKey("DropdownTheme-Light", 6);
    VTRSetIntegerForKey("DropdownTheme-Dark", 7);
    EXPECT_EQ(dropdownTheme(), 5);
    VTRSetBoolForKey("Theme-SeperateStyles", true);
    EXPECT_EQ(dropdownTheme(), 6);
    machine.appearance.setDark(true);
    tell("AppleInterfaceThemeChangedNotification");
    EXPECT_EQ(dropdownTheme(), 7);
}

// --- The machine -------------------------------------------------------------------------------

TEST_F(VTRPreferencesTest, LaptopIsToldByItsModel) {
    const std::map<std::string, bool> laptops{{"MacBookPro11,1", true}, {"MacBook8,1", true},
                                              {"MACBOOKAIR6,2", true},  {"iMac14,2", false},
                                              {"MacPro6,1", false},     {"", false}};
    for (const auto& [model, laptop] : laptops) {
        machine.machineIdentity.setModelIdentifier(model);
        EXPECT_EQ(store().isLaptop(), laptop) << model;
    }
    machine.machineIdentity.setModelIdentifier(std::nullopt);
    EXPECT_FALSE(store().isLaptop());
    EXPECT_EQ(store().modelIdentifier(), std::nullopt);
}

TEST_F(VTRPreferencesTest, DefaultsKnowTheLaptopAndTheRegion) {
    machine.machineIdentity.setModelIdentifier("MacBookPro11,1");
    machine.regionalSettings.setLocale("en_US");
    EXPECT_TRUE(VTRBoolForKey("Battery_MenubarHideBluetooth"));
    EXPECT_EQ(VTRIntegerForKey("Sensors_TemperatureMode"), 1);
    EXPECT_EQ(store().defaults().size(), 186u);
}

TEST_F(VTRPreferencesTest, FontSizeDecidesTheVerticalOffset) {
    const std::map<std::int64_t, std::int64_t> offsets{
        {-1, 0}, {0, 0},  {7, 0},  {8, 3},   {9, 2},   {10, 1}, {11, 1},
        {12, 0}, {13, 0}, {14, 0}, {15, -1}, {16, -2}, {17, 0}};
    for (const auto& [size, offset] : offsets)
        EXPECT_EQ(VTRPreferences::verticalOffsetForFontSize(size), offset) << size;
    VTRSetIntegerForKey("CPU_MenubarTextSize", 16);
    EXPECT_EQ(store().offsetForFont("CPU_MenubarTextSize"), -2);
}

// --- Images ------------------------------------------------------------------------------------

class VTRPreferencesImageTest : public VTRPreferencesTest {
protected:
    VTRPreferencesImageTest() {
        machine.directories.setResources(folder.path());
        machine.directories.setRoot(folder.path());
    }
    fs::path inBundle(const char* name) const { return folder / "VantorBar.bundle" / name; }

    test::TemporaryFolder folder;
};

TEST_F(VTRPreferencesImageTest, ImageIsLoadedOnceAndNamedEachTime) {
    writePNG(inBundle("x.png"));
    const auto image = store().imageNamed("x.png");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->name(), "x");
    fs::remove(inBundle("x.png"));
    image->setName("another");
    EXPECT_EQ(store().imageNamed("x.png"), image);
    EXPECT_EQ(image->name(), "x");
}

TEST_F(VTRPreferencesImageTest, MissingImageIsLookedForEachTime) {
    fs::create_directories(inBundle(""));
    EXPECT_EQ(store().imageNamed("x.png"), nullptr);
    EXPECT_EQ(store().pathForImage("x.png"), std::nullopt);
    writePNG(inBundle("x.png"));
    EXPECT_NE(store().imageNamed("x.png"), nullptr);
    EXPECT_EQ(store().pathForImage("x"), inBundle("x.png"));
}

TEST_F(VTRPreferencesImageTest, MissingBundleGivesNoImagesAndTheRestWorks) {
    EXPECT_FALSE(store().bundle());
    EXPECT_EQ(store().imageNamed("x.png"), nullptr);
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarTextSize"), 13);
}

TEST_F(VTRPreferencesImageTest, ImagesGoWithTheCache) {
    writePNG(inBundle("x.png"));
    const auto image = store().imageNamed("x.png");
    EXPECT_EQ(store().cache().count("image_x.png"), 1u);
    tell("AppleInterfaceThemeChangedNotification");
    EXPECT_NE(store().imageNamed("x.png"), image);
}

TEST_F(VTRPreferencesImageTest, ImageInTheCacheIsNoSetting) {
    writePNG(inBundle("x.png"));
    ASSERT_NE(store().imageNamed("x.png"), nullptr);
    EXPECT_TRUE(VTRObjectForKey("image_x.png").isNothing());
}

TEST_F(VTRPreferencesImageTest, NetworkIconIsOfTheSystemsOwnAndUnnamed) {
    const fs::path icon = folder / "System" /
                          "System/Library/PreferencePanes/Network.prefpane/Contents/Resources" /
                          "ethernet.png";
    writePNG(icon);
    const auto image = store().networkIconNamed("ethernet.png");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->name(), "");
    fs::remove(icon);
    EXPECT_EQ(store().networkIconNamed("ethernet.png"), image);
    EXPECT_EQ(store().networkIconNamed("wifi"), nullptr);
}

// --- Life --------------------------------------------------------------------------------------

TEST_F(VTRPreferencesTest, AfterCleanupEverythingReadsAsNothing) {
    VTRSetBoolForKey("Theme-SeperateStyles", true);
    EXPECT_TRUE(VTRBoolForKey("Theme-SeperateStyles"));
    VTRPreferences::cleanup();
    EXPECT_EQ(VTRPreferences::sharedPreferences(), nullptr);
    EXPECT_FALSE(VTRBoolForKey("Theme-SeperateStyles"));
    EXPECT_TRUE(VTRObjectForKey("CPU_MenubarMode").isNothing());
    EXPECT_TRUE(VTRObjectForKeyWithoutCache("Theme-SeperateStyles").isNothing());
    EXPECT_EQ(VTRIntegerForKey("CPU_MenubarTextSize"), 0);
    EXPECT_EQ(VTRColorForKey("CPU_MenubarTextColor"), std::nullopt);
    EXPECT_EQ(dropdownTheme(), 0);
    VTRSetBoolForKey("written", true);
    VTRRefreshKey("written");
    EXPECT_TRUE(machine.preferences.read("written").isNothing());
}

TEST_F(VTRPreferencesTest, StoreThatIsGoneHearsOfNoAppearance) {
    store();
    VTRPreferences::cleanup();
    tell("AppleInterfaceThemeChangedNotification");
    EXPECT_EQ(menubarThemeChanges(), 0);
}

TEST_F(VTRPreferencesTest, NothingIsMigratedInAnExtra) {
    EXPECT_FALSE(store().didMigratePreferences());
    EXPECT_FALSE(store().supportsMigration());
}

}  // namespace
}  // namespace vantor
