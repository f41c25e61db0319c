#include "Shared/External/SQLite/SQLDatabase.h"

#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "Tests/Support/SQLWorld.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

using testing::Each;
using testing::IsEmpty;
using testing::SizeIs;

class SQLDatabaseTest : public testing::Test {
protected:
    test::SQLWorld world;
    test::TemporaryFolder folder;
    SQLDatabase database{world.environment, folder / "a.db"};
};

TEST_F(SQLDatabaseTest, BeginsWithItsDefaults) {
    EXPECT_TRUE(database.logsErrors());
    EXPECT_FALSE(database.crashOnErrors());
    EXPECT_FALSE(database.traceExecution());
    EXPECT_FALSE(database.checkedOut());
    EXPECT_FALSE(database.shouldCacheStatements());
    EXPECT_FALSE(database.inTransaction());
    EXPECT_FALSE(database.hasDateFormatter());
    EXPECT_EQ(database.maxBusyRetryTimeInterval(), 2.0);
    EXPECT_EQ(database.busyRetryTimeout(), -1);
    EXPECT_EQ(database.sqliteHandle(), nullptr);
}

TEST_F(SQLDatabaseTest, TellsItsVersions) {
    EXPECT_EQ(SQLDatabase::SQLLayerUserVersion(), "2.3");
    EXPECT_EQ(SQLDatabase::SQLLayerVersion(), 0x230);
    EXPECT_EQ(SQLDatabase::sqliteLibVersion(), sqlite3_libversion());
    EXPECT_TRUE(SQLDatabase::isSQLiteThreadSafe());
}

TEST_F(SQLDatabaseTest, WithoutAPathItIsInMemory) {
    SQLDatabase memory(world.environment);
    EXPECT_EQ(memory.sqlitePath(), ":memory:");
    EXPECT_TRUE(memory.open());
    EXPECT_TRUE(memory.executeUpdate("create table t (a)"));
    EXPECT_EQ(memory.stringForQuery("select file from pragma_database_list"), "");
}

TEST_F(SQLDatabaseTest, WithAnEmptyPathItIsTemporary) {
    SQLDatabase temporary(world.environment, "");
    EXPECT_EQ(temporary.sqlitePath(), "");
    EXPECT_TRUE(temporary.open());
    EXPECT_TRUE(temporary.executeUpdate("create table t (a)"));
}

TEST_F(SQLDatabaseTest, OpeningTwiceChangesNothing) {
    ASSERT_TRUE(database.open());
    sqlite3* const handle = database.sqliteHandle();
    EXPECT_TRUE(database.open());
    EXPECT_TRUE(database.openWithFlags(SQLITE_OPEN_READONLY));
    EXPECT_EQ(database.sqliteHandle(), handle);
}

TEST_F(SQLDatabaseTest, AFileThatCantBeOpenedLeavesItClosed) {
    SQLDatabase nowhere(world.environment, folder / "missing/a.db");
    EXPECT_FALSE(nowhere.open());
    EXPECT_FALSE(nowhere.databaseExists());
    EXPECT_FALSE(database.openWithFlags(SQLITE_OPEN_READWRITE));  // there is no file yet
    EXPECT_TRUE(database.openWithFlags(SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE));
}

TEST_F(SQLDatabaseTest, OpeningSetsNoPragma) {
    ASSERT_TRUE(database.open());
    EXPECT_EQ(database.stringForQuery("pragma journal_mode"), "delete");
    EXPECT_EQ(database.intForQuery("pragma synchronous"), 2);
    EXPECT_EQ(database.intForQuery("pragma page_size"), 4096);
}

TEST_F(SQLDatabaseTest, AConnectionIsGoodWhileItCanBeAsked) {
    EXPECT_FALSE(database.goodConnection());
    ASSERT_TRUE(database.open());
    EXPECT_TRUE(database.goodConnection());
    EXPECT_FALSE(database.hasOpenResultSets());
    std::ofstream(folder / "text.db") << std::string(5000, 'x');
    SQLDatabase text(world.environment, folder / "text.db");
    ASSERT_TRUE(text.open());
    EXPECT_FALSE(text.goodConnection());
}

TEST_F(SQLDatabaseTest, AClosedConnectionRunsNothing) {
    EXPECT_FALSE(database.executeUpdate("create table t (a)"));
    EXPECT_EQ(database.executeQuery("select 1"), nullptr);
    EXPECT_FALSE(database.executeStatements("select 1"));
    EXPECT_FALSE(database.beginTransaction());
    EXPECT_EQ(database.lastInsertRowId(), 0);
    EXPECT_EQ(database.changes(), 0);
    EXPECT_FALSE(database.validateSQL("select 1"));
    database.makeFunctionNamed("f", 0, [](auto&&...) {});
    EXPECT_TRUE(database.close());
}

TEST_F(SQLDatabaseTest, ClosingClosesTheCursors) {
    ASSERT_TRUE(database.open());
    const auto rows = database.executeQuery("select 1 as one");
    ASSERT_TRUE(rows->next());
    EXPECT_TRUE(database.close());
    EXPECT_FALSE(database.hasOpenResultSets());
    EXPECT_EQ(rows->resultDictionary(), std::nullopt);
    EXPECT_EQ(rows->statement(), nullptr);
    rows->close();
    EXPECT_FALSE(rows->next());
}

TEST_F(SQLDatabaseTest, ACursorMayOutliveItsConnection) {
    auto shortLived = SQLDatabase::databaseWithPath(world.environment, std::nullopt);
    ASSERT_TRUE(shortLived->open());
    const auto rows = shortLived->executeQuery("select 1");
    shortLived.reset();
    EXPECT_FALSE(rows->next());
    EXPECT_EQ(rows->intForColumnIndex(0), 0);
}

