#include "Foundation/UTF8.h"

#include <map>

#include <gtest/gtest.h>

namespace vantor {
namespace {

std::string utf8(char32_t letter) {
    std::string text = "-";
    appendUTF8(letter, text);
    return text;
}

TEST(UTF8Test, LettersOfEveryLengthAreValid) {
    for (const std::string_view text :
         {"", "a", "\x7F", "\u0080", "\u07FF", "\u0800", "\uD7FF", "\uE000", "\uFFFF", "\U00010000",
          "\U0010FFFF", "Gr\u00F6\u00DFe \u5E73\u5747 \U0001F600!"})
        EXPECT_EQ(validUTF8Prefix(text), text);
}

TEST(UTF8Test, NullIsALetter) {
    const std::string_view text("a\0b", 3);
    EXPECT_EQ(validUTF8Prefix(text), text);
}

TEST(UTF8Test, DamageEndsTheValidPart) {
    for (const std::string_view damage :
         {"\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC3", "\xC3(", "\xE0\x80\x80", "\xE0\x9F\xBF",
          "\xE4\xB8", "\xED\xA0\x80", "\xED\xBF\xBF", "\xF0\x80\x80\x80", "\xF0\x8F\xBF\xBF",
          "\xF0\x9F\x98", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFE", "\xFF"})
        EXPECT_EQ(validUTF8Prefix("\u00E9t\u00E9" + std::string(damage) + "more"), "\u00E9t\u00E9");
}

TEST(UTF8Test, LettersAreAppendedInTheirShortestForm) {
    const std::map<char32_t, std::string_view> texts{{'a', "-a"},
                                                     {0x7F, "-\x7F"},
                                                     {0x80, "-\u0080"},
                                                     {0x7FF, "-\u07FF"},
                                                     {0x800, "-\u0800"},
                                                     {0xFFFF, "-\uFFFF"},
                                                     {0x10000, "-\U00010000"},
                                                     {0x10FFFF, "-\U0010FFFF"}};
    for (const auto& [letter, text] : texts)
        EXPECT_EQ(utf8(letter), text);
}

TEST(UTF8Test, WhatIsNoLetterIsReplaced) {
    for (const char32_t letter : {0xD800u, 0xDBFFu, 0xDC00u, 0xDFFFu, 0x110000u, 0xFFFFFFFFu})
        EXPECT_EQ(utf8(letter), "-\uFFFD");
}

}  // namespace
}  // namespace vantor
