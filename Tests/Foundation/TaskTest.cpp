#include "Foundation/Task.h"

#include <memory>

#include <gtest/gtest.h>

namespace vantor {
namespace {

TEST(TaskTest, RunsItsClosureEachTimeItIsCalled) {
    int calls = 0;
    Task task([&calls] { ++calls; });
    task();
    task();
    EXPECT_EQ(calls, 2);
}

TEST(TaskTest, AnEmptyOneDoesNothing) {
    Task task;
    EXPECT_FALSE(task);
    task();
}

TEST(TaskTest, MovesACaptureThatCannotBeCopied) {
    int result = 0;
    Task first([&result, value = std::make_unique<int>(7)] { result = *value; });
    Task second(std::move(first));
    EXPECT_FALSE(first);  // NOLINT: what a moved-from task is, is part of its contract
    second();
    EXPECT_EQ(result, 7);
}

TEST(TaskTest, DestroysItsClosureOnce) {
    const auto token = std::make_shared<int>(0);
    {
        Task first([token] {});
        Task second;
        second = std::move(first);
        EXPECT_EQ(token.use_count(), 2);
    }
    EXPECT_EQ(token.use_count(), 1);
}

}  // namespace
}  // namespace vantor
