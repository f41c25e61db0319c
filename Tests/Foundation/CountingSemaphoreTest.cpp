#include "Foundation/CountingSemaphore.h"

#include <algorithm>
#include <future>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace vantor {
namespace {

TEST(CountingSemaphoreTest, OneTooManyWaitsUntilSomebodyLeaves) {
    CountingSemaphore semaphore(1);
    semaphore.acquire();
    std::atomic<bool> left = false;
    auto second = std::async(std::launch::async, [&] {
        semaphore.acquire();
        return left.load();
    });
    left = true;
    semaphore.release();
    EXPECT_TRUE(second.get());
}

TEST(CountingSemaphoreTest, NeverLetsInMoreThanItHasRoomFor) {
    constexpr int kRoom = 3;
    CountingSemaphore semaphore(kRoom);
    std::atomic<int> inside = 0, most = 0;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 8; ++thread)
            threads.emplace_back([&] {
                for (int round = 0; round < 5000; ++round) {
                    semaphore.acquire();
                    most = std::max(most.load(), ++inside);
                    --inside;
                    semaphore.release();
                }
            });
    }
    EXPECT_LE(most, kRoom);
    EXPECT_EQ(inside, 0);
}

}  // namespace
}  // namespace vantor
