#include "Shared/VTRTranslations.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Foundation/UTF8.h"
#include "Programs/vantorbar-preferences/Model/SettingCatalogue.h"
#include "Shared/VTRPreferenceFunctions.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;
using testing::Not;
using testing::Pair;

std::string localized(std::string_view key, std::string_view table = "cpu") {
    return VTRLocalizedString(key, std::nullopt, table);
}

/// A world whose texts are those that a test writes.
class VTRTranslationsTest : public ::testing::Test {
protected:
    VTRTranslationsTest() { world.machine.directories.setResources(folder.path()); }

    fs::path tableFile(std::string_view language, std::string_view table) const {
        return folder / "VantorBarCPU.bundle" / (std::string(language) + ".lproj") /
               (std::string(table) + ".strings");
    }
    void write(std::string_view language, std::string_view table, std::string_view text) const {
        const fs::path file = tableFile(language, table);
        fs::create_directories(file.parent_path());
        std::ofstream(file) << text;
    }
    void setUsersLanguage(std::string tag) {
        world.machine.regionalSettings.setLocale(std::move(tag));
    }

    test::TemporaryFolder folder;
    test::World world;
};

TEST_F(VTRTranslationsTest, KeyIsTheTextWithoutATable) {
    EXPECT_EQ(localized("LOAD AVERAGE"), "LOAD AVERAGE");
    EXPECT_EQ(VTRTranslations::sharedTranslations().localizedString("LOAD AVERAGE", "cpu"),
              std::nullopt);
}

TEST_F(VTRTranslationsTest, FallbackIsTheTextWhereItIsGiven) {
    EXPECT_EQ(VTRLocalizedString("k", "instead", "cpu"), "instead");
    EXPECT_EQ(VTRLocalizedString("k", "", "cpu"), "");
}

TEST_F(VTRTranslationsTest, TextIsTheUsersLanguages) {
    write("en", "cpu", R"("User" = "User";)");
    write("de", "cpu", R"("User" = "Benutzer";)");
    setUsersLanguage("de_AT.UTF-8");
    EXPECT_EQ(localized("User"), "Benutzer");
}

TEST_F(VTRTranslationsTest, EmptyTextCountsAsNone) {
    write("en", "cpu", R"("User" = "";)");
    EXPECT_EQ(localized("User"), "User");
    EXPECT_EQ(VTRLocalizedString("User", "instead", "cpu"), "instead");
    EXPECT_EQ(VTRTranslations::sharedTranslations().localizedString("User", "cpu"), "");
}

TEST_F(VTRTranslationsTest, EnglishIsForWhoeverHasNoLanguageHere) {
    write("de", "cpu", R"("User" = "Benutzer";)");
    write("en", "cpu", R"("User" = "Someone";)");
    for (const char* const tag : {"it_IT", "zh_TW", "C", ""}) {
        test::World other;
        other.machine.directories.setResources(folder.path());
        other.machine.regionalSettings.setLocale(tag);
        EXPECT_EQ(localized("User"), "Someone") << tag;
    }
}

TEST_F(VTRTranslationsTest, SettingOverridesTheUsersLanguages) {
    write("de", "cpu", R"("User" = "Benutzer";)");
    write("fr", "cpu", R"("User" = "Utilisateur";)");
    setUsersLanguage("de_DE");
    VTRSetObjectForKey("language", "fr");
    EXPECT_EQ(localized("User"), "Utilisateur");
}

TEST_F(VTRTranslationsTest, SettingIsTakenAsItStands) {
    write("de", "cpu", R"("User" = "Benutzer";)");
    write("en", "cpu", R"("User" = "Someone";)");
    for (const char* const code : {"de_AT", "xx", ""}) {
        VTRSetObjectForKey("language", code);
        EXPECT_EQ(localized("User"), "User") << code;
    }
}

