#include "Shared/DefaultSettings.h"

#include <type_traits>
#include <variant>

#include "Shared/DefaultSettingsTable.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

PropertyValue boxed(const DefaultSetting& setting, const DefaultsEnvironment& environment) {
    return std::visit(
        [&](const auto& value) -> PropertyValue {
            using Kind = std::remove_cvref_t<decltype(value)>;
            if constexpr (std::is_same_v<Kind, Colour>)
                return stringFromColor(value);
            else if constexpr (std::is_same_v<Kind, DefaultMaker>)
                return value(environment);
            else
                return value;
        },
        setting.value);
}

}  // namespace

PropertyValue::Dictionary defaultSettings(const DefaultsEnvironment& environment) {
    PropertyValue::Dictionary settings;
    for (const DefaultSetting& setting : defaultSettingsTable())
        settings.insert_or_assign(std::string(setting.key), boxed(setting, environment));
    return settings;
}

}  // namespace vantor::inline VANTOR_MODULE
