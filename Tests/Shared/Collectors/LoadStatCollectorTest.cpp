#include "Shared/Collectors/LoadStatCollector.h"

#include <gtest/gtest.h>

#include "Tests/Support/World.h"

namespace vantor {
namespace {

class LoadStatCollectorTest : public testing::Test {
protected:
    LoadStatCollector& collector() { return LoadStatCollector::sharedLoadCollector(); }

    test::World world;
};

TEST_F(LoadStatCollectorTest, ALoadIsItsFixedPointNumberOverTheScale) {
    world.machine.loadAverages.setLoads({{3072, 1024, 1}, 2048});
    collector().updateStats();
    const statsample sample = collector().sampleAtIndex(0, StorageType::now);
    EXPECT_EQ(sample.values[0], 1.5);
    EXPECT_EQ(sample.values[1], 0.5);
    EXPECT_EQ(sample.values[2], 1.0 / 2048);
}

TEST_F(LoadStatCollectorTest, ASampleBearsTheClockAndTheNextIdentifier) {
    collector().updateStats();
    EXPECT_EQ(collector().sampleAtIndex(0, StorageType::now).time, world.machine.clock.now());
    EXPECT_EQ(collector().latestSampleID(), 2);
}

TEST_F(LoadStatCollectorTest, UptimeCountsFromBoot) {
    const auto now = static_cast<std::int64_t>(world.machine.clock.now());
    world.machine.bootTime.setBootSeconds(now - 77);
    EXPECT_EQ(collector().uptime(), 77U);
}

TEST_F(LoadStatCollectorTest, WithoutBootTimeUptimeIsTheRawClock) {
    world.machine.bootTime.setBootSeconds(std::nullopt);
    EXPECT_EQ(collector().uptime(), static_cast<std::uint64_t>(world.machine.clock.now()));
}

TEST_F(LoadStatCollectorTest, CleanupMakesRoomForANewOne) {
    collector().updateStats();
    LoadStatCollector::cleanupShared();
    EXPECT_EQ(world.context.existingLoadCollector(), nullptr);
    EXPECT_EQ(collector().latestSampleID(), 0);
}

}  // namespace
}  // namespace vantor
