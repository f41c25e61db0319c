#include <algorithm>
#include <chrono>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Shared/Database/HistoryDatabaseController.h"
#include "Tests/Support/HistoryFile.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/TestCollector.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using test::HistoryFile;
using test::sampleOf;
using test::TestCollector;
using testing::ElementsAre;
using testing::IsEmpty;
using Commit = test::RecordedJournal::Commit;

constexpr double kNow = simulated::SimulatedMachine::kStart;  // a multiple of 6

SampleFields ownSample(double sampleID, double time, double a = 1) {
    return sampleOf({{"empty", 0}, {"sample", sampleID}, {"time", time}, {"a", a}, {"b", 2}});
}

class StatCollectorDatabaseTest : public testing::Test {
protected:
    StatCollectorDatabaseTest() { use(collector); }

    void use(TestCollector& with) {
        with.itemMaker = [] { return std::make_unique<StatCollectorItem>(2); };
        with.setDbpath(path);
        with.prepareDatabase(false);
    }
    void commit() { databaseItemWithPath(path)->commit(); }
    /// What a run wrote that lasted until `newest`: `count` samples of one scale.
    void writeHour(int count, double newest) {
        for (int sample = 1; sample <= count; ++sample)
            collector.insertSample(ownSample(sample + 1, newest - 6.0 * (count - sample), sample),
                                   1);
        commit();
    }
    /// A start on the file as it is.
    void load(TestCollector& with) {
        use(with);
        with.loadPreviousSamples();
        with.fillGaps();
    }
    double number(std::string_view sql) { return HistoryFile(path).number(sql); }
    /// The file with another hour table in it.
    void replaceHour(const std::string& createAndFill) {
        HistoryFile(path).run("drop table hour_testhistory; " + createAndFill);
    }

    test::TemporaryFolder folder;
    test::World world;
    const std::filesystem::path path = folder / "test.db";
    TestCollector collector{world.machine.ports()};
    TestCollector next{world.machine.ports()};
    TestCollector things{world.machine.ports(), StorageKind::items};
};

// Tables

TEST_F(StatCollectorDatabaseTest, TablesOfFourScalesAreMade) {
    HistoryFile file(path);
    for (const char* const table :
         {"hour_testhistory", "day_testhistory", "week_testhistory", "month_testhistory"})
        EXPECT_TRUE(file.hasTable(table)) << table;
    EXPECT_FALSE(file.hasTable("threemonth_testhistory"));
    EXPECT_FALSE(file.hasTable("testhistory"));
}

TEST_F(StatCollectorDatabaseTest, AMissingTableMakesTheResultTrue) {
    HistoryDatabaseItem* const file = databaseItemWithPath(path).get();
    EXPECT_TRUE(collector.checkIfTablesExist(5, file, false));
    EXPECT_FALSE(collector.checkIfTablesExist(5, file, false));
    EXPECT_TRUE(collector.checkIfTablesExist(5, file, true));
}

TEST_F(StatCollectorDatabaseTest, MigrationHasTheLastWord) {
    std::vector<bool> asked;
    collector.onMigrate = [&](bool result) {
        asked.push_back(result);
        return true;
    };
    EXPECT_TRUE(collector.prepareDatabase(false));
    EXPECT_TRUE(collector.prepareDatabase(true));
    HistoryFile(path).run("drop table week_testhistory");
    EXPECT_TRUE(collector.prepareDatabase(false));
    EXPECT_EQ(asked, (std::vector<bool>{false, true, true}));
    collector.onMigrate = nullptr;
    EXPECT_FALSE(collector.prepareDatabase(true));
}

TEST_F(StatCollectorDatabaseTest, WithItemsAScaleHasTwoTables) {
    use(things);
    HistoryFile file(path);
    EXPECT_TRUE(file.hasTable("week_thingidhistory"));
    EXPECT_EQ(file.number("SELECT count(*) FROM pragma_table_info('week_thingidhistory')"), 3);
}

