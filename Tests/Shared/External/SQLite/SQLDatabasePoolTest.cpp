#include "Shared/External/SQLite/SQLDatabasePool.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Platform/Linux/LinuxWorkQueues.h"
#include "Tests/Support/SQLWorld.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

class SQLDatabasePoolTest : public testing::Test {
protected:
    SQLDatabasePoolTest() {
        pool.inDatabase(
            [](SQLDatabase* database) { database->executeUpdate("create table t (a)"); });
    }

    int rows() {
        int count = -1;
        pool.inDatabase([&](SQLDatabase* database) {
            count = database->intForQuery("select count(*) from t");
        });
        return count;
    }

    test::SQLWorld world;
    test::TemporaryFolder folder;
    LinuxWorkQueues workQueues;
    SQLDatabasePool pool{world.environment, workQueues, folder / "a.db"};
};

constexpr auto kInsert = "insert into t values (1)";

TEST_F(SQLDatabasePoolTest, AConnectionPutBackIsHandedOutAgain) {
    const auto first = pool.db();
    EXPECT_EQ(pool.countOfCheckedOutDatabases(), 1u);
    EXPECT_EQ(pool.countOfCheckedInDatabases(), 0u);
    pool.pushDatabaseBackInPool(first);
    EXPECT_EQ(pool.countOfCheckedOutDatabases(), 0u);
    EXPECT_EQ(pool.countOfCheckedInDatabases(), 1u);
    EXPECT_EQ(pool.db(), first);
    EXPECT_NE(pool.db(), first);
    EXPECT_EQ(pool.countOfOpenDatabases(), 2u);
}

TEST_F(SQLDatabasePoolTest, PuttingOneBackTwiceThrows) {
    const auto database = pool.db();
    pool.pushDatabaseBackInPool(database);
    try {
        pool.pushDatabaseBackInPool(database);
        ADD_FAILURE();
    } catch (const SQLDatabaseAlreadyInPool& thrown) {
        EXPECT_EQ(thrown.kName, "Database already in pool");
        EXPECT_STREQ(thrown.what(), "The SQLDatabase being put back into the pool is already "
                                    "present in the pool");
    }
    EXPECT_EQ(pool.countOfOpenDatabases(), 1u);
}

TEST_F(SQLDatabasePoolTest, PuttingNoneBackIsIgnored) {
    pool.pushDatabaseBackInPool(nullptr);
    EXPECT_EQ(pool.countOfOpenDatabases(), 1u);
}

TEST_F(SQLDatabasePoolTest, GivesNoneBeyondItsMaximum) {
    pool.setMaximumNumberOfDatabasesToCreate(1);
    const auto only = pool.db();
    EXPECT_NE(only, nullptr);
    EXPECT_EQ(pool.db(), nullptr);
    int calls = 0;
    pool.inDatabase([&](SQLDatabase* database) {
        EXPECT_EQ(database, nullptr);
        ++calls;
    });
    EXPECT_EQ(calls, 1);
    pool.pushDatabaseBackInPool(only);
    EXPECT_EQ(pool.db(), only);
}

TEST_F(SQLDatabasePoolTest, AFileThatCantBeOpenedGivesNone) {
    const auto nowhere = SQLDatabasePool::databasePoolWithPath(world.environment, workQueues,
                                                               folder / "missing/a.db");
    EXPECT_EQ(nowhere->db(), nullptr);
    EXPECT_EQ(nowhere->countOfOpenDatabases(), 0u);
}

TEST_F(SQLDatabasePoolTest, ReleasingForgetsEveryConnection) {
    const auto database = pool.db();
    pool.releaseAllDatabases();
    EXPECT_EQ(pool.countOfOpenDatabases(), 0u);
}

TEST_F(SQLDatabasePoolTest, TheDelegateHearsOfNewOnesAndMayRefuse) {
    struct Delegate final : SQLDatabasePoolDelegate {
        bool shouldAddDatabaseToPool(SQLDatabasePool&, SQLDatabase& database) override {
            EXPECT_NE(database.sqliteHandle(), nullptr);
            return wants;
        }
        void didAddDatabase(SQLDatabasePool&, SQLDatabase&) override { ++added; }
        bool wants = true;
        int added = 0;
    } delegate;
    pool.setDelegate(&delegate);
    const auto old = pool.db(), made = pool.db();
    EXPECT_EQ(delegate.added, 1);
    delegate.wants = false;
    EXPECT_EQ(pool.db(), nullptr);
    EXPECT_EQ(pool.countOfOpenDatabases(), 2u);
    EXPECT_EQ(delegate.added, 1);
}

TEST_F(SQLDatabasePoolTest, TransactionsAndSavepointsAreKeptOrUndone) {
    const auto keep = [](SQLDatabase* database, bool&) { database->executeUpdate(kInsert); };
    const auto undo = [](SQLDatabase* database, bool& rollback) {
        rollback = database->executeUpdate(kInsert);
    };
    pool.inTransaction(keep);
    pool.inDeferredTransaction(undo);
    pool.beginTransaction(SQLTransaction::exclusive, undo);
    EXPECT_EQ(pool.inSavePoint(keep), std::nullopt);
    EXPECT_EQ(pool.inSavePoint(undo), std::nullopt);
    EXPECT_EQ(rows(), 2);
    EXPECT_EQ(world.environment.poolSavePoints, 2);
    EXPECT_EQ(pool.countOfCheckedOutDatabases(), 0u);
}

}  // namespace
}  // namespace vantor
