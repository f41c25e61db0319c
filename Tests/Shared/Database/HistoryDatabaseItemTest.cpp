#include "Shared/Database/HistoryDatabaseItem.h"

#include <algorithm>
#include <future>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "Platform/Linux/LinuxMainQueue.h"
#include "Platform/Linux/LinuxWorkQueues.h"
#include "Shared/Database/HistoryRecordList.h"
#include "Tests/Support/AllocationCounter.h"
#include "Tests/Support/SQLWorld.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Commit = test::RecordedJournal::Commit;

HistoryRecord row(double number, std::string_view table = "numbers") {
    HistoryRecord record("INSERT INTO %@ (number) VALUES (?)", table);
    record.add(number);
    return record;
}

void createTable(SQLDatabase& database) {
    database.executeUpdate("CREATE TABLE numbers (number double UNIQUE)");
}

std::vector<double> numbersOf(HistoryDatabaseItem& item) {
    std::vector<double> found;
    item.queryDatabase([&](SQLDatabase& database) {
        const auto rows = database.executeQuery("SELECT number FROM numbers ORDER BY rowid");
        while (rows && rows->next())
            found.push_back(rows->doubleForColumnIndex(0));
    });
    return found;
}

/// One file on the scripted machine. Whoever waits for a lock waits in no time.
class HistoryDatabaseItemTest : public testing::Test {
protected:
    HistoryDatabaseItemTest() { item.queryDatabase(createTable); }

    void add(std::initializer_list<double> numbers) {
        for (const double number : numbers)
            item.addItem(row(number));
    }

    test::World world;
    test::TemporaryFolder folder;
    test::CountedBusyWait wait;
    HistoryDatabaseItem item{world.machine.ports(), folder / "cpu.db", wait};
};

TEST_F(HistoryDatabaseItemTest, WritesWaitForTheCommit) {
    add({1, 2});
    EXPECT_EQ(item.queries(), 2u);
    EXPECT_THAT(numbersOf(item), IsEmpty());
    item.commit();
    EXPECT_THAT(numbersOf(item), ElementsAre(1, 2));
    EXPECT_EQ(item.queries(), 0u);
    EXPECT_FALSE(item.busy());
}

TEST_F(HistoryDatabaseItemTest, IsNamedAfterItsFile) {
    EXPECT_EQ(item.queue().label(), "dbqueue-cpu.db");
    EXPECT_EQ(item.path(), std::nullopt);
    item.setPath("/kept");
    EXPECT_EQ(item.path(), "/kept");
}

TEST_F(HistoryDatabaseItemTest, OpensWithItsSettings) {
    EXPECT_FALSE(item.database().logsErrors());
    EXPECT_TRUE(item.database().shouldCacheStatements());
    EXPECT_EQ(item.database().maxBusyRetryTimeInterval(), 2);
}

TEST_F(HistoryDatabaseItemTest, ACommitWithoutWritesBeginsAndCommits) {
    item.commit();
    EXPECT_EQ(item.database().cachedStatementForQuery("begin exclusive transaction")->useCount(),
              1);
    EXPECT_EQ(item.database().cachedStatementForQuery("commit transaction")->useCount(), 1);
    EXPECT_THAT(world.journal.commits, ElementsAre(Commit{"cpu.db", 0, 0}));
}

TEST_F(HistoryDatabaseItemTest, AStatementIsPreparedOnceForATableAndAShape) {
    add({1, 2, 3});
    item.commit();
    const auto statement =
        item.database().cachedStatementForQuery("INSERT INTO numbers (number) VALUES (?)");
    ASSERT_NE(statement, nullptr);
    EXPECT_EQ(statement->useCount(), 3);
}

TEST_F(HistoryDatabaseItemTest, AFormatWithoutATableRunsAsItStands) {
    item.addItem(HistoryRecord("INSERT INTO numbers VALUES (8)", "unused"));
    item.commit();
    EXPECT_THAT(numbersOf(item), ElementsAre(8));
}

TEST_F(HistoryDatabaseItemTest, AFailingStatementDoesNotStopThoseBehindIt) {
    add({1, 1});
    item.addItem(row(2, "nowhere"));
    item.addItem(HistoryRecord("INSERT INTO %@ VALUES (?)", "numbers"));  // a value is missing
    add({3});
    item.commit();
    EXPECT_THAT(numbersOf(item), ElementsAre(1, 3));
    EXPECT_THAT(world.journal.commits, ElementsAre(Commit{"cpu.db", 5, 3}));
    EXPECT_FALSE(item.database().inTransaction());
}

