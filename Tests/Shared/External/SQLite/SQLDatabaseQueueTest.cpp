#include "Shared/External/SQLite/SQLDatabaseQueue.h"

#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <sqlite3.h>

#include "Platform/Linux/LinuxWorkQueues.h"
#include "Platform/Simulated/SimulatedWorkQueues.h"
#include "Tests/Support/SQLWorld.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

class SQLDatabaseQueueTest : public testing::Test {
protected:
    SQLDatabaseQueueTest() {
        queue->inDatabase(
            [](SQLDatabase* database) { database->executeUpdate("create table t (a)"); });
    }

    int rows() {
        int count = -1;
        queue->inDatabase([&](SQLDatabase* database) {
            count = database->intForQuery("select count(*) from t");
        });
        return count;
    }

    test::SQLWorld world;
    test::TemporaryFolder folder;
    LinuxWorkQueues workQueues;
    std::unique_ptr<SQLDatabaseQueue> queue =
        SQLDatabaseQueue::databaseQueueWithPath(world.environment, workQueues, folder / "a.db");
};

constexpr auto kInsert = "insert into t values (1)";

TEST_F(SQLDatabaseQueueTest, RemembersHowItWasMade) {
    EXPECT_EQ(queue->path(), folder / "a.db");
    EXPECT_EQ(queue->openFlags(), SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
}

TEST_F(SQLDatabaseQueueTest, AFileThatCantBeOpenedMakesNone) {
    EXPECT_EQ(SQLDatabaseQueue::databaseQueueWithPath(world.environment, workQueues,
                                                      folder / "missing/a.db"),
              nullptr);
    EXPECT_EQ(SQLDatabaseQueue::databaseQueueWithPath(world.environment, workQueues,
                                                      folder / "new.db", SQLITE_OPEN_READONLY),
              nullptr);
}

TEST_F(SQLDatabaseQueueTest, WithoutAPathItIsInMemory) {
    EXPECT_NE(SQLDatabaseQueue::databaseQueueWithPath(world.environment, workQueues, std::nullopt),
              nullptr);
}

TEST_F(SQLDatabaseQueueTest, AClosedOneOpensAgain) {
    queue->close();
    queue->close();
    EXPECT_EQ(rows(), 0);
}

TEST_F(SQLDatabaseQueueTest, OneThatCantOpenAgainGivesNone) {
    queue->close();
    std::filesystem::remove_all(folder.path());
    int calls = 0;
    queue->inDatabase([&](SQLDatabase* database) {
        EXPECT_EQ(database, nullptr);
        ++calls;
    });
    EXPECT_EQ(queue->inSavePoint([&](SQLDatabase*, bool&) { ADD_FAILURE(); }), std::nullopt);
    EXPECT_EQ(calls, 1);
}

TEST_F(SQLDatabaseQueueTest, ATransactionIsCommittedOrUndone) {
    const auto keep = [](SQLDatabase* database, bool&) { database->executeUpdate(kInsert); };
    const auto undo = [](SQLDatabase* database, bool& rollback) {
        EXPECT_TRUE(database->inTransaction());
        rollback = database->executeUpdate(kInsert);
    };
    queue->inTransaction(keep);
    queue->inDeferredTransaction(keep);
    queue->inTransaction(undo);
    queue->beginTransaction(SQLTransaction::deferred, undo);
    EXPECT_EQ(rows(), 2);
}

TEST_F(SQLDatabaseQueueTest, ASavepointIsReleasedOrUndone) {
    EXPECT_EQ(
        queue->inSavePoint([](SQLDatabase* database, bool&) { database->executeUpdate(kInsert); }),
        std::nullopt);
    EXPECT_EQ(queue->inSavePoint([](SQLDatabase* database, bool& rollback) {
        rollback = database->executeUpdate(kInsert);
    }),
              std::nullopt);
    EXPECT_EQ(rows(), 1);
    EXPECT_EQ(world.environment.queueSavePoints, 2);
    EXPECT_EQ(world.environment.databaseSavePoints, 0);
}

TEST_F(SQLDatabaseQueueTest, AnotherClassOfConnectionsCanBeMade) {
    int made = 0;
    const auto counted = [&](SQLEnvironment& environment,
                             std::optional<std::filesystem::path> path) {
        ++made;
        return SQLDatabase::databaseWithPath(environment, std::move(path));
    };
    const auto special = SQLDatabaseQueue::databaseQueueWithPath(
        world.environment, workQueues, std::nullopt, SQLDatabaseQueue::kReadWriteCreate, counted);
    special->close();
    special->inDatabase([](SQLDatabase*) {});
    EXPECT_EQ(made, 2);
}

TEST_F(SQLDatabaseQueueTest, ManyThreadsMayUseIt) {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([this] {
            for (int round = 0; round < 25; ++round)
                queue->inTransaction(
                    [](SQLDatabase* database, bool&) { database->executeUpdate(kInsert); });
        });
    threads.clear();
    EXPECT_EQ(rows(), 100);
}

TEST(SQLDatabaseQueueDeathTest, ItsOwnQueueMayNotWaitForIt) {
    test::ShownLog log;
    SQLEnvironment environment(log);
    simulated::SimulatedWorkQueues workQueues;
    const auto queue =
        SQLDatabaseQueue::databaseQueueWithPath(environment, workQueues, std::nullopt);
    EXPECT_DEATH(queue->inDatabase([&](SQLDatabase*) { queue->inDatabase([](SQLDatabase*) {}); }),
                 "currentSyncQueue != self && \"inDatabase: was called reentrantly on the same "
                 "queue, which would lead to a deadlock\"");
}

}  // namespace
}  // namespace vantor
