#include "Programs/vantorbar-preferences/Model/PreferencesModel.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "Platform/DistributedNotifications.h"
#include "Platform/PreferenceDomain.h"
#include "Programs/Common/SettingStore.h"
#include "Shared/PreferenceChange.h"

namespace vantor {
namespace {

constexpr std::string_view kChanged = "changed", kKey = "key";

void forEachSetting(const SettingsPage& page, const auto& work) {
    for (const SettingGroup& group : page.groups)
        for (const SettingDescription& setting : group.settings)
            work(setting);
}

}  // namespace

PreferencesModel::PreferencesModel(PreferenceDomain& stored, PropertyValue::Dictionary defaults,
                                   DistributedNotifications& notifications,
                                   std::function<void()> arrived)
    : stored_(stored), defaults_(std::move(defaults)), notifications_(notifications),
      arrived_(std::move(arrived)), seen_(stored_.readAll()) {
    const auto hears = [this](std::string_view ofKey) {
        return notifications_.observe(
            std::string(preferenceChange(ofKey).notification),
            [this](const Notification& notification) { hear(notification); });
    };
    heard_ = {hears("TimerFrequency"), hears("CPU_MenubarMode")};  // one of all, one of this item
}

PropertyValue::Dictionary PreferencesModel::stored() const { return stored_.readAll(); }

PropertyValue PreferencesModel::value(std::string_view key) const {
    PropertyValue value = stored_.read(key);
    if (const auto standard = defaults_.find(key); !value && standard != defaults_.end())
        value = standard->second;
    return value;
}

Colour PreferencesModel::colour(std::string_view key) const {
    return colorFromString(value(key)).value_or(kBlack);
}

/// Some flags are kept as the integers 0 and 1.
bool PreferencesModel::setFlag(std::string_view key, bool flag) {
    const auto standard = defaults_.find(key);
    if (standard != defaults_.end() && standard->second.as<std::int64_t>() != nullptr)
        return setValue(key, std::int64_t{flag ? 1 : 0});
    return setValue(key, flag);
}

bool PreferencesModel::setInteger(std::string_view key, std::int64_t integer) {
    return setValue(key, integer);
}

bool PreferencesModel::setNumber(std::string_view key, double number) {
    return setValue(key, number);
}

bool PreferencesModel::setColour(std::string_view key, const Colour& colour) {
    return setValue(key, stringFromColor(colour));
}

bool PreferencesModel::setValue(std::string_view key, const PropertyValue& value) {
    failure_.clear();
    if (stored_.read(key) != value) {
        try {
            storeSetting(key, value, stored_, notifications_);
        } catch (const std::exception& error) {
            failure_ = error.what();
        }
    }
    tell(key);
    return failure_.empty();
}

/// As painters compare it.
bool PreferencesModel::isMet(const SettingNeed& need) const {
    return need.key.empty() || integer(need.key) == need.value;
}

bool PreferencesModel::isEffective(const SettingDescription& setting) const {
    return std::ranges::all_of(setting.needs,
                               [this](const SettingNeed& need) { return isMet(need); });
}

bool PreferencesModel::isShown(const SettingDescription& setting) const {
    return std::ranges::all_of(setting.needs, [this](const SettingNeed& need) {
        return need.unmet != Unmet::hides || isMet(need);
    });
}

bool PreferencesModel::isAtDefaults(const SettingsPage& page) const {
    bool isAll = true;
    forEachSetting(page, [&](const SettingDescription& setting) {
        isAll = isAll && !stored_.read(setting.key);
    });
    return isAll;
}

std::vector<FormerSetting> PreferencesModel::reset(const SettingsPage& page) {
    std::vector<FormerSetting> former;
    forEachSetting(page, [&](const SettingDescription& setting) {
        PropertyValue value = stored_.read(setting.key);
        if (value && setValue(setting.key, {}))
            former.push_back({std::string(setting.key), std::move(value)});
    });
    return former;
}

void PreferencesModel::restore(const std::vector<FormerSetting>& former) {
    for (const auto& [key, value] : former)
        setValue(key, value);
}

Observation PreferencesModel::observe(Observer observer) {
    return observers_.observe(std::string(kChanged),
                              [told = std::move(observer)](const Notification& notification) {
                                  told(infoValue(notification.info, kKey));
                              });
}

void PreferencesModel::noteChanged(std::string_view key) {
    if (arrived_)
        arrived_();
    if (!key.empty() || stored_.readAll() != seen_)
        tell(key);
}

void PreferencesModel::hear(const Notification& notification) {
    noteChanged(infoValue(notification.info, kKey));
}

void PreferencesModel::tell(std::string_view key) {
    seen_ = stored_.readAll();
    observers_.post(kChanged, {{std::string(kKey), std::string(key)}});
}

}  // namespace vantor
