#pragma once

#include <string_view>

#include "Foundation/PropertyValue.h"
#include "Shared/VTRPreferenceMigration.h"

namespace vantor::inline VANTOR_MODULE {
class VTRPreferences;
}  // namespace vantor::inline VANTOR_MODULE

namespace vantor {

class DistributedNotifications;
class PreferenceDomain;

/// Writes a setting for every program of the user, nothing for its default, and tells those that
/// are running. Throws std::runtime_error, with the reason, where it can't be stored.
void storeSetting(std::string_view key, const PropertyValue& value, PreferenceDomain& stored,
                  DistributedNotifications& notifications);

/// Stores the settings of the program's previous version under their present names, unless that
/// was done before, and tells the running programs. `preferences` may write from then on what it
/// migrates.
PreferenceMigration carryOverFormerSettings(VTRPreferences& preferences,
                                            DistributedNotifications& notifications);

}  // namespace vantor
