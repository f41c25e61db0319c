#include "Shared/Database/HistoryRecord.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Shared/Database/HistoryRecordList.h"
#include "Tests/Support/AllocationCounter.h"

namespace vantor {
namespace {

using testing::ElementsAre;

HistoryRecord numbered(std::size_t number) {
    HistoryRecord record("INSERT INTO %@ VALUES (?)", "numbers");
    record.add(static_cast<double>(number));
    return record;
}

double numberOf(const HistoryRecord& record) { return record.args()[0].doubleValue(); }

TEST(HistoryRecordTest, KeepsWhatItWasGivenInOrder) {
    HistoryRecord record("INSERT INTO %@ VALUES (?, ?)", "hour_cpuhistory");
    record.add(1.5);
    record.add("text");
    EXPECT_EQ(record.format(), "INSERT INTO %@ VALUES (?, ?)");
    EXPECT_EQ(record.table(), "hour_cpuhistory");
    EXPECT_THAT(record.args(), ElementsAre(PropertyValue(1.5), PropertyValue("text")));
}

TEST(HistoryRecordTest, CutsATableNameThatIsTooLong) {
    const HistoryRecord record("%@", std::string(60, 't'));
    EXPECT_EQ(record.table(), std::string(HistoryRecord::kLongestTableName, 't'));
}

TEST(HistoryRecordTest, TakesAnyNumberOfValues) {
    HistoryRecord record("%@", "t");
    EXPECT_TRUE(record.args().empty());
    for (int number = 0; number < 20; ++number) {
        record.add(number);
        ASSERT_EQ(record.args().size(), static_cast<std::size_t>(number) + 1);
        for (int index = 0; index <= number; ++index)
            ASSERT_EQ(record.args()[static_cast<std::size_t>(index)], PropertyValue(index));
    }
}

TEST(HistoryRecordTest, EightNumbersNeedNoHeap) {
    const test::AllocationCounter counter;
    HistoryRecord record("%@", "t");
    for (std::size_t number = 0; number < HistoryRecord::kInlineValues; ++number)
        record.add(static_cast<double>(number));
    const HistoryRecord moved = std::move(record);
    EXPECT_EQ(counter.count(), 0u);
    EXPECT_EQ(moved.args().size(), 8u);
}

TEST(HistoryRecordListTest, KeepsTheNewestWhenItIsFull) {
    HistoryRecordList list;
    for (std::size_t number = 0; number < HistoryRecordList::kMostRecords; ++number)
        EXPECT_TRUE(list.push(numbered(number)));
    for (std::size_t number = 0; number < 3; ++number)
        EXPECT_FALSE(list.push(numbered(HistoryRecordList::kMostRecords + number)));
    EXPECT_EQ(list.size(), HistoryRecordList::kMostRecords);
    for (std::size_t index = 0; index < list.size(); ++index)
        ASSERT_EQ(numberOf(list[index]), static_cast<double>(index + 3));
}

TEST(HistoryRecordListTest, ClearedItKeepsRoomForABatch) {
    HistoryRecordList list;
    const auto fill = [&list](std::size_t count) {
        for (std::size_t number = 0; number < count; ++number)
            list.push(numbered(number));
        list.clear();
    };
    fill(HistoryRecordList::kKeptRecords);
    {
        const test::AllocationCounter counter;
        fill(HistoryRecordList::kKeptRecords);
        EXPECT_EQ(counter.count(), 0u);
    }
    fill(HistoryRecordList::kMostRecords + 5);
    const test::AllocationCounter counter;
    list.push(numbered(1));
    EXPECT_GT(counter.count(), 0u);  // the room of the flood was given back
    EXPECT_EQ(numberOf(list[0]), 1);
}

}  // namespace
}  // namespace vantor