TEST_F(StatCollectorDatabaseTest, TheLongTermTableIsMadeByItsOwnStatement) {
    HistoryDatabaseItem* const file = databaseItemWithPath(path).get();
    EXPECT_TRUE(collector.checkIfLongTermTablesExist(8, file, false));
    EXPECT_FALSE(collector.checkIfLongTermTablesExist(8, file, false));
    EXPECT_TRUE(things.checkIfLongTermTablesExist(8, file, false));
    HistoryFile looked(path);
    EXPECT_TRUE(looked.hasTable("thingidhistory"));
    EXPECT_EQ(looked.number("SELECT sum([notnull]) FROM pragma_table_info('testhistory')"), 0);
}

TEST_F(StatCollectorDatabaseTest, WithoutAPathNothingHappens) {
    next.insertSample(ownSample(2, kNow), 1);
    next.runDatabaseQueue();
    next.loadPreviousSamples();
    next.loadPreviousSampleItems();
    next.fillGaps();
    EXPECT_TRUE(next.checkIfTablesExist(1, nullptr, true));
    EXPECT_FALSE(next.prepareDatabase(true));
    EXPECT_THAT(next.samplesFromTable(next.tableAtIndex(1)), IsEmpty());
    EXPECT_FALSE(next.lastLongTermSample());
    EXPECT_THAT(world.journal.commits, IsEmpty());
    EXPECT_EQ(next.lastIDForType(1), 0);
}

// Writing

TEST_F(StatCollectorDatabaseTest, ARowWaitsForTheCommit) {
    collector.insertSample(ownSample(2, kNow, 7), 1);
    EXPECT_EQ(number("SELECT count(*) FROM hour_testhistory"), 0);
    collector.runDatabaseQueue();
    EXPECT_EQ(number("SELECT a FROM hour_testhistory WHERE sample = 2"), 7);
    EXPECT_THAT(world.journal.commits, ElementsAre(Commit{"test.db", 1, 0}));
}

TEST_F(StatCollectorDatabaseTest, AMissingKeyIsLoggedAndTheStatementFails) {
    collector.insertSample(sampleOf({{"empty", 0}, {"sample", 2}, {"time", kNow}, {"a", 1}}), 1);
    EXPECT_THAT(world.journal.systemLogLines, ElementsAre("<TestCollector> - missing key - 'b'"));
    commit();
    EXPECT_THAT(world.journal.commits, ElementsAre(Commit{"test.db", 1, 1}));
}

TEST_F(StatCollectorDatabaseTest, AMissingKeyOfAnItemIsLogged) {
    use(things);
    SampleFields sample = sampleOf({{"empty", 0}, {"sample", 2}, {"time", kNow}});
    sample.items.push_back(sampleOf({{"sample", 2}, {"time", kNow}, {"a", 1}, {"b", 2}}));
    things.insertSample(sample, 1);
    EXPECT_THAT(world.journal.systemLogLines,
                ElementsAre("<TestCollector> - missing item key - 'uuid'"));
}

TEST_F(StatCollectorDatabaseTest, ANumberThatIsNoneDoesNotEnterTheFile) {
    collector.insertSample(ownSample(2, kNow, std::nan("")), 1);
    collector.insertSample(ownSample(3, kNow, 1e308), 1);
    commit();
    EXPECT_EQ(number("SELECT count(*) FROM hour_testhistory"), 1);
    EXPECT_EQ(number("SELECT a FROM hour_testhistory"), 1e308);
}

TEST_F(StatCollectorDatabaseTest, AScaleWithoutATableFailsAndTheOthersAreWritten) {
    collector.insertSample(ownSample(2, kNow), 6);
    collector.insertSample(ownSample(2, kNow), 1);
    collector.insertSample(ownSample(2, kNow), 0);  // has no name either
    commit();
    EXPECT_THAT(world.journal.commits, ElementsAre(Commit{"test.db", 2, 1}));
    EXPECT_EQ(number("SELECT count(*) FROM hour_testhistory"), 1);
}

