#pragma once

#include <cstdint>
#include <string_view>

#include "Shared/VTRFormatters.h"

namespace vantor::inline VANTOR_MODULE {

/// An item that is a sensor.
class SensorItem {
public:
    virtual ~SensorItem() = default;
    virtual SensorReading sensorReading() const = 0;
    virtual std::string_view sensorKey() const = 0;
};

/// An item that is a battery.
class BatteryItem {
public:
    virtual ~BatteryItem() = default;
    virtual std::int32_t batteryState() const = 0;
    /// Minutes, or what below 0 stands for.
    virtual std::int32_t batteryTime() const = 0;
};

}  // namespace vantor::inline VANTOR_MODULE
