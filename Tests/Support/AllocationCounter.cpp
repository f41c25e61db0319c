#include "Tests/Support/AllocationCounter.h"

#include <cstdlib>
#include <new>

// The test program's own operator new and delete. They hand everything on to malloc and free, by
// which the sanitizers, too, keep their books.

namespace {

constinit thread_local std::size_t allocations = 0;

void* allocate(std::size_t size) noexcept {
    ++allocations;
    return std::malloc(size > 0 ? size : 1);
}

void* allocate(std::size_t size, std::align_val_t alignment) noexcept {
    ++allocations;
    void* memory = nullptr;
    const int failed = ::posix_memalign(&memory, static_cast<std::size_t>(alignment), size);
    return failed == 0 ? memory : nullptr;
}

void* orThrow(void* memory) {
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

}  // namespace

void* operator new(std::size_t size) { return orThrow(allocate(size)); }
void* operator new[](std::size_t size) { return orThrow(allocate(size)); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new(std::size_t size, std::align_val_t alignment) {
    return orThrow(allocate(size, alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return orThrow(allocate(size, alignment));
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return allocate(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return allocate(size, alignment);
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
    std::free(memory);
}

namespace vantor::test {

std::size_t AllocationCounter::allocationsOfThisThread() noexcept { return allocations; }

}  // namespace vantor::test
