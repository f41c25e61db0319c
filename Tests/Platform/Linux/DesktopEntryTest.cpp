#include "Platform/Linux/DesktopEntry.h"

#include <filesystem>
#include <fstream>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using Words = std::vector<std::string>;

void writeFile(const fs::path& file, const std::string& text, bool executable = false) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << text;
    if (executable)
        fs::permissions(file, fs::perms::owner_all);
}

TEST(DesktopEntryTest, ApplicationsAreRead) {
    const auto entry = parseDesktopEntry("# a comment\n"
                                         "[Desktop Entry]\n"
                                         "Type = Application\r\n"
                                         "Exec[de]=falsch\n"
                                         "Exec=monitor --all %U\n"
                                         "TryExec= /usr/bin/monitor \n"
                                         "Terminal=true\n"
                                         "Broken line\n"
                                         "[Desktop Action other]\n"
                                         "Exec=other\n");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->exec, "monitor --all %U");
    EXPECT_EQ(entry->tryExec, "/usr/bin/monitor");
    EXPECT_TRUE(entry->needsTerminal);
    EXPECT_FALSE(entry->isHidden);
}

TEST(DesktopEntryTest, WhatIsNoApplicationIsNothing) {
    for (const char* text : {"", "Exec=a\nType=Application\n", "[Desktop Entry]\nExec=a\n",
                             "[Desktop Entry]\nType=Link\nExec=a\n", "[Other]\nType=Application\n",
                             "\0\xff[[[===\n=\n[\n"})
        EXPECT_FALSE(parseDesktopEntry(text)) << text;
}

TEST(DesktopEntryTest, HiddenEntryIsReadWhateverElseItSays) {
    const auto entry = parseDesktopEntry("[Desktop Entry]\nHidden=true\n");
    ASSERT_TRUE(entry);
    EXPECT_TRUE(entry->isHidden);
}

TEST(DesktopEntryTest, EscapesOfTextValuesAreResolved) {
    const auto entry =
        parseDesktopEntry("[Desktop Entry]\nType=Application\nExec=a\\sb\\\\c\\td\\q\\\n");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->exec, "a b\\c\td\\q\\");
}

TEST(DesktopEntryTest, ExecIsSplitByItsQuotes) {
    struct Case {
        const char* exec;
        std::optional<Words> words;
    };
    const std::vector<Case> cases{
        {"monitor", Words{"monitor"}},
        {"  monitor   -a\tb ", Words{"monitor", "-a", "b"}},
        {"monitor %F", Words{"monitor"}},
        {"%k monitor %u --name=%c %%", Words{"monitor", "--name=", "%"}},
        {R"("/opt/my app/run" "two words" "")", Words{"/opt/my app/run", "two words", ""}},
        {R"(sh "-c" "echo \"\$HOME\" \`x\` \\")", Words{"sh", "-c", R"(echo "$HOME" `x` \)"}},
        {R"(a"b c"d)", Words{"ab cd"}},
        {R"(run "100%")", Words{"run", "100%"}},
        {R"(run "never closed)", std::nullopt},
        {R"(run "\)", std::nullopt},
        {"run %", std::nullopt},
        {"", std::nullopt},
        {"%U", std::nullopt},
    };
    for (const auto& [exec, words] : cases)
        EXPECT_EQ(argumentsOf(exec), words) << exec;
}

TEST(DesktopEntryTest, FoldersFollowTheEnvironment) {
    struct Case {
        std::optional<std::string> dirs;
        std::optional<fs::path> dataHome;
        std::vector<fs::path> folders;
    };
    const std::vector<Case> cases{
        {std::nullopt,
         "/h",
         {"/h/applications", "/usr/local/share/applications", "/usr/share/applications"}},
        {"", {}, {"/usr/local/share/applications", "/usr/share/applications"}},
        {"/a::relative:/b/", "/h", {"/h/applications", "/a/applications", "/b/applications"}},
    };
    for (const auto& [dirs, dataHome, folders] : cases)
        EXPECT_EQ(applicationFolders(dataHome, [&](const std::string&) { return dirs; }), folders);
}

TEST(DesktopEntryTest, FirstFolderThatHasTheFileWins) {
    const test::TemporaryFolder folder;
    const std::vector<fs::path> folders{folder / "none", folder / "mine", folder / "all"};
    writeFile(folder / "mine/a.desktop", "[Desktop Entry]\nHidden=true\n");
    writeFile(folder / "all/a.desktop", "[Desktop Entry]\nType=Application\nExec=a\n");
    writeFile(folder / "all/b.desktop", "[Desktop Entry]\nType=Application\nExec=b\n");
    fs::create_directories(folder / "mine/b.desktop");  // not a file

    const auto removed = findDesktopEntry("a.desktop", folders);
    ASSERT_TRUE(removed);
    EXPECT_TRUE(removed->isHidden);
    const auto installed = findDesktopEntry("b.desktop", folders);
    ASSERT_TRUE(installed);
    EXPECT_EQ(installed->exec, "b");
    EXPECT_FALSE(findDesktopEntry("c.desktop", folders));
}

TEST(DesktopEntryTest, ProgramsAreExecutableFilesOnTheSearchPath) {
    const test::TemporaryFolder folder;
    writeFile(folder / "one/tool", "", false);
    writeFile(folder / "two/tool", "", true);
    fs::create_directories(folder / "two/folder");
    const std::string path =
        "relative::" + (folder / "one").string() + ":" + (folder / "two").string();
    EXPECT_EQ(findProgram("tool", path), folder / "two/tool");
    EXPECT_EQ(findProgram((folder / "two/tool").string(), ""), folder / "two/tool");
    EXPECT_FALSE(findProgram((folder / "one/tool").string(), path));
    EXPECT_FALSE(findProgram("folder", path));
    EXPECT_FALSE(findProgram("missing", path));
    EXPECT_FALSE(findProgram("", path));
}

TEST(DesktopEntryTest, CommandNeedsAllThatTheEntryNames) {
    const test::TemporaryFolder folder;
    const std::string path = folder.path();
    const std::string tool = folder / "tool";
    writeFile(tool, "", true);
    const DesktopEntry plain{.exec = "tool -a"};
    EXPECT_EQ(commandOf(plain, path), (Words{tool, "-a"}));
    EXPECT_EQ(commandOf({.exec = "tool -a", .tryExec = tool}, path), (Words{tool, "-a"}));
    EXPECT_FALSE(commandOf({.exec = "tool", .tryExec = "missing"}, path));
    EXPECT_FALSE(commandOf({.exec = "tool", .isHidden = true}, path));
    EXPECT_FALSE(commandOf({.exec = "missing"}, path));
    EXPECT_FALSE(commandOf({.exec = "\"tool"}, path));
}

TEST(DesktopEntryTest, CommandForATerminalRunsInOne) {
    const test::TemporaryFolder folder;
    const std::string path = folder.path();
    writeFile(folder / "tool", "", true);
    const DesktopEntry entry{.exec = "tool -a", .needsTerminal = true};
    EXPECT_FALSE(commandOf(entry, path));
    writeFile(folder / "x-terminal-emulator", "", true);
    EXPECT_EQ(commandOf(entry, path),
              (Words{folder / "x-terminal-emulator", "-e", folder / "tool", "-a"}));
}

}  // namespace
}  // namespace vantor
