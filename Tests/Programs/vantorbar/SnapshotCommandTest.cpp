// Runs the real program: the pictures that it paints of this machine.

#include "Programs/vantorbar/SnapshotCommand.h"

#include <cstdio>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include "Foundation/Image.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class SnapshotCommandTest : public testing::Test {
protected:
    /// What it writes, and its status behind a blank line.
    std::string snapshot(const std::string& arguments) const {
        const std::string command = "env -i PATH=/usr/bin:/bin HOME=" + folder.path().string() +
                                    " " VANTOR_PROGRAM " snapshot " + arguments + " " +
                                    picture().string() + " 2>&1";
        std::FILE* const pipe = ::popen(command.c_str(), "r");
        std::string output;
        for (int letter = std::fgetc(pipe); letter != EOF; letter = std::fgetc(pipe))
            output += static_cast<char>(letter);
        return output + std::to_string(WEXITSTATUS(::pclose(pipe)));
    }
    std::filesystem::path picture() const { return folder / "picture.png"; }

    test::TemporaryFolder folder;
};

TEST_F(SnapshotCommandTest, ADropdownIsAsWideAsItsRows) {
    EXPECT_EQ(snapshot("--dropdown --wait 0.1"), "0");
    EXPECT_EQ(Image::fromFile(picture())->widthPixels(), 225);
}

TEST_F(SnapshotCommandTest, ASubmenuIsPaintedAtItsScale) {
    EXPECT_EQ(snapshot("--dropdown --submenu history --scale 2 --dark --wait 0"), "0");
    EXPECT_EQ(Image::fromFile(picture())->widthPixels(), 648);
}

TEST_F(SnapshotCommandTest, ItLeavesNoHistoryOfItsOwn) {
    EXPECT_EQ(snapshot("--wait 0.1"), "0");
    EXPECT_FALSE(std::filesystem::exists(folder / ".local/share/Vantor Bar/databases/cpu.db"));
}

TEST_F(SnapshotCommandTest, AnUnknownSubmenuIsOneLineAndStatus2) {
    EXPECT_EQ(snapshot("--dropdown --submenu nowhere"),
              "vantorbar: nowhere: no such submenu; expected cores, history, load, uptime, "
              "memory:KEY or processor:KEY\n2");
    EXPECT_THAT(snapshot("--dropdown --wait 0 --submenu memory:none"),
                AllOf(StartsWith("vantorbar: memory:none: "), HasSubstr("uptime"),
                      testing::EndsWith("\n2")));
    EXPECT_FALSE(std::filesystem::exists(picture()));
}

}  // namespace
}  // namespace vantor
