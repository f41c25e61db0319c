#include "Platform/Linux/LinuxMainQueue.h"

#include <csignal>
#include <limits>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include "Platform/Linux/LinuxClock.h"
#include "Tests/Support/AllocationCounter.h"
#include "Tests/Support/QueueWorld.h"

namespace vantor {
namespace {

using test::AllocationCounter;
using test::runUntil;
using testing::ElementsAre;
using testing::IsEmpty;

/// Two ends of a pipe, with a byte in it when asked for.
class Pipe {
public:
    Pipe() {
        int ends[2]{};
        if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
            throw std::runtime_error("no pipe");
        reading_ = Descriptor(ends[0]);
        writing_ = Descriptor(ends[1]);
    }
    int reading() const { return reading_.get(); }
    int writing() const { return writing_.get(); }
    void fill() const { EXPECT_EQ(write(writing(), "x", 1), 1); }
    void drain() const {
        char byte = 0;
        EXPECT_EQ(read(reading(), &byte, 1), 1);
    }

private:
    Descriptor reading_, writing_;
};

class LinuxMainQueueTest : public testing::Test {
protected:
    Task notes(int number) {
        return [this, number] { noted.push_back(number); };
    }
    void waitUntil(double moment) {
        while (clock.monotonic() < moment) {
        }
    }

    LinuxClock clock;
    std::vector<int> noted;
    LinuxMainQueue queue;
};

TEST_F(LinuxMainQueueTest, CallsRunInTheOrderInWhichTheyCame) {
    for (int number = 0; number < 5; ++number)
        queue.async(notes(number));
    queue.runOnce(0);
    EXPECT_THAT(noted, ElementsAre(0, 1, 2, 3, 4));
}

TEST_F(LinuxMainQueueTest, CallsRunInTheOrderInWhichTheyFallDue) {
    const double end = clock.monotonic() + 0.006;
    queue.after(0.005, notes(3));
    queue.after(0.001, notes(1));
    queue.after(0.003, notes(2));
    waitUntil(end);
    queue.runOnce(0);
    EXPECT_THAT(noted, ElementsAre(1, 2, 3));
}

TEST_F(LinuxMainQueueTest, AsyncGoesBehindWhatIsAlreadyDue) {
    queue.after(0.001, notes(1));
    waitUntil(clock.monotonic() + 0.002);
    queue.async(notes(2));
    queue.after(0, notes(3));
    queue.runOnce(0);
    EXPECT_THAT(noted, ElementsAre(1, 2, 3));
}

TEST_F(LinuxMainQueueTest, DelaysThatAreNoPositiveNumberAreAsync) {
    queue.after(-5, notes(1));
    queue.after(std::numeric_limits<double>::quiet_NaN(), notes(2));
    queue.after(-std::numeric_limits<double>::infinity(), notes(3));
    queue.runOnce(0);
    EXPECT_THAT(noted, ElementsAre(1, 2, 3));
}

TEST_F(LinuxMainQueueTest, EndlessDelayStandsInNobodysWay) {
    queue.after(std::numeric_limits<double>::infinity(), notes(1));
    queue.after(0.001, notes(2));
    queue.runOnce(10);
    EXPECT_THAT(noted, ElementsAre(2));
}

TEST_F(LinuxMainQueueTest, NoCallIsEarly) {
    for (const double delay : {0.0001, 0.00095, 0.002, 0.0071, 0.03}) {
        const double asked = clock.monotonic();
        double ran = 0;
        queue.after(delay, [&] { ran = clock.monotonic(); });
        EXPECT_TRUE(runUntil(queue, [&] { return ran > 0; }));
        EXPECT_GE(ran, asked + delay) << delay;
    }
}

TEST_F(LinuxMainQueueTest, CallsThatFallDueCloseTogetherShareAWakeUp) {
    queue.after(0.0050, notes(1));
    queue.after(0.0055, notes(2));
    queue.runOnce(10);
    EXPECT_THAT(noted, ElementsAre(1, 2));
}

TEST_F(LinuxMainQueueTest, CallsThatFallDueMeanwhileRunInTheSamePass) {
    queue.async([&] {
        queue.async(notes(2));
        noted.push_back(1);
    });
    queue.runOnce(0);
    EXPECT_THAT(noted, ElementsAre(1, 2));
}

TEST_F(LinuxMainQueueTest, CancelledCallDoesNotRun) {
    queue.after(0, notes(1));
    const auto call = queue.after(0, notes(2));
    queue.after(0, notes(3));
    queue.cancel(call);
    queue.runOnce(0);
    EXPECT_THAT(noted, ElementsAre(1, 3));
}

TEST_F(LinuxMainQueueTest, CallMayCancelOneThatIsDueWithIt) {
    MainQueue::CallID second{};
    queue.after(0, [&] { queue.cancel(second); });
    second = queue.after(0, notes(2));
    queue.runOnce(0);
    EXPECT_THAT(noted, IsEmpty());
}

TEST_F(LinuxMainQueueTest, CancellingWhatRanOrNeverWasChangesNothing) {
    const auto ran = queue.after(0, notes(1));
    queue.runOnce(0);
    queue.after(0, notes(2));
    queue.cancel(ran);
    queue.cancel(MainQueue::CallID::none);
    queue.runOnce(0);
    EXPECT_THAT(noted, ElementsAre(1, 2));
}

TEST_F(LinuxMainQueueTest, CancellingDropsWhatTheTaskHolds) {
    const auto held = std::make_shared<int>();
    const auto call = queue.after(100, [held] {});
    queue.cancel(call);
    EXPECT_EQ(held.use_count(), 1);
}

TEST_F(LinuxMainQueueTest, OrderHoldsWhereCallsBetweenAreCancelled) {
    std::vector<MainQueue::CallID> calls;
    for (int number = 0; number < 20; ++number)
        calls.push_back(queue.after(0, notes(number)));
    for (int number = 0; number < 20; ++number)
        if (number % 5 != 2)
            queue.cancel(calls[static_cast<std::size_t>(number)]);
    queue.runOnce(0);
    EXPECT_THAT(noted, ElementsAre(2, 7, 12, 17));
}

TEST_F(LinuxMainQueueTest, CallThatNeverRanEndsWithTheQueue) {
    const auto held = std::make_shared<int>();
    {
        LinuxMainQueue other;
        other.after(100, [held] {});
    }
    EXPECT_EQ(held.use_count(), 1);
}

TEST_F(LinuxMainQueueTest, CallFromAnotherThreadWakesASleepingLoop) {
    const double asked = clock.monotonic();
    std::jthread other([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));  // by then the loop sleeps
        queue.async(notes(1));
    });
    EXPECT_TRUE(runUntil(queue, [&] { return !noted.empty(); }));
    queue.runOnce(0);
    EXPECT_LT(clock.monotonic(), asked + 5);
}

