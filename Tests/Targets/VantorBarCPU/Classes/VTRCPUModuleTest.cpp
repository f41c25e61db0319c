#include "Targets/VantorBarCPU/Classes/VTRCPUModule.h"

#include <fstream>

#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Platform/Linux/LinuxMainQueue.h"
#include "Platform/Linux/LinuxWorkQueues.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/Collectors/GPUStatCollector.h"
#include "Shared/Collectors/LoadStatCollector.h"
#include "Shared/Collectors/UptimeStatCollector.h"
#include "Shared/Database/HistoryDatabaseController.h"
#include "Tests/Support/GraphicsTree.h"
#include "Tests/Support/HistoryFile.h"
#include "Tests/Support/QueueWorld.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;
using test::HistoryFile;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kNow = simulated::SimulatedMachine::kStart;

class TestExtra final : public VTRModuleDelegate {
public:
    void update() override { ++updates; }
    void updateSize() override {}
    bool isCombinedExtra() const override { return combined; }

    int updates = 0;
    bool combined = false;
};

const char* const kHourTable =
    "create table hour_cpuhistory (sample double PRIMARY KEY NOT NULL, time double NOT NULL, "
    "empty integer NOT NULL, user double NOT NULL, system double NOT NULL, nice double NOT NULL);";

class VTRCPUModuleTest : public testing::Test {
protected:
    VTRCPUModuleTest() {
        world.machine.directories.setRoot(folder.path());
        fs::create_directories(databases);
    }
    /// A run that wrote one hour sample, of ID 5.
    void writeHistory() {
        HistoryFile(databases / "cpu.db")
            .run(std::string(kHourTable) + "insert into hour_cpuhistory values (5, " +
                 std::to_string(kNow - 6) + ", 0, 50, 25, 5)");
    }
    void start() {
        module.emplace(extra);
        module->setup();
        world.machine.run(0);
    }
    /// A card of 1000 bytes, a quarter of them in use.
    void plugInCard() {
        world.machine.registry.setTree(test::graphicsTree(
            {{.properties = {{"VRAM,totalsize", 1000}},
              .statistics = {{"vramUsedBytes", 250}, {"Device Utilization %", 40}}}}));
    }
    CPUStatCollector& cpu() { return CPUStatCollector::sharedCPUCollector(); }
    GPUStatCollector& gpus() { return GPUStatCollector::sharedGPUCollector(); }

    test::TemporaryFolder folder;
    const fs::path databases = folder / "Application Support/Vantor Bar/databases";
    test::World world;
    TestExtra extra;
    std::optional<VTRCPUModule> module;
};

TEST_F(VTRCPUModuleTest, EachCollectorHasItsFile) {
    start();
    EXPECT_EQ(cpu().dbpath(), databases / "cpu.db");
    EXPECT_EQ(LoadStatCollector::sharedLoadCollector().dbpath(), databases / "load.db");
    EXPECT_EQ(gpus().dbpath(), databases / "gpu.db");
    EXPECT_FALSE(UptimeStatCollector::sharedUptimeCollector().dbpath());
    EXPECT_TRUE(HistoryFile(databases / "cpu.db").hasTable("month_cpuhistory"));
    EXPECT_TRUE(HistoryFile(databases / "load.db").hasTable("hour_loadavghistory"));
    for (const char* const table : {"hour_gpuidhistory", "month_gpuidhistory", "hour_gpuhistory"})
        EXPECT_TRUE(HistoryFile(databases / "gpu.db").hasTable(table)) << table;
}

TEST_F(VTRCPUModuleTest, ACombinedExtraHasFilesOfItsOwn) {
    extra.combined = true;
    start();
    EXPECT_EQ(cpu().dbpath(), databases / "combined_cpu.db");
}

TEST_F(VTRCPUModuleTest, TheHistoryIsThereWhenTheModuleListens) {
    writeHistory();
    start();
    EXPECT_THAT(cpu().delegates(), ElementsAre(&*module));
    EXPECT_EQ(cpu().sampleWithIdentifier(5, StorageType::hour).values[0], 50);
    EXPECT_EQ(cpu().lastIDForType(1), 6);  // the slot of now, which is a gap
    EXPECT_EQ(UptimeStatCollector::sharedUptimeCollector().boottime(), 0.0);
}

TEST_F(VTRCPUModuleTest, WithoutAPlaceForFilesItMeasuresAllTheSame) {
    world.machine.directories.setRoot(std::nullopt);
    start();
    world.machine.run(200);
    EXPECT_FALSE(cpu().dbpath());
    EXPECT_GT(cpu().lastIDForType(1), 20);
    EXPECT_THAT(world.journal.commits, IsEmpty());
}

