#pragma once

#include <nlohmann/json.hpp>

#include "Foundation/PropertyValue.h"
#include "Shared/ProcessContext.h"
#include "Shared/VTRMenuExtra.h"

namespace vantor {

/// The state of a running program: its collectors with all their samples, its item, and what it
/// knows of the desktop.
nlohmann::ordered_json programState(ProcessContext& context, VTRMenuExtra& extra, double length);

/// A property-list value as JSON: data as an array of bytes, a date as seconds since 1970,
/// nothing and numbers that aren't finite as null.
nlohmann::ordered_json jsonOfValue(const PropertyValue& value);

}  // namespace vantor