TEST_F(StatCollectorDatabaseTest, NothingIsRemovedUntilATableHasMoreThanItRetains) {
    collector.setIDForInterval(100, 1);
    collector.removeOldSamplesAtIndex(1);
    commit();
    EXPECT_THAT(world.journal.commits, ElementsAre(Commit{"test.db", 0, 0}));
}

TEST_F(StatCollectorDatabaseTest, TheNewest602IDsAreRetained) {
    writeHour(699, kNow);  // 2 to 700
    collector.setIDForInterval(700, 1);
    collector.removeOldSamplesAtIndex(1);
    commit();
    EXPECT_EQ(number("SELECT min(sample) FROM hour_testhistory"), 98);
    EXPECT_EQ(number("SELECT max(sample) FROM hour_testhistory"), 700);
}

TEST_F(StatCollectorDatabaseTest, PruningScalesWithoutTablesDoesNoHarm) {
    for (int index = 5; index <= 7; ++index)
        collector.setIDForInterval(700, index);
    collector.insertSample(ownSample(2, kNow), 1);
    collector.runDatabaseQueue();
    EXPECT_THAT(world.journal.commits, ElementsAre(Commit{"test.db", 4, 3}));
    EXPECT_EQ(number("SELECT count(*) FROM hour_testhistory"), 1);
}

TEST_F(StatCollectorDatabaseTest, WithItemsBothTablesArePruned) {
    use(things);
    things.setIDForInterval(700, 1);
    things.runDatabaseQueue();
    EXPECT_THAT(world.journal.commits, ElementsAre(Commit{"test.db", 2, 0}));
}

TEST_F(StatCollectorDatabaseTest, TheFileIsWrittenInTheRhythmOfTheDay) {
    collector.startLogging();
    world.machine.run(140);
    EXPECT_THAT(world.journal.commits, IsEmpty());
    world.machine.run(4.5);
    EXPECT_THAT(world.journal.commits,
                ElementsAre(Commit{"test.db", 24, 0}));  // 23 of the hour, 1 of the day
    world.machine.run(144);
    EXPECT_EQ(world.journal.commits.size(), 2U);
    EXPECT_EQ(number("SELECT count(*) FROM hour_testhistory"), 47);
    EXPECT_EQ(number("SELECT count(*) FROM day_testhistory"), 2);
    EXPECT_EQ(number("SELECT time FROM day_testhistory WHERE sample = 2"), kNow + 144);
}

TEST_F(StatCollectorDatabaseTest, AMissedDaySampleIsWrittenAsAGap) {
    collector.startLogging();
    world.machine.run(150);
    world.machine.mainQueue.moveTo(kNow + 300.5);
    world.machine.run(2);
    EXPECT_EQ(number("SELECT count(*) FROM day_testhistory"), 2);
    EXPECT_EQ(number("SELECT empty FROM day_testhistory WHERE sample = 3"), 1);
    EXPECT_EQ(number("SELECT a FROM day_testhistory WHERE sample = 3"), 0);
}

TEST_F(StatCollectorDatabaseTest, WhileTheDatabaseRestsWritesWait) {
    collector.startLogging();
    world.machine.run(100);
    world.machine.workspace.willSleep();
    world.machine.run(50);
    EXPECT_THAT(world.journal.commits, IsEmpty());
    world.machine.workspace.didWake();
    world.machine.run(144);
    EXPECT_THAT(world.journal.commits, ElementsAre(Commit{"test.db", 49, 0}));
}

// Reading

TEST_F(StatCollectorDatabaseTest, AFirstRunLeavesTheScheduleAlone) {
    load(next);
    for (int index = 1; index <= 8; ++index) {
        const sampleindexconfig& row = next.sampleIndex()[static_cast<std::size_t>(index)];
        EXPECT_EQ(row.sampleID, 1);
        EXPECT_EQ(row.time, 0);
        EXPECT_EQ(row.nextTime, 0);
    }
    commit();
    EXPECT_THAT(world.journal.commits, ElementsAre(Commit{"test.db", 0, 0}));
}

