#pragma once

#include <string_view>

#include "Foundation/NotificationCenter.h"

namespace vantor {
class DistributedNotifications;
}

namespace vantor::inline VANTOR_MODULE {

/// What tells the running extras that a setting was written: the notification's name, and the
/// word that says what to rebuild, or "".
struct PreferenceChange {
    std::string_view notification, resetKey;
    bool operator==(const PreferenceChange&) const = default;
};

PreferenceChange preferenceChange(std::string_view key) noexcept;

/// What every writer of a setting does after it wrote: the running extras forget their copy of
/// `key` and show the new value. Main queue.
void postPreferenceChange(std::string_view key, DistributedNotifications& notifications);

}  // namespace vantor::inline VANTOR_MODULE
