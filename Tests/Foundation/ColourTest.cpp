#include "Foundation/Colour.h"

#include <limits>

#include <gtest/gtest.h>

#include "Tests/Support/DecimalCommas.h"

namespace vantor {
namespace {

TEST(ColourTest, IsWrittenWithTwoDecimals) {
    EXPECT_EQ(stringFromColor({0.098, 0.58, 0.941, 1}), "0.10 0.58 0.94 1.00");
}

TEST(ColourTest, IsReadWithAnyNumberOfDecimalsInSinglePrecision) {
    const auto colour = colorFromString("0.11 1 .5 0.125");
    ASSERT_TRUE(colour);
    EXPECT_EQ(*colour, (Colour{double{0.11F}, 1, 0.5, 0.125}));
}

TEST(ColourTest, APartThatIsNoNumberIsZero) {
    EXPECT_EQ(colorFromString("1 red 1 nan"), (Colour{1, 0, 1, 0}));
}

TEST(ColourTest, NeedsFourPartsWithSingleBlanks) {
    for (const char* const text : {"", "1 1 1", "1 1 1 1 1", "1  1 1 1", "1,1,1,1"})
        EXPECT_FALSE(colorFromString(text)) << text;
}

TEST(ColourTest, OnlyATextIsAColour) {
    EXPECT_FALSE(colorFromString(1.0));
    EXPECT_FALSE(colorFromString(PropertyValue{}));
}

TEST(ColourTest, DecimalsMakeNoDifference) {
    EXPECT_EQ(colorFromString("1 1 1 0.5"), colorFromString("1.00 1.00 1.00 0.50"));
}

TEST(ColourTest, APartMayBeMissingBetweenItsBlanks) {
    EXPECT_EQ(colorFromString("1 1 1 "), (Colour{1, 1, 1, 0}));
    EXPECT_EQ(colorFromString("   "), (Colour{0, 0, 0, 0}));
    EXPECT_EQ(colorFromString("0,5 0x1 1e0 .25x"), (Colour{0, 0, 1, 0.25}));
}

TEST(ColourTest, APartBeyondSinglePrecisionIsCutToIt) {
    constexpr double kLargest = std::numeric_limits<float>::max();
    EXPECT_EQ(colorFromString("1e39 -1e300 1e-50 1"), (Colour{kLargest, -kLargest, 0, 1}));
}

TEST(ColourTest, DecimalPointIsNotTheLocales) {
    const test::DecimalCommas commas;
    EXPECT_EQ(colorFromString("0.5 0.25 0 1"), (Colour{0.5, 0.25, 0, 1}));
    EXPECT_EQ(stringFromColor({0.5, 0.25, 0, 1}), "0.50 0.25 0.00 1.00");
}

}  // namespace
}  // namespace vantor
