#include "Tests/Support/DeviceTree.h"

#include <algorithm>

#include <fmt/format.h>

#include "Tests/Platform/Linux/KernelTexts.h"

namespace vantor::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kRootBus = "pci0000:00";

void put(std::string& bytes, std::size_t place, unsigned value) {
    bytes[place] = static_cast<char>(value);
}

void putText(std::string& bytes, std::size_t place, unsigned tag, const std::string& text) {
    put(bytes, place + 3, tag);
    const std::string padded = (text + "\n" + std::string(13, ' ')).substr(0, 13);
    std::ranges::copy(padded, bytes.begin() + static_cast<std::ptrdiff_t>(place + 5));
}

}  // namespace

DeviceTree::DeviceTree() {
    fs::create_directories(root_ / "sys/bus/pci/devices");
    fs::create_directories(root_ / "proc");
}

fs::path DeviceTree::linkOf(const std::string& address) const {
    return root_ / "sys/bus/pci/devices" / address;
}

fs::path DeviceTree::folderOf(const std::string& address) const {
    return fs::canonical(linkOf(address));
}

void DeviceTree::add(const PCIDevice& device) {
    fs::path place = fs::path("devices") / kRootBus;
    for (const std::string& bridge : device.bridges)
        place /= bridge;
    place /= device.address;
    fs::create_directories(root_ / "sys" / place);
    fs::create_directory_symlink(fs::path("../../..") / place, linkOf(device.address));
    const std::string driver =
        device.driver.empty() ? "" : fmt::format("DRIVER={}\n", device.driver);
    write(device.address, "uevent",
          fmt::format("{}PCI_CLASS={:X}\nPCI_ID={:04X}:{:04X}\nPCI_SLOT_NAME={}\n", driver,
                      device.classCode, device.vendor, device.device, device.address));
    write(device.address, "config", "touching this wakes the device");
    if (!device.runtimeStatus.empty())
        write(device.address, "power/runtime_status", device.runtimeStatus + "\n");
    if (!device.powerControl.empty())
        write(device.address, "power/control", device.powerControl + "\n");
    for (const auto& [file, text] : device.files)
        write(device.address, file, text);
}

void DeviceTree::remove(const std::string& address) {
    fs::remove_all(folderOf(address));
    fs::remove(linkOf(address));
}

void DeviceTree::write(const std::string& address, const std::string& file, std::string_view text) {
    writeText(linkOf(address) / file, text);
}

void DeviceTree::addCard(const std::string& address, int card,
                         const std::vector<Connector>& connectors) {
    fs::create_directories(linkOf(address) / fmt::format("drm/renderD{}", 128 + card));
    for (const auto& [name, status, enabled, edid, modes] : connectors) {
        const std::string folder = fmt::format("drm/card{}/card{}-{}/", card, card, name);
        write(address, folder + "status", status + "\n");
        write(address, folder + "enabled", enabled + "\n");
        write(address, folder + "edid", edid);
        write(address, folder + "modes", modes);
    }
}

void DeviceTree::writeClient(int process, int descriptor, std::string_view fdinfo) {
    const fs::path folder = root_ / fmt::format("proc/{}", process);
    const fs::path link = folder / fmt::format("fd/{}", descriptor);
    fs::create_directories(link.parent_path());
    if (!fs::is_symlink(link))
        fs::create_symlink("/dev/dri/renderD128", link);
    writeText(folder / fmt::format("fdinfo/{}", descriptor), fdinfo);
}

void DeviceTree::writeProc(const std::string& file, std::string_view text) {
    writeText(root_ / "proc" / file, text);
}

std::optional<std::string_view> CountingDeviceFiles::read(const std::string& path,
                                                          std::span<char> into) noexcept {
    touched_.push_back(path);
    return files_.read(path, into);
}

std::vector<std::string> CountingDeviceFiles::names(const std::string& folder) {
    touched_.push_back(folder);
    return files_.names(folder);
}

