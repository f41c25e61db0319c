#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vantor::inline VANTOR_MODULE {

// Figures as short texts with a unit, in the user's language. Each has thresholds of its own, and
// where they differ they differ on purpose. Any figure is taken; a negative one falls in the
// smallest range. Digits and decimal point are never the C locale's.
// Thread: main queue only, as settings and tables are.

std::string formattedDiskActivity(double bytesPerSecond);

/// By "Network_DataFormat", in bytes or bits. With `useDecimalLevel` the next unit begins earlier,
/// the decimals are those of the settings, and there is no blank before the unit.
std::string formattedBandwidth(bool useDecimalLevel, double bytesPerSecond);
/// A format of a figure and its unit, such as "%.1f%@", by "Network_DecimalLevel".
std::string_view bandwidhFormatter();

/// A fraction of a kilobyte doesn't count.
std::string formattedMemory(double kilobytes);
/// Takes binary megabytes and shows decimal units, as makers of disks count.
std::string formattedSpace(double megabytes);

/// A degree sign, or "K", by "Sensors_TemperatureMode".
std::string temperatureUnit();
/// Whole degrees by "Sensors_TemperatureMode", without the unit; "-" below 0, which no sensor
/// inside a machine measures.
std::string temperatureValue(double celsius);

/// What a sensor shows: 0 and 1 are temperatures, 2 turns of a fan, 3 volts, 4 amperes, 5 watts,
/// 7 lux and 8 megahertz.
struct SensorReading {
    std::int64_t type = 0;
    double value = 0;
};
/// "-" without a sensor.
std::string formattedSensor(const std::optional<SensorReading>& sensor);

}  // namespace vantor::inline VANTOR_MODULE
