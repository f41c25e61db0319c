#include "Platform/Registry.h"

#include <algorithm>

namespace vantor {
namespace {

constexpr std::string_view kPlane = "IOService:";

bool has(RegistryEntry& entry, std::string_view key, const PropertyValue& value) {
    if (key == kMatchServiceClass)
        return value.text() != nullptr && entry.className() == *value.text();
    if (key == kMatchServiceName)
        return value.text() != nullptr && entry.name() == *value.text();
    return entry.property(key) == value;
}

void collect(const RegistryObject& object, const PropertyValue::Dictionary& matching,
             std::vector<RegistryObject>& into) {
    if (matches(*object, matching))
        into.push_back(object);
    for (const RegistryObject& child : object->children())
        collect(child, matching, into);
}

/// `path` is what is left behind `object`: "", or "/name..."; a name may hold a slash itself.
RegistryObject follow(const RegistryObject& object, std::string_view path) {
    if (path.empty())
        return object;
    if (path.front() != '/')
        return nullptr;
    const std::string_view rest = path.substr(1);
    for (const RegistryObject& child : object->children()) {
        const std::string name = child->name().value_or("");
        if (!rest.starts_with(name))
            continue;
        if (RegistryObject found = follow(child, rest.substr(name.size())))
            return found;
    }
    return nullptr;
}

}  // namespace

bool matches(RegistryEntry& entry, const PropertyValue::Dictionary& matching) {
    return !matching.empty() && std::ranges::all_of(matching, [&](const auto& wanted) {
        return has(entry, wanted.first, wanted.second);
    });
}

std::vector<RegistryObject> objectsBelow(const RegistryObject& root,
                                         const PropertyValue::Dictionary& matching) {
    std::vector<RegistryObject> found;
    collect(root, matching, found);
    return found;
}

RegistryObject objectBelow(const RegistryObject& root, std::string_view path) {
    if (!path.starts_with(kPlane))
        return nullptr;
    return follow(root, path.substr(kPlane.size()));
}

std::optional<std::string> pathBelow(const RegistryEntry& root, const RegistryEntry& entry) {
    if (&entry == &root)
        return std::string(kPlane);
    const RegistryObject parent = entry.parent();
    auto path = parent ? pathBelow(root, *parent) : std::nullopt;
    return path ? std::optional(*path + "/" + entry.name().value_or("")) : std::nullopt;
}

}  // namespace vantor
