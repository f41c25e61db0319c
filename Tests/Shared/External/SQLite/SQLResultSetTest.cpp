#include "Shared/External/SQLite/SQLResultSet.h"

#include <cmath>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "Shared/External/SQLite/SQLDatabase.h"
#include "Tests/Support/SQLWorld.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::Pair;
using testing::UnorderedElementsAre;

using Dictionary = PropertyValue::Dictionary;

class SQLResultSetTest : public testing::Test {
protected:
    SQLResultSetTest() { database.open(); }

    /// Standing on its first row.
    std::unique_ptr<SQLResultSet> row(std::string_view sql) {
        auto rows = database.executeQuery(sql);
        EXPECT_TRUE(rows && rows->next());
        return rows;
    }

    test::SQLWorld world;
    SQLDatabase database{world.environment};
};

TEST_F(SQLResultSetTest, ARowIsReadInTheCaseOfTheQuery) {
    const auto rows = row("select 1 as Sample, 2.5 as user, 'x' as text, null as none");
    EXPECT_EQ(rows->resultDictionary(),
              (Dictionary{
                  {"Sample", NSInt(1)}, {"user", 2.5}, {"text", "x"}, {"none", PropertyValue{}}}));
    EXPECT_EQ(rows->resultDict(),
              (Dictionary{
                  {"sample", NSInt(1)}, {"user", 2.5}, {"text", "x"}, {"none", PropertyValue{}}}));
}

TEST_F(SQLResultSetTest, WithoutARowThereIsNothing) {
    const auto rows = database.executeQuery("select 1");
    EXPECT_EQ(rows->resultDictionary(), std::nullopt);
    EXPECT_EQ(rows->resultDict(), std::nullopt);
}

TEST_F(SQLResultSetTest, ColumnsAreFoundWhateverTheCase) {
    const auto rows = row("select 1 as Aa, 2 as bB");
    EXPECT_EQ(rows->columnCount(), 2);
    EXPECT_EQ(rows->columnIndexForName("BB"), 1);
    EXPECT_EQ(rows->columnIndexForName("aa"), 0);
    EXPECT_EQ(rows->columnIndexForName("c"), -1);
    EXPECT_EQ(rows->columnNameForIndex(0), "Aa");
    EXPECT_EQ(rows->columnNameForIndex(2), std::nullopt);
    EXPECT_THAT(rows->columnNameToIndexMap(), ElementsAre(Pair("aa", 0), Pair("bb", 1)));
}

TEST_F(SQLResultSetTest, EveryGetterReadsByIndexAndByName) {
    const auto rows = row("select -2 as a, 2.5 as b, 'text' as c, x'0102' as d");
    EXPECT_EQ(rows->intForColumn("a"), -2);
    EXPECT_EQ(rows->longForColumn("a"), -2);
    EXPECT_EQ(rows->longLongIntForColumn("a"), -2);
    EXPECT_EQ(rows->unsignedLongLongIntForColumn("a"), 0xFFFFFFFFFFFFFFFEu);
    EXPECT_TRUE(rows->boolForColumn("a"));
    EXPECT_EQ(rows->doubleForColumn("b"), 2.5);
    EXPECT_EQ(rows->dateForColumn("b"), PropertyValue::Date{2.5});
    EXPECT_EQ(rows->stringForColumn("c"), "text");
    EXPECT_STREQ(rows->UTF8StringForColumnName("c"), "text");
    EXPECT_EQ(rows->dataForColumn("d"), (PropertyValue::Data{std::byte{1}, std::byte{2}}));
    EXPECT_EQ(rows->dataNoCopyForColumn("d")->size(), 2u);
    EXPECT_FALSE(rows->columnIsNull("d"));
    EXPECT_EQ((*rows)["A"], NSInt(-2));
    EXPECT_EQ((*rows)[1], PropertyValue(2.5));
    EXPECT_EQ(rows->objectForColumnName("d"),
              PropertyValue(PropertyValue::Data{std::byte{1}, std::byte{2}}));
}

TEST_F(SQLResultSetTest, NullAndUnknownColumnsReadAsNothing) {
    const auto rows = row("select null as a");
    for (const char* name : {"a", "unknown"}) {
        EXPECT_EQ(rows->stringForColumn(name), std::nullopt);
        EXPECT_EQ(rows->UTF8StringForColumnName(name), nullptr);
        EXPECT_EQ(rows->dateForColumn(name), std::nullopt);
        EXPECT_EQ(rows->dataForColumn(name), std::nullopt);
        EXPECT_EQ(rows->objectForColumnName(name), PropertyValue{});
        EXPECT_EQ(rows->intForColumn(name), 0);
        EXPECT_EQ(rows->doubleForColumn(name), 0);
        EXPECT_TRUE(rows->columnIsNull(name));
    }
}

