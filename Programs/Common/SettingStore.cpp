#include "Programs/Common/SettingStore.h"

#include <string>

#include "Platform/PreferenceDomain.h"
#include "Shared/PreferenceChange.h"
#include "Shared/VTRPreferences.h"

namespace vantor {

void storeSetting(std::string_view key, const PropertyValue& value, PreferenceDomain& stored,
                  DistributedNotifications& notifications) {
    stored.write(key, value);
    stored.synchronise();
    postPreferenceChange(key, notifications);
}

PreferenceMigration carryOverFormerSettings(VTRPreferences& preferences,
                                            DistributedNotifications& notifications) {
    preferences.setSupportsMigration(true);
    PreferenceMigration migration = preferences.migrateIfNeeded();
    for (const std::string& key : migration.carriedOver)
        postPreferenceChange(key, notifications);
    return migration;
}

}  // namespace vantor
