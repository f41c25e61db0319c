#pragma once

#include <string_view>

namespace vantor {

/// Posted by a daemon that has just started: whatever link there was is stale.
inline constexpr std::string_view kDaemonReady = "VantorBarDaemonXPCReady";

/// The operations that the daemon offers. None answers but `version`, which a connection asks for
/// by itself.
struct DaemonProtocol {
    static constexpr std::string_view version = "version:";
    /// Processes are reported with their child processes combined, or one by one.
    static constexpr std::string_view enableHierachy = "enableHierachy";
    static constexpr std::string_view disableHierachy = "disableHierachy";
    /// Responses for a key, a 64-bit integer, begin and end.
    static constexpr std::string_view startRequestWithKey = "startRequestWithKey:";
    static constexpr std::string_view stopRequestWithKey = "stopRequestWithKey:";
    static constexpr std::string_view smartTemps = "smartTemps";
    static constexpr std::string_view startSMARTStatus = "startSMARTStatus";
    static constexpr std::string_view stopSMARTStatus = "stopSMARTStatus";
    static constexpr std::string_view startSMARTTemps = "startSMARTTemps";
    static constexpr std::string_view stopSMARTTemps = "stopSMARTTemps";
    static constexpr std::string_view refreshDHCP = "refreshDHCP:";
    static constexpr std::string_view toggleAirPortPower = "toggleAirPortPower";
    static constexpr std::string_view setNetworkSet = "setNetworkSet:";
    static constexpr std::string_view setFanSet = "setFanSet:";
};

}  // namespace vantor