TEST_F(VTRTranslationsTest, OnlyTheFirstLanguageIsTried) {
    write("de", "common", R"("KB" = "KB";)");
    write("en", "cpu", R"("User" = "Someone";)");
    setUsersLanguage("de_DE");
    EXPECT_EQ(localized("User"), "User");
}

TEST_F(VTRTranslationsTest, TableOnceReadIsKept) {
    write("en", "cpu", R"("User" = "first";)");
    write("de", "cpu", R"("User" = "other language";)");
    ASSERT_EQ(localized("User"), "first");
    write("en", "cpu", R"("User" = "second";)");
    VTRSetObjectForKey("language", "de");
    EXPECT_EQ(localized("User"), "first");
}

TEST_F(VTRTranslationsTest, MissingOrEmptyTableIsLookedForAgain) {
    EXPECT_EQ(localized("User"), "User");
    write("en", "cpu", "/* nothing yet */");
    EXPECT_EQ(localized("User"), "User");
    EXPECT_THAT(VTRTranslations::sharedTranslations().translations(), IsEmpty());
    write("en", "cpu", R"("User" = "Someone";)");
    EXPECT_EQ(localized("User"), "Someone");
}

TEST_F(VTRTranslationsTest, TablesAreKeptByTheirFileNames) {
    write("en", "cpu", R"("a" = "1";)");
    write("en", "Localizable", R"("a" = "2";)");
    EXPECT_EQ(localized("a", "cpu"), "1");
    EXPECT_EQ(localized("a", ""), "2");
    EXPECT_THAT(VTRTranslations::sharedTranslations().translations(),
                ElementsAre(Pair("Localizable.strings", ElementsAre(Pair("a", "2"))),
                            Pair("cpu.strings", ElementsAre(Pair("a", "1")))));
}

TEST_F(VTRTranslationsTest, FolderInPlaceOfATableIsNoTable) {
    fs::create_directories(tableFile("en", "cpu"));
    EXPECT_EQ(localized("User"), "User");
}

// --- The tables that we ship -------------------------------------------------------------------

using Keys = std::set<std::string>;

constexpr std::array<std::string_view, 6> kLanguages{"de", "en", "es", "fr", "ja", "zh-Hans"};

struct Table {
    std::string_view name;
    Keys keys;
};

std::string contents(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// The texts of the window for the settings: "text" looks them up there, mostly by a literal that
/// may be in several pieces, else by what the list of settings says.
Keys textsOfTheWindowIn(const std::string& source) {
    static const std::regex call(R"re(\btext\(\s*((?:"(?:[^"\\]|\\.)*"\s*)+)\))re");
    static const std::regex between(R"re("\s*")re");
    Keys found;
    for (std::sregex_iterator at(source.begin(), source.end(), call), end; at != end; ++at) {
        const std::string literal = std::regex_replace(at->str(1), between, "");
        found.insert(literal.substr(1, literal.rfind('"') - 1));
    }
    return found;
}

Keys textsOfTheWindow() {
    Keys keys;
    const fs::path folder = fs::path(VANTOR_SOURCE_DIR) / "Programs/vantorbar-preferences";
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        if (entry.is_regular_file())
            keys.merge(textsOfTheWindowIn(contents(entry.path())));
    for (const SettingsPage& page : settingsPages()) {
        keys.emplace(page.title);
        for (const SettingGroup& group : page.groups) {
            keys.emplace(group.title);
            for (const SettingDescription& setting : group.settings) {
                keys.emplace(setting.label);
                keys.emplace(setting.help);
                for (const SettingChoice& choice : setting.choices)
                    keys.emplace(choice.label);
            }
        }
    }
    for (const ModeDescription& mode : modeDescriptions())
        keys.insert({std::string(mode.name), std::string(mode.help)});
    keys.erase("");
    return keys;
}

