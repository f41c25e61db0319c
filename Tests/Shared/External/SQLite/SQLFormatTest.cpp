#include "Shared/External/SQLite/SQLFormat.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Extracted {
    std::string sql;
    std::vector<PropertyValue> values;
};

Extracted extracted(std::string_view sql, const std::vector<PropertyValue>& list = {}) {
    Extracted result;
    extractSQL(sql, {list}, result.sql, result.values);
    return result;
}

TEST(SQLFormatTest, EveryConversionTakesAValueOfItsKind) {
    struct Case {
        std::string_view format;
        PropertyValue given, taken;
    };
    const std::vector<Case> cases{
        {"%@", "x", "x"},
        {"%@", 2.5, 2.5},
        {"%c", 65, "A"},
        {"%s", "text", "text"},
        {"%d", std::int64_t{-1}, std::int32_t{-1}},
        {"%D", -2, -2},
        {"%i", -3, -3},
        {"%u", -1, std::uint32_t{0xFFFFFFFF}},
        {"%U", 4, std::uint32_t{4}},
        {"%hi", 0x18000, std::int32_t{-0x8000}},
        {"%hu", 0x18000, std::int32_t{0x8000}},
        {"%qi", -5, std::int64_t{-5}},
        {"%qu", 6, std::uint64_t{6}},
        {"%ld", -7, std::int64_t{-7}},
        {"%lu", 8, std::uint64_t{8}},
        {"%lld", -9, std::int64_t{-9}},
        {"%llu", 10, std::uint64_t{10}},
        {"%f", 0.1, 0.1},
        {"%g", 0.1, 0.1f},
    };
    for (const auto& [format, given, taken] : cases) {
        const Extracted result = extracted(format, {given});
        EXPECT_EQ(result.sql, "?") << format;
        EXPECT_THAT(result.values, ElementsAre(taken)) << format;
    }
}

TEST(SQLFormatTest, ValuesAreTakenInOrder) {
    const Extracted result = extracted("a = %d and b='%@' or %f", {1, "two", 3.0});
    EXPECT_EQ(result.sql, "a = ? and b='?' or ?");
    EXPECT_THAT(result.values,
                ElementsAre(PropertyValue(1), PropertyValue("two"), PropertyValue(3.0)));
}

TEST(SQLFormatTest, AnObjectThatIsNothingIsWrittenAsNull) {
    const Extracted result = extracted("%@,%d", {PropertyValue{}, 1});
    EXPECT_EQ(result.sql, "NULL,?");
    EXPECT_THAT(result.values, ElementsAre(PropertyValue(1)));
}

TEST(SQLFormatTest, OtherCharactersStandForThemselves) {
    struct Case {
        std::string_view format, sql;
    };
    const std::vector<Case> cases{
        {"plain ? text", "plain ? text"},
        {"%%", "%"},
        {"like 'a%'", "like 'a'"},
        {"end%", "end"},
        {"%x", "x"},
        {"%h", "h"},
        {"%l", "l"},
        {"%lx", "lx"},
        {"%q", "q"},
        {"%hx", "hx"},
        {"%lf", "lf"},
        {{"a\0b", 3}, "ab"},
        {"", ""},
    };
    for (const auto& [format, sql] : cases) {
        const Extracted result = extracted(format, {1, 2});
        EXPECT_EQ(result.sql, sql) << format;
        EXPECT_THAT(result.values, IsEmpty()) << format;
    }
}

TEST(SQLFormatTest, AConversionWithoutAValueIsLeftAlone) {
    const Extracted result = extracted("%d %@", {1});
    EXPECT_EQ(result.sql, "? ?");
    EXPECT_THAT(result.values, ElementsAre(PropertyValue(1)));
}

}  // namespace
}  // namespace vantor
