#pragma once

#include "Platform/Registry.h"

namespace vantor {

/// The root of the machine's devices.
class LinuxRegistry final : public Registry {
public:
    LinuxRegistry();
    RegistryObject root() override { return root_; }
    std::vector<RegistryObject>
    objectsMatching(const PropertyValue::Dictionary& matching) override {
        return objectsBelow(root_, matching);
    }
    RegistryObject objectAtPath(std::string_view path) override { return objectBelow(root_, path); }

private:
    RegistryObject root_;
};

}  // namespace vantor
