#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Foundation/PropertyValue.h"

namespace vantor {

// Property lists as files carry them: XML or binary in, XML out. Independent of the C locale.
// Integers come out signed 64-bit, or unsigned 64-bit where they don't fit; reals as doubles.
// Thread: any.

/// The value of a property list, XML or binary; nothing where `bytes` isn't one.
std::optional<PropertyValue> propertyListValue(std::string_view bytes);

/// The XML form. A nothing inside an array or dictionary is left out; a float is written as a
/// real. Reading it back gives equal values (a float as a double, narrow integers widened).
std::string propertyListXML(const PropertyValue& value);

}  // namespace vantor
