#include "Platform/Linux/LinuxLoadAverages.h"

#include <cstdlib>

#include <gtest/gtest.h>

#include "Tests/Support/AllocationCounter.h"

namespace vantor::test {
namespace {

/// The kernel counts anew every five seconds, perhaps between two readings. So the C library is
/// asked before and after.
TEST(LinuxLoadAveragesTest, LoadsAreThoseThatTheCLibraryTells) {
    double before[3], after[3];
    ASSERT_EQ(::getloadavg(before, 3), 3);
    const FixedLoads loads = LinuxLoadAverages().readLoads();
    ASSERT_EQ(::getloadavg(after, 3), 3);
    ASSERT_EQ(loads.scale, 65536u);
    for (int i = 0; i < 3; ++i) {
        const double load = loads.fixed[static_cast<std::size_t>(i)] / 65536.0;
        EXPECT_GE(load, std::min(before[i], after[i]) - 0.02);
        EXPECT_LE(load, std::max(before[i], after[i]) + 0.02);
    }
}

TEST(LinuxLoadAveragesTest, ReadingDoesNotAllocate) {
    LinuxLoadAverages loads;
    const AllocationCounter counter;
    loads.readLoads();
    EXPECT_EQ(counter.count(), 0u);
}

}  // namespace
}  // namespace vantor::test
