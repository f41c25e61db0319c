#pragma once

#include <optional>
#include <string>

#include "Foundation/PropertyValue.h"
#include "Platform/Linux/GPUFigures.h"
#include "Platform/Linux/GraphicsDevices.h"

namespace vantor {

// Graphics processors and displays by the property names under which they are asked for.

PropertyValue::Dictionary processorProperties(const GraphicsDevice& device,
                                              const std::string& model);

/// All but its place in the registry.
PropertyValue::Dictionary displayProperties(const DisplayConnector& connector);

/// Sets or takes away one figure. What is set again keeps its place, so nothing is allocated.
void setFigure(PropertyValue::Dictionary& figures, const char* key,
               const std::optional<PropertyValue>& value);

/// All figures of "PerformanceStatistics"; what the driver doesn't tell isn't there.
void setFigures(PropertyValue::Dictionary& statistics, const GPUFigures& figures);

}  // namespace vantor
