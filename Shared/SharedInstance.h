#pragma once

#include <memory>
#include <mutex>

namespace vantor::inline VANTOR_MODULE {

/// A process-wide singleton: made on first use, by whichever thread comes first, and made again
/// after `drop`.
template <class Instance>
class SharedInstance {
public:
    template <class Make>
    Instance& get(Make&& make) {
        const std::scoped_lock lock(mutex_);
        if (!instance_)
            instance_ = make();
        return *instance_;
    }

    /// The instance, if there is one now.
    Instance* existing() const noexcept {
        const std::scoped_lock lock(mutex_);
        return instance_.get();
    }

    void drop() noexcept {
        std::unique_ptr<Instance> dropped;  // dies after the lock is released
        const std::scoped_lock lock(mutex_);
        dropped = std::move(instance_);
    }

private:
    mutable std::mutex mutex_;
    std::unique_ptr<Instance> instance_;
};

}  // namespace vantor::inline VANTOR_MODULE
