#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Linux/DeviceFiles.h"
#include "Platform/Linux/EDID.h"
#include "Platform/Linux/KernelFiles.h"
#include "Platform/Linux/PCINames.h"

namespace vantor {

/// A plug with a display in it.
struct DisplayConnector {
    std::string name;       // "card0-DP-1"
    bool isDriven = false;  // it shows a picture
    std::optional<EDID> edid;
    std::uint32_t widthPixels = 0, heightPixels = 0;  // of the first mode, 0 where there is none
};

/// A graphics processor on the PCI bus, by what the kernel tells without touching it.
struct GraphicsDevice {
    std::string address;               // "0000:03:00.0"
    std::string folder;                // of the device in sysfs
    std::vector<std::string> parents;  // "pci0000:00", "0000:00:01.0", from the root down
    PCIID id;
    std::uint32_t classCode = 0;
    std::string driver;  // "" for one that nobody drives
    bool isIntegrated = false;

    bool operator==(const GraphicsDevice&) const = default;
};

/// The processor's own one first, then by their addresses. Reads the `uevent` file of each PCI
/// device and nothing else of it.
std::vector<GraphicsDevice> findGraphicsDevices(DeviceFiles& files, const KernelFiles& kernel);

/// Touches the device's files, so only where its power allows that.
std::vector<DisplayConnector> readConnectors(DeviceFiles& files, const std::string& folder);

/// The device's name by its driver, or nothing. Touches it, too.
std::optional<std::string> modelByDriver(DeviceFiles& files, const KernelFiles& kernel,
                                         const GraphicsDevice& device);

}  // namespace vantor
