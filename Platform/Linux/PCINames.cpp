#include "Platform/Linux/PCINames.h"

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <optional>

#include <fmt/format.h>

#include "Platform/Linux/DeviceFiles.h"

namespace vantor {
namespace {

constexpr const char* kLists[] = {"usr/share/misc/pci.ids", "usr/share/hwdata/pci.ids"};
constexpr std::uintmax_t kLargestListBytes = std::uintmax_t{16} << 20;

/// Vendors whose short names everybody knows.
struct Vendor {
    std::uint16_t id;
    std::string_view name;
};
constexpr Vendor kVendors[] = {{0x8086, "Intel"},  {0x1002, "AMD"},    {0x10de, "NVIDIA"},
                               {0x15ad, "VMware"}, {0x1a03, "ASPEED"}, {0x102b, "Matrox"},
                               {0x1b36, "QEMU"}};

/// The name behind "1002  " if the line begins with that number.
std::optional<std::string_view> nameOf(std::string_view line, std::uint16_t number) noexcept {
    constexpr std::size_t kDigits = 4;
    if (line.size() < kDigits || wholeCount(line.substr(0, kDigits), 16) != number)
        return std::nullopt;
    return trimmedText(line.substr(kDigits));
}

/// "Radeon RX 6800" of "Navi 21 [Radeon RX 6800]": what is sold, not what was designed.
std::string_view soldName(std::string_view name) noexcept {
    const auto open = name.rfind('[');
    const auto close = name.rfind(']');
    if (open == name.npos || close == name.npos || close < open + 2)
        return name;
    return name.substr(open + 1, close - open - 1);
}

std::string vendorName(PCIID id, std::string_view listed) {
    const auto* const known = std::ranges::find(kVendors, id.vendor, &Vendor::id);
    return std::string(known != std::end(kVendors) ? known->name : listed);
}

}  // namespace

PCIName pciNameIn(std::string_view text, PCIID id) {
    PCIName name;
    bool isInVendor = false;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (line.starts_with('#') || line.empty() || line.starts_with("\t\t"))
            continue;
        if (line.starts_with('C'))
            break;  // the classes follow, which have numbers of their own
        if (!line.starts_with('\t')) {
            if (isInVendor)
                break;
            const auto vendor = nameOf(line, id.vendor);
            isInVendor = vendor.has_value();
            name.vendor = vendor.value_or("");
        } else if (const auto device =
                       isInVendor ? nameOf(line.substr(1), id.device) : std::nullopt) {
            name.device = *device;
            break;
        }
    }
    return name;
}

std::string graphicsModel(PCIID id, const PCIName& name) {
    const std::string vendor = vendorName(id, name.vendor);
    const std::string_view device = soldName(name.device);
    if (device.empty())
        return std::string(
            trimmedText(fmt::format("{} graphics {:04x}:{:04x}", vendor, id.vendor, id.device)));
    return device.starts_with(vendor) ? std::string(device) : fmt::format("{} {}", vendor, device);
}

std::string graphicsModelByList(PCIID id, const std::filesystem::path& root) {
    for (const char* const list : kLists) {
        std::error_code error;
        const auto size = std::filesystem::file_size(root / list, error);
        if (error || size > kLargestListBytes)
            continue;
        std::string text(size, '\0');
        std::ifstream file(root / list, std::ios::binary);
        file.read(text.data(), static_cast<std::streamsize>(text.size()));
        text.resize(static_cast<std::size_t>(file.gcount()));  // less where it has shrunk
        return graphicsModel(id, pciNameIn(text, id));
    }
    return graphicsModel(id, {});
}

}  // namespace vantor