TEST_F(HistoryDatabaseItemTest, FiguresThatAreNoneAreWrittenQuietly) {
    add({std::numeric_limits<double>::quiet_NaN(), 1e308});
    item.commit();
    EXPECT_THAT(numbersOf(item), ElementsAre(0, 1e308));
}

TEST_F(HistoryDatabaseItemTest, AddingAllocatesNothing) {
    constexpr int kBatch = 30;
    const auto addBatch = [this] {
        for (int number = 0; number < kBatch; ++number) {
            HistoryRecord record("INSERT INTO %@ VALUES (?, ?, ?, ?, ?, ?, ?, ?)", "numbers");
            for (std::size_t value = 0; value < HistoryRecord::kInlineValues; ++value)
                record.add(static_cast<double>(value));
            item.addItem(std::move(record));
        }
    };
    for (int round = 0; round < 2; ++round) {  // both lists grow
        addBatch();
        item.commit();
    }
    const test::AllocationCounter counter;
    addBatch();
    EXPECT_EQ(counter.count(), 0u);
}

TEST_F(HistoryDatabaseItemTest, AFloodDropsTheOldestAndSaysSoOnce) {
    const auto flood = [this] {
        for (std::size_t number = 0; number < HistoryRecordList::kMostRecords + 2; ++number)
            add({static_cast<double>(number)});
    };
    flood();
    EXPECT_EQ(item.queries(), HistoryRecordList::kMostRecords);
    EXPECT_THAT(world.journal.systemLogLines,
                ElementsAre("The history of cpu.db isn't being written; its oldest samples are "
                            "dropped."));
    item.commit();
    EXPECT_EQ(numbersOf(item).front(), 2);
    flood();
    EXPECT_THAT(world.journal.systemLogLines, SizeIs(2));
}

TEST_F(HistoryDatabaseItemTest, AFileThatCantBeOpenedIsLoggedAndQuiet) {
    HistoryDatabaseItem broken(world.machine.ports(), folder / "missing/load.db", wait);
    EXPECT_THAT(world.journal.logLines, ElementsAre("Could not open db."));
    broken.addItem(row(1));
    broken.commit();
    EXPECT_THAT(numbersOf(broken), IsEmpty());
    EXPECT_THAT(world.journal.commits, ElementsAre(Commit{"load.db", 1, 1}));
}

TEST_F(HistoryDatabaseItemTest, ACursorLeftOpenIsLoggedAndStaysOpen) {
    std::unique_ptr<SQLResultSet> rows;
    item.queryDatabase([&](SQLDatabase& database) { rows = database.executeQuery("SELECT 1"); });
    EXPECT_THAT(world.journal.logLines,
                ElementsAre("Warning: there is at least one open result set around after "
                            "performing [SQLDatabaseQueue inDatabase:]"));
    EXPECT_TRUE(rows->next());
    item.queryDatabaseAsync([](SQLDatabase&) {});
    EXPECT_THAT(world.journal.logLines, SizeIs(1));
}

TEST_F(HistoryDatabaseItemTest, AnotherItemsQueueMayWaitForThisOne) {
    HistoryDatabaseItem other(world.machine.ports(), folder / "load.db", wait);
    int calls = 0;
    other.queryDatabase([&](SQLDatabase&) { item.queryDatabase([&](SQLDatabase&) { ++calls; }); });
    EXPECT_EQ(calls, 1);
}

TEST_F(HistoryDatabaseItemTest, AFileHeldElsewhereKeepsWhatItHasAndGoesOnLater) {
    add({1});
    item.commit();
    SQLDatabase holder(item.database().environment(), folder / "cpu.db");
    holder.open();
    ASSERT_TRUE(holder.beginTransaction());
    add({2, 3});
    item.commit();
    EXPECT_THAT(wait.sleeps, SizeIs(3 * 40));  // the beginning, and each statement by itself
    holder.rollback();
    add({4});
    item.commit();
    EXPECT_THAT(numbersOf(item), ElementsAre(1, 4));
    EXPECT_THAT(world.journal.commits, ElementsAre(Commit{"cpu.db", 1, 0}, Commit{"cpu.db", 2, 2},
                                                   Commit{"cpu.db", 1, 0}));
}

