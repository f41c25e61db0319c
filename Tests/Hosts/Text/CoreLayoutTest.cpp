#include "Hosts/Text/CoreLayout.h"

#include <gtest/gtest.h>

namespace vantor {
namespace {

std::size_t widthTaken(const CoreLayout& layout, std::size_t cores) {
    const std::size_t number = digitCount(cores);
    if (layout.kind == CoreLayout::Kind::marks)
        return number + layout.perRow + (layout.perRow + 7) / CoreLayout::kGroup;
    const std::size_t column = number + 1 + layout.barWidth + 1 + CoreLayout::kValueWidth;
    return layout.perRow * column + (layout.perRow - 1) * CoreLayout::kGap;
}

std::size_t coresShown(const CoreLayout& layout) {
    return layout.rows * layout.perRow * layout.coresAMark;
}

TEST(CoreLayoutTest, EveryCoreFindsItsPlaceInEveryTerminal) {
    for (std::size_t cores = 1; cores <= 256; ++cores)
        for (std::size_t width = 38; width <= 298; width += 13)
            for (std::size_t lines = 2; lines <= 40; ++lines) {
                const CoreLayout layout = coreLayout(cores, width, lines);
                ASSERT_GE(coresShown(layout), cores) << width << " by " << lines;
                ASSERT_LE(widthTaken(layout, cores), width) << cores << " cores, " << lines;
                ASSERT_LE(layout.lines(), lines) << cores << " cores, " << width;
            }
}

TEST(CoreLayoutTest, AFewCoresStandBelowEachOther) {
    const CoreLayout layout = coreLayout(8, 78, 15);
    EXPECT_EQ(layout.kind, CoreLayout::Kind::bars);
    EXPECT_EQ(layout.rows, 8u);
    EXPECT_EQ(layout.perRow, 1u);
}

TEST(CoreLayoutTest, ManyCoresStandInSeveralColumns) {
    const CoreLayout layout = coreLayout(16, 78, 8);
    EXPECT_EQ(layout.kind, CoreLayout::Kind::bars);
    EXPECT_EQ(layout.rows, 8u);
    EXPECT_EQ(layout.perRow, 2u);
}

TEST(CoreLayoutTest, ColumnsThatWouldStayEmptyAreLeftOut) {
    EXPECT_EQ(coreLayout(5, 198, 20).perRow, 3u);  // two rows fill three columns, not four
}

TEST(CoreLayoutTest, CoresWithoutRoomForBarsBecomeMarks) {
    const CoreLayout layout = coreLayout(256, 78, 12);
    EXPECT_EQ(layout.kind, CoreLayout::Kind::marks);
    EXPECT_EQ(layout.perRow, 64u);
    EXPECT_EQ(layout.rows, 4u);
    EXPECT_EQ(layout.coresAMark, 1u);
    EXPECT_EQ(layout.lines(), 5u);  // with the heading
}

TEST(CoreLayoutTest, CoresWithoutRoomForMarksShareOne) {
    const CoreLayout layout = coreLayout(256, 38, 3);
    EXPECT_EQ(layout.kind, CoreLayout::Kind::marks);
    EXPECT_EQ(layout.perRow, 24u);
    EXPECT_EQ(layout.coresAMark, 6u);
}

TEST(CoreLayoutTest, NoCoresTakeNoLines) { EXPECT_EQ(coreLayout(0, 78, 10).lines(), 0u); }

}  // namespace
}  // namespace vantor
