#include <numeric>

#include <gtest/gtest.h>

#include "Platform/Simulated/SimulatedMachine.h"
#include "Shared/Database/HistoryDatabaseItem.h"
#include "Tests/Support/HistoryFile.h"
#include "Tests/Support/SQLWorld.h"
#include "Tests/Support/TemporaryFolder.h"

// A history file that another process holds for a long time.

namespace vantor {
namespace {

constexpr int kBatchRows = 25, kBatchesInTenMinutes = 4;
constexpr double kBetweenBatchesSeconds = 144;

class HeldHistoryTest : public testing::Test {
protected:
    HeldHistoryTest() {
        item.database().executeStatements(
            "create table hour_cpuhistory (sample double PRIMARY KEY NOT NULL)");
    }
    void writeBatch() {
        for (int row = 0; row < kBatchRows; ++row) {
            HistoryRecord record("insert into %@ values (?)", "hour_cpuhistory");
            record.add(static_cast<double>(++sample));
            item.addItem(std::move(record));
        }
        item.commit();
    }
    double rows() { return test::HistoryFile(file).number("select count(*) from hour_cpuhistory"); }
    double waitedSeconds() const {
        return std::accumulate(wait.sleeps.begin(), wait.sleeps.end(), 0) / 1000.0;
    }

    test::TemporaryFolder folder;
    std::filesystem::path file = folder / "cpu.db";
    test::CountedBusyWait wait;
    simulated::SimulatedMachine machine;
    HistoryDatabaseItem item{machine.ports(), file, wait};
    int sample = 0;
};

TEST_F(HeldHistoryTest, WhatWasWholeStaysAndTheNextFreeBatchIsWritten) {
    writeBatch();
    test::HistoryFile holder(file);
    holder.run("begin exclusive transaction");
    for (int batch = 0; batch < kBatchesInTenMinutes; ++batch)
        writeBatch();
    holder.run("commit");
    EXPECT_EQ(rows(), kBatchRows);
    writeBatch();
    EXPECT_EQ(rows(), 2 * kBatchRows);
    EXPECT_FALSE(item.database().inTransaction());
}

TEST_F(HeldHistoryTest, NothingPilesUpAndABatchIsGivenUpBeforeTheNext) {
    test::HistoryFile holder(file);
    holder.run("begin exclusive transaction");
    for (int batch = 1; batch <= kBatchesInTenMinutes; ++batch) {
        writeBatch();
        EXPECT_EQ(item.queries(), 0U);
        EXPECT_GT(waitedSeconds(), 0);
        EXPECT_LT(waitedSeconds(), batch * kBetweenBatchesSeconds);
    }
}

}  // namespace
}  // namespace vantor
