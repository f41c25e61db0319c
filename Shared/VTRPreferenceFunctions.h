#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "Foundation/Colour.h"
#include "Foundation/PropertyValue.h"

namespace vantor::inline VANTOR_MODULE {

// The settings, for the rest of the program; the key comes first. After the store's cleanup all
// of them read as false, 0 or nothing.
bool VTRBoolForKey(std::string_view key);
std::int64_t VTRIntegerForKey(std::string_view key);
float VTRFloatForKey(std::string_view key);
double VTRDoubleForKey(std::string_view key);
PropertyValue VTRObjectForKey(std::string_view key);
PropertyValue VTRDictionaryForKey(std::string_view key);
/// The stored value only, never a default.
PropertyValue VTRObjectForKeyWithoutCache(std::string_view key);
PropertyValue VTRStoredObjectForKey(std::string_view key);
PropertyValue VTRPreferenceForKey(std::string_view key);
std::optional<Colour> VTRColorForKey(std::string_view key);
void VTRSetObjectForKey(std::string_view key, const PropertyValue& value);
void VTRSetBoolForKey(std::string_view key, bool value);
void VTRSetIntegerForKey(std::string_view key, std::int64_t value);
void VTRSetFloatForKey(std::string_view key, float value);
void VTRSetDoubleForKey(std::string_view key, double value);
void VTRRemoveObjectForKey(std::string_view key);
/// Forgets this process's copy of a value that another process wrote.
void VTRRefreshKey(std::string_view key);
/// The dropdown's theme; 1 is dark.
std::int64_t dropdownTheme();

}  // namespace vantor::inline VANTOR_MODULE
