#include "Painting/PlainText.h"

#include <string>

#include <gtest/gtest.h>

namespace vantor::Painting {
namespace {

TEST(PlainTextTest, PlainTextIsNotCopied) {
    for (const std::string text : {"", "42%", "Größe 日本 😀"}) {
        const PlainText plain(text);
        EXPECT_EQ(plain.view(), text);
        EXPECT_EQ(plain.view().data(), text.data());
    }
}

TEST(PlainTextTest, WhatIsNotUTF8IsReplaced) {
    struct Case {
        std::string given, wanted;
    };
    for (const auto& [given, wanted] : {
             Case{"a\xFFz", "a�z"}, Case{"\xC3", "�"}, Case{"\x80\x80", "��"},
             Case{"\xC0\xAF", "��"},              // too long a form
             Case{"\xE0\x80\x80", "���"},         // too long a form
             Case{"\xED\xA0\x80", "���"},         // a surrogate
             Case{"\xF0\x9F\x98", "���"},         // cut off
             Case{"\xF4\x90\x80\x80z", "����z"},  // beyond the last character
         })
        EXPECT_EQ(PlainText(given).view(), wanted);
}

TEST(PlainTextTest, ControlCharactersAreBlanks) {
    EXPECT_EQ(PlainText(std::string_view("a\0b\tc\nd\x7F\xC2\x85\xE2\x80\xA8", 13)).view(),
              "a b c d   ");
}

TEST(PlainTextTest, OnlyTheFirstCharactersCount) {
    const std::string letters(10'000, 'x');
    EXPECT_EQ(PlainText(letters).view(), std::string(PlainText::kMostCharacters, 'x'));
    std::string wide, broken(10'000, '\xFF');
    for (int count = 0; count < 5'000; ++count)
        wide += "😀";
    EXPECT_EQ(PlainText(wide).view().size(), PlainText::kMostCharacters * 4);
    EXPECT_EQ(PlainText(broken).view().size(), PlainText::kMostCharacters * 3);
}

}  // namespace
}  // namespace vantor::Painting
