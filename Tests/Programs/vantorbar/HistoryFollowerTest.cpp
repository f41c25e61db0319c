#include "Programs/vantorbar/HistoryFollower.h"

#include <sstream>

#include <gtest/gtest.h>

namespace vantor {
namespace {

constexpr int kHour = 1;
constexpr std::size_t kAll = 1000;

class HistoryFollowerTest : public testing::Test {
protected:
    static HistoryRow row(double sampleID, double figure = 0) {
        return {.sampleID = sampleID,
                .time = sampleID * 6,
                .empty = false,
                .uuid = {},
                .figures = {figure, 1.005, std::nullopt}};
    }
    std::string text() { return std::exchange(out, std::ostringstream()).str(); }

    const std::vector<HistorySource> sources = historySources();
    HistoryTable table{.columns = {"user", "system", "nice"}, .rows = {}, .isCut = false};
    std::ostringstream out;
};

TEST_F(HistoryFollowerTest, EachSampleIsPrintedOnce) {
    HistoryFollower follower(sources[0], kHour, 0, out);
    table.rows = {row(2, 12.346)};
    EXPECT_EQ(follower.print(table, kAll), 1U);
    EXPECT_EQ(text(), R"({"id":"2","n":"0.00","s":"1.00","t":"12","u":"12.35"})"
                      "\n");
    EXPECT_EQ(follower.print(table, kAll), 0U);
    table.rows.push_back(row(3));
    EXPECT_EQ(follower.print(table, kAll), 1U);
    EXPECT_EQ(text(), R"({"id":"3","n":"0.00","s":"1.00","t":"18","u":"0.00"})"
                      "\n");
}

TEST_F(HistoryFollowerTest, GapSaysThatItIsOne) {
    HistoryFollower follower(sources[0], kHour, 0, out);
    table.rows = {{.sampleID = 2, .time = 12, .empty = true, .uuid = {}, .figures = {}}};
    table.rows[0].figures.resize(3);
    follower.print(table, kAll);
    EXPECT_EQ(text(), R"({"empty":true,"id":"2","n":"0.00","s":"0.00","t":"12","u":"0.00"})"
                      "\n");
}

TEST_F(HistoryFollowerTest, MinusOneBeginsWithTheNewestAndGoesOnBehindIt) {
    HistoryFollower follower(sources[0], kHour, -1, out);
    table.rows = {row(2), row(3)};
    EXPECT_EQ(follower.print(table, kAll), 1U);
    EXPECT_EQ(text(), R"({"id":"-1","n":"0.00","s":"1.00","t":"18","u":"0.00"})"
                      "\n");
    table.rows.push_back(row(4));
    EXPECT_EQ(follower.print(table, kAll), 1U);
    EXPECT_EQ(text().substr(0, 9), R"({"id":"4")");
}

TEST_F(HistoryFollowerTest, AnIDThatIsAheadWaits) {
    HistoryFollower follower(sources[0], kHour, 3, out);
    table.rows = {row(2), row(3)};
    EXPECT_EQ(follower.print(table, kAll), 0U);
    table.rows.push_back(row(4));
    EXPECT_EQ(follower.print(table, kAll), 1U);
}

TEST_F(HistoryFollowerTest, IDsThatBeginAnewAreNew) {
    HistoryFollower follower(sources[0], kHour, 0, out);
    table.rows = {row(700)};
    follower.print(table, kAll);
    table.rows = {row(2), row(3)};
    EXPECT_EQ(follower.print(table, kAll), 2U);
}

TEST_F(HistoryFollowerTest, NoMoreLinesThanWanted) {
    HistoryFollower follower(sources[0], kHour, 0, out);
    table.rows = {row(2), row(3), row(4)};
    EXPECT_EQ(follower.print(table, 2), 2U);
}

TEST_F(HistoryFollowerTest, TableWithoutRowsPrintsNothing) {
    HistoryFollower follower(sources[0], kHour, -1, out);
    EXPECT_EQ(follower.print(table, kAll), 0U);
}

TEST_F(HistoryFollowerTest, EachThingHasLinesThatNameIt) {
    HistoryFollower follower(sources[2], kHour, 0, out);
    table.columns = {"processor", "memory"};
    table.rows = {{.sampleID = 2, .time = 12, .empty = false, .uuid = "one", .figures = {5, 6}},
                  {.sampleID = 2, .time = 12, .empty = false, .uuid = "two", .figures = {7, 8}}};
    EXPECT_EQ(follower.print(table, kAll), 2U);
    EXPECT_EQ(text(), R"({"id":"2","memory":"6.00","processor":"5.00","t":"12","uuid":"one"})"
                      "\n"
                      R"({"id":"2","memory":"8.00","processor":"7.00","t":"12","uuid":"two"})"
                      "\n");
}

}  // namespace
}  // namespace vantor
