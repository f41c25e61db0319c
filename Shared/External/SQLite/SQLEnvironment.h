#pragma once

#include <atomic>

#include "Shared/External/SQLite/SQLBusyWait.h"

namespace vantor {
class SystemLog;
}

namespace vantor::inline VANTOR_MODULE {

/// What connections share: where an assertion or a damaged file is told of, how they wait, and
/// the numbers of the next savepoints. It outlives its connections.
/// Thread: any.
struct SQLEnvironment {
    explicit SQLEnvironment(SystemLog& log, const SQLBusyWait& wait = SQLBusyWait::real()) noexcept
        : systemLog(log), busyWait(wait) {}

    SystemLog& systemLog;
    const SQLBusyWait& busyWait;
    std::atomic<long> databaseSavePoints = 0, queueSavePoints = 0, poolSavePoints = 0;
};

}  // namespace vantor::inline VANTOR_MODULE
