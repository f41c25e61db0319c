#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>

#include "Foundation/NotificationCenter.h"
#include "Foundation/PropertyValue.h"

namespace vantor {

inline constexpr std::string_view kWorkspaceWillSleep = "NSWorkspaceWillSleepNotification";
inline constexpr std::string_view kWorkspaceDidWake = "NSWorkspaceDidWakeNotification";

/// Port: the desktop session. Main queue.
class Workspace {
public:
    virtual ~Workspace() = default;
    /// Posts kWorkspaceWillSleep before the machine sleeps and kWorkspaceDidWake after it woke.
    virtual NotificationCenter& notificationCenter() noexcept = 0;
    /// Starts the application of that name or path; false where the desktop has none.
    virtual bool launchApplication(std::string_view name) = 0;
    /// Shows the settings of that path; false where the desktop has none of the kind.
    virtual bool openFile(std::string_view path) = 0;
    /// Whether the desktop has what stands for the application or the settings of that path.
    virtual bool exists(std::string_view path) const = 0;
    /// The PNG file of the icon for the application or the settings of that path that best fits so
    /// many pixels; nothing where the desktop has none.
    virtual std::optional<std::filesystem::path> iconFile(std::string_view /*path*/,
                                                          int /*pixels*/) const {
        return std::nullopt;
    }
    /// What the desktop knows of a process as an application, which may be nothing at all;
    /// nothing where it doesn't know it as one, or keeps no such book.
    virtual std::optional<PropertyValue::Dictionary>
    applicationInformation(std::int64_t /*processID*/) {
        return std::nullopt;
    }
};

}  // namespace vantor
