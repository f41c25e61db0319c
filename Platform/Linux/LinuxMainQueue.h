#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <thread>
#include <utility>
#include <vector>

#include <poll.h>

#include "Platform/Linux/Descriptor.h"
#include "Platform/MainQueue.h"

namespace vantor {

/// The main queue of a program without a toolkit: a loop around one ppoll a wake-up.
/// Shape:  calls wait in a heap and watches in a list that keep their capacity.
/// Units:  a call runs never early and up to kLeewayNanoseconds late, so that calls which fall
///         due close together share a wake-up; the kernel adds its own slack, a millisecond or a
///         thousandth of the sleep.
/// Errors: what a call throws leaves `run`; that call is gone, and the queue may be run again.
/// Thread: the operations of MainQueue and `stop` anywhere; all others on the queue itself, which
///         is the thread that made it until another one runs it. Calls that never ran end with
///         the queue; watches end before it.
class LinuxMainQueue final : public MainQueue {
public:
    static constexpr std::int64_t kLeewayNanoseconds = 1'000'000;
    static constexpr double kForever = 1e9;

    /// What a loop of somebody else waits for in the queue's place.
    struct Wait {
        std::span<const pollfd> descriptors;  // good until the queue runs
        std::int64_t nanoseconds;             // at most, from now on
    };

    /// Told what poll(2) saw, with POLLERR, POLLHUP and POLLNVAL unasked.
    using DescriptorCallback = std::function<void(short events)>;

    /// A descriptor is looked after for as long as this lives; closing it is its owner's affair.
    class [[nodiscard]] Watch {
    public:
        Watch() noexcept = default;
        ~Watch() { end(); }
        Watch(Watch&& other) noexcept
            : queue_(std::exchange(other.queue_, nullptr)), id_(other.id_) {}
        Watch& operator=(Watch&& other) noexcept {
            if (this != &other) {
                end();
                queue_ = std::exchange(other.queue_, nullptr);
                id_ = other.id_;
            }
            return *this;
        }

        void setEvents(short events) noexcept;
        /// Fine inside its own callback.
        void end() noexcept;
        explicit operator bool() const noexcept { return queue_ != nullptr; }

    private:
        friend class LinuxMainQueue;
        Watch(LinuxMainQueue& queue, std::uint64_t id) noexcept : queue_(&queue), id_(id) {}
        LinuxMainQueue* queue_ = nullptr;
        std::uint64_t id_ = 0;
    };

    /// Throws std::system_error where the kernel has no descriptor left.
    LinuxMainQueue();
    ~LinuxMainQueue() override;
    LinuxMainQueue(const LinuxMainQueue&) = delete;
    LinuxMainQueue& operator=(const LinuxMainQueue&) = delete;

    void async(Task task) override;
    CallID after(double delaySeconds, Task task) override;
    void cancel(CallID call) noexcept override;
    bool isCurrent() const noexcept override;

    /// Serves the queue until `stop`. A stop that came before ends it at once.
    void run();
    /// Sleeps until there is something to do, but not for longer than `maximumSeconds`, and does
    /// all of it.
    void runOnce(double maximumSeconds);
    /// For a loop of somebody else, in a program that is theirs: what it waits for before it calls
    /// `runOnce` with 0. Belongs before each sleep; a call that comes later ends the wait.
    Wait prepareToWait();
    /// Ends `run` after the call that is running now. Safe in a signal handler.
    void stop() noexcept;

    Watch watch(int descriptor, short events, DescriptorCallback callback);
    /// Runs after each batch of calls and watches, before the loop sleeps: the place to repaint.
    void setAfterCalls(std::function<void()> afterCalls) { afterCalls_ = std::move(afterCalls); }

private:
    struct Call {
        std::int64_t due;  // nanoseconds of the monotonic clock
        CallID id;         // rises in the order in which the calls came
        Task task;
    };
    struct Watched {
        std::uint64_t id;  // 0: ended
        int descriptor;
        short events;
        std::shared_ptr<DescriptorCallback> callback;
    };

    static bool isLater(const Call& left, const Call& right) noexcept;
    std::int64_t prepareToSleep(std::int64_t maximum) noexcept;
    void sleep(std::int64_t maximum);
    void wake() noexcept;
    void clearWakeUp() noexcept;
    bool callWatches();
    bool runDueCalls();
    bool takeDueCall(Task& into) noexcept;
    Watched* findWatched(std::uint64_t id) noexcept;
    void gatherPolled();

    Descriptor wakeUp_;
    std::atomic<std::thread::id> thread_;
    std::atomic<bool> stops_ = false;
    std::function<void()> afterCalls_;

    std::mutex mutex_;  // guards the four that follow
    std::vector<Call> calls_;
    std::uint64_t lastCall_ = 0;
    std::int64_t sleepsUntil_;  // kAwake where a new call needs no wake-up

    std::vector<Watched> watched_;
    std::vector<pollfd> polled_;  // wakeUp_, then one for each of watched_
    std::uint64_t lastWatch_ = 0;
    bool watchesChanged_ = true;
};

}  // namespace vantor
