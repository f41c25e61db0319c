#include "Platform/Linux/LinuxClock.h"

#include <ctime>

#include <gtest/gtest.h>

namespace vantor {
namespace {

TEST(LinuxClockTest, NowIsTheTimeOfDay) {
    EXPECT_NEAR(LinuxClock{}.now(), static_cast<double>(std::time(nullptr)), 2);
}

TEST(LinuxClockTest, MonotonicNeverFalls) {
    const LinuxClock clock;
    double before = clock.monotonic();
    for (int reading = 0; reading < 1000; ++reading) {
        const double now = clock.monotonic();
        ASSERT_GE(now, before);
        before = now;
    }
}

}  // namespace
}  // namespace vantor