TEST_F(StatCollectorDatabaseTest, AnotherStartFindsWhatWasWritten) {
    writeHour(3, kNow);
    collector.insertSample(collector.emptySampleWithIdentifier(2, kNow - 100), 2);
    commit();
    next.addNow(5, kNow);
    load(next);
    const statsample newest = next.sampleAtIndex(0, StorageType::hour);
    EXPECT_EQ(newest.sampleID, 4);
    EXPECT_EQ(newest.time, kNow);
    EXPECT_EQ(newest.values[0], 3);
    EXPECT_EQ(newest.values[1], 2);
    EXPECT_EQ(newest.empty, 0);
    EXPECT_EQ(next.sampleAtIndex(2, StorageType::hour).sampleID, 2);
    EXPECT_EQ(next.sampleAtIndex(0, StorageType::day).empty, 1);
    EXPECT_EQ(next.sampleIndex()[1].sampleID, 4);
    EXPECT_EQ(next.sampleIndex()[1].time, kNow);
    EXPECT_EQ(next.sampleIndex()[1].nextTime, kNow + 6);
    EXPECT_EQ(next.sampleIndex()[2].nextTime, kNow + 44);
    EXPECT_EQ(next.lastIDForType(0), 0);  // now always begins empty
}

TEST_F(StatCollectorDatabaseTest, ARingAndOneRowAreRead) {
    writeHour(700, kNow);
    const auto samples = collector.samplesFromTable(collector.tableAtIndex(1));
    ASSERT_EQ(samples.size(), 603U);
    EXPECT_EQ(samples.front().value("sample"), 99);
    EXPECT_EQ(samples.back().value("sample"), 701);
    EXPECT_THAT(collector.samplesFromTable(std::nullopt), IsEmpty());
    EXPECT_THAT(collector.samplesFromTable("elsewhere"), IsEmpty());
}

TEST_F(StatCollectorDatabaseTest, SamplesUpToAnIdentifierReachBackARing) {
    writeHour(700, kNow);
    const auto samples = collector.samplesFromTable(collector.tableAtIndex(1), 650);
    ASSERT_EQ(samples.size(), 603U);
    EXPECT_EQ(samples.front().value("sample"), 48);
    EXPECT_EQ(samples.back().value("sample"), 650);
    EXPECT_EQ(collector.samplesFromTable(collector.tableAtIndex(1), 4).size(), 3U);
    EXPECT_THAT(collector.samplesFromTable(std::nullopt, 4), IsEmpty());
}

TEST_F(StatCollectorDatabaseTest, AnHoursPauseIsFilledSlotBySlot) {
    writeHour(3, kNow);
    world.machine.clock.step(3600);
    load(next);
    commit();
    EXPECT_EQ(number("SELECT count(*) FROM hour_testhistory WHERE empty = 1"), 600);
    EXPECT_EQ(number("SELECT time FROM hour_testhistory WHERE sample = 5"), kNow + 6);
    EXPECT_EQ(number("SELECT time FROM hour_testhistory WHERE sample = 604"), kNow + 3600);
    EXPECT_EQ(next.sampleAtIndex(0, StorageType::hour).sampleID, 604);
    EXPECT_EQ(next.sampleIndex()[1].nextTime, kNow + 3606);
}

TEST_F(StatCollectorDatabaseTest, APauseOfTwoDaysIsFilledAsFarAsARingReaches) {
    writeHour(3, kNow);
    world.machine.clock.step(2 * 86400);
    load(next);
    commit();
    const double now = world.machine.clock.now();
    EXPECT_EQ(number("SELECT min(time) FROM hour_testhistory WHERE empty = 1"), now - 3612);
    EXPECT_EQ(number("SELECT min(sample) FROM hour_testhistory WHERE empty = 1"), 5);
    EXPECT_EQ(number("SELECT max(time) FROM hour_testhistory"), now);
}

