#pragma once

#include "Platform/Linux/BusConnection.h"
#include "Platform/Linux/Environment.h"

namespace vantor {

/// Where the user's session bus and the system's bus are, or nothing where there is none.
/// An address that would start a bus, or reach for the network, counts as none.
std::optional<std::string> sessionBusAddress(const Environment& environment);
std::optional<std::string> systemBusAddress(const Environment& environment);

/// The process's one connection to each bus.
struct LinuxBuses {
    LinuxBuses(LinuxMainQueue& queue, SystemLog& log, const Environment& environment);

    BusConnection session;
    BusConnection system;
};

}  // namespace vantor
