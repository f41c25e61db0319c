#include "Foundation/Colour.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace vantor
