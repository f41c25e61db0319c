#include "Shared/VTRFormatters.h"

#include <array>
#include <cstddef>
#include <limits>

#include <fmt/printf.h>

#include "Foundation/PropertyValue.h"
#include "Shared/VTRPreferenceFunctions.h"
#include "Shared/VTRTranslations.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kKilo = 1024, kMega = 1'048'576, kGiga = 1'073'741'824;
constexpr std::string_view kWhole = "%.0f%@", kOneDecimal = "%.1f%@", kTwoDecimals = "%.2f%@";
constexpr std::string_view kWholeApart = "%.0f %@", kTwoDecimalsApart = "%.2f %@";

/// `format` takes a figure, and a unit as "%@".
std::string filled(std::string_view format, double figure, std::string_view unit) {
    std::string printable(format);
    const auto mark = printable.find("%@");
    printable.replace(mark, 2, "%s");
    return fmt::sprintf(printable, figure, unit);
}

std::string withUnit(std::string_view format, double figure, std::string_view unit) {
    return filled(format, figure, VTRLocalizedString(unit, std::nullopt, "common"));
}

std::string withSensorUnit(std::string_view format, double figure, std::string_view unit) {
    return filled(format, figure, VTRLocalizedString(unit, std::nullopt, "sensors"));
}

// --- Bandwidth ---------------------------------------------------------------------------------

/// Units, limits and divisors go by the same positions, the smallest first.
using UnitNames = std::array<std::string_view, 4>;
using Limits = std::array<double, 3>;  // up to which a unit is shown; the last has no end
constexpr UnitNames kByteUnits{"B/s", "KB/s", "MB/s", "GB/s"};
constexpr UnitNames kBitUnits{"b/s", "Kb/s", "Mb/s", "Gb/s"};
constexpr Limits kLimits{kKilo, kMega, kGiga};
constexpr Limits kDecimalLevelLimits{1000, 1'024'000, 1'048'576'000};
constexpr std::array<double, 4> kDivisors{1, kKilo, kMega, kGiga};

struct DataFormat {
    double perByte;
    const UnitNames& units;
    std::size_t smallest;
};

DataFormat dataFormat() {
    static constexpr std::array<DataFormat, 6> kFormats{{{1, kByteUnits, 0},
                                                         {1, kByteUnits, 1},
                                                         {8, kBitUnits, 0},
                                                         {8, kBitUnits, 1},
                                                         {1, kByteUnits, 2},
                                                         {8, kBitUnits, 2}}};
    const std::int64_t chosen = VTRIntegerForKey("Network_DataFormat");
    const bool known = chosen >= 0 && chosen < static_cast<std::int64_t>(kFormats.size());
    return kFormats[known ? static_cast<std::size_t>(chosen) : 1];
}

// --- Temperatures ------------------------------------------------------------------------------

enum class TemperatureMode : std::int64_t { celsius = 0, fahrenheit = 1, kelvin = 2 };

TemperatureMode temperatureMode() {
    return TemperatureMode{VTRIntegerForKey("Sensors_TemperatureMode")};
}

/// In single precision, as the sensors themselves are.
float degrees(float celsius, TemperatureMode mode) noexcept {
    if (mode == TemperatureMode::fahrenheit)
        return (celsius + celsius) / -10 + (celsius + celsius) + 32;
    return mode == TemperatureMode::kelvin ? celsius + 273.15f : celsius;
}

}  // namespace

std::string formattedDiskActivity(double bytesPerSecond) {
    if (bytesPerSecond <= 1'024'000)
        return withUnit(kWhole, bytesPerSecond / kKilo, "KB/s");
    if (bytesPerSecond <= 1'048'576'000) {
        const double megabytes = bytesPerSecond / kMega;
        return withUnit(megabytes < 100 ? kOneDecimal : kWhole, megabytes, "MB/s");
    }
    return withUnit(kOneDecimal, bytesPerSecond / kGiga, "GB/s");
}

std::string formattedBandwidth(bool useDecimalLevel, double bytesPerSecond) {
    const DataFormat data = dataFormat();
    const Limits& limits = useDecimalLevel ? kDecimalLevelLimits : kLimits;
    const double figure = bytesPerSecond * data.perByte;
    std::size_t unit = data.smallest;
    while (unit < limits.size() && figure > limits[unit])
        ++unit;
    const bool bySettings = useDecimalLevel || unit == 0;
    return withUnit(bySettings ? bandwidhFormatter() : kTwoDecimalsApart, figure / kDivisors[unit],
                    data.units[unit]);
}

std::string_view bandwidhFormatter() {
    switch (VTRIntegerForKey("Network_DecimalLevel")) {
    case 0:
        return kWhole;
    case 1:
        return kOneDecimal;
    default:
        return kTwoDecimals;
    }
}

std::string formattedMemory(double kilobytes) {
    const std::int64_t whole = PropertyValue(kilobytes).integerValue();  // never out of range
    if (whole < 1000)
        return withUnit(kWhole, static_cast<double>(whole), "KB");
    if (whole < 1'048'576)
        return withUnit(kWhole, static_cast<double>(whole) / kKilo, "MB");
    const auto gigabytes = static_cast<float>(whole >> 20);
    const auto remainder = static_cast<float>(whole & 0xFFFFF);
    return withUnit(kTwoDecimals, gigabytes + remainder / static_cast<float>(kMega), "GB");
}

std::string formattedSpace(double megabytes) {
    const double kilobytes = megabytes * kMega / 1000;
    if (kilobytes <= 1000)
        return withUnit(kWhole, kilobytes, "KB");
    if (kilobytes <= 1'000'000)
        return withUnit(kOneDecimal, kilobytes / 1000, "MB");
    if (kilobytes <= 1'000'000'000)
        return withUnit(kOneDecimal, kilobytes / 1'000'000, "GB");
    return withUnit(kOneDecimal, kilobytes / 1'000'000'000, "TB");
}

std::string temperatureUnit() {
    return temperatureMode() == TemperatureMode::kelvin
               ? VTRLocalizedString("K", std::nullopt, "sensors")
               : "\u00B0";
}

std::string temperatureValue(double celsius) {
    if (celsius < 0)
        return "-";
    return fmt::sprintf("%.0f", degrees(static_cast<float>(celsius), temperatureMode()));
}

std::string formattedSensor(const std::optional<SensorReading>& sensor) {
    if (!sensor)
        return "-";
    const double value = sensor->value;
    switch (sensor->type) {
    case 0:
    case 1:
        return temperatureValue(value) + temperatureUnit();
    case 2:
        return fmt::sprintf("%.0f", value);
    case 3:
        return withSensorUnit(kTwoDecimalsApart, value, "V");
    case 4:
        return withSensorUnit(kTwoDecimalsApart, value, "A");
    case 5:
        return withSensorUnit(kTwoDecimalsApart, value, "W");
    case 7:
        return withSensorUnit(kWholeApart, value, "lx");
    case 8:
        return value >= 1000 ? withSensorUnit(kTwoDecimalsApart, value / 1000, "GHz")
                             : withSensorUnit(kWholeApart, value, "MHz");
    default:
        return fmt::sprintf("%.2f", value);
    }
}

}  // namespace vantor::inline VANTOR_MODULE
