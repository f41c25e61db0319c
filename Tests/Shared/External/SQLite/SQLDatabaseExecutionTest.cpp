#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "Shared/External/SQLite/SQLDatabase.h"
#include "Tests/Support/SQLWorld.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Dictionary = PropertyValue::Dictionary;

class SQLDatabaseExecutionTest : public testing::Test {
protected:
    SQLDatabaseExecutionTest() {
        database.open();
        database.executeUpdate("create table t (a, b)");
    }

    std::vector<std::string> rows() {
        std::vector<std::string> found;
        const auto rows = database.executeQuery("select quote(a)||' '||quote(b) from t");
        while (rows->next())
            found.push_back(rows->stringForColumnIndex(0).value_or("null"));
        return found;
    }

    test::SQLWorld world;
    SQLDatabase database{world.environment};
};

TEST_F(SQLDatabaseExecutionTest, ValuesComeInEveryShape) {
    const std::vector<PropertyValue> array{1, "one"};
    EXPECT_TRUE(database.executeUpdate("insert into t values (?, ?)", array));
    EXPECT_TRUE(database.executeUpdate("insert into t values (?, ?)", 2, "two"));
    EXPECT_TRUE(database.executeUpdate("insert into t values (?, ?)", SQLArgumentList{array}));
    EXPECT_TRUE(database.executeUpdate("insert into t values (:a, :b)",
                                       Dictionary{{"a", 4}, {"b", "four"}, {"c", "unasked"}}));
    EXPECT_TRUE(database.executeUpdateWithFormat("insert into t values (%d, %@)", 5, "five"));
    SQLDatabase::Error error;
    EXPECT_TRUE(database.executeUpdate("insert into t values (?, ?)", error, 6, "six"));
    EXPECT_TRUE(database.update("insert into t values (?, ?)", error, 7, "seven"));
    EXPECT_EQ(error, std::nullopt);
    EXPECT_THAT(rows(), ElementsAre("1 'one'", "2 'two'", "1 'one'", "4 'four'", "5 'five'",
                                    "6 'six'", "7 'seven'"));
}

TEST_F(SQLDatabaseExecutionTest, QueriesTakeValuesInEveryShape) {
    const std::vector<PropertyValue> array{3, 4};
    const auto sum = [](const std::unique_ptr<SQLResultSet>& rows) {
        return rows && rows->next() ? rows->intForColumnIndex(0) : -1;
    };
    EXPECT_EQ(sum(database.executeQuery("select ? + ?", array)), 7);
    EXPECT_EQ(sum(database.executeQuery("select ? + ?", 1, 2)), 3);
    EXPECT_EQ(sum(database.executeQuery("select ? + ?", SQLArgumentList{array})), 7);
    EXPECT_EQ(sum(database.executeQuery("select :a + :b", Dictionary{{"a", 4}, {"b", 5}})), 9);
    EXPECT_EQ(sum(database.executeQueryWithFormat("select %d + %f", 5, 6.0)), 11);
}

TEST_F(SQLDatabaseExecutionTest, TheListGoesOnWhereTheArrayEnds) {
    const std::vector<PropertyValue> array{1}, list{2, 3};
    EXPECT_TRUE(database.executeUpdate("insert into t values (?, ?)", nullptr, array, nullptr,
                                       SQLArgumentList{list}));
    EXPECT_THAT(rows(), ElementsAre("1 2"));
}

TEST_F(SQLDatabaseExecutionTest, TooFewValuesFailAndLeaveTheConnectionUsable) {
    database.setShouldCacheStatements(true);
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(database.executeUpdate("insert into t values (?, ?)", 1, 2));
        EXPECT_FALSE(database.executeUpdate("insert into t values (?, ?)", 1));
        EXPECT_EQ(database.executeQuery("select ?"), nullptr);
    }
    EXPECT_FALSE(database.executeUpdate("insert into t values (:a, :b)", Dictionary{{"a", 1}}));
    EXPECT_THAT(rows(), ElementsAre("1 2", "1 2"));
}

