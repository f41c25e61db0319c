#include "Platform/Linux/LinuxWorkspace.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include <systemd/sd-bus.h>

#include "Platform/Linux/DesktopEntry.h"
#include "Platform/Linux/IconTheme.h"

namespace vantor {
namespace {

struct Application {
    std::string_view name;
    std::span<const std::string_view> desktopFiles;  // those preferred first
};

// A log viewer is worth more than a bare terminal, and a window more than a terminal's program.
constexpr std::string_view kSystemMonitors[] = {
    "org.gnome.SystemMonitor.desktop",
    "gnome-system-monitor.desktop",
    "org.kde.plasma-systemmonitor.desktop",
    "org.kde.ksysguard.desktop",
    "mate-system-monitor.desktop",
    "xfce4-taskmanager.desktop",
    "lxtask.desktop",
    "htop.desktop",
};
constexpr std::string_view kConsoles[] = {
    "org.gnome.Logs.desktop",     "org.kde.ksystemlog.desktop", "mate-system-log.desktop",
    "org.gnome.Terminal.desktop", "org.gnome.Console.desktop",  "org.kde.konsole.desktop",
    "mate-terminal.desktop",      "xfce4-terminal.desktop",     "lxterminal.desktop",
    "debian-xterm.desktop",
};
constexpr std::string_view kPreferences[] = {
    "com.kolbrin.vantorbar.preferences.desktop",
    "com.kolbrin.vantorbar.desktop",
};
constexpr std::string_view kTerminals[] = {
    "org.gnome.Terminal.desktop",
    "org.gnome.Console.desktop",
    "org.kde.konsole.desktop",
    "mate-terminal.desktop",
    "xfce4-terminal.desktop",
    "lxterminal.desktop",
    "foot.desktop",
    "debian-xterm.desktop",
};
constexpr std::string_view kDiskTools[] = {
    "org.gnome.DiskUtility.desktop",
    "org.kde.partitionmanager.desktop",
    "gparted.desktop",
};
constexpr std::string_view kSystemInformation[] = {
    "gnome-about-panel.desktop", "gnome-info-overview-panel.desktop", "org.kde.kinfocenter.desktop",
    "hardinfo.desktop",          "mate-about-this-computer.desktop",
};
constexpr std::string_view kNetworkSettings[] = {
    "gnome-network-panel.desktop",
    "kcm_networkmanagement.desktop",
    "nm-connection-editor.desktop",
};
constexpr std::string_view kPowerSettings[] = {
    "gnome-power-panel.desktop",
    "kcm_powerdevilprofilesconfig.desktop",
    "mate-power-preferences.desktop",
    "xfce4-power-manager-settings.desktop",
};
constexpr std::string_view kUsualSearchPath = "/usr/local/bin:/usr/bin:/bin";
constexpr std::array kApplications{
    Application{"Activity Monitor.app", kSystemMonitors},
    Application{"Console.app", kConsoles},
    Application{"Vantor Bar.app", kPreferences},
    Application{"Terminal.app", kTerminals},
    Application{"Disk Utility.app", kDiskTools},
    Application{"Network Utility.app", kNetworkSettings},
    Application{"Network.prefPane", kNetworkSettings},
    Application{"System Information.app", kSystemInformation},
    Application{"System Profiler.app", kSystemInformation},
    Application{"EnergySaver.prefPane", kPowerSettings},
};

/// The desktop files that stand for what a name or path means; none for one that isn't known.
std::span<const std::string_view> desktopFilesFor(std::string_view path) {
    const std::string_view name = path.substr(path.rfind('/') + 1);
    const auto known = std::ranges::find(kApplications, name, &Application::name);
    return known == kApplications.end() ? std::span<const std::string_view>{} : known->desktopFiles;
}

}  // namespace

LinuxWorkspace::LinuxWorkspace(LinuxMainQueue& queue, BusConnection& systemBus,
                               const Directories& directories, Environment environment)
    : queue_(queue), bus_(systemBus), directories_(directories),
      environment_(std::move(environment)),
      searchPath_(nonEmpty(environment_, "PATH").value_or(std::string(kUsualSearchPath))),
      processes_(queue) {
    queue_.async([handle = weakSource_.handle()] {
        if (auto* const self = handle.get())
            self->listen();
    });
}

void LinuxWorkspace::listen() {
    busReturns_ = bus_.onReturn([this] { subscribe(); });
    subscribe();
}

void LinuxWorkspace::subscribe() {
    subscription_ = bus_.onSignal({.peer = "org.freedesktop.login1",
                                   .path = "/org/freedesktop/login1",
                                   .interface = "org.freedesktop.login1.Manager",
                                   .member = "PrepareForSleep"},
                                  [this](sd_bus_message& message) { prepareForSleep(message); });
}

/// True before the machine sleeps, false after it woke. Told as a call of its own, because an
/// observer may do anything, and the bus is at work here.
void LinuxWorkspace::prepareForSleep(sd_bus_message& message) {
    int begins = 0;
    if (sd_bus_message_read(&message, "b", &begins) <= 0)
        return;
    queue_.async([handle = weakSource_.handle(), begins] {
        if (auto* const self = handle.get())
            self->notificationCenter_.post(begins != 0 ? kWorkspaceWillSleep : kWorkspaceDidWake);
    });
}

bool LinuxWorkspace::launchApplication(std::string_view name) {
    return std::ranges::any_of(desktopFilesFor(name),
                               [this](std::string_view id) { return launchEntry(id); });
}

bool LinuxWorkspace::exists(std::string_view path) const {
    return std::ranges::any_of(desktopFilesFor(path), [this](std::string_view id) {
        return commandOfEntry(id).has_value();
    });
}

bool LinuxWorkspace::launchEntry(std::string_view id) {
    auto command = commandOfEntry(id);
    return command && processes_.start(*std::move(command));
}

std::optional<DesktopEntry> LinuxWorkspace::installedEntry(std::string_view id) const {
    return findDesktopEntry(id,
                            applicationFolders(directories_.applicationSupport(), environment_));
}

/// Nothing where the entry or its program isn't installed.
std::optional<std::vector<std::string>> LinuxWorkspace::commandOfEntry(std::string_view id) const {
    const auto entry = installedEntry(id);
    return entry ? commandOf(*entry, searchPath_) : std::nullopt;
}

/// That of the application that a launch would start.
std::optional<std::filesystem::path> LinuxWorkspace::iconFile(std::string_view path,
                                                              int pixels) const {
    for (const std::string_view id : desktopFilesFor(path))
        if (const auto entry = installedEntry(id); entry && commandOf(*entry, searchPath_))
            return findIcon(entry->icon, pixels,
                            iconPlaces(directories_.applicationSupport(), environment_));
    return std::nullopt;
}

}  // namespace vantor
