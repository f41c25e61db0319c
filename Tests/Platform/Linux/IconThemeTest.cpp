#include "Platform/Linux/IconTheme.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

void writeFile(const fs::path& file, const std::string& text = {}) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << text;
}

TEST(IconThemeTest, AFoldersSizesAreThoseOfItsType) {
    const IconTheme theme = parseIconTheme("[Icon Theme]\nName=Made\nInherits=first, second\n"
                                           "Directories=a,b,c,d\n"
                                           "[a]\nSize=16\nType=Fixed\n"
                                           "# a comment\n"
                                           "[b]\r\nSize = 48\r\nScale=2\r\nType=Fixed\r\n"
                                           "[c]\nSize=64\nMinSize=8\nMaxSize=512\nType=Scalable\n"
                                           "[d]\nSize=24\n");
    EXPECT_THAT(theme.folders, ElementsAre(IconFolder{"a", 16, 16}, IconFolder{"b", 96, 96},
                                           IconFolder{"c", 8, 512}, IconFolder{"d", 22, 26}));
    EXPECT_THAT(theme.inherits, ElementsAre("first", "second"));
}

TEST(IconThemeTest, WhatMakesNoSenseIsPassedOver) {
    const IconTheme theme = parseIconTheme("Size=1\n[Icon Theme]\nInherits=../up,,.hidden\n"
                                           "[none]\nType=Fixed\n"
                                           "[huge]\nSize=99999\n"
                                           "[odd]\nSize=16\nScale=-1\n"
                                           "[word]\nSize=many\n"
                                           "[../out]\nSize=16\n"
                                           "[/out]\nSize=16\n"
                                           "[open\nSize=16\n");
    EXPECT_THAT(theme.folders, IsEmpty());
    EXPECT_THAT(theme.inherits, IsEmpty());
}

class FindIconTest : public testing::Test {
protected:
    /// A theme with folders for icons of just these sizes.
    void addTheme(const std::string& name, const std::vector<int>& sizes,
                  const std::string& inherits = "") {
        std::string text = "[Icon Theme]\nInherits=" + inherits + "\n";
        for (const int size : sizes)
            text +=
                "[" + std::to_string(size) + "]\nType=Fixed\nSize=" + std::to_string(size) + "\n";
        writeFile(folder / "icons" / name / "index.theme", text);
    }
    fs::path addIcon(const std::string& theme, int size, const std::string& file = "app.png") {
        const fs::path path = folder / "icons" / theme / std::to_string(size) / file;
        writeFile(path);
        return path;
    }
    IconPlaces places(std::string theme = "") {
        return {.folders = {folder / "icons"},
                .loose = {folder / "pixmaps"},
                .theme = std::move(theme)};
    }

    test::TemporaryFolder folder;
};

TEST_F(FindIconTest, TheNearestSizeFitsBest) {
    addTheme("hicolor", {16, 24, 48});
    addIcon("hicolor", 16);
    const fs::path middle = addIcon("hicolor", 24), large = addIcon("hicolor", 48);
    EXPECT_THAT(findIcon("app", 20, places()), Optional(middle));  // 16 is as near, but smaller
    EXPECT_THAT(findIcon("app", 40, places()), Optional(large));
    EXPECT_THAT(findIcon("app", 400, places()), Optional(large));
}

TEST_F(FindIconTest, TheUsersThemeComesFirstAndTheOneOfAllLast) {
    addTheme("hicolor", {24});
    addTheme("mine", {16}, "other,hicolor");
    addTheme("other", {16}, "mine");  // in a circle
    const fs::path ofAll = addIcon("hicolor", 24);
    EXPECT_THAT(findIcon("app", 20, places("mine")), Optional(ofAll));
    const fs::path inherited = addIcon("other", 16);
    EXPECT_THAT(findIcon("app", 20, places("mine")), Optional(inherited));
    const fs::path own = addIcon("mine", 16);
    EXPECT_THAT(findIcon("app", 20, places("mine")), Optional(own));
    EXPECT_THAT(findIcon("app", 20, places("missing")), Optional(ofAll));
}

TEST_F(FindIconTest, OnlyPicturesOfPixelsCount) {
    addTheme("hicolor", {16});
    addIcon("hicolor", 16, "app.svg");
    EXPECT_EQ(findIcon("app", 20, places()), std::nullopt);
}

TEST_F(FindIconTest, AnIconOfNoThemeIsTheLastResort) {
    writeFile(folder / "pixmaps/app.png");
    EXPECT_THAT(findIcon("app", 20, places()), Optional(folder / "pixmaps/app.png"));
}

TEST_F(FindIconTest, AnIconMayBeAFileButNoWayOut) {
    writeFile(folder / "pixmaps/app.png");
    writeFile(folder / "app.svg");
    const fs::path file = folder / "pixmaps/app.png";
    EXPECT_THAT(findIcon(file.string(), 20, places()), Optional(file));
    EXPECT_EQ(findIcon((folder / "app.svg").string(), 20, places()), std::nullopt);
    EXPECT_EQ(findIcon((folder / "missing.png").string(), 20, places()), std::nullopt);
    EXPECT_EQ(findIcon("../pixmaps/app", 20, places()), std::nullopt);
    EXPECT_EQ(findIcon("", 20, places()), std::nullopt);
}

TEST_F(FindIconTest, PlacesAndThemeAreTheDesktops) {
    std::map<std::string, std::string> variables{{"HOME", (folder / "home").string()},
                                                 {"XDG_DATA_DIRS", "/one:relative:/two"}};
    const Environment environment = [&](const std::string& name) -> std::optional<std::string> {
        const auto found = variables.find(name);
        return found == variables.end() ? std::nullopt : std::optional(found->second);
    };
    writeFile(folder / "home/.config/kdeglobals", "[General]\nTheme=no\n[Icons]\nTheme=breeze\n");
    const IconPlaces kde = iconPlaces(folder / "data", environment);
    EXPECT_THAT(kde.folders, ElementsAre(folder / "home/.icons", folder / "data/icons",
                                         "/one/icons", "/two/icons"));
    EXPECT_EQ(kde.theme, "breeze");
    EXPECT_EQ(kde.loose.back(), "/two/pixmaps");

    writeFile(folder / "home/.config/gtk-3.0/settings.ini",
              "[Settings]\ngtk-icon-theme-name=Adwaita\n");
    EXPECT_EQ(iconPlaces({}, environment).theme, "Adwaita");
    variables = {};
    EXPECT_EQ(iconPlaces({}, environment).theme, "");
}

}  // namespace
}  // namespace vantor
