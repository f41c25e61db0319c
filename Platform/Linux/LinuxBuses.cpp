#include "Platform/Linux/LinuxBuses.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

#include <fmt/format.h>

namespace vantor {
namespace {

namespace fs = std::filesystem;

/// Those of a list of addresses that are sockets of this machine.
std::optional<std::string> localSocketsOf(std::string_view addresses) {
    std::string local;
    while (!addresses.empty()) {
        const auto end = std::min(addresses.find(';'), addresses.size());
        if (const auto address = addresses.substr(0, end); address.starts_with("unix:"))
            local += fmt::format("{}{}", local.empty() ? "" : ";", address);
        addresses.remove_prefix(std::min(end + 1, addresses.size()));
    }
    return local.empty() ? std::nullopt : std::optional(std::move(local));
}

bool isPlain(char letter) noexcept {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
           (letter >= '0' && letter <= '9') ||
           std::string_view("-_/.").find(letter) != std::string_view::npos;
}

std::optional<std::string> addressOfSocket(const fs::path& socket) {
    std::error_code unreadable;  // as good as missing
    if (!fs::is_socket(socket, unreadable))
        return std::nullopt;
    std::string address = "unix:path=";
    for (const char letter : socket.string())
        address += isPlain(letter) ? std::string(1, letter)
                                   : fmt::format("%{:02x}", static_cast<unsigned char>(letter));
    return address;
}

}  // namespace

std::optional<std::string> sessionBusAddress(const Environment& environment) {
    if (const auto addresses = nonEmpty(environment, "DBUS_SESSION_BUS_ADDRESS"))
        return localSocketsOf(*addresses);
    const auto folder = nonEmpty(environment, "XDG_RUNTIME_DIR");
    return folder ? addressOfSocket(fs::path(*folder) / "bus") : std::nullopt;
}

std::optional<std::string> systemBusAddress(const Environment& environment) {
    if (const auto addresses = nonEmpty(environment, "DBUS_SYSTEM_BUS_ADDRESS"))
        return localSocketsOf(*addresses);
    return addressOfSocket("/run/dbus/system_bus_socket");
}

LinuxBuses::LinuxBuses(LinuxMainQueue& queue, SystemLog& log, const Environment& environment)
    : session(queue, log, {"Session bus", "notifications stay in this process"},
              sessionBusAddress(environment)),
      system(queue, log, {"System bus", "the machine's sleep goes unnoticed"},
             systemBusAddress(environment)) {}

}  // namespace vantor
