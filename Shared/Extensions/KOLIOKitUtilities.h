#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Registry.h"

namespace vantor::inline VANTOR_MODULE {

/// Walks over objects of the registry, one properties dictionary at a time; and, as class
/// operations, steps from an object to its parents and children. Who gets an object holds it.
/// Errors: none. What fails answers null, nothing or an empty walk.
/// Thread: main queue.
class KOLIOKitUtilities {
public:
    static KOLIOKitUtilities iteratorWithBSDNameMatch(std::string_view name);
    static KOLIOKitUtilities iteratorWithServiceNameMatch(std::string_view name);
    static KOLIOKitUtilities iteratorWithServiceMatch(std::string_view className);
    static KOLIOKitUtilities iteratorWithMatch(const PropertyValue::Dictionary& match);
    static KOLIOKitUtilities childIteratorFromObject(const RegistryObject& object);

    /// The properties of the next object, good until the call after it; null at the end, and
    /// for an object whose properties can't be read.
    const PropertyValue::Dictionary* next();
    /// The current object; null before the first `next` and at the end.
    const RegistryObject& object() const noexcept { return object_; }
    std::optional<std::string> objectPath() const { return pathForObject(object_); }
    std::optional<std::string> objectName() const { return nameForObject(object_); }
    /// In decimals.
    std::optional<std::string> objectID() const;

    /// The properties of the first match.
    static std::optional<PropertyValue::Dictionary>
    dictionaryWithMatch(const PropertyValue::Dictionary& match);
    static std::optional<std::string> pathForObject(const RegistryObject& object);
    static std::optional<std::string> nameForObject(const RegistryObject& object);
    static RegistryObject objectAtPath(std::string_view path);
    static std::optional<PropertyValue::Dictionary>
    propertiesFromObjectAtPath(std::string_view path);
    /// Both are good until the object is asked again or let go.
    static const PropertyValue& property(std::string_view key, const RegistryObject& fromObject);
    static const PropertyValue::Dictionary* propertiesFromObject(const RegistryObject& object);
    /// `index` steps up, or down by first children; the object itself for an index below 1.
    static RegistryObject parentAtIndex(int index, const RegistryObject& forObject);
    static RegistryObject childAtIndex(int index, const RegistryObject& forObject);
    static std::optional<PropertyValue::Dictionary>
    dictionaryForParentAtIndex(int index, const RegistryObject& forObject);
    static std::optional<PropertyValue::Dictionary>
    dictionaryForChildAtIndex(int index, const RegistryObject& forObject);
    /// The value under `key` of the nearest parent that has one, `limit` steps up at most.
    static PropertyValue searchForKeyInParents(std::string_view key, int limit,
                                               const RegistryObject& forObject);

private:
    explicit KOLIOKitUtilities(std::vector<RegistryObject> objects) noexcept;

    std::vector<RegistryObject> iterator_;
    std::size_t position_ = 0;
    RegistryObject object_;
};

}  // namespace vantor::inline VANTOR_MODULE
