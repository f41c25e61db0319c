#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "Foundation/Task.h"

namespace vantor {

/// Runs tasks one after the other, in the order in which they came, off the main queue.
/// Dropping it runs what was queued, then ends it.
class SerialQueue {
public:
    virtual ~SerialQueue() = default;
    /// Any thread.
    virtual void async(Task task) = 0;
    /// Returns when `task` has run. Never call it on the queue itself.
    virtual void sync(Task task) = 0;
    /// Whether the caller is a task of this queue.
    virtual bool isCurrent() const noexcept = 0;
    virtual std::string_view label() const noexcept = 0;
};

/// Port: background work.
class WorkQueues {
public:
    virtual ~WorkQueues() = default;
    /// The default-priority global queue. Tasks may run side by side. Any thread.
    virtual void globalAsync(Task task) = 0;
    /// A queue costs nothing before its first task.
    virtual std::unique_ptr<SerialQueue> makeSerialQueue(std::string label) = 0;
    /// Returns once the global queue has run all that it was given. Main queue.
    virtual void drainGlobal() = 0;
    /// Of the queue whose task the caller is; "" for one that is none of these. Any thread.
    virtual std::string_view currentLabel() const noexcept { return {}; }
};

}  // namespace vantor
