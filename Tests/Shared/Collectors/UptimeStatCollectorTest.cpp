#include "Shared/Collectors/UptimeStatCollector.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Support/HistoryFile.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using test::HistoryFile;
using testing::ElementsAre;
using testing::IsEmpty;

class UptimeStatCollectorTest : public testing::Test {
protected:
    UptimeStatCollectorTest() { world.machine.bootTime.setBootSeconds(1'425'000'000); }

    UptimeStatCollector& collector() { return UptimeStatCollector::sharedUptimeCollector(); }
    std::vector<double> starts(const char* file) {
        return HistoryFile(folder / file).column("SELECT time FROM boottimes ORDER BY rowid");
    }

    test::TemporaryFolder folder;
    test::World world;
};

TEST_F(UptimeStatCollectorTest, TheBootTimeIsNegativeUntilItIsLoaded) {
    EXPECT_EQ(collector().boottime(), -1.0);
    EXPECT_EQ(collector().uptime(), -1.0);
    collector().loadUptime();
    EXPECT_EQ(collector().boottime(), 1'425'000'000.0);
    EXPECT_EQ(collector().uptime(), -1.0);
}

TEST_F(UptimeStatCollectorTest, ATimeThatCannotBeReadIsZero) {
    world.machine.bootTime.setBootSeconds(std::nullopt);
    collector().loadUptime();
    EXPECT_EQ(collector().boottime(), 0.0);
}

TEST_F(UptimeStatCollectorTest, WithoutAFileNothingIsLogged) {
    EXPECT_FALSE(collector().prepareDatabase(false));
    EXPECT_TRUE(collector().prepareDatabase(true));
    collector().loadUptime();
    EXPECT_THAT(world.journal.logLines, IsEmpty());
}

TEST_F(UptimeStatCollectorTest, ATableThatIsMissingIsMadeAndChangesTheResult) {
    collector().setDbpath(folder / "uptime.db");
    EXPECT_TRUE(collector().prepareDatabase(false));
    EXPECT_FALSE(collector().prepareDatabase(false));
    EXPECT_TRUE(collector().prepareDatabase(true));
    EXPECT_THAT(starts("uptime.db"), IsEmpty());
}

TEST_F(UptimeStatCollectorTest, TheSameStartLeavesOneRow) {
    collector().setDbpath(folder / "uptime.db");
    collector().prepareDatabase(false);
    collector().loadUptime();
    collector().loadUptime();
    EXPECT_THAT(starts("uptime.db"), ElementsAre(1'425'000'000.0));
    EXPECT_THAT(world.journal.logLines, ElementsAre("adding new boot"));
}

TEST_F(UptimeStatCollectorTest, AnotherStartIsAnotherRow) {
    collector().setDbpath(folder / "uptime.db");
    collector().prepareDatabase(false);
    collector().loadUptime();
    world.machine.bootTime.setBootSeconds(1'425'000'500);
    collector().loadUptime();
    EXPECT_THAT(starts("uptime.db"), ElementsAre(1'425'000'000.0, 1'425'000'500.0));
}

TEST_F(UptimeStatCollectorTest, BothFilesKnowTheStart) {
    collector().setDbpath(folder / "uptime.db");
    collector().setDbpathLong(folder / "long.db");
    EXPECT_TRUE(collector().prepareDatabase(false));
    collector().loadUptime();
    EXPECT_THAT(starts("uptime.db"), ElementsAre(1'425'000'000.0));
    EXPECT_THAT(starts("long.db"), ElementsAre(1'425'000'000.0));
    EXPECT_THAT(world.journal.logLines,
                ElementsAre("adding new boot", "adding new boot long"));
}

TEST_F(UptimeStatCollectorTest, AFileWithoutTheTableTakesNothing) {
    collector().setDbpath(folder / "uptime.db");
    collector().loadUptime();
    EXPECT_EQ(collector().boottime(), 1'425'000'000.0);
    EXPECT_FALSE(HistoryFile(folder / "uptime.db").hasTable("boottimes"));
}

TEST_F(UptimeStatCollectorTest, ItHasNoTablesOfSamples) {
    for (int index = 0; index < 9; ++index)
        EXPECT_FALSE(collector().tableAtIndex(index));
}

TEST_F(UptimeStatCollectorTest, CleanupMakesRoomForANewOne) {
    collector().loadUptime();
    UptimeStatCollector::cleanupShared();
    EXPECT_EQ(world.context.existingUptimeCollector(), nullptr);
    EXPECT_EQ(collector().boottime(), -1.0);
}

TEST_F(UptimeStatCollectorTest, CleanupWithoutACollectorMakesNone) {
    UptimeStatCollector::cleanupShared();
    EXPECT_EQ(world.context.existingUptimeCollector(), nullptr);
}

}  // namespace
}  // namespace vantor
