#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "Foundation/Task.h"

namespace vantor {

/// Runs tasks one after the other on a thread that is there only when it is needed.
/// Shape:  no thread before the first task; the thread ends once it had nothing to do for `idle`,
///         and a later task starts another. The queues keep their capacity.
/// Errors: what a task throws ends the program. Throws std::system_error where the system has no
///         thread left.
/// Thread: any, but for `sync`, `drain` and the destructor: never on the worker itself.
class Worker {
public:
    /// Without `idle` the thread stays until the end. Of `name`, 15 bytes show in the system.
    explicit Worker(std::string name, std::optional<std::chrono::milliseconds> idle = {});
    /// Runs what was queued, then ends the thread.
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    void async(Task task);
    /// Returns when `task` has run.
    void sync(Task task);
    /// Returns once nothing is queued or running.
    void drain();
    /// Whether the caller is a task of this worker.
    bool isCurrent() const noexcept;
    const std::string& name() const noexcept { return name_; }
    /// Of the worker whose task the caller is; "" for one that is none's.
    static std::string_view currentName() noexcept;

private:
    std::uint64_t enqueue(Task task);
    void startThread();
    void work();
    bool awaitTasks(std::unique_lock<std::mutex>& lock);
    void runBatch(std::unique_lock<std::mutex>& lock);

    const std::string name_;
    const std::optional<std::chrono::milliseconds> idle_;
    std::atomic<std::thread::id> threadID_{};

    std::mutex mutex_;  // guards all that follows but batch_
    std::condition_variable asked_, done_;
    std::vector<Task> queued_;
    std::vector<Task> batch_;  // the thread's own
    std::uint64_t askedCount_ = 0, doneCount_ = 0;
    bool hasThread_ = false, ends_ = false;
    std::jthread thread_;
};

}  // namespace vantor
