#pragma once

#include <string_view>
#include <utility>

#include "Platform/Linux/KernelFiles.h"
#include "Platform/MachineIdentity.h"

namespace vantor {

/// What the firmware's tables and the kernel tell. The model identifier is the product name, and
/// the main board's ID its name. Machines without those tables, such as most virtual ones, have
/// neither. The serial number is for root alone: others have none.
class LinuxMachineIdentity final : public MachineIdentity {
public:
    explicit LinuxMachineIdentity(KernelFiles files = {}) : files_(std::move(files)) {}
    std::optional<std::string> modelIdentifier() const override;
    std::optional<std::string> serialNumber() const override;
    std::optional<PropertyValue::Data> boardID() const override;
    std::optional<std::string> processorBrand() const override;
    /// The highest that the processor is driven at, else what it runs at now.
    std::optional<std::int64_t> processorHertz() const override;
    std::optional<std::int64_t> memoryBytes() const override;
    /// Nothing: what the firmware says of memory slots is for root alone.
    std::optional<std::string> memoryProfile() const override { return std::nullopt; }
    std::optional<HardwareAddress> hardwareAddress(std::string_view interface) const override;
    /// 10.11, because all newer drawing is on.
    SystemVersion systemVersion() const noexcept override { return {10, 11, 0}; }

private:
    std::optional<std::string> firmwareText(const char* name) const;
    KernelFiles files_;
};

/// A product name as a model identifier: without blanks around it, at most 127 bytes. Nothing
/// where it's empty or isn't printable ASCII.
std::optional<std::string> modelIdentifierOf(std::string_view productName);

/// "00:1b:63:84:45:e6", in either case.
std::optional<HardwareAddress> hardwareAddressOf(std::string_view text) noexcept;

}  // namespace vantor
