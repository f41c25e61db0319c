#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Platform/Ports.h"

namespace vantor::inline VANTOR_MODULE {

class PlatformMac;

/// Finds out once which machine this is, and picks an object of the matching model: a plain
/// `PlatformMac` for one that isn't known, a `FauxMac` for one that only pretends.
/// Thread: main queue; the machine is read-only after that.
class PlatformController {
public:
    /// `ports` outlive it.
    explicit PlatformController(const Ports& ports);
    ~PlatformController();

    /// The shared controller's machine; makes the controller on first use.
    static PlatformMac& currentPlatform();
    /// Null as long as nobody asked for the machine.
    static PlatformController* sharedPlatformController();
    /// Asked of the machine each time.
    static std::optional<std::string> modelIdentifier();
    /// By the machine's own identifier, whatever it pretends.
    static bool isLaptop();

    PlatformMac& platform() const noexcept { return *curentPlatform_; }
    bool fauxMac() const noexcept { return faux_; }

private:
    std::unique_ptr<PlatformMac> loadCurrentPlatform(const Ports& ports) const;

    bool faux_;
    std::unique_ptr<PlatformMac> curentPlatform_;
};

/// Whether the identifier is that of a laptop.
bool isLaptopModel(const std::optional<std::string>& modelIdentifier);

}  // namespace vantor::inline VANTOR_MODULE
