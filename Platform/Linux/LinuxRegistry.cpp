#include "Platform/Linux/LinuxRegistry.h"

namespace vantor {
namespace {

class RootEntry final : public RegistryEntry {
public:
    std::uint64_t entryID() const noexcept override { return 0; }
    std::string_view className() const noexcept override { return "IORegistryEntry"; }
    std::optional<std::string> name() const override { return "Root"; }
    std::optional<std::string> path() const override { return pathBelow(*this, *this); }
    const PropertyValue::Dictionary* properties() override { return &properties_; }
    const PropertyValue& property(std::string_view) override { return nothing_; }
    RegistryObject parent() const override { return nullptr; }
    std::vector<RegistryObject> children() const override { return {}; }

private:
    PropertyValue::Dictionary properties_;
    PropertyValue nothing_;
};

}  // namespace

LinuxRegistry::LinuxRegistry() : root_(std::make_shared<RootEntry>()) {}

}  // namespace vantor
