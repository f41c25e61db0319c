// How VTRPreferences takes over the settings of the previous version.

#include <algorithm>
#include <exception>
#include <fstream>
#include <sstream>

#include "Foundation/KeyedArchive.h"
#include "Foundation/PropertyList.h"
#include "Platform/Directories.h"
#include "Platform/PreferenceDomain.h"
#include "Shared/PreferenceMigrationTable.h"
#include "Shared/VTRPreferences.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

namespace fs = std::filesystem;
using Outcome = PreferenceMigration::Outcome;

constexpr std::string_view kFormerFile = "com.kolbrin.vantorbar.extras.plist";
constexpr std::string_view kMarker = "Migrated_5.0";
constexpr std::string_view kCities = "cities";
constexpr std::string_view kCityMap = "citymap.plist";

std::optional<fs::path> formerSettingsFile(const Directories& directories) {
    for (const fs::path& folder : directories.formerPreferences()) {
        std::error_code unreadable;  // as good as missing
        if (fs::is_regular_file(folder / kFormerFile, unreadable))
            return folder / kFormerFile;
    }
    return std::nullopt;
}

/// Nothing where the file can't be read as one.
std::optional<PropertyValue::Dictionary> dictionaryIn(const fs::path& file) {
    const std::ifstream stream(file, std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();  // fails where the file does, throwing nothing
    const auto value = bytes ? propertyListValue(bytes.view()) : std::nullopt;
    const auto* const entries = value ? value->dictionary() : nullptr;
    return entries == nullptr ? std::nullopt : std::optional(*entries);
}

/// "" is no key.
bool isCarriedOver(std::string_view formerKey) noexcept {
    const auto leftBehind = keysLeftBehind();
    return !formerKey.empty() && std::ranges::find(leftBehind, formerKey) == leftBehind.end();
}

/// Nothing but colours was ever archived in a form that still means something.
PropertyValue archivedColour(const PropertyValue::Data& data) {
    const std::string_view bytes(reinterpret_cast<const char*>(data.data()), data.size());
    const ArchivedObject object = objectInKeyedArchive(bytes);
    const auto* const colour = std::get_if<Colour>(&object);
    return colour == nullptr ? PropertyValue{} : stringFromColor(*colour);
}

}  // namespace

PreferenceMigration VTRPreferences::migrateIfNeeded() {
    const auto file = formerSettingsFile(ports_.directories);
    if (!file)
        return {};
    PreferenceMigration migration;
    if (prefenceValueForKey(kMarker)) {
        migration.outcome = Outcome::alreadyMigrated;
        migration.formerSettings = *file;
        return migration;
    }
    migration = migrateToV5();
    if (supportsMigration_ && migration.outcome == Outcome::carriedOver)
        markAsMigrated(migration);
    return migration;
}

PreferenceMigration VTRPreferences::migrateToV5() {
    PreferenceMigration migration;
    if (const auto file = formerSettingsFile(ports_.directories)) {
        const auto former = dictionaryIn(*file);
        migration.formerSettings = *file;
        migration.outcome = former ? Outcome::carriedOver : Outcome::damaged;
        for (const auto& [key, value] : former.value_or(Values{}))
            if (isCarriedOver(key))
                carryOver(key, value, migration);
    }
    if (supportsMigration_)
        ports_.preferences.synchronise();
    didMigratePreferences_ = true;
    return migration;
}

void VTRPreferences::carryOver(const std::string& formerKey, const PropertyValue& formerValue,
                               PreferenceMigration& migration) {
    try {
        const std::string_view key = migratedKey(formerKey);
        if (const PropertyValue value = migratedValue(formerKey, formerValue)) {
            storeMigrated(key, value);
            migration.carriedOver.emplace_back(key);
            return;
        }
    } catch (const std::exception& error) {
        migration.failure = error.what();
    }
    migration.dropped.push_back(formerKey);
}

/// Nothing where the value can't be carried over. Only cities and colours look different now.
PropertyValue VTRPreferences::migratedValue(std::string_view formerKey,
                                            const PropertyValue& value) const {
    if (formerKey == kCities)
        return value.array() == nullptr ? PropertyValue{} : migratedCities(value);
    if (const auto* const data = value.as<PropertyValue::Data>())
        return archivedColour(*data);
    return value;
}

void VTRPreferences::storeMigrated(std::string_view key, const PropertyValue& value) {
    resetValueForKey(key);
    if (supportsMigration_)
        ports_.preferences.write(key, value);
    else
        cache_.insert_or_assign(std::string(key), value);
}

void VTRPreferences::markAsMigrated(PreferenceMigration& migration) {
    try {
        storeMigrated(kMarker, true);
    } catch (const std::exception& error) {
        migration.failure = error.what();
    }
    ports_.preferences.synchronise();
}

PropertyValue::Array VTRPreferences::migratedCities(const PropertyValue& list) const {
    PropertyValue::Array cities;
    const auto* const formerCities = list.array();
    const auto file = pathForImage(kCityMap);  // which finds any file by its whole name
    const auto map = file ? dictionaryIn(*file) : std::nullopt;
    if (formerCities == nullptr || !map)
        return cities;
    for (const PropertyValue& former : *formerCities)
        if (const auto entry = map->find(former.stringValue()); entry != map->end())
            cities.push_back(entry->second);
    return cities;
}

}  // namespace vantor::inline VANTOR_MODULE
