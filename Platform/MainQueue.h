#pragma once

#include <cstdint>

#include "Foundation/Task.h"

namespace vantor {

/// Port: the one serial context on which the program lives. Tasks run one at a time, in the
/// order in which they fall due; those due at the same time in the order in which they came.
/// Thread: every operation is safe anywhere. After the first few calls none allocates.
class MainQueue {
public:
    enum class CallID : std::uint64_t { none = 0 };

    virtual ~MainQueue() = default;
    /// Runs `task` behind what is already due.
    virtual void async(Task task) = 0;
    /// Runs `task` once, `delaySeconds` from now or a little later; a delay of 0 is `async`.
    virtual CallID after(double delaySeconds, Task task) = 0;
    /// The call doesn't run any more. A call that ran, or `none`, is ignored.
    virtual void cancel(CallID call) noexcept = 0;
    virtual bool isCurrent() const noexcept = 0;
};

}  // namespace vantor
