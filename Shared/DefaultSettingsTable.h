#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <variant>

#include "Foundation/Colour.h"
#include "Foundation/PropertyValue.h"

namespace vantor::inline VANTOR_MODULE {

struct DefaultsEnvironment;

using DefaultMaker = PropertyValue (*)(const DefaultsEnvironment&);

/// One row of the table. A colour by its components is stored in two decimals, one that is a text
/// as it stands.
struct DefaultSetting {
    std::string_view key;
    std::variant<bool, std::int64_t, double, std::string_view, Colour, DefaultMaker> value;
};

std::span<const DefaultSetting> defaultSettingsTable() noexcept;

}  // namespace vantor::inline VANTOR_MODULE
