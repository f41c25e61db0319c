#include "Platform/Linux/LinuxDirectories.h"

#include <filesystem>
#include <map>
#include <vector>

#include <gtest/gtest.h>

#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;
using Variables = std::map<std::string, std::string>;
using MaybePath = std::optional<fs::path>;

DirectorySources sourcesOf(const Variables& variables, const MaybePath& account = {}) {
    return {.environment = [variables](const std::string& name) -> std::optional<std::string> {
                const auto found = variables.find(name);
                return found == variables.end() ? std::nullopt : std::optional(found->second);
            },
            .accountHome = [account] { return account; },
            .program = "",
            .uninstalledResources = "/build/Resources"};
}

TEST(LinuxDirectoriesTest, PlacesFollowTheEnvironment) {
    struct Case {
        const char* what;
        Variables variables;
        MaybePath account, support, logs, preferences;
    };
    const std::vector<Case> cases{
        {"nothing set", {}, {}, {}, {}, {}},
        {"a home",
         {{"HOME", "/h"}},
         "/a",
         "/h/.local/share",
         "/h/.local/state/Vantor Bar/Logs",
         "/h/.config/Vantor Bar"},
        {"the account's home",
         {},
         "/a",
         "/a/.local/share",
         "/a/.local/state/Vantor Bar/Logs",
         "/a/.config/Vantor Bar"},
        {"a home that is none",
         {{"HOME", "h"}},
         "/a",
         "/a/.local/share",
         "/a/.local/state/Vantor Bar/Logs",
         "/a/.config/Vantor Bar"},
        {"own base directories",
         {{"XDG_DATA_HOME", "/d"}, {"XDG_STATE_HOME", "/s"}, {"XDG_CONFIG_HOME", "/c"}},
         {},
         "/d",
         "/s/Vantor Bar/Logs",
         "/c/Vantor Bar"},
        {"relative and empty ones",
         {{"HOME", "/h"},
          {"XDG_DATA_HOME", "d"},
          {"XDG_STATE_HOME", ""},
          {"XDG_CONFIG_HOME", "./c"}},
         {},
         "/h/.local/share",
         "/h/.local/state/Vantor Bar/Logs",
         "/h/.config/Vantor Bar"},
        {"one of its own", {{"XDG_STATE_HOME", "/s"}}, {}, {}, "/s/Vantor Bar/Logs", {}},
    };
    for (const Case& one : cases) {
        const LinuxDirectories directories(sourcesOf(one.variables, one.account));
        EXPECT_EQ(directories.applicationSupport(), one.support) << one.what;
        EXPECT_EQ(directories.logs(), one.logs) << one.what;
        EXPECT_EQ(directories.preferences(), one.preferences) << one.what;
    }
}

TEST(LinuxDirectoriesTest, FormerSettingsMayBeInTheHomeAndWhereThePresentOnesAre) {
    struct Case {
        const char* what;
        Variables variables;
        MaybePath account;
        std::vector<fs::path> folders;
    };
    const std::vector<Case> cases{
        {"nothing set", {}, {}, {}},
        {"a home", {{"HOME", "/h"}}, "/a", {"/h/Library/Preferences", "/h/.config/Vantor Bar"}},
        {"the account's home", {}, "/a", {"/a/Library/Preferences", "/a/.config/Vantor Bar"}},
        {"own base directories",
         {{"HOME", "/h"},
          {"XDG_DATA_HOME", "/d"},
          {"XDG_STATE_HOME", "/s"},
          {"XDG_CONFIG_HOME", "/c"}},
         {},
         {"/h/Library/Preferences", "/c/Vantor Bar"}},
        {"no home", {{"XDG_CONFIG_HOME", "/c"}}, {}, {"/c/Vantor Bar"}},
    };
    for (const Case& one : cases)
        EXPECT_EQ(LinuxDirectories(sourcesOf(one.variables, one.account)).formerPreferences(),
                  one.folders)
            << one.what;
}

TEST(LinuxDirectoriesTest, ResourcesOfAnInstalledProgramAreBesideIt) {
    const test::TemporaryFolder folder;
    fs::create_directories(folder / "share/vantor-bar");
    auto sources = sourcesOf({});
    sources.program = folder / "bin/vantorbar";
    EXPECT_EQ(LinuxDirectories(sources).resources(), folder / "share/vantor-bar");
}

TEST(LinuxDirectoriesTest, ResourcesOfAnInstalledPlugInAreBelowTheSamePrefix) {
    const test::TemporaryFolder folder;
    fs::create_directories(folder / "share/vantor-bar");
    auto sources = sourcesOf({});
    sources.program = folder / "lib/x86_64-linux-gnu/panel/plugins/libplugin.so";
    EXPECT_EQ(LinuxDirectories(sources).resources(), folder / "share/vantor-bar");
}

TEST(LinuxDirectoriesTest, ResourcesOfOneThatIsNotAreWhereItWasBuilt) {
    const test::TemporaryFolder folder;
    auto sources = sourcesOf({});
    EXPECT_EQ(LinuxDirectories(sources).resources(), "/build/Resources");
    sources.program = folder / "bin/vantorbar";
    EXPECT_EQ(LinuxDirectories(sources).resources(), "/build/Resources");
}

TEST(LinuxDirectoriesTest, SourcesOfThisProcessNameItsFileAndTheAccountsHome) {
    const auto sources = DirectorySources::ofThisProcess("/r");
    EXPECT_TRUE(fs::exists(sources.program)) << sources.program;
    EXPECT_EQ(sources.uninstalledResources, "/r");
    if (const auto home = sources.accountHome(); home.has_value()) {
        EXPECT_TRUE(home->is_absolute());
    }
}

TEST(LinuxDirectoriesTest, SystemRootIsTheRoot) {
    EXPECT_EQ(LinuxDirectories(sourcesOf({})).systemRoot(), "/");
}

}  // namespace
}  // namespace vantor