TEST_F(HistoryDatabaseItemTest, WithoutATransactionEachStatementIsWrittenByItself) {
    /// Whoever has waited for a while finds the lock given up.
    SQLDatabase holder(item.database().environment(), folder / "cpu.db");
    struct GivesUp final : SQLBusyWait {
        double now() const noexcept override { return waits * 0.05; }
        void sleep(int) const noexcept override {
            if (++waits == 41)
                holder->rollback();
        }
        mutable int waits = 0;
        SQLDatabase* holder = nullptr;
    } givesUp;
    givesUp.holder = &holder;
    HistoryDatabaseItem patient(world.machine.ports(), folder / "cpu.db", givesUp);
    ASSERT_TRUE(patient.database().tableExists("numbers"));  // the schema is known
    holder.open();
    ASSERT_TRUE(holder.beginTransaction());
    patient.addItem(row(1));
    patient.addItem(row(2));
    patient.commit();
    EXPECT_THAT(numbersOf(patient), ElementsAre(1, 2));
    EXPECT_THAT(world.journal.commits, ElementsAre(Commit{"cpu.db", 2, 0}));
}

TEST_F(HistoryDatabaseItemTest, ATransactionThatWasLeftOpenEndsWithTheNextCommit) {
    ASSERT_TRUE(item.database().beginTransaction());  // as an end that was refused leaves it
    add({1});
    item.commit();
    SQLDatabase reader(item.database().environment(), folder / "cpu.db");
    reader.open();
    EXPECT_EQ(reader.intForQuery("SELECT count(*) FROM numbers"), 1);
    EXPECT_FALSE(item.database().inTransaction());
}

TEST_F(HistoryDatabaseItemTest, AFullFileKeepsWhatItHasAndGoesOnLater) {
    add({1});
    item.commit();
    const auto limitPages = [this](int pages) {
        return item.database().intForQuery("PRAGMA max_page_count = " + std::to_string(pages));
    };
    const int pages = limitPages(1);  // no more than there are now
    for (int number = 0; number < 700; ++number)
        add({number + 10.0});
    item.commit();
    const std::size_t failed = world.journal.commits.back().failed;
    EXPECT_GT(failed, 0u);
    EXPECT_TRUE(item.database().isDatabaseValid());
    EXPECT_EQ(numbersOf(item).front(), 1);
    limitPages(pages + 1000);
    add({5});
    item.commit();
    EXPECT_EQ(numbersOf(item).back(), 5);
    EXPECT_EQ(world.journal.commits.back(), (Commit{"cpu.db", 1, 0}));
    EXPECT_FALSE(item.database().inTransaction());
}

TEST_F(HistoryDatabaseItemTest, ABatchWhoseEndFailsHasFailedAsAWhole) {
    const auto refuse = [](void*) { return 1; };  // SQLite takes the transaction back then
    sqlite3_commit_hook(item.database().sqliteHandle(), refuse, nullptr);
    add({1, 2});
    item.commit();
    sqlite3_commit_hook(item.database().sqliteHandle(), nullptr, nullptr);
    add({3});
    item.commit();
    EXPECT_THAT(numbersOf(item), ElementsAre(3));
    EXPECT_THAT(world.journal.commits, ElementsAre(Commit{"cpu.db", 2, 2}, Commit{"cpu.db", 1, 0}));
}

TEST_F(HistoryDatabaseItemTest, WhatATransactionThatIsTakenBackHadFailsWithIt) {
    add({1});
    item.addItem(HistoryRecord("rollback transaction", ""));
    add({2});
    item.commit();
    EXPECT_THAT(numbersOf(item), ElementsAre(2));
    EXPECT_THAT(world.journal.commits, ElementsAre(Commit{"cpu.db", 3, 2}));
}

TEST_F(HistoryDatabaseItemTest, WhileWritesAreHeldNothingIsWrittenAndEachCommitTries) {
    int attempts = 0;
    item.holdWrites([&](SQLDatabase&) { return ++attempts == 2; });
    add({1});
    item.commit();
    EXPECT_EQ(item.queries(), 0U);
    add({2});
    item.commit();
    add({3});
    item.commit();
    EXPECT_EQ(item.queries(), 1U);  // waits for the permission
    EXPECT_THAT(numbersOf(item), IsEmpty());
    EXPECT_EQ(attempts, 2);
    EXPECT_THAT(world.journal.commits, ElementsAre(Commit{"cpu.db", 1, 1}, Commit{"cpu.db", 1, 1}));
}

TEST_F(HistoryDatabaseItemTest, WhenWritesAreAllowedAgainTheNextCommitWritesThem) {
    item.holdWrites([](SQLDatabase&) { return true; });
    item.commit();
    add({1});
    item.forgetWrites();
    add({2});
    item.allowWrites();
    item.commit();
    EXPECT_THAT(numbersOf(item), ElementsAre(2));
}

