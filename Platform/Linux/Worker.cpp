#include "Platform/Linux/Worker.h"

#include <cassert>
#include <utility>

#include <pthread.h>

namespace vantor {
namespace {

/// What this thread was made for; never changes once it runs.
thread_local const Worker* ownWorker = nullptr;

}  // namespace

Worker::Worker(std::string name, std::optional<std::chrono::milliseconds> idle)
    : name_(std::move(name)), idle_(idle) {}

Worker::~Worker() {
    assert(!isCurrent());
    const std::scoped_lock lock(mutex_);
    ends_ = true;
    asked_.notify_one();
    // thread_ is the last member: it is joined first, once this lock is released.
}

void Worker::async(Task task) {
    const std::scoped_lock lock(mutex_);
    enqueue(std::move(task));
}

void Worker::sync(Task task) {
    assert(!isCurrent());
    std::unique_lock lock(mutex_);
    const std::uint64_t place = enqueue(std::move(task));
    done_.wait(lock, [&] { return doneCount_ >= place; });
}

void Worker::drain() {
    assert(!isCurrent());
    std::unique_lock lock(mutex_);
    done_.wait(lock, [&] { return doneCount_ == askedCount_; });
}

bool Worker::isCurrent() const noexcept { return threadID_ == std::this_thread::get_id(); }

std::string_view Worker::currentName() noexcept {
    return ownWorker != nullptr ? std::string_view(ownWorker->name_) : std::string_view{};
}

/// With the lock held. Answers how many tasks there were up to this one.
std::uint64_t Worker::enqueue(Task task) {
    if (!hasThread_)
        startThread();
    queued_.push_back(std::move(task));
    asked_.notify_one();
    return ++askedCount_;
}

/// With the lock held. A thread that went before gave the lock up as its last act, so that
/// replacing it waits for no more than its end.
void Worker::startThread() {
    thread_ = std::jthread([this] { work(); });
    hasThread_ = true;
}

void Worker::work() {
    threadID_ = std::this_thread::get_id();
    ownWorker = this;
    // Refused only for names that are too long; a thread without a name works as well.
    pthread_setname_np(pthread_self(), name_.substr(0, 15).c_str());
    std::unique_lock lock(mutex_);
    while (awaitTasks(lock))
        runBatch(lock);
    threadID_ = std::thread::id{};
    hasThread_ = false;
}

/// False when the thread isn't needed any more.
bool Worker::awaitTasks(std::unique_lock<std::mutex>& lock) {
    const auto hasNews = [this] { return !queued_.empty() || ends_; };
    if (idle_)
        asked_.wait_for(lock, *idle_, hasNews);
    else
        asked_.wait(lock, hasNews);
    return !queued_.empty();
}

void Worker::runBatch(std::unique_lock<std::mutex>& lock) {
    batch_.swap(queued_);
    for (Task& task : batch_) {
        lock.unlock();
        task();
        task = Task{};  // what it holds goes here, before anybody who waits for it goes on
        lock.lock();
        ++doneCount_;
        done_.notify_all();
    }
    batch_.clear();
}

}  // namespace vantor
