#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Registry.h"

namespace vantor {

/// An object of a registry that keeps its tree in memory. It stays itself however often it leaves
/// the tree and comes back.
/// Thread: main queue only.
class RegistryTreeEntry : public RegistryEntry {
public:
    explicit RegistryTreeEntry(std::uint64_t id, std::string_view className = {},
                               std::string_view name = {})
        : id_(id), className_(className), name_(name) {}

    /// Has no parent and no children from now on, and isn't the root.
    void leave() noexcept;
    /// The tree is what hangs on it.
    void becomeRoot() noexcept { isRoot_ = true; }
    /// Puts `child` behind the children that `parent` has; one that is there already stays.
    static void add(const std::shared_ptr<RegistryTreeEntry>& parent,
                    const std::shared_ptr<RegistryTreeEntry>& child);
    void rename(std::string_view className, std::string_view name);
    void setProperties(PropertyValue::Dictionary properties);

    std::uint64_t entryID() const noexcept override { return id_; }
    std::string_view className() const noexcept override { return className_; }
    std::optional<std::string> name() const override { return name_; }
    std::optional<std::string> path() const override;
    const PropertyValue::Dictionary* properties() override { return &properties_; }
    const PropertyValue& property(std::string_view key) override;
    RegistryObject parent() const override { return parent_.lock(); }
    std::vector<RegistryObject> children() const override;

protected:
    PropertyValue::Dictionary properties_;

private:
    std::uint64_t id_;
    bool isRoot_ = false;
    std::string className_, name_;
    std::weak_ptr<RegistryTreeEntry> parent_;
    std::vector<std::shared_ptr<RegistryTreeEntry>> children_;
};

}  // namespace vantor
