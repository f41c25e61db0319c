#include "Hosts/Text/TextBars.h"

#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace vantor {
namespace {

constexpr TerminalAbilities kASCII{Glyphs::ascii, ColourDepth::none, Cursor::placed};
constexpr TerminalAbilities kMono{Glyphs::unicode, ColourDepth::none, Cursor::placed};
constexpr TerminalAbilities kColour{Glyphs::unicode, ColourDepth::basic, Cursor::placed};
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

std::string bar(const ProcessorShares& shares, std::size_t width,
                const TerminalAbilities& abilities = kASCII) {
    TextLine line;
    line.start(abilities.colours, 300);
    addSplitBar(line, shares, width, abilities);
    line.finish();
    EXPECT_EQ(line.columns(), width);
    return line.text();
}

std::string graph(const std::vector<HistoryColumn>& columns, std::size_t row, std::size_t height) {
    TextLine line;
    line.start(ColourDepth::none, 300);
    addGraphRow(line, columns, row, height, Glyphs::unicode);
    return line.text();
}

TEST(TextBarsTest, PartsStandSideBySide) {
    EXPECT_EQ(bar({50, 20, 10}, 10), "#####==-..");
    EXPECT_EQ(bar({50, 20, 10}, 10, kMono), "█████▓▓▒··");
}

TEST(TextBarsTest, AFullBarHasNoEmptyColumn) { EXPECT_EQ(bar({60, 30, 10}, 10), "######===-"); }

TEST(TextBarsTest, WhatIsMoreThanAllIsCut) { EXPECT_EQ(bar({90, 90, 90}, 10), "#########="); }

TEST(TextBarsTest, AnIdleBarIsEmpty) { EXPECT_EQ(bar({}, 4), "...."); }

TEST(TextBarsTest, AnyLoadAtAllShowsInTheColourOfItsLargestPart) {
    EXPECT_EQ(bar({0.01, 0, 0}, 10), "#.........");
    EXPECT_EQ(bar({0.01, 0.02, 0}, 10), "=.........");
    EXPECT_EQ(bar({0, 0, 0.01}, 10), "-.........");
}

TEST(TextBarsTest, SharesThatAreNoNumbersCountAsNone) {
    EXPECT_EQ(bar({kNoNumber, 50, -3}, 4), "==..");
    EXPECT_EQ(bar({std::numeric_limits<double>::infinity(), 0, 0}, 4), "....");
}

TEST(TextBarsTest, InColourPartsMeetInsideAColumn) {
    // 12.5 percent of 8 columns is one column; of 4 it is half a column.
    EXPECT_EQ(bar({12.5, 12.5, 0}, 4, kColour), "\x1b[0;34;41m▌\x1b[0;90m···\x1b[0m");
}

TEST(TextBarsTest, InColourTheLastPartEndsInsideAColumn) {
    EXPECT_EQ(bar({37.5, 0, 0}, 2, kColour), "\x1b[0;34m▊\x1b[0;90m·\x1b[0m");
}

TEST(TextBarsTest, AMarkRisesWithTheShare) {
    struct Case {
        double used;
        std::string_view mark;
    };
    for (const auto& [used, mark] : {Case{0, "▁"}, Case{12.5, "▁"}, Case{25, "▂"}, Case{50, "▄"},
                                     Case{100, "█"}, Case{500, "█"}, Case{kNoNumber, "▁"}}) {
        TextLine line;
        line.start(ColourDepth::none, 300);
        addMark(line, used, kMono);
        EXPECT_EQ(line.text(), mark) << used;
    }
}

TEST(TextBarsTest, AGraphFillsRowsFromBelow) {
    const std::vector<HistoryColumn> columns{{100, 1}, {50, 1}, {25, 1}, {0, 1}};
    EXPECT_EQ(graph(columns, 1, 2), "█   ");
    EXPECT_EQ(graph(columns, 0, 2), "██▄▁");
}

TEST(TextBarsTest, AGapIsADotAtTheBottom) {
    const std::vector<HistoryColumn> columns{{100, 1}, {0, 0}, {100, 2}};
    EXPECT_EQ(graph(columns, 1, 2), "█  ");
    EXPECT_EQ(graph(columns, 0, 2), "█·█");
}

TEST(TextBarsTest, SamplesOfOneColumnAreAveraged) {
    std::vector<HistoryColumn> columns(3);
    fillHistoryColumns({120, {{120, 5}, {119, 10}, {115, 20}, {110, 30}}}, 10, columns);
    EXPECT_EQ(columns[2].count, 1);
    EXPECT_DOUBLE_EQ(columns[2].mean(), 5);
    EXPECT_EQ(columns[1].count, 3);
    EXPECT_DOUBLE_EQ(columns[1].mean(), 20);
    EXPECT_EQ(columns[0].count, 0);
}

TEST(TextBarsTest, ColumnsStandStillUntilTheNextOneBegins) {
    const UsageHistory early{121, {{119, 10}}}, late{129, {{119, 10}}}, next{130, {{119, 10}}};
    std::vector<HistoryColumn> columns(3);
    fillHistoryColumns(early, 10, columns);
    EXPECT_EQ(columns[1].count, 1);
    fillHistoryColumns(late, 10, columns);
    EXPECT_EQ(columns[1].count, 1);
    fillHistoryColumns(next, 10, columns);
    EXPECT_EQ(columns[1].count, 0);
    EXPECT_EQ(columns[0].count, 1);
}

TEST(TextBarsTest, SamplesOutsideTheGraphAreLeftOut) {
    std::vector<HistoryColumn> columns(2);
    fillHistoryColumns({100, {{150, 1}, {20, 1}, {kNoNumber, 1}}}, 10, columns);
    EXPECT_EQ(columns[0].count, 0);
    EXPECT_EQ(columns[1].count, 0);
}

}  // namespace
}  // namespace vantor