TEST_F(StatCollectorDatabaseTest, APauseOfYearsCostsNoMoreRowsThanARingHas) {
    writeHour(3, kNow);
    world.machine.clock.step(86400.0 * 365 * 30 + 1);
    load(next);
    commit();
    EXPECT_EQ(number("SELECT count(*) FROM hour_testhistory WHERE empty = 1"), 602);
    EXPECT_EQ(next.sampleAtIndex(601, StorageType::hour).empty, 1);
}

TEST_F(StatCollectorDatabaseTest, AClockSetBackByDaysBeginsTheRowAfresh) {
    writeHour(3, kNow);
    world.machine.clock.step(-2 * 86400);
    load(next);
    EXPECT_EQ(next.sampleIndex()[1].time, 0);
    EXPECT_EQ(next.sampleIndex()[1].nextTime, 0);
    EXPECT_EQ(next.sampleIndex()[1].sampleID, 4);
    next.startLogging();
    world.machine.run(12.5);
    EXPECT_EQ(next.sampleAtIndex(0, StorageType::hour).sampleID, 5);
    EXPECT_EQ(next.sampleAtIndex(0, StorageType::hour).time, kNow - 2 * 86400 + 12);
}

TEST_F(StatCollectorDatabaseTest, AClockSetBackByADayOrLessWaitsUntilItCatchesUp) {
    writeHour(3, kNow);
    world.machine.clock.step(-86400);
    load(next);
    EXPECT_EQ(next.sampleIndex()[1].time, kNow);
    EXPECT_EQ(next.sampleIndex()[1].nextTime, kNow + 6);
    commit();
    EXPECT_EQ(number("SELECT count(*) FROM hour_testhistory"), 3);
}

TEST_F(StatCollectorDatabaseTest, TheIDsGoOnAcrossARestart) {
    collector.startLogging();
    world.machine.run(150);
    collector.cleanup();
    world.machine.run(60);
    load(next);
    next.startLogging();
    world.machine.run(288);
    EXPECT_EQ(number("SELECT count(*) FROM hour_testhistory"),
              number("SELECT max(sample) - 1 FROM hour_testhistory"));
    EXPECT_EQ(number("SELECT count(*) FROM hour_testhistory"),
              number("SELECT (max(time) - min(time)) / 6 + 1 FROM hour_testhistory"));
}

// The long term

TEST_F(StatCollectorDatabaseTest, TheLongTermTableHasAFileAndFormsOfItsOwn) {
    collector.setDbpathLong(folder / "long.db");
    collector.checkIfLongTermTablesExist(8, databaseItemWithPath(folder / "long.db").get(), false);
    collector.mutableConfig().sqlInsertLong = "insert into %@ (sample, a) values (?, ?)";
    collector.mutableConfig().sqlInsertKeysLong = {"sample", "a"};
    collector.insertSample(ownSample(2, kNow, 5), 8);
    collector.insertSample(ownSample(3, kNow, 6), 8);
    collector.runDatabaseQueue();
    EXPECT_THAT(world.journal.commits,
                ElementsAre(Commit{"test.db", 0, 0}, Commit{"long.db", 2, 0}));
    const auto last = collector.lastLongTermSample();
    ASSERT_TRUE(last);
    EXPECT_EQ(last->value("sample"), 3);
    EXPECT_EQ(last->value("a"), 6);
}

TEST_F(StatCollectorDatabaseTest, WithoutFormsOfItsOwnTheLongTermTableTakesTheOthers) {
    collector.setDbpathLong(folder / "long.db");
    collector.checkIfLongTermTablesExist(8, databaseItemWithPath(folder / "long.db").get(), false);
    collector.insertSample(ownSample(2, kNow, 5), 8);
    collector.runDatabaseQueue();
    EXPECT_EQ(collector.lastLongTermSample()->value("b"), 2);
}

