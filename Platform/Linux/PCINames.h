#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace vantor {

struct PCIID {
    std::uint16_t vendor = 0, device = 0;
    bool operator==(const PCIID&) const = default;
};

struct PCIName {
    std::string vendor, device;  // "" where it isn't listed
};

/// What a text in the format of pci.ids calls a device.
PCIName pciNameIn(std::string_view text, PCIID id);

/// What to call a graphics processor: "AMD Radeon RX 6800" of "Advanced Micro Devices, Inc." and
/// "Navi 21 [Radeon RX 6800]"; its numbers where it has no name.
std::string graphicsModel(PCIID id, const PCIName& name);

/// The same by the list that is installed at `root`, which is read once and let go.
std::string graphicsModelByList(PCIID id, const std::filesystem::path& root);

}  // namespace vantor
