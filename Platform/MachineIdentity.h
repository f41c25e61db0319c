#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Foundation/PropertyValue.h"

namespace vantor {

struct SystemVersion {
    int major = 0, minor = 0, bugfix = 0;
    long error = 0;  // what the system answered in place of the version; 0 where it told
};

using HardwareAddress = std::array<std::uint8_t, 6>;

/// Port: which machine this is. Nothing where the system doesn't tell. Any thread; only
/// `memoryProfile` may take long.
class MachineIdentity {
public:
    virtual ~MachineIdentity() = default;
    /// The model's identifier, such as "MacBookPro11,1"; at most 127 bytes of ASCII.
    virtual std::optional<std::string> modelIdentifier() const = 0;
    virtual std::optional<std::string> serialNumber() const = 0;
    /// The main board's, as NUL-terminated UTF-8.
    virtual std::optional<PropertyValue::Data> boardID() const = 0;
    /// What the processor calls itself.
    virtual std::optional<std::string> processorBrand() const = 0;
    virtual std::optional<std::int64_t> processorHertz() const = 0;
    virtual std::optional<std::int64_t> memoryBytes() const = 0;
    /// A property list, as text, with a dictionary for each memory slot.
    virtual std::optional<std::string> memoryProfile() const = 0;
    /// Of the network interface of that name.
    virtual std::optional<HardwareAddress> hardwareAddress(std::string_view interface) const = 0;
    /// The version by which newer drawing is switched on.
    virtual SystemVersion systemVersion() const noexcept = 0;
};

}  // namespace vantor
