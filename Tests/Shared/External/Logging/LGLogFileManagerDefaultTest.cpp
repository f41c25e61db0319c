#include "Shared/External/Logging/LGLogFileManagerDefault.h"

#include <fstream>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Shared/External/Logging/LGLog.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class LGLogFileManagerDefaultTest : public testing::Test {
protected:
    /// So many files, a minute apart; the last one is the newest.
    std::vector<std::string> makeFiles(int count) {
        std::vector<std::string> names;
        for (int number = 0; number < count; ++number) {
            world.machine.run(60);
            names.push_back(manager->createNewLogFile().filename());
        }
        return names;
    }
    void archive(const std::string& name) {
        LGLogFileInfo(world.context.ports(), directory / name).setIsArchived(true);
    }
    std::vector<std::string>& systemLog() { return world.journal.systemLogLines; }

    test::TemporaryFolder folder;
    const fs::path directory = folder / "Logs/cpu";
    test::World world;
    LGLog& log = LGLog::sharedLog();
    std::shared_ptr<LGLogFileManagerDefault> manager =
        std::make_shared<LGLogFileManagerDefault>(log, directory);
};

TEST_F(LGLogFileManagerDefaultTest, TheDirectoryIsMadeWithItsParents) {
    EXPECT_EQ(manager->logsDirectory(), directory);
    EXPECT_TRUE(fs::is_directory(directory));
}

TEST_F(LGLogFileManagerDefaultTest, ADirectoryThatCannotBeMadeIsToldOnceUntilItCan) {
    std::ofstream(folder / "Logs") << "a file";
    manager->logsDirectory();
    manager->logsDirectory();
    ASSERT_THAT(systemLog(), SizeIs(1));
    EXPECT_THAT(systemLog()[0],
                testing::StartsWith("LGFileLogManagerDefault: Error creating logsDirectory: "));
    fs::remove(folder / "Logs");
    manager->logsDirectory();
    fs::remove_all(folder / "Logs");
    std::ofstream(folder / "Logs") << "a file";
    EXPECT_THAT(manager->sortedLogFilePaths(), IsEmpty());
    EXPECT_THAT(systemLog(), SizeIs(2));
}

TEST_F(LGLogFileManagerDefaultTest, WithoutADirectoryItTakesTheProcesssOwn) {
    const Ports& ports = world.context.ports();
    EXPECT_EQ(LGLogFileManagerDefault::defaultLogsDirectory(ports),
              fs::temp_directory_path() / "Logs/vantorbar");
    world.machine.directories.setLogs(folder / "Logs");
    EXPECT_EQ(LGLogFileManagerDefault::defaultLogsDirectory(ports), folder / "Logs/vantorbar");
    EXPECT_EQ(LGLogFileManagerDefault(log).logsDirectory(), folder / "Logs/vantorbar");
}

TEST_F(LGLogFileManagerDefaultTest, FilesBearTheProcesssNameAndTheTime) {
    EXPECT_EQ(manager->applicationName(), "vantorbar");
    EXPECT_EQ(manager->newLogFileName(), "vantorbar 2015-03-09 11-20.log");
    EXPECT_EQ(manager->createNewLogFile(), directory / "vantorbar 2015-03-09 11-20.log");
    EXPECT_EQ(fs::file_size(directory / "vantorbar 2015-03-09 11-20.log"), 0U);
}

TEST_F(LGLogFileManagerDefaultTest, FilesOfOneMinuteAreCountedFromTwo) {
    manager->createNewLogFile();
    EXPECT_EQ(manager->createNewLogFile().filename(), "vantorbar 2015-03-09 11-20 2.log");
    EXPECT_EQ(manager->createNewLogFile().filename(), "vantorbar 2015-03-09 11-20 3.log");
}

TEST_F(LGLogFileManagerDefaultTest, AFolderOfThatNameIsGoneAround) {
    fs::create_directories(directory / "vantorbar 2015-03-09 11-20.log");
    EXPECT_EQ(manager->createNewLogFile().filename(), "vantorbar 2015-03-09 11-20 2.log");
    EXPECT_THAT(manager->sortedLogFileNames(), ElementsAre("vantorbar 2015-03-09 11-20 2.log"));
}

