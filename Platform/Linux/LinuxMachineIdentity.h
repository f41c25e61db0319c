#pragma once

#include <string_view>
#include <utility>

#include "Platform/Linux/KernelFiles.h"
#include "Platform/MachineIdentity.h"

namespace vantor {

/// The model identifier is the firmware's product name. Machines without that table, such as most
/// virtual ones, have none.
class LinuxMachineIdentity final : public MachineIdentity {
public:
    explicit LinuxMachineIdentity(KernelFiles files = {}) : files_(std::move(files)) {}
    std::optional<std::string> modelIdentifier() const override;
    /// 10.11, because all newer drawing is on.
    SystemVersion systemVersion() const noexcept override { return {10, 11, 0}; }

private:
    KernelFiles files_;
};

/// A product name as a model identifier: without blanks around it, at most 127 bytes. Nothing
/// where it's empty or isn't printable ASCII.
std::optional<std::string> modelIdentifierOf(std::string_view productName);

}  // namespace vantor
