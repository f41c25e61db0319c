#pragma once

#include "Platform/MainQueue.h"
#include "Platform/Ports.h"
#include "Shared/ProcessContext.h"

namespace vantor::inline VANTOR_MODULE {

/// Runs a closure now.
inline void performBlock(Task block) { block(); }

/// Runs a closure on the main queue, later.
inline void performBlockAfterDelay(Task block, double delaySeconds) {
    ProcessContext::current().ports().mainQueue.after(delaySeconds, std::move(block));
}

}  // namespace vantor::inline VANTOR_MODULE
