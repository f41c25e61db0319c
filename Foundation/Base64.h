#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Foundation/PropertyValue.h"

namespace vantor {

/// The bytes of a text in base64 with its padding, or nothing where it is anything else.
std::optional<PropertyValue::Data> dataFromBase64(std::string_view text);

/// The other way round.
std::string base64FromData(const PropertyValue::Data& data);

}  // namespace vantor
