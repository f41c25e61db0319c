#include "Platform/Linux/GraphicsDevices.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace vantor {
namespace {

constexpr std::uint16_t kIntel = 0x8086, kAMD = 0x1002, kAMDProcessor = 0x1022;
constexpr std::uint32_t kDisplayClass = 0x03, kEncryptionClass = 0x1080;
constexpr std::size_t kLargestEDIDBytes = 4096;

/// What a device's `uevent` says.
struct Identity {
    std::string address, driver;
    PCIID id;
    std::uint32_t classCode = 0;
};

/// What stands behind "KEY=" at the start of a line.
std::string_view entryIn(std::string_view text, std::string_view key) noexcept {
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (line.starts_with(key) && line.substr(key.size()).starts_with('='))
            return line.substr(key.size() + 1);
    }
    return {};
}

std::optional<Identity> identityOf(DeviceFiles& files, const std::string& folder,
                                   const std::string& address) {
    std::array<char, 4096> buffer;
    const auto text = files.read(folder + "/uevent", buffer);
    if (!text)
        return std::nullopt;
    const std::string_view numbers = entryIn(*text, "PCI_ID");
    const auto colon = numbers.find(':');
    const auto classCode = wholeCount(entryIn(*text, "PCI_CLASS"), 16);
    if (colon == numbers.npos || !classCode || *classCode > 0xFFFFFF)
        return std::nullopt;
    const auto vendor = wholeCount(numbers.substr(0, colon), 16);
    const auto device = wholeCount(numbers.substr(colon + 1), 16);
    if (!vendor || *vendor > 0xFFFF || !device || *device > 0xFFFF)
        return std::nullopt;
    return Identity{address,
                    std::string(entryIn(*text, "DRIVER")),
                    {static_cast<std::uint16_t>(*vendor), static_cast<std::uint16_t>(*device)},
                    static_cast<std::uint32_t>(*classCode)};
}

/// "../../../devices/pci0000:00/0000:00:01.0/0000:03:00.0": what stands between "devices" and
/// the device itself.
std::vector<std::string> parentsOf(DeviceFiles& files, const std::string& folder) {
    constexpr std::string_view kDevices = "devices/";
    const std::string target = files.linkTarget(folder).value_or("");
    std::vector<std::string> parents;
    const auto start = target.find(kDevices);
    std::string_view rest(target);
    rest.remove_prefix(start == target.npos ? target.size() : start + kDevices.size());
    for (auto slash = rest.find('/'); slash != rest.npos; slash = rest.find('/')) {
        parents.emplace_back(rest.substr(0, slash));
        rest.remove_prefix(slash + 1);
    }
    return parents;
}

/// Without the function behind the dot.
std::string_view slotOf(std::string_view address) noexcept {
    return address.substr(0, address.rfind('.'));
}

/// A processor's own one is on the root bus, or shares its slot with the processor's security
/// engine. That is seen without asking the graphics processor itself.
bool isIntegrated(const Identity& device, const std::vector<std::string>& parents,
                  const std::vector<Identity>& all) {
    const bool isOnRootBus = parents.size() <= 1;
    if (device.id.vendor == kIntel)
        return isOnRootBus;
    if (device.id.vendor != kAMD)
        return false;
    return isOnRootBus || std::ranges::any_of(all, [&](const Identity& other) {
               return slotOf(other.address) == slotOf(device.address) &&
                      other.id.vendor == kAMDProcessor && other.classCode >> 8 == kEncryptionClass;
           });
}

bool isDisplay(const Identity& device) noexcept { return device.classCode >> 16 == kDisplayClass; }

/// "1920x1080", the first line of `modes`.
void readMode(std::string_view modes, DisplayConnector& into) {
    const std::string_view mode = modes.substr(0, modes.find_first_of("\n i"));  // "1920x1080i"
    const auto cross = std::min(mode.find('x'), mode.size());
    const auto width = wholeCount(mode.substr(0, cross));
    const auto height = wholeCount(mode.substr(std::min(cross + 1, mode.size())));
    constexpr std::uint64_t kMostPixels = 1 << 20;
    if (!width || !height || *width > kMostPixels || *height > kMostPixels)
        return;
    into.widthPixels = static_cast<std::uint32_t>(*width);
    into.heightPixels = static_cast<std::uint32_t>(*height);
}

std::optional<DisplayConnector> connectorIn(DeviceFiles& files, const std::string& folder,
                                            const std::string& name) {
    if (files.text(folder + "/status") != "connected")
        return std::nullopt;
    DisplayConnector connector{
        .name = name, .isDriven = files.text(folder + "/enabled") == "enabled", .edid = {}};
    std::array<char, kLargestEDIDBytes> buffer;
    if (const auto bytes = files.read(folder + "/edid", buffer))
        connector.edid = edidOf(*bytes);
    if (const auto modes = files.read(folder + "/modes", buffer))
        readMode(*modes, connector);
    return connector;
}

}  // namespace

std::vector<GraphicsDevice> findGraphicsDevices(DeviceFiles& files, const KernelFiles& kernel) {
    const std::string bus = (kernel.sys / "bus/pci/devices").string();
    std::vector<Identity> all;
    for (const std::string& address : files.names(bus))
        if (auto identity = identityOf(files, bus + "/" + address, address))
            all.push_back(*std::move(identity));
    std::vector<GraphicsDevice> devices;
    for (const Identity& identity : all) {
        if (!isDisplay(identity))
            continue;
        const std::string folder = bus + "/" + identity.address;
        const auto parents = parentsOf(files, folder);
        devices.push_back({identity.address, folder, parents, identity.id, identity.classCode,
                           identity.driver, isIntegrated(identity, parents, all)});
    }
    std::stable_partition(devices.begin(), devices.end(),
                          [](const GraphicsDevice& device) { return device.isIntegrated; });
    return devices;
}

std::vector<DisplayConnector> readConnectors(DeviceFiles& files, const std::string& folder) {
    std::vector<DisplayConnector> connectors;
    for (const std::string& card : files.names(folder + "/drm")) {
        const std::string place = folder + "/drm/" + card;
        if (!card.starts_with("card"))
            continue;  // a render node has the same ones again
        for (const std::string& name : files.names(place))
            if (name.starts_with(card + "-"))
                if (auto connector = connectorIn(files, place + "/" + name, name))
                    connectors.push_back(*std::move(connector));
    }
    return connectors;
}

std::optional<std::string> modelByDriver(DeviceFiles& files, const KernelFiles& kernel,
                                         const GraphicsDevice& device) {
    std::optional<std::string> name;
    if (device.driver == "amdgpu") {
        name = files.text(device.folder + "/product_name");  // few boards say it
    } else if (device.driver == "nvidia") {
        std::array<char, 4096> buffer;
        const auto text = files.read(
            (kernel.proc / "driver/nvidia/gpus" / device.address / "information").string(), buffer);
        const auto model = text ? valueOfLine(*text, "Model") : std::nullopt;
        name = model ? std::optional<std::string>(*model) : std::nullopt;
    }
    return name && !name->empty() && *name != "Unknown" ? name : std::nullopt;
}

}  // namespace vantor