TEST_F(VTRCPUModuleTest, ADamagedFileIsThrownAwayBeforeAnythingIsReadFromIt) {
    writeHistory();
    std::fstream(databases / "cpu.db", std::ios::in | std::ios::out).seekp(0) << "no database";
    start();
    EXPECT_EQ(cpu().lastIDForType(1), 0);
    world.machine.run(150);
    EXPECT_EQ(HistoryFile(databases / "cpu.db").number("SELECT min(sample) FROM hour_cpuhistory"),
              2);
}

TEST_F(VTRCPUModuleTest, AnEmptyFileIsFilled) {
    std::ofstream(databases / "cpu.db").close();
    start();
    world.machine.run(150);
    EXPECT_GT(HistoryFile(databases / "cpu.db").number("SELECT count(*) FROM hour_cpuhistory"), 0);
}

TEST_F(VTRCPUModuleTest, AFolderInThePlaceOfAFileIsLeftAlone) {
    fs::create_directories(databases / "cpu.db/kept");
    start();
    world.machine.run(200);
    EXPECT_TRUE(fs::exists(databases / "cpu.db/kept"));
    EXPECT_GT(cpu().lastIDForType(1), 20);
    EXPECT_GT(HistoryFile(databases / "load.db").number("SELECT count(*) FROM hour_loadavghistory"),
              0);
}

TEST_F(VTRCPUModuleTest, ALinkToNowhereBecomesAFile) {
    fs::create_symlink(folder / "nowhere/cpu.db", databases / "cpu.db");
    start();
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(databases / "cpu.db")));
    EXPECT_TRUE(HistoryFile(databases / "cpu.db").hasTable("hour_cpuhistory"));
}

TEST_F(VTRCPUModuleTest, APipeInThePlaceOfAFileHoldsNobodyUp) {
    ASSERT_EQ(mkfifo((databases / "cpu.db").c_str(), 0400), 0);  // can't be opened for writing
    start();
    world.machine.run(200);
    EXPECT_GT(cpu().lastIDForType(1), 20);
    EXPECT_TRUE(fs::is_regular_file(databases / "cpu.db"));
}

TEST_F(VTRCPUModuleTest, TheGraphicsAreReadOnceAndThenRest) {
    plugInCard();
    start();
    ASSERT_EQ(gpus().items().size(), 1U);
    EXPECT_EQ(gpus().activeGPU(), &gpus().gpu(0));
    EXPECT_EQ(gpus().gpu(0).displays.size(), 1U);
    EXPECT_EQ(gpus().gpu(0).sampleAtIndex(0, StorageType::now).values[0], 0.25);
    EXPECT_FALSE(gpus().enabled());
    EXPECT_THAT(gpus().delegates(), ElementsAre(&*module));
    ASSERT_EQ(world.journal.measurements.size(), 1U);
    EXPECT_EQ(world.journal.measurements[0].collector, "gpu");
    EXPECT_EQ(world.journal.measurements[0].sequence, std::nullopt);
    EXPECT_EQ(extra.updates, 0) << "the item shows no graphics sample by itself";
}

TEST_F(VTRCPUModuleTest, GraphicsGoOnAtAThirdOfThePaceWhileNobodyLooks) {
    plugInCard();
    start();
    world.machine.run(20);
    for (const auto& [collector, sequence] : world.journal.measurements)
        EXPECT_TRUE(collector != "gpu" || sequence.value_or(0) % 3 == 0);
    EXPECT_NEAR(gpus().idForInterval(0), 9, 1);
}

TEST_F(VTRCPUModuleTest, AChangeOfTheDisplaysReachesTheGraphicsOnceTheyAreThere) {
    module.emplace(extra);
    module->setup();
    world.machine.displays.reconfigure();
    EXPECT_THAT(world.journal.measurements, IsEmpty());
    world.machine.run(0);
    world.machine.displays.reconfigure();
    EXPECT_EQ(world.journal.measurements.size(), 2U);
}

TEST_F(VTRCPUModuleTest, ACardKeepsItsHistoryOverRuns) {
    plugInCard();
    start();
    world.machine.run(170);
    const double newest = gpus().lastIDForType(1);
    module->willUnload();
    start();
    EXPECT_GE(gpus().lastIDForType(1), newest - 5);
    ASSERT_EQ(gpus().items().size(), 1U);
    EXPECT_FALSE(gpus().gpu(0).temporary());
    EXPECT_TRUE(gpus().gpu(0).loadedHistory);
    EXPECT_EQ(gpus().gpu(0).sampleWithIdentifier(10, StorageType::hour).values[0], 0.25);
    EXPECT_EQ(gpus().gpu(0).sampleWithIdentifier(10, StorageType::hour).values[1], 40);
}

