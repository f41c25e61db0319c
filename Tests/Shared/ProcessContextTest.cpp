#include "Shared/ProcessContext.h"

#include <gtest/gtest.h>

#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/External/Logging/LGLog.h"
#include "Shared/VTRPreferences.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

TEST(ProcessContextTest, TheNewestIsTheCurrentOneUntilItEnds) {
    test::World outer;
    {
        test::World inner;
        EXPECT_EQ(&ProcessContext::current(), &inner.context);
    }
    EXPECT_EQ(&ProcessContext::current(), &outer.context);
}

TEST(ProcessContextTest, EachWorldHasSingletonsOfItsOwn) {
    test::World outer;
    CPUStatCollector::sharedCPUCollector().updateStats();
    test::World inner;
    EXPECT_EQ(inner.context.existingCPUCollector(), nullptr);
    EXPECT_EQ(CPUStatCollector::sharedCPUCollector().idForInterval(0), 1);
}

TEST(ProcessContextTest, ASingletonIsMadeOnce) {
    test::World world;
    EXPECT_EQ(&CPUStatCollector::sharedCPUCollector(), &CPUStatCollector::sharedCPUCollector());
}

TEST(ProcessContextTest, ThePreferencesAreNotMadeAgain) {
    test::World world;
    EXPECT_NE(world.context.preferences(), nullptr);
    VTRPreferences::cleanup();
    EXPECT_EQ(world.context.preferences(), nullptr);
}

TEST(ProcessContextTest, WithoutAWorldThereIsNone) {
    EXPECT_EQ(ProcessContext::currentOrNull(), nullptr);
    test::World world;
    EXPECT_EQ(ProcessContext::currentOrNull(), &world.context);
}

TEST(ProcessContextTest, TheLogIsThereWhenSomebodyLogs) {
    test::World world;
    EXPECT_EQ(world.context.existingLog(), nullptr);
    LGLogInfo("text");
    EXPECT_EQ(world.context.existingLog(), &LGLog::sharedLog());
}

}  // namespace
}  // namespace vantor
