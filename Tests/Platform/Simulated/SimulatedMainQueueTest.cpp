#include "Platform/Simulated/SimulatedMainQueue.h"

#include <string>

#include <gtest/gtest.h>

namespace vantor::simulated {
namespace {

constexpr double kStart = 1000;

TEST(SimulatedMainQueueTest, ADelayedCallComesALatencyLate) {
    SimulatedMainQueue queue(kStart, 0.25);
    queue.after(1, [] {});
    EXPECT_EQ(queue.nextDue(), kStart + 1.25);
}

TEST(SimulatedMainQueueTest, ACallWithoutDelayFallsDueNow) {
    SimulatedMainQueue queue(kStart, 0.25);
    queue.after(0, [] {});
    EXPECT_EQ(queue.nextDue(), kStart);
}

TEST(SimulatedMainQueueTest, CallsOfOneTimeRunInTheOrderInWhichTheyWereAskedFor) {
    SimulatedMainQueue queue(kStart);
    std::string order;
    queue.after(1, [&] { order += "a"; });
    queue.after(1, [&] { order += "b"; });
    queue.after(1, [&] { order += "c"; });
    queue.runUntil(kStart + 2);
    EXPECT_EQ(order, "abc");
}

TEST(SimulatedMainQueueTest, AnAsynchronousCallGoesBehindWhatIsDue) {
    SimulatedMainQueue queue(kStart);
    std::string order;
    queue.async([&] {
        order += "a";
        queue.async([&] { order += "c"; });
    });
    queue.async([&] { order += "b"; });
    queue.runDueCalls();
    EXPECT_EQ(order, "abc");
}

TEST(SimulatedMainQueueTest, WhatFellDueWhileItStoodStillRunsInTheOrderOfItsTimes) {
    SimulatedMainQueue queue(kStart);
    std::string order;
    queue.after(2, [&] { order += "b"; });
    queue.after(1, [&] { order += "a"; });
    queue.moveTo(kStart + 5);
    queue.runDueCalls();
    EXPECT_EQ(order, "ab");
}

TEST(SimulatedMainQueueTest, ACancelledCallDoesNotRun) {
    SimulatedMainQueue queue(kStart);
    int runs = 0;
    const auto call = queue.after(1, [&] { ++runs; });
    queue.after(2, [&] { ++runs; });
    queue.cancel(call);
    queue.cancel(call);
    queue.cancel(MainQueue::CallID::none);
    queue.runUntil(kStart + 3);
    EXPECT_EQ(runs, 1);
}

TEST(SimulatedMainQueueTest, TimeStandsStillWhileCodeRuns) {
    SimulatedMainQueue queue(kStart, 0);
    double seen = 0;
    queue.after(1, [&] { seen = queue.now(); });
    queue.runUntil(kStart + 9);
    EXPECT_EQ(seen, kStart + 1);
    EXPECT_EQ(queue.now(), kStart + 9);
}

}  // namespace
}  // namespace vantor::simulated
