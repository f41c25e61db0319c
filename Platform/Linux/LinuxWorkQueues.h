#pragma once

#include <chrono>

#include "Platform/Linux/Worker.h"
#include "Platform/WorkQueues.h"

namespace vantor {

/// Serial queues have a thread each from their first task on. The global queue runs its tasks
/// one by one on a thread that goes when it was idle for a while, so that a program at rest has
/// no more threads than it has queues in use.
class LinuxWorkQueues final : public WorkQueues {
public:
    static constexpr std::chrono::milliseconds kGlobalIdle{3000};

    explicit LinuxWorkQueues(std::chrono::milliseconds globalIdle = kGlobalIdle);
    void globalAsync(Task task) override;
    std::unique_ptr<SerialQueue> makeSerialQueue(std::string label) override;
    void drainGlobal() override;
    std::string_view currentLabel() const noexcept override { return Worker::currentName(); }

private:
    Worker global_;
};

}  // namespace vantor
