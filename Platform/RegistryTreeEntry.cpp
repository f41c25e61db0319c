#include "Platform/RegistryTreeEntry.h"

#include <algorithm>
#include <utility>

namespace vantor {

void RegistryTreeEntry::leave() noexcept {
    parent_.reset();
    children_.clear();
    isRoot_ = false;
}

void RegistryTreeEntry::add(const std::shared_ptr<RegistryTreeEntry>& parent,
                            const std::shared_ptr<RegistryTreeEntry>& child) {
    if (std::ranges::find(parent->children_, child) != parent->children_.end())
        return;
    child->parent_ = parent;
    parent->children_.push_back(child);
}

void RegistryTreeEntry::rename(std::string_view className, std::string_view name) {
    className_ = className;
    name_ = name;
}

void RegistryTreeEntry::setProperties(PropertyValue::Dictionary properties) {
    properties_ = std::move(properties);
}

std::optional<std::string> RegistryTreeEntry::path() const {
    const RegistryTreeEntry* top = this;
    for (auto above = parent_.lock(); above; above = above->parent_.lock())
        top = above.get();
    return top->isRoot_ ? pathBelow(*top, *this) : std::nullopt;
}

const PropertyValue& RegistryTreeEntry::property(std::string_view key) {
    static const PropertyValue kNothing;
    const auto found = properties_.find(key);
    return found == properties_.end() ? kNothing : found->second;
}

std::vector<RegistryObject> RegistryTreeEntry::children() const {
    return {children_.begin(), children_.end()};
}

}  // namespace vantor
