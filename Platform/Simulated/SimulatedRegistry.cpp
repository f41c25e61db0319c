#include "Platform/Simulated/SimulatedRegistry.h"

#include <utility>

namespace vantor::simulated {

class SimulatedRegistry::Entry final : public RegistryEntry {
public:
    explicit Entry(std::uint64_t id) noexcept : id_(id) {}

    void leave() noexcept {
        parent_.reset();
        children_.clear();
        isInTree_ = false;
    }
    void enter(const RegistryNode& node, const std::shared_ptr<Entry>& parent) {
        className_ = node.className;
        name_ = node.name;
        properties_ = node.properties;
        parent_ = parent;
        isInTree_ = true;
    }
    void setChildren(std::vector<std::shared_ptr<Entry>> children) {
        children_ = std::move(children);
    }

    std::uint64_t entryID() const noexcept override { return id_; }
    std::string_view className() const noexcept override { return className_; }
    std::optional<std::string> name() const override { return name_; }
    std::optional<std::string> path() const override {
        const Entry* top = this;
        for (auto above = parent_.lock(); above; above = above->parent_.lock())
            top = above.get();
        return isInTree_ ? pathBelow(*top, *this) : std::nullopt;
    }
    const PropertyValue::Dictionary* properties() override { return &properties_; }
    const PropertyValue& property(std::string_view key) override {
        static const PropertyValue kNothing;
        const auto found = properties_.find(key);
        return found == properties_.end() ? kNothing : found->second;
    }
    RegistryObject parent() const override { return parent_.lock(); }
    std::vector<RegistryObject> children() const override {
        return {children_.begin(), children_.end()};
    }

private:
    std::uint64_t id_;
    bool isInTree_ = false;
    std::string className_, name_;
    PropertyValue::Dictionary properties_;
    std::weak_ptr<Entry> parent_;
    std::vector<std::shared_ptr<Entry>> children_;
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
}

std::shared_ptr<SimulatedRegistry::Entry>
SimulatedRegistry::place(const RegistryNode& node, const std::shared_ptr<Entry>& parent) {
    auto& entry = entries_[node.id];
    if (!entry)
        entry = std::make_shared<Entry>(node.id);
    entry->enter(node, parent);
    std::vector<std::shared_ptr<Entry>> children;
    for (const RegistryNode& child : node.children)
        children.push_back(place(child, entry));
    entry->setChildren(std::move(children));
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
