#include "Shared/Extensions/KOLIOKitUtilities.h"

#include <utility>

#include <fmt/format.h>

#include "Platform/Ports.h"
#include "Shared/ProcessContext.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr const char* kBSDName = "BSD Name";

Registry& registry() { return ProcessContext::current().ports().registry; }

PropertyValue::Dictionary matchOf(std::string_view key, std::string_view value) {
    return {{std::string(key), value}};
}

std::optional<PropertyValue::Dictionary> copyOf(const PropertyValue::Dictionary* properties) {
    return properties != nullptr ? std::optional(*properties) : std::nullopt;
}

RegistryObject firstChild(const RegistryObject& object) {
    const auto children = object->children();
    return children.empty() ? nullptr : children.front();
}

}  // namespace

KOLIOKitUtilities::KOLIOKitUtilities(std::vector<RegistryObject> objects) noexcept
    : iterator_(std::move(objects)) {}

KOLIOKitUtilities KOLIOKitUtilities::iteratorWithBSDNameMatch(std::string_view name) {
    return iteratorWithMatch(matchOf(kBSDName, name));
}

KOLIOKitUtilities KOLIOKitUtilities::iteratorWithServiceNameMatch(std::string_view name) {
    return iteratorWithMatch(matchOf(kMatchServiceName, name));
}

KOLIOKitUtilities KOLIOKitUtilities::iteratorWithServiceMatch(std::string_view className) {
    return iteratorWithMatch(matchOf(kMatchServiceClass, className));
}

KOLIOKitUtilities KOLIOKitUtilities::iteratorWithMatch(const PropertyValue::Dictionary& match) {
    return KOLIOKitUtilities(registry().objectsMatching(match));
}

KOLIOKitUtilities KOLIOKitUtilities::childIteratorFromObject(const RegistryObject& object) {
    return KOLIOKitUtilities(object ? object->children() : std::vector<RegistryObject>{});
}

const PropertyValue::Dictionary* KOLIOKitUtilities::next() {
    object_ = position_ < iterator_.size() ? std::move(iterator_[position_++]) : nullptr;
    return propertiesFromObject(object_);
}

std::optional<std::string> KOLIOKitUtilities::objectID() const {
    return object_ ? std::optional(fmt::format("{}", object_->entryID())) : std::nullopt;
}

std::optional<PropertyValue::Dictionary>
KOLIOKitUtilities::dictionaryWithMatch(const PropertyValue::Dictionary& match) {
    KOLIOKitUtilities iterator = iteratorWithMatch(match);
    return copyOf(iterator.next());
}

std::optional<std::string> KOLIOKitUtilities::pathForObject(const RegistryObject& object) {
    return object ? object->path() : std::nullopt;
}

std::optional<std::string> KOLIOKitUtilities::nameForObject(const RegistryObject& object) {
    return object ? object->name() : std::nullopt;
}

RegistryObject KOLIOKitUtilities::objectAtPath(std::string_view path) {
    return registry().objectAtPath(path);
}

std::optional<PropertyValue::Dictionary>
KOLIOKitUtilities::propertiesFromObjectAtPath(std::string_view path) {
    return copyOf(propertiesFromObject(objectAtPath(path)));
}

const PropertyValue& KOLIOKitUtilities::property(std::string_view key,
                                                 const RegistryObject& fromObject) {
    static const PropertyValue kNothing;
    return fromObject ? fromObject->property(key) : kNothing;
}

const PropertyValue::Dictionary*
KOLIOKitUtilities::propertiesFromObject(const RegistryObject& object) {
    return object ? object->properties() : nullptr;
}

RegistryObject KOLIOKitUtilities::parentAtIndex(int index, const RegistryObject& forObject) {
    RegistryObject object = forObject;
    for (int step = 0; step < index && object; ++step)
        object = object->parent();
    return object;
}

RegistryObject KOLIOKitUtilities::childAtIndex(int index, const RegistryObject& forObject) {
    RegistryObject object = forObject;
    for (int step = 0; step < index && object; ++step)
        object = firstChild(object);
    return object;
}

std::optional<PropertyValue::Dictionary>
KOLIOKitUtilities::dictionaryForParentAtIndex(int index, const RegistryObject& forObject) {
    return copyOf(propertiesFromObject(parentAtIndex(index, forObject)));
}

std::optional<PropertyValue::Dictionary>
KOLIOKitUtilities::dictionaryForChildAtIndex(int index, const RegistryObject& forObject) {
    return copyOf(propertiesFromObject(childAtIndex(index, forObject)));
}

PropertyValue KOLIOKitUtilities::searchForKeyInParents(std::string_view key, int limit,
                                                       const RegistryObject& forObject) {
    RegistryObject object = forObject;
    for (int step = 0; step < limit && object; ++step) {
        object = object->parent();
        const auto* const properties = propertiesFromObject(object);
        if (properties == nullptr)
            continue;
        if (const auto found = properties->find(key); found != properties->end())
            return found->second;
    }
    return {};
}

}  // namespace vantor::inline VANTOR_MODULE
