#include "Hosts/Text/TextLine.h"

#include <gtest/gtest.h>

namespace vantor {
namespace {

TextLine started(ColourDepth colours, std::size_t limit = 80) {
    TextLine line;
    line.start(colours, limit);
    return line;
}

TEST(TextLineTest, ATerminalWithoutColoursGetsNoEscapes) {
    TextLine line = started(ColourDepth::none);
    line.add(Ink::strong, "CPU");
    line.addCell(Ink::user, Ink::system, "#");
    line.finish();
    EXPECT_EQ(line.text(), "CPU#");
}

TEST(TextLineTest, ColoursAreSwitchedOnlyWhereTheyChangeAndOffAtTheEnd) {
    TextLine line = started(ColourDepth::basic);
    line.add(Ink::user, "a");
    line.add(Ink::user, "b");
    line.add(Ink::plain, "c");
    line.add(Ink::nice, "d");
    line.finish();
    EXPECT_EQ(line.text(), "\x1b[0;34mab\x1b[0mc\x1b[0;33md\x1b[0m");
}

TEST(TextLineTest, EveryDepthHasItsOwnCodes) {
    struct Case {
        ColourDepth colours;
        std::string_view text;
    };
    for (const auto& [colours, text] :
         {Case{ColourDepth::basic, "\x1b[0;34;41mx\x1b[0m"},
          Case{ColourDepth::palette, "\x1b[0;38;5;68;48;5;167mx\x1b[0m"},
          Case{ColourDepth::direct, "\x1b[0;38;2;82;139;214;48;2;217;95;87mx\x1b[0m"}}) {
        TextLine line = started(colours);
        line.addCell(Ink::user, Ink::system, "x");
        line.finish();
        EXPECT_EQ(line.text(), text);
    }
}

TEST(TextLineTest, BlanksTakeNoColourFromBehindTheGlyphBefore) {
    TextLine line = started(ColourDepth::basic);
    line.addCell(Ink::user, Ink::system, "x");
    line.addSpace(2);
    EXPECT_EQ(line.text(), "\x1b[0;34;41mx\x1b[0m  ");
}

TEST(TextLineTest, WhatIsPastTheLimitIsCutOff) {
    TextLine line = started(ColourDepth::none, 4);
    line.add(Ink::plain, "abc");
    line.add(Ink::plain, "def");
    line.addCell(Ink::plain, Ink::plain, "x");
    line.addSpace(3);
    EXPECT_EQ(line.text(), "abcd");
    EXPECT_EQ(line.columns(), 4u);
}

TEST(TextLineTest, AGlyphOfSeveralBytesIsNeverCutInside) {
    TextLine line = started(ColourDepth::none, 1);
    line.add(Ink::plain, "a");
    line.add(Ink::plain, "█", 1);
    EXPECT_EQ(line.text(), "a");
}

TEST(TextLineTest, PaddingStopsAtItsColumn) {
    TextLine line = started(ColourDepth::none);
    line.add(Ink::plain, "ab");
    line.padTo(4);
    line.padTo(3);
    EXPECT_EQ(line.text(), "ab  ");
}

TEST(TextLineTest, StartingAnewForgetsTheColour) {
    TextLine line = started(ColourDepth::basic);
    line.add(Ink::user, "a");
    line.start(ColourDepth::basic, 80);
    line.add(Ink::plain, "b");
    EXPECT_EQ(line.text(), "b");
    EXPECT_EQ(line.columns(), 1u);
}

}  // namespace
}  // namespace vantor