TEST_F(VTRCPUModuleTest, ACardThatIsGoneIsATemporaryItemOfItsHistory) {
    plugInCard();
    start();
    world.machine.run(170);
    module->willUnload();
    world.machine.registry.setTree(test::graphicsTree({}));
    start();
    ASSERT_EQ(gpus().items().size(), 1U);
    EXPECT_TRUE(gpus().gpu(0).temporary());
    EXPECT_EQ(gpus().gpu(0).sampleWithIdentifier(10, StorageType::hour).values[0], 0.25);
}

TEST_F(VTRCPUModuleTest, AnItemsSampleIsTheSameInMemoryAndInTheFile) {
    plugInCard();
    start();
    world.machine.run(170);
    const statsample kept = gpus().gpu(0).sampleWithIdentifier(10, StorageType::hour);
    EXPECT_EQ(kept.time, HistoryFile(databases / "gpu.db")
                             .number("SELECT time FROM hour_gpuhistory WHERE sample = 10"));
}

TEST_F(VTRCPUModuleTest, UnloadingEndsAllCollectors) {
    start();
    module->partialUnload();
    EXPECT_EQ(world.context.existingCPUCollector(), nullptr);
    EXPECT_EQ(world.context.existingLoadCollector(), nullptr);
    EXPECT_EQ(world.context.existingUptimeCollector(), nullptr);
    EXPECT_EQ(world.context.existingGPUCollector(), nullptr);
    world.machine.run(300);
    EXPECT_THAT(world.journal.commits, IsEmpty());
}

TEST_F(VTRCPUModuleTest, AModuleThatGoesAtOnceLeavesNothingBehind) {
    module.emplace(extra);
    module->setup();
    module->willUnload();
    module.reset();
    world.machine.run(5);
    EXPECT_EQ(extra.updates, 0);
}

/// The start-up work on a thread of its own, as on a desktop.
class VTRCPUModuleThreadTest : public VTRCPUModuleTest {
protected:
    VTRCPUModuleThreadTest() {
        writeHistory();
        plugInCard();
        HistoryFile(databases / "gpu.db")
            .run("create table hour_gpuidhistory (sample double PRIMARY KEY NOT NULL, "
                 "time double NOT NULL, empty integer NOT NULL);"
                 "create table hour_gpuhistory (sample double NOT NULL, time double NOT NULL, "
                 "uuid varchar(100) NOT NULL, processor double NOT NULL, memory double NOT NULL);"
                 "insert into hour_gpuidhistory values (5, " +
                 std::to_string(kNow - 6) +
                 ", 0);"
                 "insert into hour_gpuhistory values (5, " +
                 std::to_string(kNow - 12) + ", 'Slot1', 7, 0.5)");
    }
    ~VTRCPUModuleThreadTest() override { module.reset(); }  // before the queues that it waits for

    Ports threadedPorts() {
        Ports ports = overriddenPorts(world.machine.ports(),
                                      {.mainQueue = &mainQueue, .workQueues = &workQueues});
        ports.witness = nullptr;
        return ports;
    }

    LinuxMainQueue mainQueue;
    LinuxWorkQueues workQueues;
    ProcessContext context{threadedPorts()};
};

TEST_F(VTRCPUModuleThreadTest, ReadersSeeNoSampleUntilTheModuleListens) {
    module.emplace(extra);
    module->setup();
    const CPUStatCollector& reader = cpu();
    while (reader.delegates().empty()) {
        for (const StorageType type : {StorageType::now, StorageType::hour, StorageType::week})
            EXPECT_EQ(reader.sampleAtIndex(0, type).sampleID, 0);
        EXPECT_EQ(reader.idForInterval(1), 1);
        EXPECT_THAT(reader.items(), IsEmpty());
        EXPECT_THAT(gpus().items(), IsEmpty());
        EXPECT_EQ(gpus().activeGPU(), nullptr);
        mainQueue.runOnce(0.001);
    }
    EXPECT_EQ(reader.sampleWithIdentifier(5, StorageType::hour).values[0], 50);
    ASSERT_EQ(gpus().items().size(), 1U);
    EXPECT_EQ(gpus().gpu(0).sampleWithIdentifier(5, StorageType::hour).values[1], 7);
    module->willUnload();
}

TEST_F(VTRCPUModuleThreadTest, UnloadingWaitsForTheStartUpWork) {
    module.emplace(extra);
    module->setup();
    module->willUnload();
    EXPECT_EQ(context.existingCPUCollector(), nullptr);
    EXPECT_EQ(context.existingUptimeCollector(), nullptr);
    module.reset();
    mainQueue.runOnce(0);
}

TEST_F(VTRCPUModuleThreadTest, AModuleThatDiesWaitsForTheStartUpWork) {
    module.emplace(extra);
    module->setup();
    module.reset();
    mainQueue.runOnce(0);
    EXPECT_THAT(cpu().delegates(), IsEmpty());
}

}  // namespace
}  // namespace vantor
