#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <utility>

#include "Platform/WorkQueues.h"

namespace vantor::inline VANTOR_MODULE {

/// Work on several queues that somebody waits for. One waits at a time, and not on one of them.
class LGLoggingGroup {
public:
    template <class Closure>
    void async(SerialQueue& queue, Closure closure) {
        enter();
        queue.async([this, closure = std::move(closure)]() mutable {
            closure();
            leave();
        });
    }

    /// Returns when all of it has run.
    void wait() {
        std::unique_lock lock(mutex_);
        empty_.wait(lock, [this] { return count_ == 0; });
    }

private:
    void enter() {
        const std::scoped_lock lock(mutex_);
        ++count_;
    }
    void leave() {
        const std::scoped_lock lock(mutex_);
        if (--count_ == 0)
            empty_.notify_one();
    }

    std::mutex mutex_;
    std::condition_variable empty_;
    std::size_t count_ = 0;
};

}  // namespace vantor::inline VANTOR_MODULE
