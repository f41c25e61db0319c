#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <mutex>

namespace vantor {

/// Lets so many in at once; the next one waits until somebody has left. As long as nobody waits,
/// neither operation takes a lock. (The standard library's own may sleep through a release.)
/// Thread: any.
class CountingSemaphore {
public:
    explicit CountingSemaphore(std::ptrdiff_t count) noexcept : free_(count) {}

    void acquire() {
        if (free_.fetch_sub(1) > 0)
            return;
        std::unique_lock lock(mutex_);
        released_.wait(lock, [this] { return handedOver_ > 0; });
        --handedOver_;
    }

    void release() {
        if (free_.fetch_add(1) >= 0)
            return;
        const std::scoped_lock lock(mutex_);
        ++handedOver_;
        released_.notify_one();
    }

private:
    std::atomic<std::ptrdiff_t> free_;  // below 0: so many wait
    std::mutex mutex_;                  // guards what follows
    std::condition_variable released_;
    std::ptrdiff_t handedOver_ = 0;
};

}  // namespace vantor