/// Everything that the program looks up.
const std::vector<Table> kTables{
    {"battery", {"Calculating", "Charged", "Not Charging", "Unknown Time"}},
    {"combined",
     {"CPU", "No dropdown items enabled", "Please enable some dropdown items in the",
      "combined tab in the Vantor Bar app"}},
    {"common",
     {"LAST HOUR", "LAST 24 HOURS", "LAST 7 DAYS", "%i day", "%i days", "%i hour", "%i hours",
      "%i minute", "%i minutes",    "KB",          "MB",     "GB",      "TB",      "B/s",
      "KB/s",      "MB/s",          "GB/s",        "b/s",    "Kb/s",    "Mb/s",    "Gb/s",
      "Graph of %@: now %@, highest %@"}},
    {"cpu",
     {"CPU",      "PROCESSES", "LOAD AVERAGE",  "UPTIME",     "CORES",         "OTHER",
      "User",     "System",    "Idle",          "Processes",  "Threads",       "Process",
      "Memory",   "Processor", "Running since", "Time Awake", "Time Sleeping", "Frames Per Second",
      "I/O Wait", "Stolen",    "No data"}},
     {"preferences", textsOfTheWindow()},
    {"general",
     {"5 Mins", "Hour", "24 Hours", "7 Days", "30 Days", "90 Days", "180 Days", "365 Days"}},
    {"sensors", {"K", "V", "A", "W", "lx", "MHz", "GHz"}},
};

fs::path shippedBundle() { return fs::path(VANTOR_SOURCE_DIR) / "Resources/VantorBarCPU.bundle"; }

fs::path shippedFile(std::string_view language, std::string_view table) {
    return shippedBundle() / (std::string(language) + ".lproj") / (std::string(table) + ".strings");
}

StringTable shippedTable(std::string_view language, std::string_view table) {
    return stringTable(contents(shippedFile(language, table)));
}

Keys keysOf(const StringTable& table) {
    Keys keys;
    for (const auto& [key, text] : table)
        keys.insert(key);
    return keys;
}

/// "%i", "%@" and the like, in their order.
std::vector<std::string> placeholders(const std::string& text) {
    static const std::regex mark("%[-+ 0-9.]*[a-zA-Z@%]");
    std::vector<std::string> found;
    for (std::sregex_iterator at(text.begin(), text.end(), mark), end; at != end; ++at)
        found.push_back(at->str());
    return found;
}

TEST(ShippedTablesTest, EachLanguageHasExactlyTheTextsThatAreLookedUp) {
    for (const std::string_view language : kLanguages)
        for (const Table& table : kTables)
            EXPECT_EQ(keysOf(shippedTable(language, table.name)), table.keys)
                << shippedFile(language, table.name);
}

TEST(ShippedTablesTest, NoLanguageOrTableIsLeftOver) {
    std::vector<std::string> expected, found;
    for (const std::string_view language : kLanguages)
        for (const Table& table : kTables)
            expected.push_back(shippedFile(language, table.name).string());
    for (const auto& entry : fs::recursive_directory_iterator(shippedBundle()))
        if (entry.path().extension() == ".strings")
            found.push_back(entry.path().string());
    EXPECT_THAT(found, testing::UnorderedElementsAreArray(expected));
}

TEST(ShippedTablesTest, FilesAreWholeToTheirEnd) {
    for (const std::string_view language : kLanguages)
        for (const Table& table : kTables) {
            const fs::path file = shippedFile(language, table.name);
            const std::string text = contents(file);
            EXPECT_EQ(validUTF8Prefix(text).size(), text.size()) << file;
            EXPECT_THAT(stringTable(text + "\"the last\" = \"one\";"), Contains(Key("the last")))
                << file;
        }
}

TEST(ShippedTablesTest, NoKeyStandsTwice) {
    static const std::regex pair("(^|\n)\".*\" = \".*\";");
    for (const std::string_view language : kLanguages)
        for (const Table& table : kTables) {
            const std::string text = contents(shippedFile(language, table.name));
            const std::sregex_iterator first(text.begin(), text.end(), pair), end;
            EXPECT_EQ(std::distance(first, end), std::ssize(table.keys))
                << shippedFile(language, table.name);
        }
}

