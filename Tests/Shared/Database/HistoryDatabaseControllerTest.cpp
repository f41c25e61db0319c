#include "Shared/Database/HistoryDatabaseController.h"

#include <fstream>

#include <gtest/gtest.h>

#include "Platform/WorkQueues.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

class HistoryDatabaseControllerTest : public testing::Test {
protected:
    static void createTable(SQLDatabase& database) {
        database.executeUpdate("CREATE TABLE kept (number double)");
    }
    bool hasTable(const fs::path& path) {
        return controller.databaseWithPath(path)->database().tableExists("kept");
    }

    test::World world;
    test::TemporaryFolder folder;
    HistoryDatabaseController& controller =
        HistoryDatabaseController::sharedHistoryDatabaseController();
    const fs::path file = folder / "cpu.db";
};

TEST_F(HistoryDatabaseControllerTest, ThereIsOneForAWorld) {
    EXPECT_EQ(&controller, &HistoryDatabaseController::sharedHistoryDatabaseController());
    test::World other;
    EXPECT_NE(&controller, &HistoryDatabaseController::sharedHistoryDatabaseController());
}

TEST_F(HistoryDatabaseControllerTest, WithoutAPathThereIsNoItem) {
    EXPECT_EQ(controller.databaseWithPath(std::nullopt), nullptr);
    EXPECT_EQ(databaseItemWithPath(std::nullopt), nullptr);
    EXPECT_EQ(databaseWithPath(std::nullopt), nullptr);
}

TEST_F(HistoryDatabaseControllerTest, AnItemIsMadeOnce) {
    const auto item = controller.databaseWithPath(file);
    EXPECT_TRUE(item->database().databaseExists());
    EXPECT_EQ(controller.databaseWithPath(file), item);
    EXPECT_EQ(databaseItemWithPath(file), item);
    EXPECT_EQ(databaseWithPath(file), &item->database());
}

TEST_F(HistoryDatabaseControllerTest, TheSameNameInAnotherFolderIsTheSameItem) {
    const auto item = controller.databaseWithPath(file);
    EXPECT_EQ(controller.databaseWithPath("/elsewhere/cpu.db"), item);
    EXPECT_EQ(controller.databaseWithPath("/elsewhere/cpu.db/"), item);
    EXPECT_NE(controller.databaseWithPath(folder / "load.db"), item);
}

TEST_F(HistoryDatabaseControllerTest, ClosingForgetsTheItem) {
    const auto item = controller.databaseWithPath(file);
    controller.closeDatabase(file);
    EXPECT_FALSE(item->database().databaseExists());
    EXPECT_NE(controller.databaseWithPath(file), item);
    EXPECT_TRUE(fs::exists(file));
}

TEST_F(HistoryDatabaseControllerTest, ClosingAnUnknownPathDoesNothing) {
    const auto item = controller.databaseWithPath(file);
    controller.closeDatabase(folder / "unknown.db");
    EXPECT_TRUE(item->database().databaseExists());
}

TEST_F(HistoryDatabaseControllerTest, AClosedItemWritesAndReadsNothing) {
    const auto item = controller.databaseWithPath(file);
    item->queryDatabase(createTable);
    controller.closeDatabase(file);
    HistoryRecord record("INSERT INTO %@ VALUES (?)", "kept");
    record.add(1.0);
    item->addItem(std::move(record));
    item->commit();
    item->queryDatabase(
        [](SQLDatabase& database) { EXPECT_EQ(database.executeQuery("SELECT 1"), nullptr); });
    EXPECT_EQ(databaseWithPath(file)->intForQuery("SELECT count(*) FROM kept"), 0);
}

TEST_F(HistoryDatabaseControllerTest, DeletingLeavesRoomForANewFile) {
    const auto item = controller.databaseWithPath(file);
    item->queryDatabase(createTable);
    controller.deleteDatabase(file);
    EXPECT_FALSE(fs::exists(file));
    EXPECT_FALSE(hasTable(file));
    EXPECT_NE(controller.databaseWithPath(file), item);
    EXPECT_NE(&controller.databaseWithPath(file)->queue(), &item->queue());
}

TEST_F(HistoryDatabaseControllerTest, DeletingWhatIsntThereDoesNothing) {
    controller.deleteDatabase(folder / "unknown.db");
    EXPECT_FALSE(fs::exists(folder / "unknown.db"));
}

TEST_F(HistoryDatabaseControllerTest, ABackupTakesThePlaceOfTheFile) {
    controller.databaseWithPath(folder / "backup")->queryDatabase(createTable);
    controller.closeDatabase(folder / "backup");
    ASSERT_FALSE(hasTable(file));
    controller.restoreBackup(folder / "backup", file);
    EXPECT_TRUE(hasTable(file));
    EXPECT_TRUE(fs::exists(folder / "backup"));
}

TEST_F(HistoryDatabaseControllerTest, AnInvalidBackupLeavesNoFile) {
    std::ofstream(folder / "backup") << std::string(5000, 'x');
    controller.databaseWithPath(file)->queryDatabase(createTable);
    controller.restoreBackup(folder / "backup", file);
    EXPECT_FALSE(fs::exists(file));
    EXPECT_TRUE(fs::exists(folder / "backup"));
}

TEST_F(HistoryDatabaseControllerTest, WithoutABackupTheFileStays) {
    const auto item = controller.databaseWithPath(file);
    controller.restoreBackup(folder / "backup", file);
    EXPECT_EQ(controller.databaseWithPath(file), item);
    EXPECT_TRUE(fs::exists(file));
}

}  // namespace
}  // namespace vantor