TEST_F(SQLDatabaseExecutionTest, ValuesBehindTheLastParameterAreIgnored) {
    EXPECT_TRUE(database.executeUpdate("insert into t values (?, ?)", 1, 2, 3));
    EXPECT_THAT(rows(), ElementsAre("1 2"));
}

TEST_F(SQLDatabaseExecutionTest, ARefusedTextSetsTheError) {
    SQLDatabase::Error error;
    EXPECT_FALSE(database.executeUpdate("insert into nowhere values (1)", error));
    EXPECT_EQ(error, (SQLError{"SQLDatabase", SQLITE_ERROR, "no such table: nowhere"}));
}

TEST_F(SQLDatabaseExecutionTest, AFailedStepShowsInTheResultAlone) {
    database.executeUpdate("create unique index u on t (a)");
    database.executeUpdate("insert into t values (1, 1)");
    SQLDatabase::Error error;
    EXPECT_FALSE(database.executeUpdate("insert into t values (1, 2)", error));
    EXPECT_EQ(error, std::nullopt);
    EXPECT_TRUE(database.hadError());
    EXPECT_THAT(world.log.lines, IsEmpty());
}

TEST_F(SQLDatabaseExecutionTest, TextsWithoutAStatementFail) {
    database.setShouldCacheStatements(true);
    for (int round = 0; round < 2; ++round) {
        EXPECT_FALSE(database.executeUpdate(""));
        EXPECT_FALSE(database.executeUpdate("-- nothing"));
        const auto rows = database.executeQuery("-- nothing");
        EXPECT_TRUE(!rows || !rows->next());
    }
}

TEST_F(SQLDatabaseExecutionTest, AQueryKeepsTheValuesThatItWasGiven) {
    const char* const longWord =
        "a word that is too long to be kept inside of the object of a text";
    auto word = std::make_unique<std::vector<PropertyValue>>(1, PropertyValue(longWord));
    const auto rows = database.executeQuery("select ?", *word);
    word.reset();  // the address sanitizer would notice
    ASSERT_TRUE(rows->next());
    EXPECT_EQ(rows->stringForColumnIndex(0), longWord);
}

TEST_F(SQLDatabaseExecutionTest, AStatementIsPreparedOnceAndKept) {
    database.setShouldCacheStatements(true);
    const std::string_view text = "insert into t values (?, 0)";
    database.executeUpdate(text, 1);
    const auto statement = database.cachedStatementForQuery(text);
    ASSERT_NE(statement, nullptr);
    EXPECT_EQ(statement->useCount(), 1);
    database.executeUpdate(text, 2);
    EXPECT_EQ(database.cachedStatementForQuery(text), statement);
    EXPECT_EQ(statement->useCount(), 2);
    EXPECT_FALSE(statement->inUse());
}

TEST_F(SQLDatabaseExecutionTest, WithoutCachingNothingIsKept) {
    database.executeUpdate("insert into t values (1, 0)");
    EXPECT_EQ(database.cachedStatementForQuery("insert into t values (1, 0)"), nullptr);
    EXPECT_EQ(sqlite3_next_stmt(database.sqliteHandle(), nullptr), nullptr);
}

TEST_F(SQLDatabaseExecutionTest, TwoCursorsOnOneTextHaveAStatementEach) {
    database.setShouldCacheStatements(true);
    database.executeUpdate("insert into t values (1, 0)");
    database.executeUpdate("insert into t values (2, 0)");
    const auto first = database.executeQuery("select a from t");
    const auto second = database.executeQuery("select a from t");
    EXPECT_NE(first->statement(), second->statement());
    ASSERT_TRUE(first->next());
    ASSERT_TRUE(first->next());
    ASSERT_TRUE(second->next());
    EXPECT_EQ(first->intForColumnIndex(0), 2);
    EXPECT_EQ(second->intForColumnIndex(0), 1);
    EXPECT_EQ(database.cachedStatementForQuery("select a from t"), nullptr);
    first->close();
    EXPECT_NE(database.cachedStatementForQuery("select a from t"), nullptr);
}

