#include "Tests/Support/AllocationCounter.h"

#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace vantor::test {
namespace {

struct alignas(64) Aligned {
    char bytes[64];
};

TEST(AllocationCounterTest, CountsEveryFormOfNew) {
    const AllocationCounter counter;
    // Called by name: a new-expression without a use may be left out by the compiler.
    ::operator delete(::operator new(8));
    ::operator delete[](::operator new[](8));
    ::operator delete(::operator new(8, std::nothrow), std::nothrow);
    ::operator delete (::operator new (64, std::align_val_t{64}), std::align_val_t{64});
    EXPECT_EQ(counter.count(), 4u);
}

TEST(AllocationCounterTest, CountsNothingWhereNothingIsAllocated) {
    std::vector<int> numbers(16);
    const AllocationCounter counter;
    numbers.assign(16, 3);
    numbers.clear();
    EXPECT_EQ(counter.count(), 0u);
}

TEST(AllocationCounterTest, LeavesOtherThreadsOut) {
    std::size_t countedThere = 0;
    const auto fillOne = [&countedThere] {
        const AllocationCounter counter;
        const std::vector<std::string> texts(3, std::string(100, 'a'));
        countedThere = counter.count();
    };
    std::thread other(fillOne);
    const AllocationCounter counter;
    other.join();
    EXPECT_EQ(counter.count(), 0u);
    EXPECT_GE(countedThere, 4u);
}

TEST(AllocationCounterTest, AlignedMemoryIsAligned) {
    const auto aligned = std::make_unique<Aligned[]>(3);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(aligned.get()) % 64, 0u);
}

}  // namespace
}  // namespace vantor::test
