#include "Targets/VantorBarCPU/Interface/TimeTexts.h"

#include <limits>

#include <gtest/gtest.h>

#include "Tests/Support/World.h"

namespace vantor {

TEST(TimeTextsTest, TellsDaysHoursAndMinutesAsFarAsItTakes) {
    const test::World world;
    const struct {
        double seconds;
        const char* text;
    } cases[] = {{59, "0 minutes"},
                 {60, "1 minute"},
                 {3660, "1 hour, 1 minute"},
                 {90'000, "1 day, 1 hour, 0 minutes"},
                 {86'443'200, "1000 days, 12 hours, 0 minutes"},
                 {2 * 86'400 + 300, "2 days, 0 hours, 5 minutes"}};
    for (const auto& one : cases)
        EXPECT_EQ(formattedTime(one.seconds), one.text) << one.seconds;
}

TEST(TimeTextsTest, WhatIsNoLengthOfTimeIsQuiet) {
    const test::World world;
    for (const double seconds : {-100.0, 1e308, std::numeric_limits<double>::quiet_NaN(),
                                 std::numeric_limits<double>::infinity()})
        EXPECT_FALSE(formattedTime(seconds).empty());
}

}  // namespace vantor
