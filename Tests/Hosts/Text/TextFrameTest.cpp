#include "Hosts/Text/TextFrame.h"

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantor {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr TerminalAbilities kASCII{Glyphs::ascii, ColourDepth::none, Cursor::placed};

TextFigures figuresOf(std::size_t cores) {
    TextFigures figures;
    figures.time = 6000;
    figures.mean = ProcessorShares{15.25, 7.5, 0.25};
    for (std::size_t core = 0; core < cores; ++core)
        figures.cores.push_back({static_cast<double>(core % 101), 0, 0});
    figures.loads = {0.5, 12.25, 0.75};
    figures.tasks = 245;
    figures.threads = 1034;
    figures.tenMinutes = {6000, {{6000, 50}}};
    figures.hour = {6000, {{6000, 50}}};
    return figures;
}

std::vector<std::string> drawn(const TextFigures& figures, std::size_t columns, std::size_t rows,
                               const TerminalAbilities& abilities = kASCII) {
    const TextFrame frame = render(figures, {columns, rows, abilities});
    std::vector<std::string> lines;
    for (const TextLine& line : frame.lines())
        lines.push_back(line.text());
    return lines;
}

TEST(TextFrameTest, TheTitleTellsTheWholeAndTheLoads) {
    const auto lines = drawn(figuresOf(2), 80, 24);
    EXPECT_EQ(lines[0],
              " CPU   23.0 %                 245 tasks   1034 threads   load  0.50 12.25  0.75");
}

TEST(TextFrameTest, TheSplitIsABarWithItsLegend) {
    const auto lines = drawn(figuresOf(2), 42, 24);
    EXPECT_EQ(lines[1], " ######===...............................");
    EXPECT_EQ(lines[2], " # user  15.2 %   = system   7.5 %");
    EXPECT_EQ(lines[3], " - nice   0.2 %   . idle  77.0 %");
}

TEST(TextFrameTest, CountsWithoutRoomInTheTitleGetALine) {
    const auto lines = drawn(figuresOf(2), 42, 24);
    EXPECT_EQ(lines[0], " CPU   23.0 %      load  0.50 12.25  0.75");
    EXPECT_EQ(lines[4], "  245 tasks   1034 threads");
}

TEST(TextFrameTest, EveryCoreHasABarAndAFigure) {
    TextFigures figures = figuresOf(0);
    figures.cores = {{50, 25, 0}, {100, 0, 0}};
    const auto lines = drawn(figures, 42, 24);
    EXPECT_THAT(lines, Contains(" 1 ################========........  75.0"));
    EXPECT_THAT(lines, Contains(" 2 ################################ 100.0"));
}

TEST(TextFrameTest, CoresReadDownwardsInColumns) {
    const auto lines = drawn(figuresOf(16), 100, 12);
    EXPECT_THAT(lines, Contains(AllOf(StartsWith("  1 "), HasSubstr("    9 "), EndsWith(" 12.0"))));
}

TEST(TextFrameTest, FoldedCoresSayHowManyTheyAre) {
    EXPECT_THAT(drawn(figuresOf(256), 80, 24), Contains(" 256 cores"));
    EXPECT_THAT(drawn(figuresOf(256), 40, 10), Contains(" 256 cores, 6 to a mark"));
}

TEST(TextFrameTest, HistoriesCarryTheirSpanAndTheNewestAtTheRight) {
    const auto lines = drawn(figuresOf(2), 80, 24);
    EXPECT_THAT(lines, Contains(AllOf(StartsWith(" 10 min ......"), EndsWith("...#"))));
    EXPECT_THAT(lines, Contains(AllOf(StartsWith(" 1 hour ......"), EndsWith("...#"))));
}

TEST(TextFrameTest, BeforeTheFirstMeasurementNoFigureIsShown) {
    TextFigures figures;
    figures.cores.resize(2);
    const auto lines = drawn(figures, 80, 24);
    EXPECT_EQ(lines[0],
              " CPU      - %                   - tasks      - threads   load     -     -     -");
    for (const std::string& line : lines)
        EXPECT_THAT(line, Not(HasSubstr("0.0")));
}

TEST(TextFrameTest, ShareThatIsNoNumberIsADash) {
    TextFigures figures = figuresOf(1);
    figures.cores[0].user = std::numeric_limits<double>::quiet_NaN();
    EXPECT_THAT(drawn(figures, 40, 24), Contains(AllOf(StartsWith(" 1 ..."), EndsWith("     -"))));
}

TEST(TextFrameTest, FiguresKeepTheirColumnsWhateverTheyAre) {
    TextFigures idle = figuresOf(4), busy = figuresOf(4);
    idle.mean = ProcessorShares{};
    busy.mean = ProcessorShares{100, 0, 0};
    idle.cores.assign(4, {});
    busy.cores.assign(4, {100, 0, 0});
    for (const std::size_t columns : {40u, 80u, 200u}) {
        const auto before = drawn(idle, columns, 24), after = drawn(busy, columns, 24);
        ASSERT_EQ(before.size(), after.size());
        for (std::size_t line = 0; line < before.size(); ++line)
            EXPECT_EQ(before[line].size(), after[line].size()) << before[line];
    }
}

TEST(TextFrameTest, NoFrameIsLargerThanItsTerminal) {
    for (const std::size_t cores : {0u, 1u, 2u, 8u, 17u, 64u, 128u, 256u})
        for (const std::size_t columns : {1u, 2u, 10u, 40u, 57u, 80u, 132u, 300u})
            for (const std::size_t rows : {1u, 2u, 3u, 4u, 6u, 9u, 15u, 24u, 60u}) {
                const auto lines = drawn(figuresOf(cores), columns, rows);
                ASSERT_LE(lines.size(), rows) << cores << " cores, " << columns << " columns";
                for (const std::string& line : lines)
                    ASSERT_LE(line.size(), std::max<std::size_t>(columns, 3) - 1) << line;
            }
}

TEST(TextFrameTest, SmallTerminalsKeepTheBestOfIt) {
    EXPECT_EQ(drawn(figuresOf(2), 80, 1).size(), 1u);
    const auto lines = drawn(figuresOf(2), 80, 5);
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_THAT(lines[3], StartsWith(" 1 "));
    EXPECT_THAT(lines[4], StartsWith(" 1 hour "));
}

TEST(TextFrameTest, EveryLineEndsWithoutColour) {
    const TerminalAbilities abilities{Glyphs::unicode, ColourDepth::direct, Cursor::placed};
    int coloured = 0;
    for (const std::string& line : drawn(figuresOf(8), 80, 24, abilities)) {
        const auto lastOn = line.rfind("\x1b[0;"), lastOff = line.rfind("\x1b[0m");
        coloured += lastOn == line.npos ? 0 : 1;
        EXPECT_TRUE(lastOn == line.npos || (lastOff != line.npos && lastOff > lastOn)) << line;
    }
    EXPECT_GT(coloured, 10);
}

TEST(TextFrameTest, DrawingAgainGivesTheSame) {
    const TerminalShape shape{80, 24, kASCII};
    TextFrame frame;
    renderInto(frame, figuresOf(64), shape);
    renderInto(frame, figuresOf(2), shape);
    const TextFrame fresh = render(figuresOf(2), shape);
    ASSERT_EQ(frame.lines().size(), fresh.lines().size());
    for (std::size_t line = 0; line < fresh.lines().size(); ++line)
        EXPECT_EQ(frame.lines()[line].text(), fresh.lines()[line].text());
}

TEST(TextFrameTest, TheSummaryIsOneLineOfASCII) {
    TextLine line;
    renderSummary(line, figuresOf(2));
    EXPECT_EQ(line.text(), "cpu  23.0 %  user  15.2  system   7.5  nice   0.2  "
                           "load  0.50 12.25  0.75   245 tasks   1034 threads");
}

}  // namespace
}  // namespace vantor
