#include "Foundation/PropertyValue.h"

#include <limits>

#include <gtest/gtest.h>

namespace vantor {
namespace {

TEST(PropertyValueTest, NothingReadsAsFalseZeroAndEmpty) {
    const PropertyValue nothing;
    EXPECT_FALSE(nothing.boolValue());
    EXPECT_EQ(nothing.integerValue(), 0);
    EXPECT_EQ(nothing.doubleValue(), 0);
    EXPECT_EQ(nothing.stringValue(), "");
}

TEST(PropertyValueTest, ATextIsTrueByItsFirstLetterOrItsNumber) {
    for (const char* const text : {"YES", "yes", "true", "T", "1", " 7", "-3", "+1", "0012"})
        EXPECT_TRUE(PropertyValue(text).boolValue()) << text;
    for (const char* const text : {"", "no", "false", "0", "000", "on", " ", "x1"})
        EXPECT_FALSE(PropertyValue(text).boolValue()) << text;
}

TEST(PropertyValueTest, ATextReadsAsItsLeadingInteger) {
    const std::pair<const char*, std::int64_t> cases[] = {
        {"42", 42}, {" -7 apples", -7}, {"3.9", 3}, {"+5", 5}, {"apples", 0}, {"", 0}, {"-", 0},
        {"99999999999999999999", std::numeric_limits<std::int64_t>::max()}};
    for (const auto& [text, integer] : cases)
        EXPECT_EQ(PropertyValue(text).integerValue(), integer) << text;
}

TEST(PropertyValueTest, ATextReadsAsItsLeadingNumber) {
    const std::pair<const char*, double> cases[] = {{"0.5", 0.5}, {" 1e3x", 1000}, {"-2.", -2},
                                                    {"nan", 0},   {"inf", 0},      {"", 0}};
    for (const auto& [text, number] : cases)
        EXPECT_EQ(PropertyValue(text).doubleValue(), number) << text;
}

TEST(PropertyValueTest, AFloatingFigureIsCutTowardsZero) {
    EXPECT_EQ(PropertyValue(-2.9).integerValue(), -2);
    EXPECT_EQ(PropertyValue(1e300).integerValue(), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(PropertyValue(-1e300).integerValue(), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(PropertyValue(std::numeric_limits<double>::quiet_NaN()).integerValue(), 0);
}

TEST(PropertyValueTest, NumbersOfOtherKindsDiffer) {
    EXPECT_FALSE(PropertyValue(1.0) == PropertyValue(std::int64_t{1}));
    EXPECT_FALSE(PropertyValue(true) == PropertyValue(std::int64_t{1}));
    EXPECT_TRUE(PropertyValue(1.0) == PropertyValue(1.0));
}

TEST(PropertyValueTest, ANumberEqualsItsText) {
    EXPECT_TRUE(isEqualToString(NSInt(3), "3"));
    EXPECT_TRUE(isEqualToString(NSDouble(0.5), "0.5"));
    EXPECT_FALSE(isEqualToString(NSInt(3), "3.0"));
    EXPECT_FALSE(isEqualToString(PropertyValue("3"), "3"));  // a text is no number
}

}  // namespace
}  // namespace vantor
