#include "Programs/vantorbar/HistoryCommand.h"

#include <cstdio>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include "Tests/Support/HistoryFile.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

using testing::HasSubstr;

struct Outcome {
    int status = -1;
    std::string output;  // standard error and standard output
};

/// The program itself, with files of its own.
class HistoryCommandTest : public testing::Test {
protected:
    Outcome history(const std::string& arguments, const std::string& sink = "2>&1") const {
        const std::string command = "env XDG_DATA_HOME=" + folder.path().string() +
                                    " " VANTOR_PROGRAM " history " + arguments + " " + sink;
        std::FILE* const pipe = ::popen(command.c_str(), "r");
        if (pipe == nullptr)
            return {};
        Outcome outcome;
        for (int letter = std::fgetc(pipe); letter != EOF; letter = std::fgetc(pipe))
            outcome.output += static_cast<char>(letter);
        outcome.status = WEXITSTATUS(::pclose(pipe));
        return outcome;
    }
    std::filesystem::path databases() const { return folder / "Vantor Bar/databases"; }
    void makeFile() const {
        std::filesystem::create_directories(databases());
        test::HistoryFile(databases() / "load.db")
            .run("create table hour_loadavghistory (sample, time, empty, one, five, fifteen);"
                 "insert into hour_loadavghistory values (2, 12, 0, 1.5, 1, 0.5)");
    }

    test::TemporaryFolder folder;
};

TEST_F(HistoryCommandTest, UsersHistoryIsShownUnlessAFolderIsNamed) {
    makeFile();
    EXPECT_THAT(history("list").output, HasSubstr("load.db          hour_loadavghistory"));
    EXPECT_EQ(history("list --folder " + folder.path().string()).status, 1);
    EXPECT_EQ(history("list --folder '" + databases().string() + "'").status, 0);
}

TEST_F(HistoryCommandTest, SamplesAreExportedAndFollowed) {
    makeFile();
    EXPECT_EQ(history("export load --scale hour").output,
              "time,sample,empty,one,five,fifteen\n12,2,0,1.5,1,0.5\n");
    EXPECT_THAT(history("export load --format json --since 12").output, HasSubstr("\"five\":1.0"));
    EXPECT_EQ(history("follow load --count 1").output,
              R"({"fifteen":"0.50","five":"1.00","id":"2","one":"1.50","t":"12"})"
              "\n");
    EXPECT_EQ(history("check").output, "load.db: sound\n");
}

TEST_F(HistoryCommandTest, WrongUsageEndsWithTwo) {
    for (const char* const arguments :
         {"", "export", "export disks", "export cpu --scale month", "export cpu --format xml",
          "export cpu --since yesterday", "follow cpu --since -7", "follow cpu --since nan",
          "follow cpu --count 0", "follow cpu --scenario a --folder b"})
        EXPECT_EQ(history(arguments).status, 2) << arguments;
}

TEST_F(HistoryCommandTest, MissingFilesEndWithOne) {
    for (const char* const arguments : {"list", "check", "export cpu", "follow cpu"})
        EXPECT_EQ(history(arguments).status, 1) << arguments;
    EXPECT_FALSE(std::filesystem::exists(databases()));
}

TEST_F(HistoryCommandTest, OutputThatGoesNowhereEndsWithOne) {
    makeFile();
    EXPECT_EQ(history("list", "> /dev/full").status, 1);
}

}  // namespace
}  // namespace vantor
