#include "Platform/Linux/LinuxDaemonTransport.h"

#include <utility>

#include "Platform/Linux/LinuxDaemonLink.h"

namespace vantor {

LinuxDaemonTransport::LinuxDaemonTransport(LinuxMainQueue& queue,
                                           std::optional<std::string> sessionBus,
                                           std::optional<std::string> systemBus)
    : queue_(queue) {
    for (auto* const address : {&sessionBus, &systemBus})
        if (*address)
            addresses_.push_back(**address);
}

std::unique_ptr<DaemonConnection> LinuxDaemonTransport::connect(DaemonClient& client) {
    return std::make_unique<LinuxDaemonLink>(queue_, addresses_, client);
}

}  // namespace vantor
