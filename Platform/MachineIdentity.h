#pragma once

#include <optional>
#include <string>

namespace vantor {

struct SystemVersion {
    int major = 0, minor = 0, bugfix = 0;
};

/// Port: which machine this is. Any thread.
class MachineIdentity {
public:
    virtual ~MachineIdentity() = default;
    /// The model's identifier, such as "MacBookPro11,1"; at most 127 bytes of ASCII.
    virtual std::optional<std::string> modelIdentifier() const = 0;
    /// The version by which newer drawing is switched on.
    virtual SystemVersion systemVersion() const noexcept = 0;
};

}  // namespace vantor
