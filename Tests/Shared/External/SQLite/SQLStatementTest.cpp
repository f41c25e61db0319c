#include "Shared/External/SQLite/SQLStatement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "Shared/External/SQLite/SQLDatabase.h"
#include "Shared/External/SQLite/SQLStatementCache.h"
#include "Tests/Support/SQLWorld.h"

namespace vantor {
namespace {

class SQLStatementTest : public testing::Test {
protected:
    SQLStatementTest() { database.open(); }

    std::shared_ptr<SQLStatement> prepared(const char* sql) {
        sqlite3_stmt* handle = nullptr;
        EXPECT_EQ(sqlite3_prepare_v2(database.sqliteHandle(), sql, -1, &handle, nullptr),
                  SQLITE_OK);
        return std::make_shared<SQLStatement>(handle);
    }

    test::SQLWorld world;
    SQLDatabase database{world.environment};
    SQLStatementCache cache;
};

TEST_F(SQLStatementTest, ClosingEndsThePreparedStatement) {
    const auto statement = prepared("select 1");
    statement->setInUse(true);
    statement->close();
    EXPECT_EQ(statement->statement(), nullptr);
    EXPECT_FALSE(statement->inUse());
    EXPECT_EQ(sqlite3_next_stmt(database.sqliteHandle(), nullptr), nullptr);
    statement->close();
    statement->reset();
}

TEST_F(SQLStatementTest, ResettingMakesItReadyAgain) {
    const auto statement = prepared("select 1");
    statement->setInUse(true);
    EXPECT_EQ(sqlite3_step(statement->statement()), SQLITE_ROW);
    statement->reset();
    EXPECT_FALSE(statement->inUse());
    EXPECT_EQ(sqlite3_step(statement->statement()), SQLITE_ROW);
}

TEST_F(SQLStatementTest, DescribesItself) {
    const auto statement = prepared("select 1");
    statement->setUseCount(3);
    statement->setQuery("select 1");
    EXPECT_THAT(statement->description(),
                testing::MatchesRegex("<SQLStatement: .*> 3 hit.s. for query select 1"));
}

TEST_F(SQLStatementTest, TheCacheGivesOneThatIsFree) {
    const auto first = prepared("select 1"), second = prepared("select 1");
    cache.setCachedStatement(first, "select 1");
    cache.setCachedStatement(second, "select 1");
    EXPECT_EQ(first->query(), "select 1");
    first->setInUse(true);
    EXPECT_EQ(cache.cachedStatementForQuery("select 1"), second);
    second->setInUse(true);
    EXPECT_EQ(cache.cachedStatementForQuery("select 1"), nullptr);
    EXPECT_EQ(cache.cachedStatementForQuery("select  1"), nullptr);
}

TEST_F(SQLStatementTest, ClearingTheCacheClosesWhatItHas) {
    const auto statement = prepared("select 1");
    cache.setCachedStatement(statement, "select 1");
    cache.clear();
    EXPECT_EQ(statement->statement(), nullptr);
    EXPECT_EQ(cache.cachedStatementForQuery("select 1"), nullptr);
}

TEST_F(SQLStatementTest, AStatementTakenOutOfTheCacheIsNotFoundAgain) {
    const auto statement = prepared("select 1");
    cache.setCachedStatement(statement, "select 1");
    cache.remove(*statement);
    EXPECT_EQ(cache.cachedStatementForQuery("select 1"), nullptr);
}

}  // namespace
}  // namespace vantor
