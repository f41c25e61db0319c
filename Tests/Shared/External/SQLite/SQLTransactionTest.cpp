#include "Shared/External/SQLite/SQLTransaction.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include "Shared/External/SQLite/SQLDatabase.h"
#include "Tests/Support/SQLWorld.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

class SQLTransactionTest : public testing::Test {
protected:
    SQLTransactionTest() {
        database.open();
        database.executeUpdate("create table t (a)");
        other.setMaxBusyRetryTimeInterval(0);
        other.open();
    }

    int rows() { return database.intForQuery("select count(*) from t"); }
    void insert() { database.executeUpdate("insert into t values (1)"); }

    test::SQLWorld world;
    test::TemporaryFolder folder;
    SQLDatabase database{world.environment, folder / "a.db"};
    SQLDatabase other{world.environment, folder / "a.db"};
};

TEST_F(SQLTransactionTest, APlainOneTakesTheLockAtOnce) {
    EXPECT_TRUE(database.beginTransaction());
    EXPECT_TRUE(database.inTransaction());
    EXPECT_EQ(other.executeQuery("select * from t"), nullptr);
    EXPECT_EQ(other.lastErrorCode(), SQLITE_BUSY);
    EXPECT_TRUE(database.commit());
    EXPECT_FALSE(database.inTransaction());
}

TEST_F(SQLTransactionTest, ADeferredOneTakesTheLockWithItsFirstWrite) {
    EXPECT_TRUE(database.beginDeferredTransaction());
    EXPECT_TRUE(database.inTransaction());
    EXPECT_TRUE(other.executeUpdate("insert into t values (1)"));
}

TEST_F(SQLTransactionTest, RollingBackUndoesIt) {
    database.beginTransaction();
    insert();
    EXPECT_TRUE(database.rollback());
    EXPECT_FALSE(database.inTransaction());
    EXPECT_EQ(rows(), 0);
}

TEST_F(SQLTransactionTest, OneInsideAnotherFailsAndChangesNothing) {
    database.beginTransaction();
    EXPECT_FALSE(database.beginTransaction());
    EXPECT_TRUE(database.inTransaction());
    EXPECT_TRUE(database.commit());
    EXPECT_FALSE(database.commit());
    EXPECT_FALSE(database.rollback());
    EXPECT_FALSE(database.inTransaction());
}

TEST_F(SQLTransactionTest, AClosureIsCommittedOrUndone) {
    const auto write = [this](bool undoes) {
        return [this, undoes](SQLDatabase*, bool& rollback) {
            EXPECT_FALSE(rollback);
            insert();
            rollback = undoes;
        };
    };
    runTransaction(&database, SQLTransaction::exclusive, write(false));
    runTransaction(&database, SQLTransaction::deferred, write(true));
    EXPECT_EQ(rows(), 1);
    EXPECT_EQ(database.inSavePoint([this](bool&) { insert(); }), std::nullopt);
    EXPECT_EQ(database.inSavePoint([this](bool& rollback) {
        insert();
        rollback = true;
    }),
              std::nullopt);
    EXPECT_EQ(rows(), 2);
    EXPECT_EQ(world.environment.databaseSavePoints, 2);
}

TEST_F(SQLTransactionTest, SavepointsAreNamedInQuotes) {
    EXPECT_TRUE(database.startSavePointWithName("it's"));
    insert();
    EXPECT_TRUE(database.rollbackToSavePointWithName("it's"));
    EXPECT_TRUE(database.releaseSavePointWithName("it's"));
    EXPECT_EQ(rows(), 0);
}

TEST_F(SQLTransactionTest, ASavepointThatIsntThereSaysSo) {
    SQLDatabase::Error error;
    EXPECT_FALSE(database.releaseSavePointWithName("none", &error));
    EXPECT_EQ(error, (SQLError{"SQLDatabase", SQLITE_ERROR, "no such savepoint: none"}));
}

TEST_F(SQLTransactionTest, ASavepointThatCantStartRunsNothing) {
    database.close();
    EXPECT_NE(database.inSavePoint([](bool&) { ADD_FAILURE(); }), std::nullopt);
}

TEST_F(SQLTransactionTest, WithoutAConnectionTheClosureOfATransactionIsGivenNone) {
    int calls = 0;
    runTransaction(nullptr, SQLTransaction::exclusive, [&](SQLDatabase* none, bool&) {
        EXPECT_EQ(none, nullptr);
        ++calls;
    });
    EXPECT_EQ(calls, 1);
}

TEST(SQLTransactionDeathTest, ASavepointNeedsAName) {
    test::ShownLog log;
    SQLEnvironment environment(log);
    SQLDatabase database(environment);
    EXPECT_DEATH(database.startSavePointWithName(std::nullopt),
                 "Invalid parameter not satisfying: name");
}

}  // namespace
}  // namespace vantor