TEST_F(StatCollectorDatabaseTest, TheLongTermRowIsHandledOnlyWithAFile) {
    EXPECT_FALSE(collector.updateSample(8));
    collector.setDbpathLong(folder / "long.db");
    EXPECT_TRUE(collector.updateSample(8));
}

// Items

TEST_F(StatCollectorDatabaseTest, ItemsAreWrittenAndFoundAgain) {
    use(things);
    things.newItemWithKey("one");
    things.newItemWithKey("two");
    things.onMeasure = [&] {
        things.addNow(0, world.machine.clock.now());
        for (const auto& item : things.items()) {
            SampleRing& ring = item->storageForType(0);
            PushSamples(ring);
            ring.setSampleID(0, things.idForInterval(0));
            ring.setTime(0, world.machine.clock.now());
            ring.setEmpty(0, 0);
            ring.mutableValues(0)[0] = item->key == "one" ? 10 : 20;
        }
    };
    things.startLogging();
    world.machine.run(145);
    EXPECT_EQ(number("SELECT count(*) FROM hour_thingidhistory"), 23);
    EXPECT_EQ(number("SELECT count(*) FROM hour_thinghistory WHERE uuid = 'two'"), 23);

    TestCollector again(world.machine.ports(), StorageKind::items);
    use(again);
    again.loadPreviousSamples();
    EXPECT_EQ(again.sampleAtIndex(0, StorageType::hour).sampleID, 24);
    EXPECT_THAT(again.items(), IsEmpty());
    again.loadPreviousSampleItems();
    ASSERT_EQ(again.items().size(), 2U);
    StatCollectorItem* const two = again.itemWithKey("two", StatCollector::Temporary::yes);
    EXPECT_TRUE(two->temporary());
    EXPECT_TRUE(two->loadedHistory);
    EXPECT_EQ(two->sampleAtIndex(0, StorageType::hour).sampleID, 24);
    EXPECT_EQ(two->sampleAtIndex(0, StorageType::hour).values[0], 20);
    EXPECT_EQ(two->sampleAtIndex(0, StorageType::day).sampleID, 2);
}

TEST_F(StatCollectorDatabaseTest, AFileThatNamesTooManyItemsIsNotBelieved) {
    use(things);
    HistoryFile(path).run(
        "insert into hour_thingidhistory values (2, 100, 0);"
        "drop table hour_thinghistory;"
        "create table hour_thinghistory (sample double, time double, uuid text, a double);"
        "insert into hour_thinghistory with recursive n(i) as (select 1 union all select i + 1 "
        "from "
        "n where i < 5000) select 2, 100, 'thing' || i, 1 from n");
    things.loadPreviousSamples();
    things.loadPreviousSampleItems();
    EXPECT_EQ(things.items().size(), 256U);
}

class StatCollectorItemHistoryTest : public StatCollectorDatabaseTest {
protected:
    /// 50 samples of the item, with the values of their IDs.
    StatCollectorItemHistoryTest() {
        use(things);
        HistoryFile(path).run(
            "drop table hour_thinghistory;"
            "create table hour_thinghistory (sample double, time double, uuid text, a double);"
            "insert into hour_thinghistory with recursive n(i) as (select 2 union all select i + 1 "
            "from n where i < 51) select i, i * 6, 'thing', i from n");
        things.sampleIndex()[1].sampleID = 52;
        item = things.newItemWithKey("thing");
    }
    double valueAt(std::size_t position) {
        return item->sampleAtIndex(position, StorageType::hour).values[0];
    }

    StatCollectorItem* item = nullptr;
    int replies = 0;
};

