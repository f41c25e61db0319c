#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Shared/Database/HistoryDatabaseController.h"
#include "Tests/Support/HistoryFile.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/TestCollector.h"
#include "Tests/Support/World.h"

// A history file that can't be read, or get its tables, when its collector starts.

namespace vantor {
namespace {

using test::HistoryFile;
using test::TestCollector;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kNow = simulated::SimulatedMachine::kStart;  // a multiple of 6
constexpr double kLastBefore = kNow - 60;
constexpr double kRowsBefore = 20;
constexpr double kDay = 144;
/// A run that starts on a whole second counts up past the sample at 6.
constexpr double kFirst = 12;
/// Of the hour's samples, up to the second day's.
constexpr double kOwnRows = (2 * kDay - kFirst) / 6 + 1;

class StatCollectorLateHistoryTest : public testing::Test {
protected:
    StatCollectorLateHistoryTest() {
        for (TestCollector* const each : {&collector, &things}) {
            each->itemMaker = [] { return std::make_unique<StatCollectorItem>(2); };
            each->onMeasure = [this, each] { each->addNow(7, world.machine.clock.now()); };
        }
    }

    /// What an earlier run left: an hour's table with IDs up to kRowsBefore and no month's.
    void writeEarlierRun(std::string_view prefix, std::string_view values) {
        HistoryFile file(path);
        for (const char* const scale : {"hour", "day", "week"})
            file.run(fmt::format("create table {}_{}", scale, prefix));
        file.run(fmt::format("with recursive n(i) as (select 1 union all select i + 1 from n "
                             "where i < {}) insert into hour_{} select {} from n",
                             kRowsBefore, prefix.substr(0, prefix.find(' ')), values));
    }
    void writeEarlierSamples() {
        writeEarlierRun("testhistory (sample double PRIMARY KEY NOT NULL, time double NOT NULL, "
                        "empty integer NOT NULL, a double NOT NULL, b double NOT NULL)",
                        fmt::format("i, {} - 6 * ({} - i), 0, 3, 4", kLastBefore, kRowsBefore));
    }

    /// No page more than there is.
    void fillDisk() { limitPages(1); }
    void freeDisk() { limitPages(1'000'000); }
    void limitPages(int pages) {
        databaseItemWithPath(path)->queryDatabase([pages](SQLDatabase& database) {
            database.intForQuery(fmt::format("PRAGMA max_page_count = {}", pages));
        });
    }
    void start(TestCollector& with) {
        with.setDbpath(path);
        with.prepareDatabase(false);
        with.loadPreviousSamples();
        with.fillGaps();
        with.startLogging();
    }
    std::vector<double> hourColumn(std::string_view column) {
        return HistoryFile(path).column(
            fmt::format("select {} from hour_testhistory order by sample", column));
    }