TEST_F(SQLDatabaseExecutionTest, CachingMayEndUnderAnOpenCursor) {
    database.setShouldCacheStatements(true);
    const auto rows = database.executeQuery("select 1 union select 2");
    ASSERT_TRUE(rows->next());
    database.setShouldCacheStatements(false);
    ASSERT_TRUE(rows->next());
    EXPECT_EQ(rows->intForColumnIndex(0), 2);
}

TEST_F(SQLDatabaseExecutionTest, ClearingTheCacheEndsOpenCursors) {
    database.setShouldCacheStatements(true);
    const auto rows = database.executeQuery("select 1 union select 2");
    ASSERT_TRUE(rows->next());
    database.clearCachedStatements();
    EXPECT_EQ(rows->resultDictionary(), std::nullopt);
    EXPECT_EQ(rows->columnNameForIndex(0), std::nullopt);
    EXPECT_FALSE(rows->next());
}

TEST_F(SQLDatabaseExecutionTest, WhileOneRunsAnotherFails) {
    int updated = -1, rowID = -1;
    bool asked = true;
    database.makeFunctionNamed("again", 0, [&](sqlite3_context* context, int, sqlite3_value**) {
        updated = database.executeUpdate("insert into t values (9, 9)") ? 1 : 0;
        asked = database.executeQuery("select 1") != nullptr;
        rowID = static_cast<int>(database.lastInsertRowId());
        sqlite3_result_int(context, 5);
    });
    EXPECT_TRUE(database.executeUpdate("insert into t values (again(), 1)"));
    EXPECT_EQ(updated, 0);
    EXPECT_FALSE(asked);
    EXPECT_EQ(rowID, 0);
    EXPECT_EQ(database.lastInsertRowId(), 1);
    EXPECT_EQ(database.changes(), 1);
    EXPECT_THAT(rows(), ElementsAre("5 1"));
}

TEST_F(SQLDatabaseExecutionTest, AFunctionIsGivenItsValues) {
    database.makeFunctionNamed(
        "twice", 1, [](sqlite3_context* context, int count, sqlite3_value** values) {
            sqlite3_result_int(context, count * 2 * sqlite3_value_int(values[0]));
        });
    EXPECT_EQ(database.intForQuery("select twice(21)"), 42);
    EXPECT_EQ(database.executeQuery("select twice(1, 2)"), nullptr);
}

TEST_F(SQLDatabaseExecutionTest, StatementsRunUpToTheFirstThatFails) {
    EXPECT_TRUE(
        database.executeStatements("insert into t values (1, 1); insert into t values (2, 2)"));
    EXPECT_FALSE(database.executeStatements("insert into t values (3, 3); nonsense"));
    EXPECT_THAT(rows(), ElementsAre("1 1", "2 2", "3 3"));
}

TEST_F(SQLDatabaseExecutionTest, TheClosureOfStatementsGetsRowsOfTexts) {
    std::vector<Dictionary> found;
    const auto keep = [&](const Dictionary& row) {
        found.push_back(row);
        return 0;
    };
    EXPECT_TRUE(database.executeStatements("select 1 as A; select null as b, 'x' as c", keep));
    EXPECT_THAT(
        found, ElementsAre(Dictionary{{"A", "1"}}, Dictionary{{"b", PropertyValue{}}, {"c", "x"}}));
    EXPECT_FALSE(
        database.executeStatements("select 1; select 2", [&](const Dictionary&) { return 1; }));
}

TEST(SQLDatabaseExecutionDeathTest, ARowFromAnUpdateEndsTheProcess) {
    test::ShownLog log;
    SQLEnvironment environment(log);
    SQLDatabase database(environment);
    ASSERT_TRUE(database.open());
    EXPECT_FALSE(database.crashOnErrors());
    EXPECT_DEATH(database.executeUpdate("select 1"),
                 "A executeUpdate is being called with a query string 'select 1'");
}

}  // namespace
}  // namespace vantor