TEST_F(SQLResultSetTest, HostileValuesReadQuietly) {
    const auto rows = row("select 'text' as a, 1e308*10 as b, '12abc' as c, x'FFFE' as d, "
                          "9223372036854775807 as e, '' as f, x'' as g");
    EXPECT_EQ(rows->doubleForColumn("a"), 0);
    EXPECT_EQ(rows->intForColumn("a"), 0);
    EXPECT_EQ(rows->doubleForColumn("b"), std::numeric_limits<double>::infinity());
    EXPECT_EQ(rows->longLongIntForColumn("b"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(rows->intForColumn("c"), 12);
    EXPECT_EQ(rows->doubleForColumn("d"), 0);
    EXPECT_EQ(rows->intForColumn("e"), -1);
    EXPECT_EQ(rows->stringForColumn("f"), "");
    EXPECT_EQ(rows->dataForColumn("g"), PropertyValue::Data{});
    EXPECT_EQ(rows->objectForColumnName("g"), PropertyValue(PropertyValue::Data{}));
}

TEST_F(SQLResultSetTest, ObjectsWithoutNullsAreHandedOver) {
    const auto rows = row("select 1 as a, null as b, 'x' as C");
    std::vector<std::pair<std::string, PropertyValue>> set;
    rows->kvcMagic([&](std::string_view key, PropertyValue value) {
        set.emplace_back(key, std::move(value));
    });
    EXPECT_THAT(set, ElementsAre(Pair("a", NSInt(1)), Pair("C", PropertyValue("x"))));
}

TEST_F(SQLResultSetTest, TheEndClosesTheCursor) {
    const auto rows = row("select 1");
    EXPECT_TRUE(rows->hasAnotherRow());
    EXPECT_TRUE(database.hasOpenResultSets());
    SQLResultSet::Error error;
    EXPECT_FALSE(rows->nextWithError(&error));
    EXPECT_EQ(error, std::nullopt);
    EXPECT_FALSE(database.hasOpenResultSets());
    EXPECT_FALSE(rows->hasAnotherRow());
    rows->close();
}

TEST_F(SQLResultSetTest, AFailedStepClosesTheCursorAndSaysWhy) {
    const auto rows = row("select 1 union all select abs(-9223372036854775808)");
    SQLResultSet::Error error;
    EXPECT_FALSE(rows->nextWithError(&error));
    EXPECT_EQ(error, (SQLError{"SQLDatabase", SQLITE_ERROR, "integer overflow"}));
    EXPECT_FALSE(database.hasOpenResultSets());
}

TEST_F(SQLResultSetTest, AClosedCursorHasNoParentToAsk) {
    const auto rows = row("select 1");
    rows->close();
    SQLResultSet::Error error;
    EXPECT_FALSE(rows->nextWithError(&error));
    EXPECT_EQ(error, (SQLError{"SQLDatabase", SQLITE_MISUSE, "parentDB does not exist"}));
}

TEST_F(SQLResultSetTest, TheEndOfTheObjectClosesIt) {
    row("select 1").reset();
    EXPECT_FALSE(database.hasOpenResultSets());
}

TEST_F(SQLResultSetTest, DatesAreTextsWhereTheConnectionHasAFormat) {
    database.setDateFormat(SQLDatabase::storeableDateFormat("yyyy-MM-dd HH:mm:ss"));
    const auto rows = row("select '1970-01-02 00:00:01' as a, 'nonsense' as b, null as c");
    EXPECT_EQ(rows->dateForColumn("a"), PropertyValue::Date{86401});
    EXPECT_EQ(rows->dateForColumn("b"), std::nullopt);
    EXPECT_EQ(rows->dateForColumn("c"), std::nullopt);
}

TEST(SQLResultSetDeathTest, AStatementInUseEndsTheProcess) {
    test::ShownLog log;
    SQLEnvironment environment(log);
    SQLDatabase database(environment);
    const auto statement = std::make_shared<SQLStatement>(nullptr);
    statement->setInUse(true);
    EXPECT_DEATH(SQLResultSet::resultSetWithStatement(statement, database),
                 "Invalid parameter not satisfying: !.statement inUse.");
}

}  // namespace
}  // namespace vantor
