#pragma once

#include <cstdint>
#include <string_view>

namespace vantor {

/// What the daemon is asked, in the protocol's order. Misspelt as the protocol is.
enum class DaemonOperation {
    version,
    enableHierachy,
    disableHierachy,
    startRequestWithKey,
    stopRequestWithKey,
    smartTemps,
    startSMARTStatus,
    stopSMARTStatus,
    startSMARTTemps,
    stopSMARTTemps,
    refreshDHCP,
    toggleAirPortPower,
    setNetworkSet,
    setFanSet,
};

struct DaemonRequest {
    DaemonOperation operation = DaemonOperation::version;
    std::int64_t key = 0;  // of a request that is started or stopped
};

/// How an operation is called on the bus.
struct DaemonMethod {
    DaemonOperation operation;
    const char* name;
    const char* arguments;  // their types
};

/// Null where there is no such method.
const DaemonMethod* daemonMethodNamed(std::string_view name) noexcept;
const DaemonMethod& daemonMethod(DaemonOperation operation) noexcept;

/// The version pair: of the protocol, and of what it says beyond that.
inline constexpr std::int64_t kDaemonVersion = 1, kDaemonRevision = 0;
/// The processor module's request: the busiest processes.
inline constexpr std::int64_t kProcessesKey = 1;

}  // namespace vantor
