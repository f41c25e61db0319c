#include "Programs/vantorbar/SettingsTool.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include "Platform/PreferenceDomain.h"
#include "Programs/Common/PropertyJSON.h"
#include "Programs/Common/SettingStore.h"
#include "Programs/Common/SettingValue.h"
#include "Shared/VTRPreferences.h"

namespace vantor {
namespace {

constexpr int kFine = 0, kFailed = 1, kWrongUsage = 2;

struct Setting {
    std::string key;
    PropertyValue value;
    bool isStored = false;
};

bool isSiblings(std::string_view key) noexcept {
    static constexpr std::string_view kPrefixes[] = {
        "Memory_", "Disks_", "Network_", "Sensors_", "FanControl_", "Battery_", "Time_"};
    return std::ranges::any_of(kPrefixes,
                               [key](std::string_view prefix) { return key.starts_with(prefix); });
}

std::vector<Setting> settingsOf(const PropertyValue::Dictionary& stored,
                                const PropertyValue::Dictionary& defaults, ListedKeys keys) {
    PropertyValue::Dictionary all = stored;
    all.insert(defaults.begin(), defaults.end());  // only where nothing is stored
    std::vector<Setting> settings;
    for (auto& [key, value] : all)
        if (keys == ListedKeys::all || !isSiblings(key))
            settings.push_back({key, value, stored.contains(key)});
    return settings;
}

/// A stored text may hold anything; what moves a terminal's cursor doesn't get there.
std::string printable(std::string text) {
    std::ranges::replace_if(
        text, [](char letter) { return static_cast<unsigned char>(letter) < ' ' || letter == 127; },
        '?');
    return text;
}

std::string table(const std::vector<Setting>& settings) {
    std::size_t keyWidth = 0, valueWidth = 0;
    std::vector<std::string> values;
    for (const Setting& setting : settings) {
        values.push_back(printable(settingText(setting.value)));
        keyWidth = std::max(keyWidth, setting.key.size());
        valueWidth = std::max(valueWidth, values.back().size());
    }
    valueWidth = std::min<std::size_t>(valueWidth, 40);  // one long list moves no column
    std::string text;
    for (std::size_t row = 0; row < settings.size(); ++row)
        text += fmt::format("{:{}}  {:{}}  {}\n", printable(settings[row].key), keyWidth,
                            values[row], valueWidth, settings[row].isStored ? "stored" : "default");
    return text;
}

std::string json(const std::vector<Setting>& settings) {
    auto object = nlohmann::ordered_json::object();
    for (const Setting& setting : settings)
        object[setting.key] = {{"value", jsonOfValue(setting.value)}, {"stored", setting.isStored}};
    return object.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace

SettingsTool::SettingsTool(PreferenceDomain& stored, PropertyValue::Dictionary defaults,
                           DistributedNotifications& notifications, std::ostream& out,
                           std::ostream& err)
    : stored_(stored), defaults_(std::move(defaults)), notifications_(notifications), out_(out),
      err_(err) {}

int SettingsTool::list(ListedKeys keys, ListFormat format) {
    const auto settings = settingsOf(stored_.readAll(), defaults_, keys);
    out_ << (format == ListFormat::json ? json(settings) : table(settings));
    return kFine;
}

int SettingsTool::get(std::string_view key) {
    PropertyValue value = stored_.read(key);
    if (const auto standard = defaults_.find(key); !value && standard != defaults_.end())
        value = standard->second;
    if (!value)
        return complain(kFailed, fmt::format("{} has no value", key));
    out_ << settingText(value) << '\n';
    return kFine;
}

int SettingsTool::set(std::string_view key, std::string_view text, UnknownKeys unknownKeys) {
    if (key.empty())
        return complain(kWrongUsage, "a setting has a name");
    const auto standard = defaults_.find(key);
    if (standard != defaults_.end()) {
        const ParsedSetting parsed = parsedSetting(key, text, standard->second);
        if (!parsed.value)
            return complain(kWrongUsage, fmt::format("{} takes {}", key, parsed.expected));
        if (!parsed.unusual.empty())
            complain(kFine, parsed.unusual);
        return store(key, parsed.value);
    }
    if (unknownKeys == UnknownKeys::refused)
        return complain(kWrongUsage, fmt::format("{} isn't a setting that has a default; --force "
                                                 "stores it nevertheless",
                                                 key));
    return store(key, freelyParsedSetting(text));
}

int SettingsTool::reset(std::string_view key) {
    if (!stored_.read(key) && !defaults_.contains(key))
        return complain(kFailed, fmt::format("{} has no value", key));
    return store(key, {});
}

int SettingsTool::migrate(VTRPreferences& preferences) {
    using Outcome = PreferenceMigration::Outcome;
    const PreferenceMigration migration = carryOverFormerSettings(preferences, notifications_);
    const std::string file = printable(migration.formerSettings.string());
    switch (migration.outcome) {
    case Outcome::noFormerSettings:
        out_ << "There are no settings of the previous version\n";
        return kFine;
    case Outcome::alreadyMigrated:
        out_ << "The settings in \"" << file << "\" were carried over before\n";
        return kFine;
    case Outcome::damaged:
        return complain(kFine, fmt::format("\"{}\" is damaged; nothing was carried over", file));
    case Outcome::carriedOver:
        break;
    }
    return carriedOver(migration);
}

int SettingsTool::carriedOver(const PreferenceMigration& migration) {
    const std::size_t count = migration.carriedOver.size();
    out_ << fmt::format("{} {} carried over from \"{}\"\n", count,
                        count == 1 ? "setting" : "settings",
                        printable(migration.formerSettings.string()));
    if (!migration.dropped.empty())
        complain(kFine,
                 fmt::format("not carried over: {}",
                             printable(fmt::format("{}", fmt::join(migration.dropped, ", ")))));
    if (migration.failure.empty())
        return kFine;
    return complain(kFailed, fmt::format("not all can be stored: {}", migration.failure));
}

int SettingsTool::store(std::string_view key, const PropertyValue& value) {
    try {
        storeSetting(key, value, stored_, notifications_);
    } catch (const std::exception& error) {
        return complain(kFailed, fmt::format("{} can't be stored: {}", key, error.what()));
    }
    return kFine;
}

int SettingsTool::complain(int status, std::string_view complaint) {
    err_ << "vantorbar: " << complaint << '\n';
    return status;
}

}  // namespace vantor