TEST_F(StatCollectorItemHistoryTest, AnEmptyRingIsFilledFromItsHead) {
    things.loadPreviousSamplesForItem(*item, [&] { ++replies; });
    EXPECT_TRUE(item->loadedHistory);
    EXPECT_EQ(replies, 0);  // answers come on the main queue
    world.machine.run(0);
    EXPECT_EQ(replies, 1);      // the other scales have nothing to ask for
    EXPECT_EQ(valueAt(0), 50);  // 51 is the newest ID, which isn't asked for
    EXPECT_EQ(item->sampleAtIndex(48, StorageType::hour).sampleID, 2);
    EXPECT_EQ(item->sampleAtIndex(49, StorageType::hour).sampleID, 0);
}

TEST_F(StatCollectorItemHistoryTest, SamplesThatAreThereStayInFrontOfTheLoadedOnes) {
    item->addSample(sampleOf({{"sample", 30}, {"a", 300}}), 1);
    item->addSample(sampleOf({{"sample", 60}, {"a", 600}}), 1);
    things.loadPreviousSamplesForItem(*item, [&] { ++replies; });
    world.machine.run(0);
    EXPECT_EQ(valueAt(0), 600);
    EXPECT_EQ(valueAt(1), 300);
    EXPECT_EQ(valueAt(2), 29);
    EXPECT_EQ(item->sampleAtIndex(2, StorageType::hour).time, 29 * 6);
}

TEST_F(StatCollectorItemHistoryTest, AFullRingIsLeftAlone) {
    for (int sample = 1; sample <= 602; ++sample)
        item->addSample(sampleOf({{"sample", 100 + sample}, {"a", -1}}), 1);
    things.loadPreviousSamplesForItem(*item, [&] { ++replies; });
    world.machine.run(0);
    EXPECT_EQ(replies, 1);
    EXPECT_EQ(valueAt(601), -1);
}

TEST_F(StatCollectorItemHistoryTest, OtherItemsRowsAreNotTaken) {
    StatCollectorItem* const other = things.newItemWithKey("other");
    things.loadPreviousSamplesForItem(*other, [&] { ++replies; });
    world.machine.run(0);
    EXPECT_EQ(replies, 1);
    EXPECT_EQ(other->lowestSampleForStorageType(1), 0);
}

TEST_F(StatCollectorItemHistoryTest, WithoutAnythingToAskForNobodyReplies) {
    things.sampleIndex()[1].sampleID = 1;
    things.loadPreviousSamplesForItem(*item, [&] { ++replies; });
    world.machine.run(0);
    EXPECT_EQ(replies, 0);
}

TEST_F(StatCollectorItemHistoryTest, AnItemThatWentMeanwhileIsLeftAlone) {
    things.loadPreviousSamplesForItem(*item, [&] { ++replies; });
    things.markItemsAsMissing();
    things.removeOldItems();
    world.machine.run(0);
    EXPECT_EQ(replies, 1);
}

// Files that others wrote

TEST_F(StatCollectorDatabaseTest, ATableOfAnotherSchemaGivesWhatItHas) {
    replaceHour("create table hour_testhistory (sample integer, A text, time text);"
                "insert into hour_testhistory values (7, 'x', '" +
                std::to_string(kNow) + "')");
    load(next);
    EXPECT_EQ(next.lastIDForType(1), 7);
    EXPECT_EQ(next.sampleAtIndex(0, StorageType::hour).time, kNow);
    EXPECT_EQ(next.sampleAtIndex(0, StorageType::hour).values[0], 0);  // "A" isn't "a"
}

TEST_F(StatCollectorDatabaseTest, ATableWithoutIDsGivesNothing) {
    replaceHour("create table hour_testhistory (x, y); insert into hour_testhistory values (1, 2)");
    load(next);
    EXPECT_EQ(next.lastIDForType(1), 0);
}

TEST_F(StatCollectorDatabaseTest, TextWhereANumberShouldBeReadsAsTheNumberThatItBeginsWith) {
    replaceHour("create table hour_testhistory (sample, time, empty, a, b);"
                "insert into hour_testhistory values (9, " +
                std::to_string(kNow) + ", 'no', '12.5 percent', x'00ff')");
    load(next);
    const statsample sample = next.sampleAtIndex(0, StorageType::hour);
    EXPECT_EQ(sample.values[0], 12.5);
    EXPECT_EQ(sample.values[1], 0);
    EXPECT_EQ(sample.empty, 0);
}