TEST_F(LinuxMainQueueTest, EarlierDelayFromAnotherThreadShortensTheSleep) {
    const double asked = clock.monotonic();
    queue.after(60, notes(2));
    std::jthread other([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        queue.after(0.002, notes(1));
    });
    while (noted.empty())
        queue.runOnce(60);
    EXPECT_LT(clock.monotonic(), asked + 30);
    EXPECT_THAT(noted, ElementsAre(1));
}

TEST_F(LinuxMainQueueTest, CallsOfManyThreadsAllRun) {
    constexpr int kThreads = 4, kCalls = 500;
    int ran = 0;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < kThreads; ++thread)
            threads.emplace_back([&] {
                for (int call = 0; call < kCalls; ++call) {
                    queue.cancel(queue.after(1, [&] { ran += 1'000'000; }));
                    queue.after(call % 2 == 0 ? 0 : 1e-4, [&] { ++ran; });
                }
            });
        EXPECT_TRUE(runUntil(queue, [&] { return ran == kThreads * kCalls; }));
    }
    EXPECT_EQ(ran, kThreads * kCalls);
}

TEST_F(LinuxMainQueueTest, OwnCallsWriteNoWakeUp) {
    queue.async(notes(1));
    queue.runOnce(0);
    const double asked = clock.monotonic();
    queue.runOnce(0.02);
    EXPECT_GE(clock.monotonic(), asked + 0.02);
}

TEST_F(LinuxMainQueueTest, OnlyTheLoopsThreadIsCurrent) {
    bool elsewhere = true;
    std::jthread([&] { elsewhere = queue.isCurrent(); }).join();
    EXPECT_TRUE(queue.isCurrent());
    EXPECT_FALSE(elsewhere);
}

TEST_F(LinuxMainQueueTest, SteadyStateAllocatesNothing) {
    Pipe pipe;
    auto watch = queue.watch(pipe.reading(), POLLIN, [](short) {});
    const auto work = [&] {
        for (int round = 0; round < 20; ++round) {
            const auto late = queue.after(60, notes(0));
            queue.after(0, [] {});
            queue.async([] {});
            watch.setEvents(round % 2 == 0 ? POLLIN : short{0});
            queue.runOnce(0);
            queue.cancel(late);
        }
    };
    work();
    const AllocationCounter allocations;
    work();
    EXPECT_EQ(allocations.count(), 0u);
}

TEST_F(LinuxMainQueueTest, StopEndsRunAfterTheCallThatIsRunning) {
    queue.async([&] {
        queue.stop();
        noted.push_back(1);
    });
    queue.async(notes(2));
    queue.run();
    EXPECT_THAT(noted, ElementsAre(1));
}

