#include "Platform/Linux/LinuxMachineIdentity.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>

#include "Foundation/NumberText.h"
#include "Platform/Linux/KernelText.h"

namespace vantor {
namespace {

constexpr std::size_t kMostBytes = 127;
constexpr double kMostHertz = 1e12, kMostKilobytes = 1e15;  // more is a mistake

std::optional<std::int64_t> figure(double value, double scale, double most) noexcept {
    if (!(value > 0 && value * scale <= most))
        return std::nullopt;
    return static_cast<std::int64_t>(std::llround(value * scale));
}

std::optional<std::string> valueIn(const std::filesystem::path& file, std::string_view key) {
    const auto text = trimmedTextOf(file);
    const auto value = text ? valueOfLine(*text, key) : std::nullopt;
    return value && !value->empty() ? std::optional<std::string>(*value) : std::nullopt;
}

}  // namespace

/// Fields that nobody filled in hold such texts as "Not Specified"; those are told as they stand.
std::optional<std::string> LinuxMachineIdentity::firmwareText(const char* name) const {
    auto text = trimmedTextOf(files_.sys / "class/dmi/id" / name);
    return text && !text->empty() ? text : std::nullopt;
}

std::optional<std::string> LinuxMachineIdentity::modelIdentifier() const {
    const auto name = firmwareText("product_name");
    return name ? modelIdentifierOf(*name) : std::nullopt;
}

std::optional<std::string> LinuxMachineIdentity::serialNumber() const {
    return firmwareText("product_serial");
}

std::optional<PropertyValue::Data> LinuxMachineIdentity::boardID() const {
    const auto name = firmwareText("board_name");
    if (!name)
        return std::nullopt;
    PropertyValue::Data data;
    for (const char letter : *name)
        data.push_back(static_cast<std::byte>(letter));
    data.push_back(std::byte{0});
    return data;
}

std::optional<std::string> LinuxMachineIdentity::processorBrand() const {
    return valueIn(files_.proc / "cpuinfo", "model name");
}

std::optional<std::int64_t> LinuxMachineIdentity::processorHertz() const {
    const auto highest =
        trimmedTextOf(files_.sys / "devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq");
    if (const auto hertz = figure(leadingNumber(highest.value_or("")), 1e3, kMostHertz))
        return hertz;
    const auto now = valueIn(files_.proc / "cpuinfo", "cpu MHz");
    return figure(leadingNumber(now.value_or("")), 1e6, kMostHertz);
}

std::optional<std::int64_t> LinuxMachineIdentity::memoryBytes() const {
    const auto kilobytes = valueIn(files_.proc / "meminfo", "MemTotal");
    return figure(leadingNumber(kilobytes.value_or("")), 1024, kMostKilobytes);
}

std::optional<HardwareAddress>
LinuxMachineIdentity::hardwareAddress(std::string_view interface) const {
    const auto text = trimmedTextOf(files_.sys / "class/net" / interface / "address");
    return text ? hardwareAddressOf(*text) : std::nullopt;
}

std::optional<std::string> modelIdentifierOf(std::string_view productName) {
    const std::string_view name = trimmedText(trimmedText(productName).substr(0, kMostBytes));
    const bool printable = std::ranges::all_of(name, [](char c) { return c >= ' ' && c <= '~'; });
    return printable && !name.empty() ? std::optional<std::string>(name) : std::nullopt;
}

std::optional<HardwareAddress> hardwareAddressOf(std::string_view text) noexcept {
    HardwareAddress address{};
    constexpr std::size_t kPart = 3;  // two digits and a colon
    if (text.size() != address.size() * kPart - 1)
        return std::nullopt;
    for (std::size_t part = 0; part < address.size(); ++part) {
        const char* const digits = text.data() + part * kPart;
        const auto [end, error] = std::from_chars(digits, digits + 2, address[part], 16);
        const bool isLast = part == address.size() - 1;
        if (error != std::errc{} || end != digits + 2 || (!isLast && *end != ':'))
            return std::nullopt;
    }
    return address;
}

}  // namespace vantor
