#include "Shared/Platforms/PlatformMac.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "Foundation/PropertyList.h"
#include "Foundation/UTF8.h"
#include "Platform/MachineIdentity.h"
#include "Platform/MainQueue.h"
#include "Platform/SystemLog.h"
#include "Shared/Platforms/PlatformModel.h"
#include "Shared/Platforms/SerialNumber.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr std::string_view kUnknown = "Unknown";
constexpr std::string_view kNetworkInterface = "en0";
constexpr std::int64_t kHertzPerMegahertz = 1'000'000;

struct FanName {
    std::string_view label, name;
};

constexpr FanName kFanNames[] = {
    {"IO", "HD/Expansion"},
    {"EXHAUST", "Exhaust"},
    {"PS", "Power Supply"},
    {"CPU_MEM", "CPU Fan"},
    {"Leftside", "Left Fan"},
    {"Rightside", "Right Fan"},
    {"Master", "Main Fan"},
    {"ODD", "Optical Drive"},
    {"CPU", "CPU Fan"},
    {"HDD", "Hard Drive"},
    {"INTAKE", "Intake"},
    {"PCI", "Expansion Slots"},
    {"BOOSTA", "Booster 1"},
    {"BOOSTB", "Booster 2"},
    {"IN0", "CPU 1 Inlet"},
    {"IN1", "CPU 2 Inlet"},
    {"IN2", "CPU 3 Inlet"},
    {"IN3", "CPU 4 Inlet"},
    {"IN4", "FB-DIMM 1 Inlet"},
    {"IN5", "FB-DIMM 2 Inlet"},
    {"IN6", "FB-DIMM 3 Inlet"},
    {"OUT0", "CPU 1 Outlet"},
    {"OUT1", "CPU 2 Outlet"},
    {"OUT2", "CPU 3 Outlet"},
    {"OUT3", "CPU 4 Outlet"},
    {"OUT4", "FB-DIMM 1 Outlet"},
    {"OUT5", "FB-DIMM 2 Outlet"},
    {"OUT6", "FB-DIMM 3 Outlet"},
    {"PS0IN", "Power Supply 1 Inlet"},
    {"PS1IN", "Power Supply 2 Inlet"},
    {"PS0OUT", "Power Supply 1 Outlet"},
    {"PS1OUT", "Power Supply 2 Outlet"},
};

/// The first element of `value`'s array, if it is a dictionary.
const PropertyValue::Dictionary* firstDictionary(const PropertyValue& value) {
    const auto* const array = value.array();
    return array == nullptr || array->empty() ? nullptr : array->front().dictionary();
}

PropertyValue itemsOf(const PropertyValue& value) {
    const auto* const first = firstDictionary(value);
    if (first == nullptr)
        return {};
    const auto items = first->find("_items");
    return items == first->end() ? PropertyValue{} : items->second;
}

}  // namespace

PlatformMac::PlatformMac(const Ports& ports, const PlatformModel* model)
    : ports_(ports), model_(model) {}

std::string PlatformMac::identifier() const {
    if (model_ != nullptr)
        return std::string(model_->identifier);
    return ports_.machineIdentity.modelIdentifier().value_or(std::string(kUnknown));
}

std::string PlatformMac::name() const {
    return std::string(model_ != nullptr ? model_->name : kUnknown);
}

std::optional<double> PlatformMac::screenSize() const {
    return model_ != nullptr ? std::optional(model_->screenSize) : std::nullopt;
}

double PlatformMac::maximumMemory() const noexcept {
    return model_ != nullptr ? model_->maximumMemory : 0;
}

std::int64_t PlatformMac::memorySlots() const noexcept {
    return model_ != nullptr ? model_->memorySlots : 0;
}

std::string PlatformMac::icon() const { return std::string(model_ != nullptr ? model_->icon : ""); }

std::optional<std::string> PlatformMac::variationName() const {
    return model_ != nullptr ? model_->variationName(variation()) : std::nullopt;
}

std::span<const SensorRecord> PlatformMac::supportedSensors() const {
    return sensorRecordsOf(model_ != nullptr ? model_->identifier : "");
}

std::vector<std::string> PlatformMac::defaultSensorKeys() const {
    return model_ != nullptr ? model_->defaultSensorKeys()
                             : defaultSensorKeysOf(supportedSensors());
}

std::string PlatformMac::cpu() const {
    return ports_.machineIdentity.processorBrand().value_or("");
}

std::string PlatformMac::cpuSpeed() const {
    const auto hertz = ports_.machineIdentity.processorHertz();
    return hertz ? fmt::format("{}", *hertz / kHertzPerMegahertz) : "";
}

std::string PlatformMac::memory() const {
    return fmt::format("{}", ports_.machineIdentity.memoryBytes().value_or(0));
}

std::string PlatformMac::osVersion() const {
    const SystemVersion version = ports_.machineIdentity.systemVersion();
    if (version.error == 0)
        return fmt::format("{}.{}.{}", version.major, version.minor, version.bugfix);
    ports_.systemLog.write(fmt::format("Unable to obtain system version: {}", version.error));
    return "0.0.0";
}

std::optional<std::string> PlatformMac::serial() const {
    return ports_.machineIdentity.serialNumber();
}

std::string PlatformMac::boardID() const {
    std::string text;
    for (const std::byte byte : ports_.machineIdentity.boardID().value_or(PropertyValue::Data{})) {
        if (byte == std::byte{0})
            break;
        text.push_back(static_cast<char>(byte));
    }
    return validUTF8Prefix(text).size() == text.size() ? text : "";
}

std::string PlatformMac::variation() const { return serialTail(serial().value_or("")); }

void PlatformMac::decodeSerial() {
    const auto date = manufactureDateOf(serial().value_or(""));
    if (!date)
        return;
    manufactureYear_ = date->year;
    manufactureWeek_ = date->week;
}

std::optional<std::string> PlatformMac::networkHardwareAdress() const {
    const auto address = ports_.machineIdentity.hardwareAddress(kNetworkInterface);
    return address ? std::optional(fmt::format("{:02X}", fmt::join(*address, ":"))) : std::nullopt;
}

void PlatformMac::fetchMemoryInfo() {
    const auto profile = ports_.machineIdentity.memoryProfile();
    ports_.mainQueue.async(
        [weak = weak_.handle(), slots = memorySlotsOf(profile.value_or(""))]() mutable {
            if (PlatformMac* const platform = weak.get())
                platform->setMemorySlotInfo(std::move(slots));
        });
}

std::string_view PlatformMac::nameForFan(std::string_view label) noexcept {
    const auto* const found = std::ranges::find(kFanNames, label, &FanName::label);
    return found == std::end(kFanNames) ? label : found->name;
}

PropertyValue::Array memorySlotsOf(std::string_view profile) {
    if (validUTF8Prefix(profile).size() != profile.size())
        return {};
    std::string text(profile);
    std::erase_if(text, [](char letter) { return letter == '\t' || letter == '\n'; });
    const auto list = propertyListValue(text);
    const PropertyValue slots = itemsOf(itemsOf(list.value_or(PropertyValue{})));
    return slots.array() != nullptr ? *slots.array() : PropertyValue::Array{};
}

}  // namespace vantor::inline VANTOR_MODULE
