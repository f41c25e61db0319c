#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "Foundation/WeakHandle.h"
#include "Platform/Directories.h"
#include "Platform/Linux/BusConnection.h"
#include "Platform/Linux/DesktopEntry.h"
#include "Platform/Linux/DetachedProcesses.h"
#include "Platform/Linux/Environment.h"
#include "Platform/Workspace.h"

namespace vantor {

/// The session as logind and the installed desktop files know it. logind is listened to once
/// the main queue runs.
class LinuxWorkspace final : public Workspace {
public:
    LinuxWorkspace(LinuxMainQueue& queue, BusConnection& systemBus, const Directories& directories,
                   Environment environment);
    NotificationCenter& notificationCenter() noexcept override { return notificationCenter_; }
    /// Knows the applications and settings that the suite names; each stands for the first of its
    /// kind that is installed. Where a path leads doesn't matter, only what it is called.
    bool launchApplication(std::string_view name) override;
    bool openFile(std::string_view path) override { return launchApplication(path); }
    bool exists(std::string_view path) const override;
    /// By the desktop's icon themes, of which the user's comes first.
    std::optional<std::filesystem::path> iconFile(std::string_view path, int pixels) const override;

private:
    void listen();
    void subscribe();
    void prepareForSleep(sd_bus_message& message);
    bool launchEntry(std::string_view id);
    std::optional<DesktopEntry> installedEntry(std::string_view id) const;
    std::optional<std::vector<std::string>> commandOfEntry(std::string_view id) const;

    MainQueue& queue_;
    BusConnection& bus_;
    const Directories& directories_;
    Environment environment_;
    std::string searchPath_;
    NotificationCenter notificationCenter_;
    DetachedProcesses processes_;
    BusConnection::Slot subscription_;
    Observation busReturns_;
    WeakSource<LinuxWorkspace> weakSource_{*this};
};

}  // namespace vantor
