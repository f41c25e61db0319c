#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Linux/DeviceFiles.h"
#include "Platform/Linux/KernelFiles.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor::test {

/// A device on the PCI bus, as sysfs shows it.
struct PCIDevice {
    std::string address;
    std::vector<std::string> bridges{};  // between the root bus and the device
    std::uint32_t classCode = 0x030000;
    std::uint16_t vendor = 0, device = 0;
    std::string driver{};
    std::string runtimeStatus = "active", powerControl = "on";  // "" leaves the file away
    std::map<std::string, std::string> files{};                 // further ones, by their names
};

struct Connector {
    std::string name;  // "DP-1"
    std::string status = "connected", enabled = "enabled";
    std::string edid{}, modes = "1920x1080\n1280x720\n";
};

/// Folders that stand for /sys and /proc. The layout of sysfs for PCI devices and DRM connectors
/// is that of Linux 6.1; what drivers add is told where it is used.
class DeviceTree {
public:
    DeviceTree();

    KernelFiles kernel() const { return {.proc = root_ / "proc", .sys = root_ / "sys"}; }
    std::filesystem::path root() const { return root_.path(); }
    std::filesystem::path folderOf(const std::string& address) const;

    void add(const PCIDevice& device);
    void remove(const std::string& address);
    void write(const std::string& address, const std::string& file, std::string_view text);
    void addCard(const std::string& address, int card, const std::vector<Connector>& connectors);

    /// A program that has the device open: the text of its descriptor.
    void writeClient(int process, int descriptor, std::string_view fdinfo);
    void writeProc(const std::string& file, std::string_view text);

private:
    std::filesystem::path linkOf(const std::string& address) const;
    TemporaryFolder root_;
};

/// Reads the real files, and counts what was opened or listed below each device.
class CountingDeviceFiles final : public DeviceFiles {
public:
    std::optional<std::string_view> read(const std::string& path,
                                         std::span<char> into) noexcept override;
    bool exists(const std::string& path) noexcept override { return files_.exists(path); }
    std::vector<std::string> names(const std::string& folder) override;
    std::optional<std::string> linkTarget(const std::string& path) override {
        return files_.linkTarget(path);
    }

    /// The names below the device of what was touched since the last call, sorted, each once.
    std::vector<std::string> touchedBelow(const std::string& address);
    std::size_t count() const noexcept { return touched_.size(); }
    void forget() { touched_.clear(); }

private:
    SystemDeviceFiles files_;
    std::vector<std::string> touched_;
};

/// A sound EDID of one block.
struct EDIDParts {
    std::string vendor = "DEL", name = "U2720Q", serialText = "ABC123";
    std::uint16_t product = 0x41A8;
    std::uint32_t serial = 0x12345678;
    unsigned width = 3840, height = 2160, widthCentimetres = 60, heightCentimetres = 34;
};
std::string edidBytes(const EDIDParts& parts = {});
/// Makes the sum of the first block right again.
void correctEDIDSum(std::string& edid);

// Machines. Each is as its drivers show it in the kernel that is named.

inline constexpr const char* kDiscreteAddress = "0000:03:00.0";
inline constexpr const char* kIntegratedAddress = "0000:00:02.0";
inline constexpr const char* kAPUAddress = "0000:c1:00.0";
inline constexpr const char* kExternalAddress = "0000:3d:00.0";

/// amdgpu of Linux 6.1: a card with its own memory, and one display.
PCIDevice discreteAMD();
/// amdgpu of Linux 6.1: the graphics of a processor; beside it stands the security engine.
PCIDevice integratedAMD();
PCIDevice securityEngineOfAMD();
/// amdgpu of Linux 6.1: a card in a box behind a Thunderbolt port.
PCIDevice externalAMD();
/// i915 of Linux 6.5, or xe of Linux 6.11.
PCIDevice integratedIntel(std::string driver = "i915");
/// nvidia 535 on Linux 6.1.
PCIDevice discreteNVIDIA(std::string address = kDiscreteAddress,
                         std::string bridge = "0000:00:01.0");

}  // namespace vantor::test
