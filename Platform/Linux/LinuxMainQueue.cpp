#include "Platform/Linux/LinuxMainQueue.h"

#include <algorithm>
#include <cassert>
#include <cerrno>
#include <cmath>
#include <system_error>

#include <sys/eventfd.h>

#include "Platform/Linux/LinuxClock.h"
#include "Platform/Linux/TimerSlack.h"

namespace vantor {
namespace {

constexpr std::int64_t kAwake = 0;
constexpr std::int64_t kSecond = 1'000'000'000;
// Calls that keep asking for more calls leave room for the descriptors and the display.
constexpr int kCallsPerPass = 256;
constexpr unsigned long kTimerSlackNanoseconds = 1'000'000;

/// Rounded up, so that nothing is early. What isn't a positive number is no delay.
std::int64_t nanosecondsOf(double seconds) noexcept {
    if (!(seconds > 0))
        return 0;
    return static_cast<std::int64_t>(std::ceil(std::min(seconds, LinuxMainQueue::kForever) * 1e9));
}

timespec timespecOf(std::int64_t nanoseconds) noexcept {
    return {.tv_sec = nanoseconds / kSecond, .tv_nsec = nanoseconds % kSecond};
}

}  // namespace

void LinuxMainQueue::Watch::setEvents(short events) noexcept {
    if (queue_ == nullptr)
        return;
    Watched* const watched = queue_->findWatched(id_);
    if (watched == nullptr || watched->events == events)
        return;
    watched->events = events;
    queue_->watchesChanged_ = true;
}

void LinuxMainQueue::Watch::end() noexcept {
    LinuxMainQueue* const queue = std::exchange(queue_, nullptr);
    if (queue == nullptr)
        return;
    // The place in the list stays until the next sleep: callWatches may be walking it.
    if (Watched* const watched = queue->findWatched(id_)) {
        watched->id = 0;
        queue->watchesChanged_ = true;
        const auto dropped = std::exchange(watched->callback, nullptr);
    }
}

LinuxMainQueue::LinuxMainQueue()
    : wakeUp_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), thread_(std::this_thread::get_id()),
      sleepsUntil_(kAwake) {
    if (!wakeUp_)
        throw std::system_error(errno, std::generic_category(), "eventfd");
    static_assert(std::atomic<bool>::is_always_lock_free, "stop() runs in signal handlers");
}

LinuxMainQueue::~LinuxMainQueue() {
    assert(std::ranges::all_of(watched_, [](const Watched& watched) { return watched.id == 0; }));
    std::vector<Call> dropped;  // what they hold may cancel calls, so they go without the lock
    const std::scoped_lock lock(mutex_);
    dropped.swap(calls_);
}

/// The heap's order: the call to run first is the one that is later than none.
bool LinuxMainQueue::isLater(const Call& left, const Call& right) noexcept {
    return left.due != right.due ? left.due > right.due : left.id > right.id;
}

void LinuxMainQueue::async(Task task) { after(0, std::move(task)); }

MainQueue::CallID LinuxMainQueue::after(double delaySeconds, Task task) {
    const std::int64_t delay = nanosecondsOf(delaySeconds);
    const std::scoped_lock lock(mutex_);
    // The clock is read under the lock: what comes later is never due earlier.
    const std::int64_t due = monotonicNanoseconds() + delay;
    const CallID id{lastCall_ + 1};
    calls_.push_back({due, id, std::move(task)});
    std::ranges::push_heap(calls_, isLater);
    ++lastCall_;
    if (due < sleepsUntil_ - kLeewayNanoseconds)
        wake();
    return id;
}

void LinuxMainQueue::cancel(CallID call) noexcept {
    Task dropped;  // dies after the lock is released
    const std::scoped_lock lock(mutex_);
    const auto found = std::ranges::find(calls_, call, &Call::id);
    if (found == calls_.end())
        return;
    dropped = std::move(found->task);
    if (found != calls_.end() - 1)
        *found = std::move(calls_.back());
    calls_.pop_back();
    std::ranges::make_heap(calls_, isLater);
}

bool LinuxMainQueue::isCurrent() const noexcept { return thread_ == std::this_thread::get_id(); }

void LinuxMainQueue::run() {
    const TimerSlack slack(kTimerSlackNanoseconds);  // lets the kernel join wake-ups
    while (!stops_)
        runOnce(kForever);
    stops_ = false;
}

