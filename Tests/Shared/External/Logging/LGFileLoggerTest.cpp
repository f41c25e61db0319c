#include "Shared/External/Logging/LGFileLogger.h"

#include <fstream>
#include <stdexcept>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Platform/Workspace.h"
#include "Shared/External/Logging/LGLogFileManagerDefault.h"
#include "Tests/Support/LogWorld.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

constexpr double kDay = 86'400;
constexpr std::string_view kFirstName = "vantorbar 2015-03-09 11-20.log";

std::string contents(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Makes a line of the text alone; of "(none)" it makes nothing, of "(fail)" an exception.
class BareFormatter final : public LGLogFormatter {
public:
    std::optional<std::string> formatLogMessage(const LGLogMessage& message) override {
        if (message.logMsg == "(fail)")
            throw std::runtime_error("no line");
        if (message.logMsg == "(none)")
            return std::nullopt;
        return message.logMsg;
    }
};

class LGFileLoggerTest : public testing::Test {
protected:
    /// As after a start of the program on the same files.
    std::shared_ptr<LGFileLogger> makeLogger() {
        manager = std::make_shared<LGLogFileManagerDefault>(log, directory);
        manager->setMaximumNumberOfLogFiles(7);
        auto made = std::make_shared<LGFileLogger>(log, manager);
        made->setRollingFrequency(30 * kDay);
        made->setMaximumFileSize(5'242'880);
        log.addLogger(made);
        return made;
    }
    void restart() {
        log.removeAllLoggers();
        LGLogInfo("nobody hears");
        for (const std::string& name : manager->sortedLogFileNames())
            LGLogFileInfo(world.context.ports(), directory / name).setIsArchived(false);
        logger = makeLogger();
    }
    std::vector<std::string> names() { return manager->sortedLogFileNames(); }
    std::string textOf(std::string_view name) const { return contents(directory / name); }
    bool isArchived(std::string_view name) {
        return LGLogFileInfo(world.context.ports(), directory / name).isArchived();
    }
    void writeBare() { logger->setLogFormatter(std::make_shared<BareFormatter>()); }
    std::vector<std::string>& systemLog() { return world.journal.systemLogLines; }

    test::TemporaryFolder folder;
    const fs::path directory = folder / "cpu";
    test::World world;
    simulated::SimulatedFileSystem& files = world.machine.fileSystem;
    LGLog& log = LGLog::sharedLog();
    std::shared_ptr<LGLogFileManagerDefault> manager;
    std::shared_ptr<LGFileLogger> logger = makeLogger();
};

// --- Lines -------------------------------------------------------------------------------------

TEST_F(LGFileLoggerTest, AMessageIsALine) {
    LGLogInfo("one");
    world.machine.run(1.5);
    LGLogInfo("two");
    EXPECT_EQ(textOf(kFirstName), "2015/03/09 11:20:00:000  one\n2015/03/09 11:20:01:500  two\n");
}

TEST_F(LGFileLoggerTest, NothingIsMadeBeforeTheFirstMessage) {
    EXPECT_FALSE(fs::exists(directory));
}

TEST_F(LGFileLoggerTest, ALineThatEndsWithANewlineGetsNoSecondOne) {
    writeBare();
    LGLogInfo("one\n");
    LGLogInfo("two");
    LGLogInfo("");
    EXPECT_EQ(textOf(kFirstName), "one\ntwo\n\n");
}

TEST_F(LGFileLoggerTest, WithoutAFormatterTheTextItselfIsWritten) {
    logger->setLogFormatter(nullptr);
    LGLogInfo("na\xC3\xAFve");
    EXPECT_EQ(textOf(kFirstName), "na\xC3\xAFve\n");
}

TEST_F(LGFileLoggerTest, WhatTheFormatterLeavesOutIsNotWritten) {
    writeBare();
    LGLogInfo("(none)");
    EXPECT_FALSE(fs::exists(directory / kFirstName));
    LGLogInfo("one");
    EXPECT_EQ(textOf(kFirstName), "one\n");
}

TEST_F(LGFileLoggerTest, IsKnownByItsName) {
    EXPECT_EQ(logger->loggerName(), "vantor.log.fileLogger");
    EXPECT_EQ(logger->loggerQueue()->label(), "vantor.log.fileLogger");
}

// --- Settings ----------------------------------------------------------------------------------

TEST_F(LGFileLoggerTest, ItsSettingsAreReadBack) {
    EXPECT_EQ(logger->maximumFileSize(), 5'242'880U);
    EXPECT_EQ(logger->rollingFrequency(), 2'592'000);
    const auto standard = std::make_shared<LGFileLogger>(log);
    EXPECT_EQ(standard->maximumFileSize(), 1'048'576U);
    EXPECT_EQ(standard->rollingFrequency(), 86'400);
    EXPECT_EQ(standard->logFileManager().maximumNumberOfLogFiles(), 5U);
}

TEST_F(LGFileLoggerTest, OnItsOwnQueueItsSettingsCannotBeAskedFor) {
    logger->loggerQueue()->sync([this] {
        EXPECT_THROW(logger->maximumFileSize(), std::logic_error);
        EXPECT_THROW(logger->setMaximumFileSize(1), std::logic_error);
        EXPECT_THROW(logger->rollingFrequency(), std::logic_error);
        EXPECT_THROW(logger->setRollingFrequency(1), std::logic_error);
    });
    log.loggingQueue().sync([this] {
        EXPECT_THROW(logger->maximumFileSize(), std::logic_error);
        EXPECT_THROW(logger->setRollingFrequency(1), std::logic_error);
    });
}

// --- Rolling by size ---------------------------------------------------------------------------

TEST_F(LGFileLoggerTest, AFileRollsAtTheWriteThatReachesItsSize) {
    writeBare();
    LGLogInfo(std::string(5'242'880 - 2, 'x'));  // and its newline
    EXPECT_FALSE(isArchived(kFirstName));
    LGLogInfo("");
    EXPECT_EQ(fs::file_size(directory / kFirstName), 5'242'880U);
    EXPECT_TRUE(isArchived(kFirstName));
    LGLogInfo("next");
    EXPECT_EQ(textOf("vantorbar 2015-03-09 11-20 2.log"), "next\n");
}

TEST_F(LGFileLoggerTest, WithoutASizeNothingRolls) {
    writeBare();
    logger->setMaximumFileSize(0);
    LGLogInfo(std::string(6'000'000, 'x'));
    EXPECT_FALSE(isArchived(kFirstName));
}

TEST_F(LGFileLoggerTest, ASmallerSizeRollsAtOnce) {
    LGLogInfo("a line longer than ten bytes");
    logger->setMaximumFileSize(10);
    EXPECT_TRUE(isArchived(kFirstName));
}

TEST_F(LGFileLoggerTest, SevenArchivesStayBesideTheFileInUse) {
    logger->setMaximumFileSize(1);
    for (int number = 0; number < 20; ++number) {
        LGLogInfo("each fills a file");
        world.machine.run(60);
    }
    EXPECT_THAT(names(), SizeIs(8));
    EXPECT_EQ(names().front(), "vantorbar 2015-03-09 11-39.log");
    logger->setMaximumFileSize(0);
    LGLogInfo("one more");
    EXPECT_THAT(names(), SizeIs(8));
    EXPECT_FALSE(isArchived(names().front()));
}

// --- Rolling by age ----------------------------------------------------------------------------

TEST_F(LGFileLoggerTest, AFileRollsAfterThirtyDays) {
    LGLogInfo("one");
    world.machine.run(30 * kDay - 1);
    EXPECT_FALSE(isArchived(kFirstName));
    world.machine.run(1.1);
    EXPECT_TRUE(isArchived(kFirstName));
    LGLogInfo("two");
    EXPECT_THAT(names(), ElementsAre("vantorbar 2015-04-08 11-20.log", kFirstName));
}

TEST_F(LGFileLoggerTest, AClockThatWasSetBackRollsLater) {
    LGLogInfo("one");
    world.machine.clock.step(-kDay);
    world.machine.run(30 * kDay + 1);
    EXPECT_FALSE(isArchived(kFirstName));
    world.machine.run(kDay);
    EXPECT_TRUE(isArchived(kFirstName));
}

TEST_F(LGFileLoggerTest, AnotherFrequencyCountsFromTheFilesCreation) {
    LGLogInfo("one");
    world.machine.run(100);
    logger->setRollingFrequency(150);
    EXPECT_FALSE(isArchived(kFirstName));
    world.machine.run(50.1);
    EXPECT_TRUE(isArchived(kFirstName));
}

TEST_F(LGFileLoggerTest, AFrequencyThatHasPassedRollsAtOnce) {
    LGLogInfo("one");
    world.machine.run(100);
    logger->setRollingFrequency(100);
    EXPECT_TRUE(isArchived(kFirstName));
}

TEST_F(LGFileLoggerTest, WithoutAFrequencyNoAgeRolls) {
    LGLogInfo("one");
    logger->setRollingFrequency(0);
    world.machine.run(10'000 * kDay);
    EXPECT_FALSE(isArchived(kFirstName));
    EXPECT_EQ(world.machine.mainQueue.nextDue(), std::nullopt);
}

TEST_F(LGFileLoggerTest, FrequenciesThatDoublesOnlyNearlyHoldComeToAnEnd) {
    for (const double seconds : {0.1, 1e-7, 1.0 / 3, 1e300}) {
        LGLogInfo("one");
        logger->setRollingFrequency(seconds);
        world.machine.run(1);
    }
    SUCCEED();  // virtual time went on
}

TEST_F(LGFileLoggerTest, WithoutAnOpenFileNothingWaits) {
    LGLogInfo("one");
    logger->rollLogFile();
    EXPECT_EQ(world.machine.mainQueue.nextDue(), std::nullopt);
}

// --- At the start ------------------------------------------------------------------------------

TEST_F(LGFileLoggerTest, TheFileOfTheLastRunIsWrittenOn) {
    writeBare();
    LGLogInfo("one");
    restart();
    writeBare();
    world.machine.run(60);
    LGLogInfo("two");
    EXPECT_EQ(textOf(kFirstName), "one\ntwo\n");
}

TEST_F(LGFileLoggerTest, AtTheStartAFileOfThirtyDaysIsArchivedAndANewOneBegun) {
    LGLogInfo("one");
    restart();
    world.machine.run(30 * kDay);
    EXPECT_FALSE(isArchived(kFirstName));
    LGLogInfo("two");
    EXPECT_TRUE(isArchived(kFirstName));
    EXPECT_THAT(names(), ElementsAre("vantorbar 2015-04-08 11-20.log", kFirstName));
}

TEST_F(LGFileLoggerTest, AtTheStartAFileThatIsFullIsArchived) {
    LGLogInfo("one");
    restart();
    logger->setMaximumFileSize(29);  // just what one line takes
    LGLogInfo("two");
    EXPECT_TRUE(isArchived(kFirstName));
    EXPECT_THAT(names(), SizeIs(2));
}

TEST_F(LGFileLoggerTest, AtTheStartAnArchivedFileIsLeftAlone) {
    LGLogInfo("one");
    log.removeAllLoggers();
    logger = makeLogger();
    LGLogInfo("two");
    EXPECT_THAT(names(), SizeIs(2));
}

TEST_F(LGFileLoggerTest, RemovingTheLoggerRolls) {
    LGLogInfo("one");
    log.removeLogger(logger);
    EXPECT_TRUE(isArchived(kFirstName));
}

TEST_F(LGFileLoggerTest, EndingTheLoggerDoesNotRoll) {
    LGLogInfo("one");
    const Ports ports = world.context.ports();
    {
        LGLog own(ports);
        const auto passing = std::make_shared<LGFileLogger>(
            own, std::make_shared<LGLogFileManagerDefault>(own, folder / "own"));
        own.addLogger(passing);
        test::logText(own, "one");
    }
    EXPECT_FALSE(LGLogFileInfo(ports, folder / "own" / kFirstName).isArchived());
}

// --- Rolling by hand ---------------------------------------------------------------------------

TEST_F(LGFileLoggerTest, RollingTellsOnTheMainQueue) {
    LGLogInfo("one");
    bool rolled = false;
    logger->rollLogFileWithCompletionBlock([&] { rolled = true; });
    EXPECT_TRUE(isArchived(kFirstName));
    EXPECT_FALSE(rolled);
    world.machine.run(0);
    EXPECT_TRUE(rolled);
}

TEST_F(LGFileLoggerTest, OnItsOwnQueueItRollsDirectly) {
    LGLogInfo("one");
    logger->loggerQueue()->sync([this] {
        logger->rollLogFile();
        EXPECT_TRUE(isArchived(kFirstName));
    });
}

TEST_F(LGFileLoggerTest, WithNothingOpenNothingRolls) {
    logger->rollLogFile();
    LGLogInfo("one");
    EXPECT_THAT(names(), ElementsAre(kFirstName));
}

/// Writes down what it is told.
class TellingManager final : public LGLogFileManager {
public:
    TellingManager(LGLog& log, const fs::path& directory) : own_(log, directory) {}
    fs::path logsDirectory() override { return own_.logsDirectory(); }
    std::vector<fs::path> unsortedLogFilePaths() override { return own_.unsortedLogFilePaths(); }
    std::vector<std::string> unsortedLogFileNames() override { return own_.unsortedLogFileNames(); }
    std::vector<LGLogFileInfo> unsortedLogFileInfos() override {
        return own_.unsortedLogFileInfos();
    }
    std::vector<fs::path> sortedLogFilePaths() override { return own_.sortedLogFilePaths(); }
    std::vector<std::string> sortedLogFileNames() override { return own_.sortedLogFileNames(); }
    std::vector<LGLogFileInfo> sortedLogFileInfos() override { return own_.sortedLogFileInfos(); }
    fs::path createNewLogFile() override { return own_.createNewLogFile(); }
    std::uint64_t maximumNumberOfLogFiles() const override { return 0; }
    void setMaximumNumberOfLogFiles(std::uint64_t) override {}
    void didArchiveLogFile(const fs::path& path) override {
        told.push_back("archived " + path.filename().string());
    }
    void didRollAndArchiveLogFile(const fs::path& path) override {
        told.push_back("rolled " + path.filename().string());
    }
    std::vector<std::string> told;

private:
    LGLogFileManagerDefault own_;
};

TEST_F(LGFileLoggerTest, ItsManagerIsToldOfRolledAndArchivedFiles) {
    LGLogInfo("one");  // by the other logger, which leaves a file behind
    world.machine.clock.step(31 * kDay);
    const auto telling = std::make_shared<TellingManager>(log, directory);
    const auto told = std::make_shared<LGFileLogger>(log, telling);
    log.addLogger(told);
    LGLogInfo("two");
    told->rollLogFile();
    EXPECT_THAT(telling->told, ElementsAre(fmt::format("archived {}", kFirstName),
                                           "rolled vantorbar 2015-04-09 11-20.log"));
}

TEST_F(LGFileLoggerTest, AFileThatGrewOldWhileTheMachineSleptIsRolledWhenItWakes) {
    LGLogInfo("one");
    world.machine.clock.step(31 * kDay);  // a sleep passes on no timer
    world.machine.run(60);
    EXPECT_FALSE(isArchived(kFirstName));
    world.context.ports().workspace.notificationCenter().post(kWorkspaceDidWake);
    EXPECT_TRUE(isArchived(kFirstName));
}

TEST_F(LGFileLoggerTest, AYoungFileIsGoneOnWithAfterASleep) {
    LGLogInfo("one");
    world.machine.clock.step(29 * kDay);
    world.context.ports().workspace.notificationCenter().post(kWorkspaceDidWake);
    EXPECT_FALSE(isArchived(kFirstName));
    world.machine.run(kDay + 1);
    EXPECT_TRUE(isArchived(kFirstName));
}

// --- What goes wrong ---------------------------------------------------------------------------

TEST_F(LGFileLoggerTest, ADeletedFileIsLetGo) {
    LGLogInfo("one");
    files.deleteFile(directory / kFirstName);
    world.machine.run(60);
    LGLogInfo("two");
    EXPECT_THAT(names(), ElementsAre("vantorbar 2015-03-09 11-21.log"));
    EXPECT_THAT(systemLog(), ElementsAre(StartsWith("LGLogFileInfo: setxattr(")));
}

TEST_F(LGFileLoggerTest, ARenamedFileIsLetGo) {
    LGLogInfo("one");
    files.moveFile(directory / kFirstName, directory / "kept");
    world.machine.run(60);
    LGLogInfo("two");
    EXPECT_THAT(names(), ElementsAre("vantorbar 2015-03-09 11-21.log"));
    EXPECT_EQ(textOf("kept"), "2015/03/09 11:20:00:000  one\n");
}

TEST_F(LGFileLoggerTest, AWatchThatComesLateDoesNotRollTheNextFile) {
    LGLogInfo("one");
    files.deleteFile(directory / kFirstName);  // told by a call that hasn't run yet
    logger->rollLogFile();
    LGLogInfo("two");
    world.machine.run(0);
    EXPECT_FALSE(isArchived(names().front()));
    EXPECT_THAT(names(), SizeIs(1));
}

TEST_F(LGFileLoggerTest, WithoutItsDirectoryANewOneIsMade) {
    LGLogInfo("one");
    files.deleteFile(directory / kFirstName);
    fs::remove_all(directory);
    world.machine.run(0);
    LGLogInfo("two");
    EXPECT_EQ(textOf(kFirstName), "2015/03/09 11:20:00:000  two\n");
}

TEST_F(LGFileLoggerTest, AFullDiskIsToldTenTimes) {
    files.setFull(true);
    for (int number = 0; number < 20; ++number)
        LGLogInfo("lost");
    ASSERT_THAT(systemLog(), SizeIs(11));
    EXPECT_EQ(systemLog()[0], fmt::format("LGFileLogger.logMessage: {}: No space left on device",
                                          (directory / kFirstName).string()));
    EXPECT_EQ(systemLog()[9], systemLog()[0]);
    EXPECT_EQ(systemLog()[10],
              "LGFileLogger.logMessage: Too many exceptions -- will not log any more of them.");
    files.setFull(false);
    LGLogInfo("kept");
    EXPECT_EQ(textOf(kFirstName), "2015/03/09 11:20:00:000  kept\n");
}

TEST_F(LGFileLoggerTest, WhatAFormatterThrowsIsTold) {
    writeBare();
    LGLogInfo("(fail)");
    LGLogInfo("one");
    EXPECT_THAT(systemLog(), ElementsAre("LGFileLogger.logMessage: no line"));
    EXPECT_EQ(textOf(kFirstName), "one\n");
}

TEST_F(LGFileLoggerTest, WithoutADirectoryMessagesAreLostUntilThereIsOne) {
    std::ofstream(directory) << "a file in its place";
    LGLogInfo("lost");
    LGLogInfo("lost");
    EXPECT_THAT(systemLog(),
                ElementsAre(StartsWith("LGFileLogManagerDefault: Error creating logsDirectory: "),
                            StartsWith("LGFileLogger.logMessage: "),
                            StartsWith("LGFileLogger.logMessage: ")));
    fs::remove(directory);
    LGLogInfo("kept");
    EXPECT_EQ(textOf(kFirstName), "2015/03/09 11:20:00:000  kept\n");
}

TEST_F(LGFileLoggerTest, WhereFilesBearNoMarksTheNewestIsTheLiveOne) {
    files.setKeepsAttributes(false);
    logger->setMaximumFileSize(1);
    for (int number = 0; number < 12; ++number) {
        LGLogInfo("each fills a file");
        world.machine.run(60);
    }
    EXPECT_THAT(names(), SizeIs(8));
    EXPECT_THAT(systemLog(), ElementsAre(fmt::format("LGLogFileInfo: setxattr({}, "
                                                     "vantor.log.archived): error = Operation "
                                                     "not supported",
                                                     (directory / kFirstName).string())));
}

TEST_F(LGFileLoggerTest, ALoggerThatHasGoneIsNotCalledByItsTimer) {
    {
        LGLog own(world.context.ports());
        own.addLogger(std::make_shared<LGFileLogger>(
            own, std::make_shared<LGLogFileManagerDefault>(own, folder / "own")));
        test::logText(own, "one");
    }
    EXPECT_EQ(world.machine.mainQueue.nextDue(), std::nullopt);
    files.deleteFile(folder / "own" / kFirstName);
    world.machine.run(kDay);
}

}  // namespace
}  // namespace vantor
