#include "Platform/Linux/SteadyTicks.h"

#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace vantor::test {
namespace {

constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();

SteadyCounter counterAt(std::uint64_t raw) {
    SteadyCounter counter;
    counter.startAt(raw, raw);
    return counter;
}

TEST(SteadyCounterTest, FollowsTheKernelsCounter) {
    SteadyCounter counter = counterAt(1000);
    counter.advanceTo(1007);
    EXPECT_EQ(counter.value(), 1007u);
}

TEST(SteadyCounterTest, StandsStillUntilJitterIsCaughtUp) {
    SteadyCounter counter = counterAt(1000);
    counter.advanceTo(900);
    EXPECT_EQ(counter.value(), 1000u);
    counter.advanceTo(999);
    EXPECT_EQ(counter.value(), 1000u);
    counter.advanceTo(1003);
    EXPECT_EQ(counter.value(), 1003u);
}

TEST(SteadyCounterTest, GoesOnFromTheNewStartAfterACounterThatStartedOver) {
    SteadyCounter counter = counterAt(5'000'000);
    counter.advanceTo(40);
    EXPECT_EQ(counter.value(), 5'000'000u);
    counter.advanceTo(140);
    EXPECT_EQ(counter.value(), 5'000'100u);
}

TEST(SteadyCounterTest, LeapThat32BitsCannotCarryIsNoTimeThatPassed) {
    SteadyCounter counter = counterAt(1000);
    counter.advanceTo(1000 + (std::uint64_t{1} << 32));
    EXPECT_EQ(counter.value(), 1000u);
    counter.advanceTo(1005 + (std::uint64_t{1} << 32));
    EXPECT_EQ(counter.value(), 1005u);
}

TEST(SteadyCounterTest, LargestStepThat32BitsCarryCounts) {
    SteadyCounter counter = counterAt(7);
    counter.advanceTo(std::uint64_t{7} + 0xFFFFFFFFu);
    EXPECT_EQ(counter.value(), std::uint64_t{7} + 0xFFFFFFFFu);
}

TEST(SteadyCounterTest, RecoversFromAFigureThatOverflowed) {
    SteadyCounter counter = counterAt(1000);
    counter.advanceTo(kMost);
    counter.advanceTo(1010);
    counter.advanceTo(1020);
    EXPECT_EQ(counter.value(), 1010u);
}

TEST(SteadyCounterTest, NeverFallsUnderRandomStepsBack) {
    std::mt19937_64 random(20260731);
    for (int run = 0; run < 200; ++run) {
        std::uint64_t raw = random() >> (run % 64);
        SteadyCounter counter = counterAt(raw >> 1);
        for (int reading = 0; reading < 500; ++reading) {
            const std::uint64_t before = counter.value();
            const std::uint64_t step = random() >> (random() % 64);
            raw = random() % 3 == 0 ? raw - step : raw + step;
            counter.advanceTo(raw);
            ASSERT_LE(counter.value() - before, 0xFFFFFFFFu);
        }
    }
}

TEST(SteadyCounterTest, LosesNoTickToJitter) {
    std::mt19937_64 random(7);
    SteadyCounter counter = counterAt(1000);
    std::uint64_t truth = 1000;
    for (int reading = 0; reading < 10'000; ++reading) {
        truth += random() % 120;
        counter.advanceTo(truth - random() % 50);
    }
    counter.advanceTo(truth);
    EXPECT_EQ(counter.value(), truth);
}

TEST(SteadyTicksTest, SumsTheTenFiguresToFourCounters) {
    SteadyTicks ticks;
    ticks.startAt({.user = 1,
                   .nice = 20,
                   .system = 300,
                   .idle = 4000,
                   .iowait = 50'000,
                   .irq = 600'000,
                   .softirq = 7'000'000,
                   .steal = 80'000'000,
                   .guest = 1,
                   .guestNice = 20});
    EXPECT_EQ(ticks.ticks(),
              (ProcessorTicks{.user = 1, .system = 87'600'300, .idle = 54'000, .nice = 20}));
}

TEST(SteadyTicksTest, IowaitThatBecomesIdleIsNotCountedTwice) {
    SteadyTicks ticks;
    ticks.startAt({.idle = 1000, .iowait = 400});
    ticks.advanceTo({.idle = 1350, .iowait = 60});  // 340 moved, 10 passed
    EXPECT_EQ(ticks.ticks().idle, 1410u);
}

TEST(SteadyTicksTest, WaitsAreTheirPartsOfTheCounters) {
    SteadyTicks ticks;
    ticks.startAt({.user = 10, .idle = 100, .iowait = 20, .steal = 3});
    ticks.advanceTo({.user = 15, .idle = 120, .iowait = 15, .steal = 4});  // five went to idle
    ProcessorWaits waits{.iowait = 1, .steal = 1, .all = 1};

    ticks.addTo(waits);

    EXPECT_EQ(waits, (ProcessorWaits{.iowait = 21, .steal = 5, .all = 1 + 15 + 135 + 4}));
}

TEST(SteadyTicksTest, CountersAreCutTo32Bits) {
    SteadyTicks ticks;
    ticks.startAt({.user = 0x1'0000'0005, .idle = 0xFFFF'FFFF});
    EXPECT_EQ(ticks.ticks(), (ProcessorTicks{.user = 5, .idle = 0xFFFF'FFFF}));
    ticks.advanceTo({.user = 0x1'0000'0006, .idle = 0x1'0000'0003});
    EXPECT_EQ(ticks.ticks(), (ProcessorTicks{.user = 6, .idle = 3}));
}

TEST(SteadyTicksTest, CPUThatTurnsUpLaterStartsAtZero) {
    SteadyTicks ticks;
    EXPECT_FALSE(ticks.started());
    ticks.startAtZero({.user = 1000, .idle = 2000});
    EXPECT_TRUE(ticks.started());
    EXPECT_EQ(ticks.ticks(), ProcessorTicks{});
    ticks.advanceTo({.user = 1003, .idle = 2007});
    EXPECT_EQ(ticks.ticks(), (ProcessorTicks{.user = 3, .idle = 7}));
}

}  // namespace
}  // namespace vantor::test
