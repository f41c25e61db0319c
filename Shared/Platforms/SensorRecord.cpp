#include "Shared/Platforms/SensorRecord.h"

#include <algorithm>

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr std::string_view kFullyKnownModel = "MacBookPro8,2";

constexpr SensorRecord kSensors[] = {
    {"ID0R", "DC In", 0.1, 4.85},
    {"IB0R", "Battery - BMON", 0.1, 18.333},
    {"IC0R", "CPU (Core, GFX, DDR3, 1.05V, VCCSA)", 0.1, 18.333},
    {"IG0R", "Core, FB, 1.0V", 0, 3.34},
    {"IO0R", "Other (5V, 3.3V)", 0.1, 12.546},
    {"IC0C", "CPU Core - Load Side", 0.15, 94},
    {"IN0C", "AXG", 0.24, 33},
    {"IC1C", "VccIO PP1V05", 0.1, 21.329},
    {"IM0C", "DDR3", 0.1, 18.1},
    {"IG0C", "GPU Core", 0, 28},
    {"IC2C", "PPVCCSA S0 CPU", 0.1, 6},
    {"Ts0P", "Palm Rest", 10, 56},
    {"TC0D", "CPU Die - Analog", 10, 105},
    {"TC0P", "CPU Proximity", 10, 95},
    {"TP0P", "PCH Proximity", 10, 85},
    {"Tm0P", "Battery Charger Proximity", 10, 60},
    {"Th1H", "Right Fin Stack Proximity", 10, 75},
    {"TG0D", "GPU Die - Analog", 10, 100},
    {"Th2H", "Left Heat Pipe & Fin Stack Proximity", 10, 75},
    {"TG1D", "GPU Die - Digital", 10, 100},
    {"TB0T", "Battery TS_MAX", 10, 64},
    {"TB1T", "Battery TS1", 10, 64},
    {"TB2T", "Battery TS2", 10, 64},
    {"TC0C", "CPU Die - Digital Core 0", 10, 105},
    {"TW0P", "X19 Controller IC", 10, 75},
    {"THSP", "Thunderbolt Proximity", 10, 85},
    {"VC0C", "CPU VCore", 0.1, 1.565},
    {"VP0R", "P-Bus", 8, 13},
    {"VG0C", "GPU VCore", 0.5, 1.16},
    {"VN0C", "AXG VCore", 0.3, 1.52},
    {"VD0C", "DC In", 0, 18.5},
    {"ALSL", "Ambient Light", 0, 100},
    {"PCPC", "CPU Package Core", 0, 33},
    {"PCPG", "CPU Package Gfx", 0, 22},
    {"PCPT", "CPU Package Total", 0, 55},
    {"TC1C", "CPU Core 1 - DTS", 15, 105},
    {"TC2C", "CPU Core 2 - DTS", 15, 105},
    {"TC3C", "CPU Core 3 - DTS", 15, 105},
    {"TC4C", "CPU Core 4 - DTS", 15, 105},
    {"Rightside", "Rightside", 2000, 5500},
    {"Leftside", "Leftside", 2000, 5500},
};

}  // namespace

PropertyValue::Dictionary SensorRecord::dictionary() const {
    return {{"key", key}, {"name", name}, {"low", low}, {"high", high}};
}

std::span<const SensorRecord> sensorRecordsOf(std::string_view modelIdentifier) noexcept {
    return modelIdentifier == kFullyKnownModel ? std::span<const SensorRecord>(kSensors)
                                               : std::span<const SensorRecord>();
}

std::vector<std::string> defaultSensorKeysOf(std::span<const SensorRecord> sensors) {
    for (const std::string_view name : {"CPU Die", "CPU"}) {
        const auto found = std::ranges::find_if(sensors, [name](const SensorRecord& sensor) {
            return sensor.key.starts_with('T') && sensor.name.starts_with(name);
        });
        if (found != sensors.end())
            return {std::string(found->key)};
    }
    return {};
}

}  // namespace vantor::inline VANTOR_MODULE
