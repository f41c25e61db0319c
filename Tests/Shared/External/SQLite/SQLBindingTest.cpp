#include "Shared/External/SQLite/SQLBinding.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "Shared/External/SQLite/SQLDatabase.h"
#include "Tests/Support/SQLWorld.h"

namespace vantor {
namespace {

using Data = PropertyValue::Data;

/// What SQLite holds for a bound value, as SQLite writes it.
class SQLBindingTest : public testing::Test {
protected:
    SQLBindingTest() { database.open(); }

    std::string bound(const PropertyValue& value) {
        database.executeUpdate("drop table if exists t");
        database.executeUpdate("create table t (a)");
        EXPECT_TRUE(database.executeUpdate("insert into t values (?)", value));
        return database.stringForQuery("select typeof(a)||' '||quote(a) from t").value_or("none");
    }

    test::SQLWorld world;
    SQLDatabase database{world.environment};
};

TEST_F(SQLBindingTest, EveryKindIsBoundAsItsOwn) {
    EXPECT_EQ(bound(PropertyValue{}), "null NULL");
    EXPECT_EQ(bound(true), "integer 1");
    EXPECT_EQ(bound(false), "integer 0");
    EXPECT_EQ(bound(std::int32_t{-5}), "integer -5");
    EXPECT_EQ(bound(std::uint32_t{0xFFFFFFFF}), "integer 4294967295");
    EXPECT_EQ(bound(std::int64_t{-5'000'000'000}), "integer -5000000000");
    EXPECT_EQ(bound(std::uint64_t{0xFFFFFFFFFFFFFFFF}), "integer -1");
    EXPECT_EQ(bound(0.5f), "real 0.5");
    EXPECT_EQ(bound(0.25), "real 0.25");
    EXPECT_EQ(bound(1.0), "real 1.0");
    EXPECT_EQ(bound("it's"), "text 'it''s'");
    EXPECT_EQ(bound(""), "text ''");
    EXPECT_EQ(bound(Data{std::byte{0xAB}, std::byte{0}}), "blob X'AB00'");
    EXPECT_EQ(bound(PropertyValue::Date{1.5}), "real 1.5");
}

TEST_F(SQLBindingTest, DataWithoutBytesIsABlobAndNoNull) { EXPECT_EQ(bound(Data{}), "blob X''"); }

TEST_F(SQLBindingTest, WhatIsNoNumberIsNull) {
    EXPECT_EQ(bound(std::numeric_limits<double>::quiet_NaN()), "null NULL");
    EXPECT_EQ(bound(std::numeric_limits<double>::infinity()), "real Inf");
    EXPECT_EQ(bound(1e308), "real 1.0e+308");
}

TEST_F(SQLBindingTest, DatesAreTextsWhereTheConnectionHasAFormat) {
    database.setDateFormat(SQLDatabase::storeableDateFormat("yyyy-MM-dd"));
    EXPECT_EQ(bound(PropertyValue::Date{86400}), "text '1970-01-02'");
}

TEST_F(SQLBindingTest, AnythingElseIsTheTextOfItsDescription) {
    EXPECT_EQ(bound(PropertyValue::Array{1, "b"}), "text '(\n    1,\n    b\n)'");
    EXPECT_EQ(bound(PropertyValue::Dictionary{{"a", PropertyValue::Array{}}, {"b", 2}}),
              "text '{\n    a = (\n    );\n    b = 2;\n}'");
}

TEST_F(SQLBindingTest, ATextMayHoldAZero) {
    EXPECT_EQ(bound(std::string("a\0b", 3)), "text 'a'");  // quoted up to the zero
    EXPECT_EQ(database.intForQuery("select length(cast(a as blob)) from t"), 3);
}

}  // namespace
}  // namespace vantor
