#pragma once

#include <nlohmann/json.hpp>

#include "Foundation/PropertyValue.h"

namespace vantor {

/// A property-list value as JSON: data as an array of bytes, a date as seconds since 1970,
/// nothing and numbers that aren't finite as null.
nlohmann::ordered_json jsonOfValue(const PropertyValue& value);

}  // namespace vantor
