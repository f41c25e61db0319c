#include "Platform/Simulated/SimulatedRegistry.h"

#include "Platform/RegistryTreeEntry.h"

namespace vantor::simulated {

class SimulatedRegistry::Entry final : public RegistryTreeEntry {
public:
    using RegistryTreeEntry::RegistryTreeEntry;
};

SimulatedRegistry::SimulatedRegistry() {
    setTree({.id = 0,
             .className = "IORegistryEntry",
             .name = "Root",
             .properties = {},
             .children = {}});
}

void SimulatedRegistry::setTree(const RegistryNode& tree) {
    for (const auto& [id, entry] : entries_)
        entry->leave();
    root_ = place(tree, nullptr);
    root_->becomeRoot();
}

std::shared_ptr<SimulatedRegistry::Entry>
SimulatedRegistry::place(const RegistryNode& node, const std::shared_ptr<Entry>& parent) {
    auto& entry = entries_[node.id];
    if (!entry)
        entry = std::make_shared<Entry>(node.id);
    entry->rename(node.className, node.name);
    entry->setProperties(node.properties);
    if (parent)
        RegistryTreeEntry::add(parent, entry);
    for (const RegistryNode& child : node.children)
        place(child, entry);
    return entry;
}

RegistryObject SimulatedRegistry::objectWithID(std::uint64_t id) const {
    const auto found = entries_.find(id);
    return found == entries_.end() ? nullptr : found->second;
}

RegistryObject SimulatedRegistry::root() { return root_; }

std::vector<RegistryObject>
SimulatedRegistry::objectsMatching(const PropertyValue::Dictionary& matching) {
    return objectsBelow(root_, matching);
}

RegistryObject SimulatedRegistry::objectAtPath(std::string_view path) {
    return objectBelow(root_, path);
}

}  // namespace vantor::simulated
