#include "Platform/Linux/LinuxWorkQueues.h"

#include <array>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <future>
#include <numeric>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include "Tests/Support/AllocationCounter.h"

namespace vantor {
namespace {

using testing::ElementsAre;

/// A thread that ended may be listed for a moment longer.
int threadsNamed(const std::string& name) {
    int count = 0;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
        std::string found;
        std::getline(std::ifstream(thread.path() / "comm"), found);
        count += found == name ? 1 : 0;
    }
    return count;
}

/// Whether `isTrue` became true within some seconds.
template <class Condition>
bool becomes(Condition&& isTrue) {
    for (int wait = 0; wait < 5000 && !isTrue(); ++wait)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return isTrue();
}

std::string threadName() {
    std::array<char, 32> name{};
    pthread_getname_np(pthread_self(), name.data(), name.size());
    return name.data();
}

TEST(LinuxWorkQueuesTest, SerialQueueRunsTasksInTheOrderInWhichTheyCame) {
    LinuxWorkQueues queues;
    std::vector<int> ran, expected(200);
    const auto queue = queues.makeSerialQueue("order");
    for (int number = 0; number < 200; ++number)
        queue->async([&ran, number] { ran.push_back(number); });
    queue->sync([] {});
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(ran, expected);
}

TEST(LinuxWorkQueuesTest, SyncReturnsWhenItsTaskIsGone) {
    LinuxWorkQueues queues;
    const auto queue = queues.makeSerialQueue("sync");
    const auto held = std::make_shared<int>();
    int ran = 0;
    queue->sync([&ran, held] { ran = 1; });
    EXPECT_EQ(ran, 1);
    EXPECT_EQ(held.use_count(), 1);
}

TEST(LinuxWorkQueuesTest, SyncWaitsForNothingBehindIt) {
    LinuxWorkQueues queues;
    const auto queue = queues.makeSerialQueue("sync");
    std::promise<void> gate;
    bool ran = false;
    queue->sync([&] {
        // In the queue, and waiting for what happens once sync has returned.
        queue->async([opened = gate.get_future().share()] { opened.wait(); });
        ran = true;
    });
    EXPECT_TRUE(ran);
    gate.set_value();
}

TEST(LinuxWorkQueuesTest, DroppingASerialQueueRunsWhatWasQueued) {
    LinuxWorkQueues queues;
    std::atomic<int> ran = 0;
    auto queue = queues.makeSerialQueue("dropped");
    for (int number = 0; number < 100; ++number)
        queue->async([&ran] { ++ran; });
    queue.reset();
    EXPECT_EQ(ran, 100);
}

TEST(LinuxWorkQueuesTest, OnlyTasksOfAQueueAreOnIt) {
    LinuxWorkQueues queues;
    const auto one = queues.makeSerialQueue("one");
    const auto other = queues.makeSerialQueue("other");
    std::vector<bool> answers;
    one->sync([&] { answers = {one->isCurrent(), other->isCurrent()}; });
    EXPECT_THAT(answers, ElementsAre(true, false));
    EXPECT_FALSE(one->isCurrent());
}

TEST(LinuxWorkQueuesTest, SerialQueueHasNoThreadBeforeItsFirstTask) {
    LinuxWorkQueues queues;
    const auto queue = queues.makeSerialQueue("idle-queue");
    EXPECT_EQ(threadsNamed("idle-queue"), 0);
    queue->sync([] {});
    EXPECT_EQ(threadsNamed("idle-queue"), 1);
}

TEST(LinuxWorkQueuesTest, ThreadBearsTheBeginningOfTheLabel) {
    LinuxWorkQueues queues;
    const auto queue = queues.makeSerialQueue("a label that is too long");
    std::string name;
    queue->sync([&name] { name = threadName(); });
    EXPECT_EQ(name, "a label that is");
    EXPECT_EQ(queue->label(), "a label that is too long");
}

TEST(LinuxWorkQueuesTest, ATaskKnowsTheLabelOfItsQueue) {
    LinuxWorkQueues queues;
    const auto queue = queues.makeSerialQueue("a label that is too long");
    std::string label;
    queue->sync([&] { label = queues.currentLabel(); });
    EXPECT_EQ(label, "a label that is too long");
    EXPECT_EQ(queues.currentLabel(), "");
}

TEST(LinuxWorkQueuesTest, SerialQueueInUseAllocatesNothing) {
    LinuxWorkQueues queues;
    const auto queue = queues.makeSerialQueue("steady");
    std::size_t allocations = 1;
    for (int round = 0; round < 10; ++round)
        queue->sync([] {});
    queue->sync([&] {
        const test::AllocationCounter counter;
        queue->async([] {});
        allocations = counter.count();
    });
    EXPECT_EQ(allocations, 0u);
}

TEST(LinuxWorkQueuesTest, DrainWaitsForTasksThatTasksAdd) {
    LinuxWorkQueues queues;
    std::atomic<int> ran = 0;
    queues.globalAsync([&] {
        queues.globalAsync([&ran] { ++ran; });
        ++ran;
    });
    queues.drainGlobal();
    EXPECT_EQ(ran, 2);
}

TEST(LinuxWorkQueuesTest, DrainOfAnIdleQueueReturns) {
    LinuxWorkQueues queues;
    queues.drainGlobal();
    SUCCEED();
}

TEST(LinuxWorkQueuesTest, GlobalThreadEndsWhenIdleAndComesBackWhenNeeded) {
    LinuxWorkQueues queues(std::chrono::milliseconds(1));
    int ran = 0;
    for (int round = 1; round <= 3; ++round) {
        queues.globalAsync([&ran] { ++ran; });
        queues.drainGlobal();
        EXPECT_EQ(ran, round);
        EXPECT_TRUE(becomes([] { return threadsNamed("vantor-global") == 0; }));
    }
}

TEST(LinuxWorkQueuesTest, TasksOfManyThreadsAllRunThoughTheWorkerKeepsEnding) {
    LinuxWorkQueues queues(std::chrono::milliseconds(0));
    std::atomic<int> ran = 0;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 4; ++thread)
            threads.emplace_back([&] {
                for (int task = 0; task < 100; ++task)
                    queues.globalAsync([&ran] { ++ran; });
            });
    }
    queues.drainGlobal();
    EXPECT_EQ(ran, 400);
}

}  // namespace
}  // namespace vantor
