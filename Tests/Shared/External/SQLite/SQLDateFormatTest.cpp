#include "Shared/External/SQLite/SQLDateFormat.h"

#include <limits>

#include <gtest/gtest.h>

namespace vantor {
namespace {

using Date = PropertyValue::Date;

constexpr Date kDate{1'425'900'305.125};  // 2015-03-09 11:25:05.125

TEST(SQLDateFormatTest, WritesDates) {
    struct Case {
        std::string_view pattern, text;
    };
    const std::vector<Case> cases{
        {"yyyy-MM-dd HH:mm:ss", "2015-03-09 11:25:05"},
        {"yyyy/MM/dd HH:mm:ss:SSS", "2015/03/09 11:25:05:125"},
        {"yyyyMMdd'T'HHmmss", "20150309T112505"},
        {"d. MMMM yy", "9. March 15"},
        {"MMM d, y", "Mar 9, 2015"},
        {"H 'o''clock'", "11 o'clock"},
        {"", ""},
    };
    for (const auto& [pattern, text] : cases)
        EXPECT_EQ(SQLDateFormat(pattern).stringFromDate(kDate), text) << pattern;
}

TEST(SQLDateFormatTest, ReadsWhatItWrote) {
    for (const char* pattern :
         {"yyyy-MM-dd HH:mm:ss.SSS", "yyyyMMddHHmmssSSS", "d. MMM yy H:m:s:SSS"}) {
        const SQLDateFormat format(pattern);
        EXPECT_EQ(format.dateFromString(format.stringFromDate(kDate)), kDate) << pattern;
    }
}

TEST(SQLDateFormatTest, DatesBefore1970AreWrittenAndRead) {
    const SQLDateFormat format("yyyy-MM-dd HH:mm:ss");
    EXPECT_EQ(format.stringFromDate({-1}), "1969-12-31 23:59:59");
    EXPECT_EQ(format.dateFromString("1969-12-31 23:59:59"), Date{-1});
}

TEST(SQLDateFormatTest, TextsThatDontFitAreNoDates) {
    const SQLDateFormat format("yyyy-MM-dd HH:mm");
    for (const char* text : {"", "2015", "2015-13-01 00:00", "2015-02-30 00:00", "2015-01-01 24:00",
                             "2015-01-01 00:00 ", "x015-01-01 00:00", "2015--1-01 00:00"})
        EXPECT_EQ(format.dateFromString(text), std::nullopt) << text;
}

TEST(SQLDateFormatTest, DatesBeyondTheCalendarAreEmpty) {
    const SQLDateFormat format("yyyy");
    for (const double seconds :
         {std::numeric_limits<double>::quiet_NaN(), 1e308, -1e308, 253402300800.0})
        EXPECT_EQ(format.stringFromDate({seconds}), "") << seconds;
    EXPECT_EQ(format.stringFromDate({253402300799.0}), "9999");
}

}  // namespace
}  // namespace vantor
