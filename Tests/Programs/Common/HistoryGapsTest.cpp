#include "Programs/Common/HistoryGaps.h"

#include <string_view>

#include <gtest/gtest.h>

namespace vantor {
namespace {

/// A row every 6 seconds from 6 on: "." measured, "e" a gap, " " no row.
std::vector<HistoryRow> rowsOf(std::string_view picture) {
    std::vector<HistoryRow> rows;
    double time = 0;
    for (const char slot : picture) {
        time += 6;
        if (slot != ' ')
            rows.push_back({.sampleID = static_cast<double>(rows.size()) + 1,
                            .time = time,
                            .empty = slot == 'e',
                            .uuid = {},
                            .figures = {}});
    }
    return rows;
}

TEST(HistoryGapsTest, GapsAreRunsOfEmptySamplesAndOfMissingOnes) {
    struct Case {
        std::string_view picture;
        std::vector<HistoryGap> gaps;
    };
    const std::vector<Case> cases{{"", {}},
                                  {"....", {}},
                                  {".ee.", {{12, 18}}},
                                  {".  .", {{12, 18}}},
                                  {". e .", {{12, 24}}},
                                  {"e.e", {{6, 6}, {18, 18}}},
                                  {".e .e.", {{12, 18}, {30, 30}}}};
    for (const auto& [picture, gaps] : cases)
        EXPECT_EQ(gapsOf(rowsOf(picture), 6), gaps) << picture;
}

TEST(HistoryGapsTest, SamplesThatDriftBesideTheGridAreNoGap) {
    auto rows = rowsOf("...");
    rows[1].time += 0.9;
    EXPECT_TRUE(gapsOf(rows, 6).empty());
}

TEST(HistoryGapsTest, RowsOfOneSamplesThingsAreNoGap) {
    auto rows = rowsOf("...");
    rows[1].time = rows[0].time;
    rows[2].time = rows[0].time + 6;
    EXPECT_TRUE(gapsOf(rows, 6).empty());
}

}  // namespace
}  // namespace vantor
