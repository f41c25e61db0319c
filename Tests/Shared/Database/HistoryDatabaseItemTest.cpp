#include "Shared/Database/HistoryDatabaseItem.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Shared/Database/HistoryRecordList.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

HistoryRecord row(std::string_view table, double number) {
    HistoryRecord record("INSERT INTO %@ (number) VALUES (?)", table);
    record.add(number);
    return record;
}

class HistoryDatabaseItemTest : public testing::Test {
protected:
    HistoryDatabaseItemTest() {
        item.queryDatabase([](SQLDatabase& database) {
            database.executeUpdate("CREATE TABLE numbers (number double UNIQUE)");
        });
    }

    std::vector<double> numbers() {
        std::vector<double> found;
        item.queryDatabase([&](SQLDatabase& database) {
            const auto rows = database.executeQuery("SELECT number FROM numbers ORDER BY rowid");
            while (rows && rows->next())
                found.push_back(rows->doubleForColumnIndex(0));
        });
        return found;
    }

    test::World world;
    test::TemporaryFolder folder;
    HistoryDatabaseItem item{world.machine.ports(), folder / "cpu.db"};
};

TEST_F(HistoryDatabaseItemTest, WritesWaitForTheCommit) {
    item.addItem(row("numbers", 1));
    EXPECT_THAT(numbers(), IsEmpty());
    item.commit();
    EXPECT_THAT(numbers(), ElementsAre(1));
}

}  // namespace
}  // namespace vantor
