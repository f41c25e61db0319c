#include <gtest/gtest.h>
#include <sqlite3.h>

#include "Shared/External/SQLite/SQLDatabase.h"
#include "Tests/Support/SQLWorld.h"

namespace vantor {
namespace {

class SQLDatabaseAdditionsTest : public testing::Test {
protected:
    SQLDatabaseAdditionsTest() {
        database.open();
        database.executeUpdate("create table Numbers (Sample double, user double)");
    }

    test::SQLWorld world;
    SQLDatabase database{world.environment};
};

TEST_F(SQLDatabaseAdditionsTest, ATableIsFoundWhateverTheCase) {
    EXPECT_TRUE(database.tableExists("numbers"));
    EXPECT_TRUE(database.tableExists("NUMBERS"));
    EXPECT_FALSE(database.tableExists("number"));
    EXPECT_FALSE(database.tableExists("it's"));
    EXPECT_FALSE(database.hasOpenResultSets());
}

TEST_F(SQLDatabaseAdditionsTest, AColumnIsFoundWhateverTheCase) {
    EXPECT_TRUE(database.columnExists("SAMPLE", "numbers"));
    EXPECT_TRUE(database.columnExistsColumnName("NUMBERS", "User"));
    EXPECT_FALSE(database.columnExists("idle", "numbers"));
    EXPECT_FALSE(database.columnExists("user", "nowhere"));
    EXPECT_FALSE(database.hasOpenResultSets());
}

TEST_F(SQLDatabaseAdditionsTest, TheSchemaNamesWhatThereIs) {
    const auto schema = database.getSchema();
    ASSERT_TRUE(schema->next());
    EXPECT_EQ(schema->stringForColumn("name"), "Numbers");
    EXPECT_FALSE(schema->next());
    const auto table = database.getTableSchema("numbers");
    ASSERT_TRUE(table->next());
    EXPECT_EQ(table->stringForColumn("type"), "double");
}

TEST_F(SQLDatabaseAdditionsTest, AQueryGivesItsFirstFigure) {
    EXPECT_EQ(database.stringForQuery("select ?||'b'", "a"), "ab");
    EXPECT_EQ(database.intForQuery("select ?", 3), 3);
    EXPECT_EQ(database.longForQuery("select 5000000000"), 5'000'000'000);
    EXPECT_TRUE(database.boolForQuery("select 2"));
    EXPECT_EQ(database.doubleForQuery("select 0.5"), 0.5);
    EXPECT_EQ(database.dataForQuery("select x'01'"), PropertyValue::Data{std::byte{1}});
    EXPECT_EQ(database.dateForQuery("select 4"), PropertyValue::Date{4});
    EXPECT_FALSE(database.hasOpenResultSets());
}

TEST_F(SQLDatabaseAdditionsTest, AQueryWithoutARowGivesNothing) {
    EXPECT_EQ(database.stringForQuery("select user from numbers"), std::nullopt);
    EXPECT_EQ(database.intForQuery("select user from numbers"), 0);
    EXPECT_EQ(database.doubleForQuery("nonsense"), 0);
    EXPECT_EQ(database.dateForQuery("select user from numbers"), std::nullopt);
}

TEST_F(SQLDatabaseAdditionsTest, TheVersionIsKept) {
    EXPECT_EQ(database.userVersion(), 0u);
    database.setUserVersion(7);
    EXPECT_EQ(database.userVersion(), 7u);
    database.setUserVersion(0xFFFFFFFF);
    EXPECT_EQ(database.userVersion(), 0xFFFFFFFF);
}

TEST_F(SQLDatabaseAdditionsTest, TheApplicationIsKeptAsANumberAndAsFourCharacters) {
    database.setApplicationIDString("VBar");
    EXPECT_EQ(database.applicationID(), 0x56426172u);
    EXPECT_EQ(database.applicationIDString(), "VBar");
    database.setApplicationID(0x41424344);
    EXPECT_EQ(database.applicationIDString(), "ABCD");
    database.setApplicationIDString("longer");
    EXPECT_EQ(database.applicationID(), 0u);
}

TEST_F(SQLDatabaseAdditionsTest, ATextIsValidWhereItCanBePrepared) {
    SQLDatabase::Error error;
    EXPECT_TRUE(database.validateSQL("select user from numbers", &error));
    EXPECT_EQ(error, std::nullopt);
    EXPECT_FALSE(database.validateSQL("select idle from numbers", &error));
    EXPECT_EQ(error, (SQLError{"NSCocoaErrorDomain", SQLITE_ERROR, "no such column: idle"}));
}

}  // namespace
}  // namespace vantor
