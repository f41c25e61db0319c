#pragma once

#include <optional>

#include "Foundation/PropertyValue.h"

struct sd_bus_message;

namespace vantor {

/// Adds an argument: an integer as "x", a text as "s", an array as "av". False where the value is
/// none of these or isn't what a bus carries; the message is of no use then.
bool appendBusArgument(sd_bus_message& message, const PropertyValue& value);

/// Reads the dictionary, "a{sv}", that is all that a message has; nothing for any other message,
/// and for one that is too large or too deep. Numbers keep their kinds as far as there are such
/// kinds here; what there is no kind for is left out.
std::optional<PropertyValue::Dictionary> readBusDictionary(sd_bus_message& message);

/// Whether what a message has is neither too large nor too deep; it is read from its beginning
/// afterwards.
bool isWithinBusBounds(sd_bus_message& message);

}  // namespace vantor
