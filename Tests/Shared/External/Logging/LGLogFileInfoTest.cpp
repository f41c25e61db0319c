#include "Shared/External/Logging/LGLogFileInfo.h"

#include <fstream>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using simulated::SimulatedMachine;
using testing::ElementsAre;

class LGLogFileInfoTest : public testing::Test {
protected:
    LGLogFileInfo infoOf(const std::filesystem::path& name) {
        return {world.context.ports(), folder / name};
    }
    LGLogFileInfo made(const std::filesystem::path& name) {
        world.machine.fileSystem.createFile(folder / name);
        return infoOf(name);
    }
    std::vector<std::string>& systemLog() { return world.journal.systemLogLines; }

    test::TemporaryFolder folder;
    test::World world;
};

TEST_F(LGLogFileInfoTest, TellsOfItsFile) {
    const LGLogFileInfo info = made("file");
    std::ofstream(folder / "file") << "12345";
    world.machine.run(7);
    EXPECT_EQ(info.fileName(), "file");
    EXPECT_EQ(info.fileSize(), 5U);
    EXPECT_EQ(info.creationDate(), SimulatedMachine::kStart);
    EXPECT_EQ(info.modificationDate(), SimulatedMachine::kStart);
    EXPECT_EQ(info.age(), 7);
}

TEST_F(LGLogFileInfoTest, KeepsWhatItReadUntilItIsReset) {
    LGLogFileInfo info = made("file");
    EXPECT_EQ(info.fileSize(), 0U);
    std::ofstream(folder / "file") << "12345";
    EXPECT_EQ(info.fileSize(), 0U);
    info.reset();
    EXPECT_EQ(info.fileSize(), 5U);
}

TEST_F(LGLogFileInfoTest, WithoutADateOfItsOwnAFileIsAsOldAsItsNameTells) {
    std::ofstream(folder / "vantorbar 2015-03-09 11-00.log") << "";
    EXPECT_EQ(infoOf("vantorbar 2015-03-09 11-00.log").age(), 20 * 60);
}

TEST_F(LGLogFileInfoTest, OfAFileThatIsNotThereAllIsNothing) {
    const LGLogFileInfo info = infoOf("none");
    EXPECT_EQ(info.fileSize(), 0U);
    EXPECT_EQ(info.creationDate(), 0);
    EXPECT_FALSE(info.isArchived());
}

TEST_F(LGLogFileInfoTest, AnArchivedFileBearsAMarkAndItsName) {
    LGLogFileInfo info = made("file");
    EXPECT_FALSE(info.isArchived());
    EXPECT_EQ(info.setIsArchived(true), LGLogFileInfo::Marking::done);
    EXPECT_TRUE(info.isArchived());
    EXPECT_TRUE(world.machine.fileSystem.hasAttribute(folder / "file", "vantor.log.archived"));
    info.setIsArchived(false);
    EXPECT_FALSE(info.isArchived());
}

TEST_F(LGLogFileInfoTest, TakingOffAMarkThatIsNotThereIsNoTrouble) {
    EXPECT_EQ(made("file").setIsArchived(false), LGLogFileInfo::Marking::done);
    EXPECT_TRUE(systemLog().empty());
}

TEST_F(LGLogFileInfoTest, AMarkThatCannotBeSetOrTakenOffIsTold) {
    LGLogFileInfo info = infoOf("none");
    EXPECT_EQ(info.setIsArchived(true), LGLogFileInfo::Marking::failed);
    EXPECT_EQ(info.setIsArchived(false), LGLogFileInfo::Marking::failed);
    const std::string path = folder / "none";
    EXPECT_THAT(
        systemLog(),
        ElementsAre(fmt::format("LGLogFileInfo: setxattr({}, vantor.log.archived): error = No "
                                "such file or directory",
                                path),
                    fmt::format("LGLogFileInfo: removexattr({}, vantor.log.archived): error = No "
                                "such file or directory",
                                path)));
}

TEST_F(LGLogFileInfoTest, ARenamedFileStaysInItsFolder) {
    LGLogFileInfo info = made("file");
    std::ofstream(folder / "file") << "12345";
    info.renameFile("other");
    EXPECT_EQ(info.filePath(), folder / "other");
    EXPECT_EQ(info.fileSize(), 5U);
    EXPECT_FALSE(std::filesystem::exists(folder / "file"));
}

TEST_F(LGLogFileInfoTest, ThePathIsKeptThoughTheFileCannotBeRenamed) {
    LGLogFileInfo info = infoOf("none");
    info.renameFile("other");
    EXPECT_EQ(info.filePath(), folder / "other");
    EXPECT_THAT(systemLog(), ElementsAre("LGLogFileInfo: Error renaming file (none): No such "
                                         "file or directory"));
}

TEST_F(LGLogFileInfoTest, TheNewerOneComesFirst) {
    const LGLogFileInfo older = made("older");
    world.machine.run(1);
    const LGLogFileInfo newer = made("newer");
    EXPECT_TRUE(newer.reverseCompareByCreationDate(older) < 0);
    EXPECT_TRUE(older.reverseCompareByCreationDate(newer) > 0);
    EXPECT_TRUE(newer.reverseCompareByModificationDate(older) < 0);
    EXPECT_TRUE(older.reverseCompareByModificationDate(older) == 0);
}

TEST_F(LGLogFileInfoTest, TwoOfTheSamePathAreEqual) {
    EXPECT_EQ(infoOf("file"), made("file"));
    EXPECT_NE(infoOf("file"), infoOf("other"));
}

}  // namespace
}  // namespace vantor
