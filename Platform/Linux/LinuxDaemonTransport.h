#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/DaemonTransport.h"
#include "Platform/Linux/LinuxMainQueue.h"

namespace vantor {

/// The daemon as a service on the user's session bus or, where it isn't there, on the system's.
/// Each link is a connection to the bus of its own, which the daemon sees go. It is opened when
/// something is first sent: a program that asks nothing costs nothing and starts no daemon.
class LinuxDaemonTransport final : public DaemonTransport {
public:
    /// Addresses of buses; nothing where there is none. The queue outlives the links.
    LinuxDaemonTransport(LinuxMainQueue& queue, std::optional<std::string> sessionBus,
                         std::optional<std::string> systemBus);
    std::unique_ptr<DaemonConnection> connect(DaemonClient& client) override;

private:
    LinuxMainQueue& queue_;
    std::vector<std::string> addresses_;
};

}  // namespace vantor
