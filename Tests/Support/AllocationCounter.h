#pragma once

#include <cstddef>

namespace vantor::test {

/// How often this thread has called `operator new`, in any of its forms, since the counter was
/// made. What C libraries take with malloc isn't counted. Works under the sanitizers, too.
class AllocationCounter {
public:
    AllocationCounter() noexcept : before_(allocationsOfThisThread()) {}
    std::size_t count() const noexcept { return allocationsOfThisThread() - before_; }

private:
    static std::size_t allocationsOfThisThread() noexcept;

    std::size_t before_;
};

}  // namespace vantor::test
