#include "Programs/vantorbar/ProcessList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

PropertyValue::Dictionary record(const char* name, double percent) {
    return {{"name", name}, {"c", percent}};
}

TEST(ProcessListTest, RecordsKeepTheirOrder) {
    const auto processes =
        processesIn({{"type", "1"},
                     {"processes", PropertyValue::Array{record("b", 12.5), record("a", 100.0)}}});
    ASSERT_EQ(processes.size(), 2u);
    EXPECT_EQ(processes[0].name, "b");
    EXPECT_EQ(processes[0].percent, 12.5);
    EXPECT_EQ(processes[1].name, "a");
}

TEST(ProcessListTest, WhatARecordLacksIsEmptyAndZero) {
    const auto processes = processesIn(
        {{"processes", PropertyValue::Array{PropertyValue::Dictionary{}, "no record"}}});
    ASSERT_EQ(processes.size(), 2u);
    for (const ListedProcess& process : processes) {
        EXPECT_EQ(process.name, "");
        EXPECT_EQ(process.percent, 0);
    }
}

TEST(ProcessListTest, ResponseWithoutProcessesListsNone) {
    EXPECT_THAT(processesIn({{"type", "1"}}), IsEmpty());
    EXPECT_THAT(processesIn({{"processes", "many"}}), IsEmpty());
}

TEST(ProcessListTest, JSONIsOneLineWithAnyName) {
    EXPECT_EQ(processesAsJSON(12.5, {{"a\n\"b\"", 250}, {"\xC3\xA4", 0.5}}),
              "{\"time\":12.5,\"processes\":[{\"name\":\"a\\n\\\"b\\\"\",\"percent\":250.0},"
              "{\"name\":\"\xC3\xA4\",\"percent\":0.5}]}");
}

TEST(ProcessListTest, FiguresStandBelowEachOther) {
    EXPECT_THAT(processesAsLines({{"busy", 250}, {"idle", 0}}, 80, Glyphs::unicode),
                ElementsAre("  CPU %  PROCESS", "  250.0  busy", "    0.0  idle"));
}

TEST(ProcessListTest, LinesEndAtTheLastColumn) {
    const std::vector<ListedProcess> processes{{"\xC3\xA4\xC3\xB6\xC3\xBC", 1}};
    EXPECT_THAT(processesAsLines(processes, 11, Glyphs::unicode),
                ElementsAre("  CPU %  PR", "    1.0  \xC3\xA4\xC3\xB6"));
    EXPECT_THAT(processesAsLines(processes, 3, Glyphs::unicode), ElementsAre("  C", "   "));
    EXPECT_THAT(processesAsLines(processes, 0, Glyphs::unicode), ElementsAre("", ""));
}

TEST(ProcessListTest, NameIsNoOrderToTheTerminal) {
    EXPECT_THAT(processesAsLines({{"a\x1b[2Jb\x7f\xC2\x9B\n", 1}}, 80, Glyphs::unicode),
                ElementsAre("  CPU %  PROCESS", "    1.0  a?[2Jb???"));
}

TEST(ProcessListTest, LettersThatTheTerminalLacksAreStoodInFor) {
    EXPECT_THAT(processesAsLines({{"\xC3\xA4z\xFF", 1}}, 80, Glyphs::ascii),
                ElementsAre("  CPU %  PROCESS", "    1.0  ?z?"));
}

}  // namespace
}  // namespace vantor