TEST_F(StatCollectorDatabaseTest, NegativeAndRepeatingIDsDoNotEnterTheRing) {
    replaceHour("create table hour_testhistory (sample, time, a);"
                "insert into hour_testhistory values (-5, 1, 1), (0, 2, 1), (4, 10, 1), "
                "(4, 11, 2), (5, 12, 3)");
    load(next);
    EXPECT_EQ(next.sampleIndex()[1].sampleID, 5 + 603);  // and the gap since 1970 behind it
    next.clearAllStorages();
    next.loadPreviousSamplesAtIndex(1);
    EXPECT_EQ(next.lastIDForType(1), 5);
    EXPECT_EQ(next.sampleAtIndex(1, StorageType::hour).sampleID, 4);
    EXPECT_EQ(next.sampleAtIndex(2, StorageType::hour).sampleID, 1);  // 0 is the next one
    EXPECT_EQ(next.sampleAtIndex(3, StorageType::hour).sampleID, 0);
}

TEST_F(StatCollectorDatabaseTest, FiguresThatNoRunCanHaveWrittenDoNotStopTheHistory) {
    for (const char* const row :
         {"(1e308, 1e308, 1e308, 1e308)", "(9e999, 5, 0, 1)", "(-1e308, -1e308, -1e308, -1e308)",
          "(3, -9e999, 1, 1)", "(3, 9e999, 1, 1)", "(null, null, null, null)"}) {
        replaceHour(fmt::format("create table hour_testhistory (sample, time, empty, a);"
                                "insert into hour_testhistory values (2, {}, 0, 8), {}",
                                kNow - 6, row));
        TestCollector fresh(world.machine.ports());
        load(fresh);
        fresh.startLogging();
        world.machine.run(20);
        EXPECT_GT(fresh.lastIDForType(1), 3) << row;
        EXPECT_LT(fresh.lastIDForType(1), 700) << row;
        world.machine.clock.step(-20);
    }
}

TEST_F(StatCollectorDatabaseTest, MillionsOfRowsAreNotRead) {
    HistoryFile(path).run("insert into hour_testhistory with recursive n(i) as (select 1 union all "
                          "select i + 1 from n where i < 300000) select i, i, 0, 1, 1 from n");
    const auto begin = std::chrono::steady_clock::now();
    next.setDbpath(path);
    next.loadPreviousSamples();
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    EXPECT_EQ(next.lastIDForType(1), 300000);
    EXPECT_LT(took.count(), 1);
}

// Readers

TEST_F(StatCollectorDatabaseTest, HiddenSamplesLookLikeNone) {
    writeHour(3, kNow);
    next.newItemWithKey("thing");
    next.itemMaker = [] { return std::make_unique<StatCollectorItem>(2); };
    next.newItemWithKey("thing");
    next.hideSamples();
    load(next);
    EXPECT_EQ(next.sampleAtIndex(0, StorageType::hour).sampleID, 0);
    EXPECT_EQ(next.sampleWithIdentifier(4, StorageType::hour).empty, 1);
    EXPECT_EQ(next.lastIDForType(1), 0);
    EXPECT_EQ(next.idForInterval(1), 1);
    EXPECT_THAT(next.items(), IsEmpty());
    next.showSamples();
    EXPECT_EQ(next.sampleAtIndex(0, StorageType::hour).sampleID, 4);
    EXPECT_EQ(next.idForInterval(1), 4);
    EXPECT_EQ(next.items().size(), 1U);
}

TEST_F(StatCollectorDatabaseTest, HiddenSamplesRollUpAllTheSame) {
    next.hideSamples();
    next.addNow(8, kNow);
    EXPECT_EQ(next.hourSample(kNow + 1).value("a"), 8);
}

}  // namespace
}  // namespace vantor