TEST(ShippedTablesTest, TextsAreNotEmptyAndKeepThePlaceholdersOfTheirKeys) {
    for (const std::string_view language : kLanguages)
        for (const Table& table : kTables)
            for (const auto& [key, text] : shippedTable(language, table.name)) {
                EXPECT_THAT(text, Not(IsEmpty())) << language << ": " << key;
                EXPECT_EQ(placeholders(text), placeholders(key)) << language << ": " << key;
            }
}

TEST(ShippedTablesTest, EnglishTextsAreTheirKeys) {
    for (const Table& table : kTables)
        for (const auto& [key, text] : shippedTable("en", table.name))
            EXPECT_EQ(text, key) << table.name;
}

TEST(ShippedTablesTest, ModuleHasAHeaderInEveryLanguage) {
    for (const std::string_view language : kLanguages) {
        const StringTable names = shippedTable(language, "cpu");
        ASSERT_TRUE(names.contains("CPU")) << language;
        EXPECT_THAT(shippedTable(language, "combined"), Contains(Key(names.at("CPU")))) << language;
    }
}

// --- What the sources look up ------------------------------------------------------------------

struct LookUp {
    std::string key, table;
    auto operator<=>(const LookUp&) const = default;
};

/// The look-ups of which a source tells key and table.
std::vector<LookUp> lookUpsIn(const std::string& source) {
    static const std::regex call(
        R"re(VTRLocalizedString\(\s*"((?:[^"\\]|\\.)*)"\s*,[^,()"]*,\s*"(\w*)"\s*\))re");
    std::vector<LookUp> found;
    for (std::sregex_iterator at(source.begin(), source.end(), call), end; at != end; ++at)
        found.push_back({at->str(1), at->str(2)});
    return found;
}

std::vector<LookUp> lookUpsOfTheProgram() {
    std::vector<LookUp> found;
    for (const char* const floor : {"Shared", "Targets", "Hosts", "Programs"})
        for (const auto& entry :
             fs::recursive_directory_iterator(fs::path(VANTOR_SOURCE_DIR) / floor))
            if (entry.path().extension() == ".cpp" || entry.path().extension() == ".h")
                std::ranges::move(lookUpsIn(contents(entry.path())), std::back_inserter(found));
    return found;
}

TEST(ShippedTablesTest, TextsOfTheWindowAreFoundInSources) {
    EXPECT_EQ(textsOfTheWindowIn("a = text(\"One\") + context(\"no\") + text(\n  \"Two \"\n  "
                                 "\"pieces\").c_str() + text(variable);"),
              (Keys{"One", "Two pieces"}));
    EXPECT_TRUE(textsOfTheWindow().contains("Undo"));
}

TEST(ShippedTablesTest, LookUpsAreFoundInSources) {
    EXPECT_THAT(lookUpsIn("a = VTRLocalizedString(\"User\", std::nullopt, \"cpu\");\n"
                          "b(VTRLocalizedString(\n    \"a, (\\\"b\\\")\", {},\n  \"common\"));\n"
                          "VTRLocalizedString(key, std::nullopt, \"cpu\");"),
                ElementsAre(LookUp{"User", "cpu"}, LookUp{"a, (\\\"b\\\")", "common"}));
}

TEST(ShippedTablesTest, WhatTheSourcesLookUpStandsInEveryLanguage) {
    const std::vector<LookUp> lookUps = lookUpsOfTheProgram();
    EXPECT_THAT(lookUps, Contains(LookUp{"K", "sensors"}));
    for (const auto& [key, table] : lookUps)
        for (const std::string_view language : kLanguages)
            EXPECT_THAT(shippedTable(language, table), Contains(Key(key)))
                << table << ".strings of " << language;
}

}  // namespace
}  // namespace vantor