TEST_F(LinuxMainQueueTest, StoppedQueueMayRunAgain) {
    queue.async([&] { queue.stop(); });
    queue.run();
    queue.async(notes(1));
    queue.async([&] { queue.stop(); });
    queue.run();
    EXPECT_THAT(noted, ElementsAre(1));
}

TEST_F(LinuxMainQueueTest, StopBeforeRunIsNotLost) {
    queue.async(notes(1));
    queue.stop();
    queue.run();
    EXPECT_THAT(noted, IsEmpty());
}

LinuxMainQueue* stoppedBySignal = nullptr;

TEST_F(LinuxMainQueueTest, SignalHandlerMayStop) {
    stoppedBySignal = &queue;
    const auto before = std::signal(SIGUSR1, [](int) { stoppedBySignal->stop(); });
    const pthread_t self = pthread_self();
    std::jthread other([self] {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        pthread_kill(self, SIGUSR1);
    });
    queue.run();
    std::signal(SIGUSR1, before);
    SUCCEED();  // where the signal doesn't stop it, this test never ends
}

TEST_F(LinuxMainQueueTest, ExceptionLeavesRunAndTheRestGoesOn) {
    queue.async([] { throw std::runtime_error("trouble"); });
    queue.async(notes(1));
    queue.async([&] { queue.stop(); });
    EXPECT_THROW(queue.run(), std::runtime_error);
    EXPECT_THAT(noted, IsEmpty());
    queue.run();
    EXPECT_THAT(noted, ElementsAre(1));
}

TEST_F(LinuxMainQueueTest, AfterCallsRunsOnceForABatch) {
    queue.setAfterCalls([this] { noted.push_back(100); });
    queue.async(notes(1));
    queue.async(notes(2));
    queue.runOnce(0);
    EXPECT_THAT(noted, ElementsAre(1, 2, 100));
}

TEST_F(LinuxMainQueueTest, AfterCallsDoesNotRunWhereNothingRan) {
    queue.setAfterCalls([this] { noted.push_back(100); });
    queue.runOnce(0);
    EXPECT_THAT(noted, IsEmpty());
}

TEST_F(LinuxMainQueueTest, WatchTellsWhatThereIs) {
    Pipe pipe;
    const auto watch = queue.watch(pipe.reading(), POLLIN, [&](short events) {
        pipe.drain();
        noted.push_back(events);
    });
    pipe.fill();
    queue.runOnce(10);
    queue.runOnce(0);
    EXPECT_THAT(noted, ElementsAre(POLLIN));
}

TEST_F(LinuxMainQueueTest, EndedWatchIsSilent) {
    Pipe pipe;
    auto watch = queue.watch(pipe.reading(), POLLIN, [&](short) { noted.push_back(1); });
    pipe.fill();
    watch.end();
    queue.runOnce(0);
    EXPECT_THAT(noted, IsEmpty());
}

TEST_F(LinuxMainQueueTest, WatchMayEndItselfAndOthersAndBeginNewOnes) {
    Pipe first, second, third;
    LinuxMainQueue::Watch one, two, three;
    one = queue.watch(first.reading(), POLLIN, [&](short) {
        const auto held = std::make_shared<int>(1);
        one.end();
        two.end();
        three = queue.watch(third.reading(), POLLIN, [&](short) { noted.push_back(3); });
        noted.push_back(*held);
    });
    two = queue.watch(second.reading(), POLLIN, [&](short) { noted.push_back(2); });
    for (const Pipe* pipe : {&first, &second, &third})
        pipe->fill();
    queue.runOnce(0);
    queue.runOnce(0);
    EXPECT_THAT(noted, ElementsAre(1, 3));
}

TEST_F(LinuxMainQueueTest, WatchHearsOnlyWhatItAsksFor) {
    Pipe pipe;
    auto watch = queue.watch(pipe.reading(), POLLIN, [&](short) { noted.push_back(1); });
    pipe.fill();
    watch.setEvents(0);
    queue.runOnce(0);
    EXPECT_THAT(noted, IsEmpty());
    watch.setEvents(POLLIN);
    queue.runOnce(0);
    EXPECT_THAT(noted, ElementsAre(1));
}

TEST_F(LinuxMainQueueTest, CallsWithoutEndLeaveRoomForWatchesAndTheDisplay) {
    struct Again {
        LinuxMainQueue* queue;
        void operator()() const { queue->async(*this); }
    };
    Pipe pipe;
    const auto watch = queue.watch(pipe.reading(), POLLIN, [&](short) { noted.push_back(1); });
    queue.setAfterCalls([this] { noted.push_back(100); });
    pipe.fill();
    queue.async(Again{&queue});
    queue.runOnce(0);
    EXPECT_THAT(noted, ElementsAre(1, 100));
}

}  // namespace
}  // namespace vantor