std::vector<std::string> CountingDeviceFiles::touchedBelow(const std::string& address) {
    std::vector<std::string> names;
    const std::string mark = address + "/";
    for (const std::string& path : touched_)
        if (const auto place = path.find(mark); place != path.npos)
            names.push_back(path.substr(place + mark.size()));
    forget();
    std::ranges::sort(names);
    names.erase(std::ranges::unique(names).begin(), names.end());
    return names;
}

void correctEDIDSum(std::string& edid) {
    unsigned sum = 0;
    for (std::size_t place = 0; place < 127; ++place)
        sum += static_cast<unsigned char>(edid[place]);
    put(edid, 127, 256 - sum % 256);
}

std::string edidBytes(const EDIDParts& parts) {
    std::string bytes(128, '\0');
    bytes.replace(0, 8, std::string("\0\xFF\xFF\xFF\xFF\xFF\xFF\0", 8));
    unsigned vendor = 0;
    for (const char letter : parts.vendor)
        vendor = vendor << 5 | static_cast<unsigned>(letter - 'A' + 1);
    put(bytes, 8, vendor >> 8);
    put(bytes, 9, vendor & 0xFF);
    put(bytes, 10, parts.product & 0xFF);
    put(bytes, 11, parts.product >> 8);
    for (unsigned place = 0; place < 4; ++place)
        put(bytes, 12 + place, parts.serial >> 8 * place & 0xFF);
    put(bytes, 21, parts.widthCentimetres);
    put(bytes, 22, parts.heightCentimetres);
    put(bytes, 54, 1);  // a pixel clock: a timing
    put(bytes, 56, parts.width & 0xFF);
    put(bytes, 58, parts.width >> 8 << 4);
    put(bytes, 59, parts.height & 0xFF);
    put(bytes, 61, parts.height >> 8 << 4);
    putText(bytes, 72, 0xFC, parts.name);
    putText(bytes, 90, 0xFF, parts.serialText);
    correctEDIDSum(bytes);
    return bytes;
}

PCIDevice discreteAMD() {
    return {.address = kDiscreteAddress,
            .bridges = {"0000:00:01.0", "0000:02:00.0"},
            .vendor = 0x1002,
            .device = 0x73BF,
            .driver = "amdgpu",
            .files = {{"gpu_busy_percent", "42\n"},
                      {"mem_info_vram_total", "17163091968\n"},
                      {"mem_info_vram_used", "1073741824\n"},
                      {"mem_info_gtt_total", "8589934592\n"},
                      {"mem_info_gtt_used", "33554432\n"}}};
}

PCIDevice integratedAMD() {
    return {.address = kAPUAddress,
            .bridges = {"0000:00:08.1"},
            .vendor = 0x1002,
            .device = 0x15BF,
            .driver = "amdgpu",
            .files = {{"gpu_busy_percent", "7\n"},
                      {"mem_info_vram_total", "536870912\n"},
                      {"mem_info_vram_used", "402653184\n"},
                      {"mem_info_gtt_total", "16777216000\n"},
                      {"mem_info_gtt_used", "104857600\n"}}};
}

PCIDevice securityEngineOfAMD() {
    return {.address = "0000:c1:00.2",
            .bridges = {"0000:00:08.1"},
            .classCode = 0x108000,
            .vendor = 0x1022,
            .device = 0x15C7};
}

PCIDevice externalAMD() {
    PCIDevice card = discreteAMD();
    card.address = kExternalAddress;
    card.bridges = {"0000:00:07.0", "0000:38:00.0", "0000:39:01.0", "0000:3b:00.0", "0000:3c:00.0"};
    card.files["gpu_busy_percent"] = "60\n";
    return card;
}

PCIDevice integratedIntel(std::string driver) {
    return {.address = kIntegratedAddress,
            .vendor = 0x8086,
            .device = 0x46A6,
            .driver = std::move(driver)};
}

PCIDevice discreteNVIDIA(std::string address, std::string bridge) {
    return {.address = std::move(address),
            .bridges = {std::move(bridge)},
            .classCode = 0x030200,
            .vendor = 0x10DE,
            .device = 0x25A2,
            .driver = "nvidia"};
}

}  // namespace vantor::test
