#include "Shared/Platforms/SerialNumber.h"

#include <gtest/gtest.h>

namespace vantor {
namespace {

TEST(SerialNumberTest, TwelveCharactersTellHalfYearAndWeek) {
    const std::pair<const char*, ManufactureDate> cases[] = {
        {"C02XY0000000", {18, 27}}, {"C02SY0000000", {16, 54}}, {"C02C10000000", {10, 1}},
        {"C02D10000000", {10, 28}}, {"C02YX0000000", {18, 53}}, {"C02VC0000000", {17, 37}},
        {"C02K90000000", {13, 9}}};
    for (const auto& [serial, date] : cases)
        EXPECT_EQ(manufactureDateOf(serial), date) << serial;
}

TEST(SerialNumberTest, UnknownCodeTellsNothing) {
    for (const char* const serial : {"C02A10000000", "C02C00000000", "C02CS0000000", "C02CA0000000",
                                     "C02c10000000", "C02W10000000"})
        EXPECT_EQ(manufactureDateOf(serial), std::nullopt) << serial;
}

TEST(SerialNumberTest, ElevenCharactersTellYearDigitAndWeek) {
    EXPECT_EQ(manufactureDateOf("W8805000000"), (ManufactureDate{8, 5}));
    EXPECT_EQ(manufactureDateOf("W8952000000"), (ManufactureDate{9, 52}));
    EXPECT_EQ(manufactureDateOf("W8X5A000000"), (ManufactureDate{0, 5}));
}

TEST(SerialNumberTest, PlaceholderAndShortNumberTellNothing) {
    EXPECT_EQ(manufactureDateOf("System Serial#"), std::nullopt);
    EXPECT_EQ(manufactureDateOf("12System890"), std::nullopt);
    EXPECT_EQ(manufactureDateOf("W880500000"), std::nullopt);
    EXPECT_EQ(manufactureDateOf(""), std::nullopt);
}

TEST(SerialNumberTest, TailIsTheLast3Of11CharactersElseTheLast4) {
    EXPECT_EQ(serialTail("W8805000YA5"), "YA5");
    EXPECT_EQ(serialTail("C02H10AADV14"), "DV14");
    EXPECT_EQ(serialTail("12345678"), "5678");
    EXPECT_EQ(serialTail("12345"), "2345");
    EXPECT_EQ(serialTail("1234"), "");
    EXPECT_EQ(serialTail(""), "");
}

}  // namespace
}  // namespace vantor
