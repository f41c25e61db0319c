#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/PropertyValue.h"

namespace vantor {

class RegistryEntry;

/// An object of the registry, or null. Two of them are the same object when they are equal. Who
/// holds one keeps it: an object that left the machine keeps its last properties, and has no
/// parent and no children.
using RegistryObject = std::shared_ptr<RegistryEntry>;

/// What the registry tells of one object.
/// Shape:  what is answered by reference is good until the object is asked again or let go.
/// Errors: an absent property reads as nothing, properties that can't be read as null.
/// Thread: main queue only. No operation blocks; reading properties again doesn't allocate.
class RegistryEntry {
public:
    virtual ~RegistryEntry() = default;
    /// Stays the same for as long as the program runs, and is no other object's.
    virtual std::uint64_t entryID() const noexcept = 0;
    virtual std::string_view className() const noexcept = 0;
    virtual std::optional<std::string> name() const = 0;
    /// "IOService:" and the names down to this object, each behind a slash; nothing for one that
    /// left.
    virtual std::optional<std::string> path() const = 0;
    virtual const PropertyValue::Dictionary* properties() = 0;
    virtual const PropertyValue& property(std::string_view key) = 0;
    virtual RegistryObject parent() const = 0;
    virtual std::vector<RegistryObject> children() const = 0;
};

// Keys of a matching dictionary; any other key names a property that an object must have, with
// that value.
inline constexpr std::string_view kMatchServiceClass = "IOProviderClass";
inline constexpr std::string_view kMatchServiceName = "IONameMatch";

/// Port: the tree of the machine's devices. Main queue only.
class Registry {
public:
    virtual ~Registry() = default;
    virtual RegistryObject root() = 0;
    /// The objects that have all that `matching` asks for, depth first, parents before their
    /// children. A class is matched exactly. An empty dictionary matches nothing.
    virtual std::vector<RegistryObject>
    objectsMatching(const PropertyValue::Dictionary& matching) = 0;
    /// Null where the path leads nowhere.
    virtual RegistryObject objectAtPath(std::string_view path) = 0;
};

/// Whether `entry` has all that `matching` asks for.
bool matches(RegistryEntry& entry, const PropertyValue::Dictionary& matching);

/// The matching objects of a whole tree, in the registry's order.
std::vector<RegistryObject> objectsBelow(const RegistryObject& root,
                                         const PropertyValue::Dictionary& matching);

/// The object that `path` leads to from `root`; of several with one path, the first.
RegistryObject objectBelow(const RegistryObject& root, std::string_view path);

/// Where `entry` is in its tree, if its parents lead up to `root`.
std::optional<std::string> pathBelow(const RegistryEntry& root, const RegistryEntry& entry);

}  // namespace vantor
