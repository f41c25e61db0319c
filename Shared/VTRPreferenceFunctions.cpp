#include "Shared/VTRPreferenceFunctions.h"

#include "Shared/VTRPreferences.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

template <class Operation>
auto withStore(Operation&& operation) {
    VTRPreferences* const store = VTRPreferences::sharedPreferences();
    using Result = decltype(operation(*store));
    return store == nullptr ? Result() : operation(*store);
}

PropertyValue cachedObject(std::string_view key) {
    return withStore([&](VTRPreferences& store) { return store.objectForKey(key, Caching::on); });
}

PropertyValue storedObject(std::string_view key) {
    return withStore([&](VTRPreferences& store) { return store.prefenceValueForKey(key); });
}

}  // namespace

bool VTRBoolForKey(std::string_view key) { return cachedObject(key).boolValue(); }
std::int64_t VTRIntegerForKey(std::string_view key) { return cachedObject(key).integerValue(); }
float VTRFloatForKey(std::string_view key) { return cachedObject(key).floatValue(); }
double VTRDoubleForKey(std::string_view key) { return cachedObject(key).doubleValue(); }
PropertyValue VTRObjectForKey(std::string_view key) { return cachedObject(key); }
PropertyValue VTRDictionaryForKey(std::string_view key) { return cachedObject(key); }

PropertyValue VTRObjectForKeyWithoutCache(std::string_view key) {
    return withStore([&](VTRPreferences& store) { return store.objectForKey(key, Caching::off); });
}

PropertyValue VTRStoredObjectForKey(std::string_view key) { return storedObject(key); }
PropertyValue VTRPreferenceForKey(std::string_view key) { return storedObject(key); }

std::optional<Colour> VTRColorForKey(std::string_view key) {
    return withStore([&](VTRPreferences& store) { return std::optional(store.colorForKey(key)); });
}

void VTRSetObjectForKey(std::string_view key, const PropertyValue& value) {
    withStore([&](VTRPreferences& store) { store.setObject(value, key); });
}

void VTRSetBoolForKey(std::string_view key, bool value) { VTRSetObjectForKey(key, value); }
void VTRSetIntegerForKey(std::string_view key, std::int64_t value) {
    VTRSetObjectForKey(key, value);
}
void VTRSetFloatForKey(std::string_view key, float value) { VTRSetObjectForKey(key, value); }
void VTRSetDoubleForKey(std::string_view key, double value) { VTRSetObjectForKey(key, value); }

void VTRRemoveObjectForKey(std::string_view key) {
    withStore([&](VTRPreferences& store) { store.removeObjectForKey(key); });
}

void VTRRefreshKey(std::string_view key) {
    withStore([&](VTRPreferences& store) { store.resetValueForKey(key); });
}

std::int64_t dropdownTheme() {
    const VTRPreferences* const store = VTRPreferences::sharedPreferences();
    if (store == nullptr || !VTRBoolForKey("Theme-SeperateStyles"))
        return VTRIntegerForKey("DropdownTheme");
    return VTRIntegerForKey(store->isMenubarDark() ? "DropdownTheme-Dark" : "DropdownTheme-Light");
}

}  // namespace vantor::inline VANTOR_MODULE
