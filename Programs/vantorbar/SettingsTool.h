#pragma once

#include <iosfwd>
#include <string_view>

#include "Foundation/PropertyValue.h"

namespace vantor::inline VANTOR_MODULE {
struct PreferenceMigration;
class VTRPreferences;
}  // namespace vantor::inline VANTOR_MODULE

namespace vantor {

class DistributedNotifications;
class PreferenceDomain;

enum class ListedKeys { ours, all };
enum class ListFormat { table, json };
enum class UnknownKeys { refused, allowed };

/// What `prefs` does: shows the settings and writes them, telling the running programs.
/// Errors: each operation answers the exit status: 0; 1 where the settings can't be written or
///         there is no such value; 2 for what was asked for wrongly. The reason is a line on
///         `err`.
class SettingsTool {
public:
    SettingsTool(PreferenceDomain& stored, PropertyValue::Dictionary defaults,
                 DistributedNotifications& notifications, std::ostream& out, std::ostream& err);

    int list(ListedKeys keys, ListFormat format);
    /// The bare value.
    int get(std::string_view key);
    int set(std::string_view key, std::string_view text, UnknownKeys unknownKeys);
    int reset(std::string_view key);
    /// Stores the settings of the program's previous version under their present names, once.
    /// `preferences` is of the same domain, and may write from then on what it migrates.
    int migrate(VTRPreferences& preferences);

private:
    int store(std::string_view key, const PropertyValue& value);
    int carriedOver(const PreferenceMigration& migration);
    int complain(int status, std::string_view complaint);

    PreferenceDomain& stored_;
    PropertyValue::Dictionary defaults_;
    DistributedNotifications& notifications_;
    std::ostream& out_;
    std::ostream& err_;
};

}  // namespace vantor