void LinuxMainQueue::runOnce(double maximumSeconds) {
    thread_ = std::this_thread::get_id();
    sleep(nanosecondsOf(maximumSeconds));
    const bool watched = callWatches();
    const bool called = runDueCalls();
    if ((watched || called) && afterCalls_)
        afterCalls_();
}

LinuxMainQueue::Wait LinuxMainQueue::prepareToWait() {
    if (watchesChanged_)
        gatherPolled();
    return {polled_, prepareToSleep(nanosecondsOf(kForever))};
}

void LinuxMainQueue::stop() noexcept {
    stops_ = true;
    const int error = errno;          // a signal handler leaves it as it was
    eventfd_write(wakeUp_.get(), 1);  // fails only where a wake-up is under way anyhow
    errno = error;
}

LinuxMainQueue::Watch LinuxMainQueue::watch(int descriptor, short events,
                                            DescriptorCallback callback) {
    const std::uint64_t id = ++lastWatch_;
    watched_.push_back(
        {id, descriptor, events, std::make_shared<DescriptorCallback>(std::move(callback))});
    watchesChanged_ = true;
    return {*this, id};
}

/// For how long to sleep, in nanoseconds. From here on a call that falls due earlier wakes us.
std::int64_t LinuxMainQueue::prepareToSleep(std::int64_t maximum) noexcept {
    const std::scoped_lock lock(mutex_);
    const std::int64_t now = monotonicNanoseconds();
    std::int64_t until = now + maximum;
    if (!calls_.empty()) {
        const std::int64_t due = calls_.front().due;
        until = due <= now ? now : std::min(until, due + kLeewayNanoseconds);
    }
    sleepsUntil_ = until > now ? until : kAwake;
    return until - now;
}

void LinuxMainQueue::sleep(std::int64_t maximum) {
    if (watchesChanged_)
        gatherPolled();
    const timespec timeout = timespecOf(prepareToSleep(maximum));
    const int ready = ppoll(polled_.data(), polled_.size(), &timeout, nullptr);
    {
        const std::scoped_lock lock(mutex_);
        sleepsUntil_ = kAwake;
    }
    // Interrupted, or out of memory: what is due runs, and then we sleep again.
    if (ready < 0)
        for (pollfd& polled : polled_)
            polled.revents = 0;
    if (polled_.front().revents != 0)
        clearWakeUp();
}

/// With the lock held.
void LinuxMainQueue::wake() noexcept {
    sleepsUntil_ = kAwake;
    eventfd_write(wakeUp_.get(), 1);  // fails only where a wake-up is under way anyhow
}

void LinuxMainQueue::clearWakeUp() noexcept {
    eventfd_t count = 0;
    eventfd_read(wakeUp_.get(), &count);  // never blocks; nothing to read is fine
}

/// Whether there were any. A callback may end watches and add others.
bool LinuxMainQueue::callWatches() {
    bool called = false;
    for (std::size_t place = 1; place < polled_.size(); ++place) {
        const short events = std::exchange(polled_[place].revents, short{0});
        const auto callback = watched_[place - 1].callback;  // outlives its watch while it runs
        if (events == 0 || !callback)
            continue;
        called = true;
        (*callback)(events);
    }
    return called;
}

/// Whether there were any. Those that fall due meanwhile run in the same pass.
bool LinuxMainQueue::runDueCalls() {
    int called = 0;
    for (; called < kCallsPerPass && !stops_; ++called) {
        Task task;
        if (!takeDueCall(task))
            break;
        task();
    }
    return called > 0;
}

bool LinuxMainQueue::takeDueCall(Task& into) noexcept {
    const std::scoped_lock lock(mutex_);
    if (calls_.empty() || calls_.front().due > monotonicNanoseconds())
        return false;
    std::ranges::pop_heap(calls_, isLater);
    into = std::move(calls_.back().task);
    calls_.pop_back();
    return true;
}

LinuxMainQueue::Watched* LinuxMainQueue::findWatched(std::uint64_t id) noexcept {
    const auto found = std::ranges::find(watched_, id, &Watched::id);
    return found == watched_.end() ? nullptr : &*found;
}

void LinuxMainQueue::gatherPolled() {
    std::erase_if(watched_, [](const Watched& watched) { return watched.id == 0; });
    polled_.clear();
    polled_.push_back({.fd = wakeUp_.get(), .events = POLLIN, .revents = 0});
    for (const Watched& watched : watched_)
        polled_.push_back({.fd = watched.descriptor, .events = watched.events, .revents = 0});
    watchesChanged_ = false;
}

}  // namespace vantor
