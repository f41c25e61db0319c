#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/PropertyValue.h"

namespace vantor::inline VANTOR_MODULE {

/// A sensor that a model is known to have. The first letter of its key tells what it measures:
/// T degrees Celsius, I amperes, V volts, P watts, F and most labels revolutions a minute, A a
/// percentage. The range is what is plausible; 0 where it isn't known.
struct SensorRecord {
    std::string_view key;
    std::string_view name;
    double low = 0, high = 0;

    /// With the keys "key", "name", "low" and "high".
    PropertyValue::Dictionary dictionary() const;
};

/// The sensors of a model in the order of display. Only one list is known in full; that of any
/// other model is empty.
std::span<const SensorRecord> sensorRecordsOf(std::string_view modelIdentifier) noexcept;

/// The key of the first temperature of a "CPU Die", else of the first one of a "CPU"; or none.
std::vector<std::string> defaultSensorKeysOf(std::span<const SensorRecord> sensors);

}  // namespace vantor::inline VANTOR_MODULE