TEST_F(SQLDatabaseTest, ClosingEndsStatementsThatLeaked) {
    ASSERT_TRUE(database.open());
    sqlite3_stmt* leaked = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(database.sqliteHandle(), "select 1", -1, &leaked, nullptr),
              SQLITE_OK);
    EXPECT_TRUE(database.close());  // the leak checker would find the connection
    EXPECT_EQ(database.sqliteHandle(), nullptr);
}

TEST_F(SQLDatabaseTest, ACursorThatRanToItsEndIsNoError) {
    ASSERT_TRUE(database.open());
    const auto rows = database.executeQuery("select 1");
    EXPECT_TRUE(rows->next());
    EXPECT_EQ(database.lastErrorCode(), SQLITE_ROW);
    EXPECT_FALSE(database.hadError());
    EXPECT_FALSE(rows->next());
    EXPECT_FALSE(database.hadError());
}

TEST_F(SQLDatabaseTest, AFailureIsReadableBehindIt) {
    ASSERT_TRUE(database.open());
    EXPECT_FALSE(database.executeUpdate("nonsense"));
    EXPECT_TRUE(database.hadError());
    EXPECT_EQ(database.lastErrorCode(), SQLITE_ERROR);
    EXPECT_EQ(database.lastError(),
              (SQLError{"SQLDatabase", SQLITE_ERROR, "near \"nonsense\": syntax error"}));
    EXPECT_EQ(database.errorWithMessage("words"), (SQLError{"SQLDatabase", SQLITE_ERROR, "words"}));
    EXPECT_THAT(world.log.lines, IsEmpty());
}

TEST_F(SQLDatabaseTest, KnowsNoEncryption) {
    ASSERT_TRUE(database.open());
    EXPECT_FALSE(database.setKey("secret"));
    EXPECT_FALSE(database.rekey("secret"));
}

/// Two connections to one file, the other of which holds it.
class SQLDatabaseBusyTest : public SQLDatabaseTest {
protected:
    SQLDatabaseBusyTest() {
        waiting.open();
        database.open();
        database.executeUpdate("create table t (a)");
        database.beginTransaction();
    }

    test::CountedBusyWait wait;
    SQLEnvironment environment{world.log, wait};
    SQLDatabase waiting{environment, folder / "a.db"};
};

TEST_F(SQLDatabaseBusyTest, WaitsInStepsOf50MillisecondsForTwoSeconds) {
    EXPECT_FALSE(waiting.executeUpdate("insert into t values (1)"));
    EXPECT_EQ(waiting.lastErrorCode(), SQLITE_BUSY);
    EXPECT_THAT(wait.sleeps, SizeIs(40));
    EXPECT_THAT(wait.sleeps, Each(50));
}

TEST_F(SQLDatabaseBusyTest, EveryWaitHasItsOwnTwoSeconds) {
    waiting.executeUpdate("insert into t values (1)");
    waiting.executeUpdate("insert into t values (1)");
    EXPECT_THAT(wait.sleeps, SizeIs(80));
}

TEST_F(SQLDatabaseBusyTest, TheIntervalCanBeChanged) {
    waiting.setMaxBusyRetryTimeInterval(0.1);
    EXPECT_FALSE(waiting.executeUpdate("insert into t values (1)"));
    EXPECT_THAT(wait.sleeps, SizeIs(2));
}

TEST_F(SQLDatabaseBusyTest, WithoutAnIntervalItFailsAtOnce) {
    waiting.setMaxBusyRetryTimeInterval(0);
    EXPECT_FALSE(waiting.executeUpdate("insert into t values (1)"));
    EXPECT_THAT(wait.sleeps, IsEmpty());
}

TEST_F(SQLDatabaseBusyTest, AnIntervalSetBeforeOpeningHolds) {
    waiting.close();
    waiting.setMaxBusyRetryTimeInterval(-1);
    waiting.open();
    EXPECT_FALSE(waiting.executeUpdate("insert into t values (1)"));
    EXPECT_THAT(wait.sleeps, IsEmpty());
}

TEST_F(SQLDatabaseBusyTest, GoesOnWhenTheLockIsGone) {
    /// Whoever sleeps finds the lock given up.
    struct GivesUp final : SQLBusyWait {
        explicit GivesUp(SQLDatabase& other) : holder(other) {}
        double now() const noexcept override { return 0; }
        void sleep(int) const noexcept override { holder.commit(); }
        SQLDatabase& holder;
    };
    const GivesUp givesUp(database);
    SQLEnvironment lucky(world.log, givesUp);
    SQLDatabase patient(lucky, folder / "a.db");
    patient.open();
    EXPECT_TRUE(patient.executeUpdate("insert into t values (1)"));
}

TEST(SQLDatabaseDeathTest, WithCrashOnErrorsMisuseEndsTheProcess) {
    test::ShownLog log;
    SQLEnvironment environment(log);
    SQLDatabase database(environment);
    database.setCrashOnErrors(true);
    EXPECT_DEATH(database.executeUpdate("select"), "The SQLDatabase <SQLDatabase: .*> is not open");
    ASSERT_TRUE(database.open());
    EXPECT_DEATH(database.executeQuery("nonsense"),
                 "DB Error: 1 \"near \"nonsense\": syntax error\"");
    EXPECT_DEATH(database.executeUpdate("nonsense"), "DB Error: 1 ");
    database.makeFunctionNamed("again", 0, [&](auto&&...) { database.executeUpdate("select 1"); });
    EXPECT_DEATH(database.executeUpdate("create table t as select again() as a"),
                 "The SQLDatabase <SQLDatabase: .*> is currently in use.");
}

}  // namespace
}  // namespace vantor