/// The same on queues with threads.
class HistoryDatabaseItemThreadsTest : public testing::Test {
protected:
    HistoryDatabaseItemThreadsTest() { item.queryDatabase(createTable); }

    static Ports withQueues(const Ports& ports, WorkQueues& queues) {
        Ports threaded = overriddenPorts(ports, {.workQueues = &queues});
        threaded.witness = nullptr;
        return threaded;
    }

    test::World world;
    test::TemporaryFolder folder;
    LinuxWorkQueues workQueues;
    HistoryDatabaseItem item{withQueues(world.machine.ports(), workQueues), folder / "cpu.db"};
};

TEST_F(HistoryDatabaseItemThreadsTest, WritesAddedBeforeTheCommitsTurnAreInIt) {
    std::promise<void> gate;
    item.queryDatabaseAsync([&gate](SQLDatabase&) { gate.get_future().wait(); });
    item.addItem(row(1));
    item.commit();
    item.addItem(row(2));
    gate.set_value();
    EXPECT_THAT(numbersOf(item), ElementsAre(1, 2));
}

TEST_F(HistoryDatabaseItemThreadsTest, ManyThreadsAddWhileCommitsRun) {
    constexpr int kThreads = 8, kRows = 200;
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < kThreads; ++thread)
        threads.emplace_back([this, thread] {
            for (int number = 0; number < kRows; ++number) {
                item.addItem(row(thread * 1000 + number));
                if (number % 50 == 49)
                    item.commit();
            }
        });
    threads.clear();
    item.commit();
    std::vector<std::vector<double>> ofThread(kThreads);
    for (const double number : numbersOf(item))
        ofThread[static_cast<std::size_t>(number / 1000)].push_back(number);
    for (const std::vector<double>& numbers : ofThread) {
        EXPECT_THAT(numbers, SizeIs(kRows));
        EXPECT_TRUE(std::ranges::is_sorted(numbers));
    }
}

TEST_F(HistoryDatabaseItemThreadsTest, NobodyWaitsLongForAFileThatIsFarTooLarge) {
    item.queryDatabase([](SQLDatabase& database) {
        database.executeStatements(fmt::format("create table large (bytes);"
                                               "insert into large values (zeroblob({}))",
                                               HistoryDatabaseItem::kFarTooLargeBytes));
    });
    LinuxMainQueue mainQueue;
    const Ports ports =
        overriddenPorts(withQueues(world.machine.ports(), workQueues), {.mainQueue = &mainQueue});
    HistoryDatabaseItem large(ports, folder / "cpu.db");
    bool mayPass = false;
    std::thread caller([&] {
        large.queryDatabase([&](SQLDatabase& database) {
            database.intForQuery("with recursive n(i) as (select 1 union all select i + 1 from n) "
                                 "select count(*) from n");  // for ever
            mayPass = database.lastFailureMayPass();
        });
        mainQueue.stop();
    });
    mainQueue.run();
    caller.join();
    EXPECT_TRUE(mayPass);
}

TEST_F(HistoryDatabaseItemThreadsTest, ItsEndRunsWhatWasQueued) {
    {
        HistoryDatabaseItem brief(withQueues(world.machine.ports(), workQueues), folder / "b.db");
        brief.queryDatabaseAsync(createTable);
        brief.addItem(row(1));
        brief.commit();
    }
    HistoryDatabaseItem again(withQueues(world.machine.ports(), workQueues), folder / "b.db");
    EXPECT_THAT(numbersOf(again), ElementsAre(1));
}

TEST(HistoryDatabaseItemDeathTest, WaitingForItsOwnQueueEndsTheProcess) {
    struct ShownJournal final : simulated::Journal {
        void systemLog(std::string_view text) override { test::ShownLog().write(text); }
        void logged(std::string_view text) override { test::ShownLog().write(text); }
    } journal;
    simulated::SimulatedMachine machine(simulated::SimulatedMachine::kStart, 0, &journal);
    const ProcessContext context(machine.ports());
    test::TemporaryFolder folder;
    HistoryDatabaseItem item(machine.ports(), folder / "cpu.db");
    EXPECT_DEATH(
        item.queryDatabaseAsync([&](SQLDatabase&) { item.queryDatabase([](SQLDatabase&) {}); }),
        "^inDatabase: was called reentrantly on the same queue, which would lead to a "
        "deadlock\n.*currentSyncQueue != self && \"inDatabase: was called reentrantly on "
        "the same queue, which would lead to a deadlock\"");
}

}  // namespace
}  // namespace vantor
