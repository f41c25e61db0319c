#include "Programs/vantorbar/PrefsCommand.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

struct Outcome {
    int status = -1;
    std::string output;  // standard error and standard output
};

/// The program itself, with settings of its own and no bus.
class PrefsCommandTest : public testing::Test {
protected:
    Outcome prefs(const std::string& arguments) const {
        const std::string command =
            "env -u DBUS_SESSION_BUS_ADDRESS XDG_RUNTIME_DIR=" + folder.path().string() +
            " HOME=" + folder.path().string() + " XDG_CONFIG_HOME=" + folder.path().string() +
            " " VANTOR_PROGRAM " prefs " + arguments + " 2>&1";
        std::FILE* const pipe = ::popen(command.c_str(), "r");
        if (pipe == nullptr)
            return {};
        Outcome outcome;
        for (int letter = std::fgetc(pipe); letter != EOF; letter = std::fgetc(pipe))
            outcome.output += static_cast<char>(letter);
        outcome.status = WEXITSTATUS(::pclose(pipe));
        return outcome;
    }
    fs::path file() const { return folder / "Vantor Bar" / "com.kolbrin.vantorbar5.extras.plist"; }

    test::TemporaryFolder folder;
};

TEST_F(PrefsCommandTest, ValueThatIsSetIsGotByTheNextProcess) {
    EXPECT_EQ(prefs("set CPU_MenubarTextSize 11").status, 0);
    EXPECT_TRUE(fs::is_regular_file(file()));
    EXPECT_EQ(prefs("get CPU_MenubarTextSize").output, "11\n");
    EXPECT_THAT(prefs("list").output, testing::ContainsRegex("CPU_MenubarTextSize +11 +stored"));
    EXPECT_EQ(prefs("reset CPU_MenubarTextSize").status, 0);
    EXPECT_EQ(prefs("get CPU_MenubarTextSize").output, "13\n");
}

TEST_F(PrefsCommandTest, NegativeNumberIsAValueAndNoOption) {
    EXPECT_EQ(prefs("set MenubarTheme -1").status, 0);
    EXPECT_EQ(prefs("get MenubarTheme").output, "-1\n");
}

TEST_F(PrefsCommandTest, WrongValueEndsWithTwo) {
    const Outcome outcome = prefs("set TimerFrequency often");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.output, "vantorbar: TimerFrequency takes a whole number\n");
}

TEST_F(PrefsCommandTest, MissingArgumentEndsWithTwo) {
    EXPECT_EQ(prefs("set TimerFrequency").status, 2);
    EXPECT_EQ(prefs("").status, 2);
}

TEST_F(PrefsCommandTest, UnreadableFileGivesDefaultsAndAWarning) {
    fs::create_directories(file());
    const Outcome outcome = prefs("get TimerFrequency");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.output, HasSubstr("can't be read"));
    EXPECT_THAT(outcome.output, testing::EndsWith("1\n"));
    const Outcome written = prefs("set TimerFrequency 2");
    EXPECT_EQ(written.status, 1);
    EXPECT_THAT(written.output, HasSubstr("TimerFrequency can't be stored"));
}

TEST_F(PrefsCommandTest, SettingsOfThePreviousVersionAreTakenOverOnce) {
    EXPECT_EQ(prefs("migrate").output, "There are no settings of the previous version\n");
    const fs::path former = folder / "Library/Preferences/com.kolbrin.vantorbar.extras.plist";
    fs::create_directories(former.parent_path());
    std::ofstream(former) << "<plist version=\"1.0\"><dict><key>CPUFontSize</key>"
                             "<integer>11</integer></dict></plist>";
    const Outcome outcome = prefs("migrate");
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_THAT(outcome.output, HasSubstr("1 setting carried over from \""));
    EXPECT_EQ(prefs("get CPU_MenubarTextSize").output, "11\n");
    EXPECT_EQ(prefs("set CPU_MenubarTextSize 12").status, 0);
    EXPECT_THAT(prefs("migrate").output, HasSubstr("carried over before"));
    EXPECT_EQ(prefs("get CPU_MenubarTextSize").output, "12\n");
}

TEST_F(PrefsCommandTest, MigrationThatCannotStoreEndsWithOne) {
    const fs::path former = folder / "Library/Preferences/com.kolbrin.vantorbar.extras.plist";
    fs::create_directories(former.parent_path());
    std::ofstream(former) << "<plist version=\"1.0\"><dict><key>CPUFontSize</key>"
                             "<integer>11</integer></dict></plist>";
    fs::create_directories(file());
    const Outcome outcome = prefs("migrate");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, HasSubstr("not carried over: CPUFontSize"));
}

TEST_F(PrefsCommandTest, OutputThatGoesNowhereEndsWithOne) {
    EXPECT_EQ(prefs("list > /dev/full").status, 1);
}

}  // namespace
}  // namespace vantor
