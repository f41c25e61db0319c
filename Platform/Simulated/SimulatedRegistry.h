#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Platform/Registry.h"

namespace vantor::simulated {

/// One object of a scripted tree. IDs are unique within a tree.
struct RegistryNode {
    std::uint64_t id = 0;
    std::string className, name;
    PropertyValue::Dictionary properties;
    std::vector<RegistryNode> children;
};

/// A tree that is replaced whole. Nodes of the same ID are the same object, however often the
/// tree changes.
class SimulatedRegistry final : public Registry {
public:
    SimulatedRegistry();

    void setTree(const RegistryNode& tree);
    /// Null for an ID that no tree had yet.
    RegistryObject objectWithID(std::uint64_t id) const;

    RegistryObject root() override;
    std::vector<RegistryObject> objectsMatching(const PropertyValue::Dictionary& matching) override;
    RegistryObject objectAtPath(std::string_view path) override;

private:
    class Entry;
    std::shared_ptr<Entry> place(const RegistryNode& node, const std::shared_ptr<Entry>& parent);

    std::map<std::uint64_t, std::shared_ptr<Entry>> entries_;  // all that ever were
    std::shared_ptr<Entry> root_;
};

}  // namespace vantor::simulated
