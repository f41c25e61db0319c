#include "Platform/Linux/EDID.h"

#include <gtest/gtest.h>

#include "Tests/Support/DeviceTree.h"

namespace vantor::test {
namespace {

TEST(EDIDTest, SaysWhatTheDisplayIs) {
    const auto edid = edidOf(edidBytes());
    ASSERT_TRUE(edid);
    EXPECT_EQ(edidVendorLetters(edid->vendor), "DEL");
    EXPECT_EQ(edid->product, 0x41A8);
    EXPECT_EQ(edid->serial, 0x12345678u);
    EXPECT_EQ(edid->name, "U2720Q");
    EXPECT_EQ(edid->serialText, "ABC123");
    EXPECT_EQ(edid->widthPixels, 3840u);
    EXPECT_EQ(edid->heightPixels, 2160u);
    EXPECT_EQ(edid->widthCentimetres, 60u);
    EXPECT_EQ(edid->heightCentimetres, 34u);
}

TEST(EDIDTest, FurtherBlocksAreLeftAlone) {
    EXPECT_TRUE(edidOf(edidBytes() + std::string(128, 'x')));
}

TEST(EDIDTest, WrongLengthIsRefused) {
    const std::string whole = edidBytes();
    for (const std::size_t length : {0, 1, 127})
        EXPECT_FALSE(edidOf(whole.substr(0, length))) << length;
    EXPECT_FALSE(edidOf(whole + "x"));
}

TEST(EDIDTest, WrongSumOrHeaderIsRefused) {
    std::string wrongSum = edidBytes();
    wrongSum[127] = static_cast<char>(wrongSum[127] + 1);
    EXPECT_FALSE(edidOf(wrongSum));
    std::string wrongHeader = edidBytes();
    wrongHeader[1] = 0;
    correctEDIDSum(wrongHeader);
    EXPECT_FALSE(edidOf(wrongHeader));
    EXPECT_FALSE(edidOf(std::string(128, '\0')));
}

TEST(EDIDTest, TextsHoldOnlyWhatPrints) {
    const auto edid = edidOf(edidBytes({.name = "A\x01\xFF B  ", .serialText = ""}));
    ASSERT_TRUE(edid);
    EXPECT_EQ(edid->name, "A B");
    EXPECT_EQ(edid->serialText, "");
}

TEST(EDIDTest, VendorThatIsNoLettersIsMarked) { EXPECT_EQ(edidVendorLetters(0), "???"); }

}  // namespace
}  // namespace vantor::test