    test::TemporaryFolder folder;
    test::World world;
    const std::filesystem::path path = folder / "test.db";
    TestCollector collector{world.machine.ports()};
    TestCollector things{world.machine.ports(), StorageKind::items};
};

TEST_F(StatCollectorLateHistoryTest, WhileItCannotBeReadNothingIsWrittenAndSamplingGoesOn) {
    writeEarlierSamples();
    fillDisk();
    start(collector);
    world.machine.run(2 * kDay + 10);
    EXPECT_EQ(hourColumn("sample").size(), kRowsBefore);
    EXPECT_EQ(collector.storageForType(1).sampleID(0), kOwnRows + 2);  // and one since
    ASSERT_EQ(world.journal.commits.size(), 2U);
    for (const auto& commit : world.journal.commits)
        EXPECT_EQ(commit.failed, commit.statements);
}

TEST_F(StatCollectorLateHistoryTest, WhenItCanBeReadThisRunsSamplesFollowThoseOfTheFile) {
    writeEarlierSamples();
    fillDisk();
    start(collector);
    world.machine.run(kDay + 10);
    freeDisk();
    world.machine.run(kDay);
    const std::vector<double> ids = hourColumn("sample"), times = hourColumn("time");
    ASSERT_EQ(ids.size(), (kNow + 2 * kDay - kLastBefore) / 6 + kRowsBefore);
    for (std::size_t place = 0; place < ids.size(); ++place) {
        EXPECT_EQ(ids[place], place + 1);
        EXPECT_EQ(times[place], kLastBefore + 6 * (ids[place] - kRowsBefore));
    }
    EXPECT_EQ(HistoryFile(path).number("select count(*) from hour_testhistory where empty = 1"),
              (kNow + kFirst - kLastBefore) / 6 - 1);
}

TEST_F(StatCollectorLateHistoryTest, TheRingsHoldWhatTheFileHolds) {
    writeEarlierSamples();
    fillDisk();
    start(collector);
    world.machine.run(kDay + 10);
    freeDisk();
    world.machine.run(kDay);
    const SampleRing& hour = collector.storageForType(1);
    const std::vector<double> ids = hourColumn("sample"), figures = hourColumn("a");
    const auto newest = *hour.positionOfIdentifier(ids.back());
    for (std::size_t place = 0; place < ids.size(); ++place) {
        const statsample sample = hour.sampleAtIndex(newest + ids.size() - 1 - place);
        EXPECT_EQ(sample.sampleID, ids[place]);
        EXPECT_EQ(sample.values[0], figures[place]);
    }
    EXPECT_EQ(collector.sampleIndex()[1].sampleID, hour.sampleID(0));
}

TEST_F(StatCollectorLateHistoryTest, WhatIsWrittenAfterwardsGoesOnDensely) {
    writeEarlierSamples();
    fillDisk();
    start(collector);
    world.machine.run(kDay + 10);
    freeDisk();
    world.machine.run(5 * kDay);
    const std::vector<double> ids = hourColumn("sample");
    EXPECT_EQ(ids.size(), ids.back() - ids.front() + 1);
    EXPECT_GT(hourColumn("time").back(), kNow + 5 * kDay);
    for (std::size_t commit = 2; commit < world.journal.commits.size(); ++commit)
        EXPECT_LE(world.journal.commits[commit].failed, 3U);  // the scales without tables
}

TEST_F(StatCollectorLateHistoryTest, AFileWithoutTablesGetsThemLater) {
    databaseItemWithPath(path)->queryDatabase([](SQLDatabase& database) {
        database.executeUpdate("create table other (figure double)");
    });
    fillDisk();
    start(collector);
    world.machine.run(kDay + 10);
    EXPECT_FALSE(HistoryFile(path).hasTable("hour_testhistory"));
    freeDisk();
    world.machine.run(kDay);
    const std::vector<double> ids = hourColumn("sample");
    ASSERT_EQ(ids.size(), kOwnRows);
    EXPECT_EQ(ids.front(), 2);
    EXPECT_EQ(ids.back(), kOwnRows + 1);
    EXPECT_THAT(hourColumn("a"), Each(7));
}

TEST_F(StatCollectorLateHistoryTest, AScaleWithoutASampleYetIsLoadedAsAtAStart) {
    writeEarlierSamples();
    HistoryFile(path).run(
        fmt::format("insert into week_testhistory values (5, {}, 0, 3, 4)", kNow - 2000));
    fillDisk();
    start(collector);
    world.machine.run(kDay + 10);
    freeDisk();
    world.machine.run(kDay);
    EXPECT_THAT(HistoryFile(path).column("select sample from week_testhistory order by sample"),
                ElementsAre(5, 6, 7));
    EXPECT_EQ(collector.sampleIndex()[3].nextTime, kNow - 2000 + 3 * 1008);
}

TEST_F(StatCollectorLateHistoryTest, DelegatesAndGraphsHearOfIt) {
    writeEarlierSamples();
    fillDisk();
    start(collector);
    int cleared = 0;
    const Observation observation = world.machine.ports().localNotifications.observe(
        "HISTORYGRAPH_CLEAR_CPU", [&](const Notification&) { ++cleared; });
    world.machine.run(kDay + 10);
    EXPECT_EQ(cleared, 0);
    freeDisk();
    world.machine.run(2 * kDay);
    EXPECT_EQ(cleared, 1);
}

TEST_F(StatCollectorLateHistoryTest, ItemsKeepTheirFiguresUnderTheNewIDs) {
    HistoryFile(path).run("create table other (figure double)");
    HistoryFile(path).run("create table hour_thingidhistory (sample double PRIMARY KEY NOT NULL, "
                          "time double NOT NULL, empty integer NOT NULL)");
    HistoryFile(path).run("create table hour_thinghistory (sample double NOT NULL, time double "
                          "NOT NULL, uuid varchar(100) NOT NULL, a double NOT NULL, b double)");
    HistoryFile(path).run(fmt::format("insert into hour_thingidhistory values (9, {0}, 0); "
                                      "insert into hour_thinghistory values (9, {0}, 'gone', 3, 4)",
                                      kLastBefore));
    fillDisk();
    start(things);
    StatCollectorItem& card = *things.newItemWithKey("card");
    things.onMeasure = [&] {
        things.addNow(0, world.machine.clock.now());
        SampleFields figures;
        figures.set("sample", things.storageForType(0).sampleID(0));
        figures.set("time", world.machine.clock.now());
        figures.set("a", 7);
        card.addSample(figures, 0);
    };
    world.machine.run(kDay + 10);
    freeDisk();
    world.machine.run(kDay);
    HistoryFile file(path);
    const double newest = 9 + (kNow + 2 * kDay - kLastBefore) / 6;
    EXPECT_EQ(file.number("select max(sample) from hour_thingidhistory"), newest);
    EXPECT_EQ(file.number("select max(sample) from hour_thinghistory where uuid = 'card'"), newest);
    EXPECT_EQ(file.number("select count(*) from hour_thinghistory where uuid = 'card'"), kOwnRows);
    EXPECT_EQ(file.number("select count(*) from hour_thinghistory where uuid = 'gone'"), 1);
    EXPECT_EQ(file.number("select sample from hour_thingidhistory where empty = 1 limit 1"), 10);
    EXPECT_EQ(card.sampleWithIdentifier(newest, StorageType::hour).values[0], 7);
    EXPECT_EQ(things.itemWithKey("gone", StatCollector::Temporary::yes)
                  ->sampleWithIdentifier(9, StorageType::hour)
                  .values[0],
              3);
}

TEST_F(StatCollectorLateHistoryTest, AFileThatTurnsOutDamagedIsLeftToTheNextStart) {
    writeEarlierSamples();
    HistoryFile(path).run("create table other (figure); insert into other values (null);"
                          "pragma writable_schema = on; update sqlite_master set sql = 'create "
                          "table other (figure not null)' where name = 'other';"
                          "pragma schema_version = 1000");
    fillDisk();
    start(collector);
    freeDisk();
    world.machine.run(2 * kDay + 10);
    EXPECT_EQ(hourColumn("sample").size(), kRowsBefore);
}

TEST_F(StatCollectorLateHistoryTest, ACollectorThatEndedIsNotReached) {
    writeEarlierSamples();
    fillDisk();
    start(collector);
    world.machine.run(kDay - 10);
    collector.cleanup();
    freeDisk();
    databaseItemWithPath(path)->commit();
    world.machine.run(1);
    EXPECT_EQ(hourColumn("sample").size(), kRowsBefore);
}

}  // namespace
}  // namespace vantor
