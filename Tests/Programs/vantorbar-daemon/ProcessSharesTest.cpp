#include "Programs/vantorbar-daemon/ProcessShares.h"

#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::Optional;

constexpr double kTicks = 100;  // a second

ProcessReading process(int id, std::uint64_t start, std::uint64_t ticks, double time) {
    return {.id = id, .startTicks = start, .ticks = ticks, .time = time};
}

std::vector<ProcessShare> shares(const ProcessesReading& before, const ProcessesReading& after) {
    std::vector<ProcessShare> found;
    sharesBetween(before, after, kTicks, found);
    return found;
}

TEST(ProcessSharesTest, ShareIsPercentOfTheTimeBetweenTheReadings) {
    struct Case {
        std::uint64_t ticks;
        double seconds, percent;
    };
    for (const auto& [ticks, seconds, percent] :
         {Case{200, 2, 100}, Case{50, 2, 25}, Case{800, 2, 400}, Case{20, 0.2, 100}, Case{0, 2, 0}})
        EXPECT_THAT(
            shareBetween(process(7, 1, 30, 10), process(7, 1, 30 + ticks, 10 + seconds), kTicks),
            Optional(testing::DoubleNear(percent, 1e-9)));
}

TEST(ProcessSharesTest, CountThatFellIsNoUse) {
    EXPECT_THAT(shareBetween(process(7, 1, 30, 10), process(7, 1, 29, 12), kTicks), Optional(0.0));
}

TEST(ProcessSharesTest, NothingIsKnownWhereNoTimePassed) {
    EXPECT_EQ(shareBetween(process(7, 1, 30, 10), process(7, 1, 40, 10), kTicks), std::nullopt);
    EXPECT_EQ(shareBetween(process(7, 1, 30, 10), process(7, 1, 40, 9), kTicks), std::nullopt);
}

TEST(ProcessSharesTest, ProcessBornBetweenTheReadingsSpentAllItsTicksThere) {
    const ProcessesReading before{{}, 10, 5000}, after{{process(7, 5000, 50, 12)}, 12, 5200};
    EXPECT_THAT(shares(before, after), ElementsAre(Optional(25.0)));
}

TEST(ProcessSharesTest, NothingIsKnownOfAProcessThatTheEarlierReadingMissed) {
    const ProcessesReading before{{}, 10, 5000}, after{{process(7, 4999, 90'000, 12)}, 12, 5200};
    EXPECT_THAT(shares(before, after), ElementsAre(std::nullopt));
}

TEST(ProcessSharesTest, NumberThatWasUsedAgainIsAnotherProcess) {
    const ProcessesReading before{{process(7, 100, 4000, 10)}, 10, 5000};
    const ProcessesReading after{{process(7, 5100, 20, 12)}, 12, 5200};
    EXPECT_THAT(shares(before, after), ElementsAre(Optional(10.0)));
}

TEST(ProcessSharesTest, ProcessesThatCameAndWentDisturbNoOther) {
    const ProcessesReading before{
        {process(1, 1, 10, 10), process(4, 4, 10, 10), process(9, 9, 10, 10)}, 10, 5000};
    const ProcessesReading after{{process(2, 5001, 2, 12), process(4, 4, 14, 12),
                                  process(9, 9, 16, 12), process(12, 12, 99, 12)},
                                 12,
                                 5200};
    EXPECT_THAT(shares(before, after),
                ElementsAre(Optional(1.0), Optional(2.0), Optional(3.0), std::nullopt));
}

}  // namespace
}  // namespace vantor
