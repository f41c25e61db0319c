#include "Platform/Simulated/SimulatedProcessorCounters.h"

#include <array>

#include <gtest/gtest.h>

namespace vantor::simulated {
namespace {

class SimulatedProcessorCountersTest : public testing::Test {
protected:
    ProcessorTicks ticks() {
        std::array<ProcessorTicks, 1> into;
        EXPECT_TRUE(counters.readTicks(into));
        return into[0];
    }

    SimulatedMainQueue queue{1000};
    SimulatedProcessorCounters counters{queue, 1};
};

TEST_F(SimulatedProcessorCountersTest, GrowByWholeTicks) {
    counters.setRates({{{10, 0.4, 100, 0}}});
    queue.moveTo(1002.25);
    EXPECT_EQ(ticks(), (ProcessorTicks{22, 0, 225, 0}));
}

TEST_F(SimulatedProcessorCountersTest, WrapAt32Bits) {
    counters.setTicks({{{.user = 0xFFFFFFF0U}}});
    counters.setRates({{{16, 0, 0, 0}}});
    queue.moveTo(1002);
    EXPECT_EQ(ticks().user, 0x10U);
}

TEST_F(SimulatedProcessorCountersTest, ANewRateCountsFromTheCountersOfThatMoment) {
    counters.setRates({{{10, 0, 0, 0}}});
    queue.moveTo(1001);
    counters.setRates({{{1, 0, 0, 0}}});
    queue.moveTo(1003);
    EXPECT_EQ(ticks().user, 12U);
}

TEST_F(SimulatedProcessorCountersTest, NewTicksGrowOnAtTheRateThatHolds) {
    counters.setRates({{{10, 0, 0, 0}}});
    queue.moveTo(1001);
    counters.setTicks({{{.user = 500}}});
    queue.moveTo(1002);
    EXPECT_EQ(ticks().user, 510U);
}

TEST_F(SimulatedProcessorCountersTest, AFailedReadingLeavesWhatStood) {
    counters.setFailing(true);
    std::array<ProcessorTicks, 1> into{{{.user = 3}}};
    EXPECT_FALSE(counters.readTicks(into));
    EXPECT_EQ(into[0].user, 3U);
}

}  // namespace
}  // namespace vantor::simulated