TEST_F(LGLogFileManagerDefaultTest, AFileThatCannotBeMadeHasItsPathAllTheSame) {
    std::ofstream(folder / "Logs") << "a file";
    EXPECT_EQ(manager->createNewLogFile(), directory / "vantorbar 2015-03-09 11-20.log");
}

TEST_F(LGLogFileManagerDefaultTest, OnlyLogFilesAreListed) {
    const auto names = makeFiles(1);
    std::ofstream(directory / "notes.txt") << "x";
    std::ofstream(directory / "vantorbar without a date.log") << "x";
    std::ofstream(directory / "other 2015-03-09 11-20.log") << "x";
    EXPECT_EQ(manager->unsortedLogFileNames(), names);
    EXPECT_THAT(manager->unsortedLogFilePaths(), ElementsAre(directory / names[0]));
    EXPECT_THAT(manager->unsortedLogFileInfos(), SizeIs(1));
}

TEST_F(LGLogFileManagerDefaultTest, TheNewestComesFirst) {
    auto names = makeFiles(5);
    std::ranges::reverse(names);
    EXPECT_EQ(manager->sortedLogFileNames(), names);
    EXPECT_EQ(manager->sortedLogFilePaths().front(), directory / names.front());
    EXPECT_EQ(manager->sortedLogFileInfos().back().fileName(), names.back());
}

TEST_F(LGLogFileManagerDefaultTest, OfTheSameInstantTheLaterAttemptIsTheNewer) {
    manager->setMaximumNumberOfLogFiles(0);
    for (int attempt = 1; attempt <= 11; ++attempt)
        manager->createNewLogFile();
    const auto names = manager->sortedLogFileNames();
    EXPECT_EQ(names[0], "vantorbar 2015-03-09 11-20 11.log");
    EXPECT_EQ(names[9], "vantorbar 2015-03-09 11-20 2.log");
    EXPECT_EQ(names[10], "vantorbar 2015-03-09 11-20.log");
}

TEST_F(LGLogFileManagerDefaultTest, WithNineArchivesAndALiveFileTheTwoOldestGo) {
    manager->setMaximumNumberOfLogFiles(0);
    auto names = makeFiles(9);
    for (const std::string& name : names)
        archive(name);
    manager->setMaximumNumberOfLogFiles(7);
    names.push_back(makeFiles(1)[0]);
    names.erase(names.begin(), names.begin() + 2);
    std::ranges::reverse(names);
    EXPECT_EQ(manager->sortedLogFileNames(), names);
}

TEST_F(LGLogFileManagerDefaultTest, AnArchivedNewestFileCounts) {
    manager->setMaximumNumberOfLogFiles(2);
    for (const std::string& name : makeFiles(3))
        archive(name);
    manager->deleteOldLogFiles();
    EXPECT_THAT(manager->sortedLogFileNames(), SizeIs(2));
}

TEST_F(LGLogFileManagerDefaultTest, WithoutALimitNothingIsDeleted) {
    manager->setMaximumNumberOfLogFiles(0);
    makeFiles(20);
    manager->deleteOldLogFiles();
    EXPECT_THAT(manager->sortedLogFileNames(), SizeIs(20));
}

TEST_F(LGLogFileManagerDefaultTest, NamesWithoutAReadableDateAreNotDeleted) {
    makeFiles(1);
    std::ofstream(directory / "vantorbar 2015-13-99 11-20.log") << "x";
    manager->setMaximumNumberOfLogFiles(1);
    makeFiles(4);
    EXPECT_TRUE(fs::exists(directory / "vantorbar 2015-13-99 11-20.log"));
    EXPECT_THAT(manager->sortedLogFileNames(), SizeIs(2));
}

TEST_F(LGLogFileManagerDefaultTest, ALowerLimitDeletesWithTheNextMessage) {
    EXPECT_EQ(manager->maximumNumberOfLogFiles(), 5U);
    makeFiles(6);
    manager->setMaximumNumberOfLogFiles(2);
    LGLogInfo("text");
    EXPECT_THAT(manager->sortedLogFileNames(), SizeIs(3));
}

TEST_F(LGLogFileManagerDefaultTest, TheSameLimitDeletesNothing) {
    manager->setMaximumNumberOfLogFiles(0);
    makeFiles(6);
    LGLogInfo("text");
    manager->setMaximumNumberOfLogFiles(0);
    EXPECT_THAT(manager->sortedLogFileNames(), SizeIs(6));
}

}  // namespace
}  // namespace vantor
