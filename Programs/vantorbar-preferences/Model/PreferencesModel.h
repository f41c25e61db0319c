#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/Colour.h"
#include "Foundation/NotificationCenter.h"
#include "Foundation/PropertyValue.h"
#include "Programs/vantorbar-preferences/Model/SettingCatalogue.h"

namespace vantor {

class DistributedNotifications;
class PreferenceDomain;

/// What a setting was before, nothing where it had its default.
struct FormerSetting {
    std::string key;
    PropertyValue value;
};

/// The settings as they stand, whoever wrote them, and the one way to change them. What is written
/// is told to every running program; what others write is told to the observers.
/// Errors: what can't be stored stays as it was. The reason is in `failure`, and observers are told
///         as after a change, so that what shows the setting goes back to what it is.
/// Thread: main queue.
class PreferencesModel {
public:
    /// Told the key of a setting that changed, or "" where any may have.
    using Observer = std::function<void(std::string_view key)>;

    /// The domain and the notifications outlive it. `arrived`, if there is one, runs before the
    /// domain is read because of others.
    PreferencesModel(PreferenceDomain& stored, PropertyValue::Dictionary defaults,
                     DistributedNotifications& notifications,
                     std::function<void()> arrived = nullptr);
    PreferencesModel(const PreferencesModel&) = delete;
    PreferencesModel& operator=(const PreferencesModel&) = delete;

    PropertyValue::Dictionary stored() const;
    PropertyValue value(std::string_view key) const;
    bool flag(std::string_view key) const { return value(key).boolValue(); }
    std::int64_t integer(std::string_view key) const { return value(key).integerValue(); }
    double number(std::string_view key) const { return value(key).doubleValue(); }
    std::string text(std::string_view key) const { return value(key).stringValue(); }
    /// Black where there is no readable colour.
    Colour colour(std::string_view key) const;

    // In the kind that the setting is kept in. False where it couldn't be stored.

    bool setFlag(std::string_view key, bool flag);
    bool setInteger(std::string_view key, std::int64_t integer);
    bool setNumber(std::string_view key, double number);
    /// Nothing goes back to the default.
    bool setValue(std::string_view key, const PropertyValue& value);
    bool setColour(std::string_view key, const Colour& colour);

    /// Whether the setting has an effect, as the others are.
    bool isEffective(const SettingDescription& setting) const;
    /// Whether it is shown, with or without one.
    bool isShown(const SettingDescription& setting) const;
    bool isAtDefaults(const SettingsPage& page) const;
    /// Takes back what was stored for the settings of a page; answers it.
    std::vector<FormerSetting> reset(const SettingsPage& page);
    void restore(const std::vector<FormerSetting>& former);

    /// Why the last change wasn't stored, or "".
    const std::string& failure() const noexcept { return failure_; }

    [[nodiscard]] Observation observe(Observer observer);
    /// For who knows by other means that somebody may have written. Without a key, observers are
    /// told only where something is stored differently now.
    void noteChanged(std::string_view key = "");

private:
    bool isMet(const SettingNeed& need) const;
    void hear(const Notification& notification);
    void tell(std::string_view key);

    PreferenceDomain& stored_;
    PropertyValue::Dictionary defaults_;
    DistributedNotifications& notifications_;
    std::function<void()> arrived_;
    std::string failure_;
    PropertyValue::Dictionary seen_;  // when somebody was told last
    NotificationCenter observers_;
    std::array<Observation, 2> heard_;
};

}  // namespace vantor
