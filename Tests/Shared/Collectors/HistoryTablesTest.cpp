#include "Shared/Collectors/HistoryTables.h"

#include <gtest/gtest.h>

namespace vantor {
namespace {

TEST(HistoryTablesTest, ATableIsNamedByItsScaleAndItsCollector) {
    const HistoryTables tables("cpu", StorageKind::collector);
    const char* const names[] = {
        "hour_cpuhistory",       "day_cpuhistory",      "week_cpuhistory", "month_cpuhistory",
        "threemonth_cpuhistory", "sixmonth_cpuhistory", "year_cpuhistory", "cpuhistory"};
    for (int index = 1; index <= 8; ++index) {
        EXPECT_EQ(tables.tableAtIndex(index), names[index - 1]);
        EXPECT_EQ(tables.itemTableAtIndex(index), names[index - 1]);
    }
}

TEST(HistoryTablesTest, WithItemsTheTableOfSamplesSaysThatItHasIDsAlone) {
    const HistoryTables tables("gpu", StorageKind::items);
    EXPECT_EQ(tables.tableAtIndex(1), "hour_gpuidhistory");
    EXPECT_EQ(tables.itemTableAtIndex(1), "hour_gpuhistory");
    EXPECT_EQ(tables.tableAtIndex(8), "gpuidhistory");
    EXPECT_EQ(tables.itemTableAtIndex(8), "gpuhistory");
}

TEST(HistoryTablesTest, NowAndWhatIsPastTheRowsHaveNone) {
    const HistoryTables tables("cpu", StorageKind::items);
    for (const int index : {-1, 0, 9, 1000}) {
        EXPECT_FALSE(tables.tableAtIndex(index));
        EXPECT_FALSE(tables.itemTableAtIndex(index));
    }
}

}  // namespace
}  // namespace vantor
