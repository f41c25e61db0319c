#include "Foundation/LetterCase.h"

#include <gtest/gtest.h>

namespace vantor {
namespace {

TEST(LetterCaseTest, LettersOfManyAlphabetsHaveCapitals) {
    const struct {
        const char *text, *capitals;
    } cases[] = {{"Load average", "LOAD AVERAGE"},
                 {"größe", "GRÖSSE"},
                 {"été, ça, où, œuvre, ÿ", "ÉTÉ, ÇA, OÙ, ŒUVRE, Ÿ"},
                 {"mañana", "MAÑANA"},
                 {"příliš žluťoučký kůň", "PŘÍLIŠ ŽLUŤOUČKÝ KŮŇ"},
                 {"łódź, ďábel, ŀ", "ŁÓDŹ, ĎÁBEL, Ŀ"},
                 {"αθήνας ώρα", "ΑΘΉΝΑΣ ΏΡΑ"},
                 {"ёлка їжак", "ЁЛКА ЇЖАК"},
                 {"việt", "VIỆT"}};
    for (const auto& [text, capitals] : cases)
        EXPECT_EQ(upperCased(text), capitals);
}

TEST(LetterCaseTest, WhatHasNoCapitalStays) {
    for (const char* const text : {"", "ABC 12 %", "過去1時間", "÷ × 😀", "שלום"})
        EXPECT_EQ(upperCased(text), text);
}

TEST(LetterCaseTest, BytesThatAreNoLettersStay) {
    EXPECT_EQ(upperCased("a\xFF"
                         "b\xC3"),
              "A\xFF"
              "B\xC3");
}

TEST(LetterCaseTest, CombiningMarksFollowTheirLetter) {
    EXPECT_EQ(upperCased("e\u0301"), "E\u0301");
}

}  // namespace
}  // namespace vantor
