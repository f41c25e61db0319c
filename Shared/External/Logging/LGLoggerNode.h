#pragma once

#include <cstdint>
#include <memory>

#include "Shared/External/Logging/LGLogger.h"

namespace vantor::inline VANTOR_MODULE {

/// A logger in the log's list.
struct LGLoggerNode {
    bool accepts(std::int32_t logFlag) const noexcept { return (logFlag & logLevel) != 0; }

    std::shared_ptr<LGLogger> logger;
    std::unique_ptr<SerialQueue> ownQueue;  // where the logger brings none; runs out before it
    SerialQueue* loggerQueue;
    std::int32_t logLevel;  // a mask of flags
};

}  // namespace vantor::inline VANTOR_MODULE
