#pragma once

#include <optional>
#include <vector>

#include "Platform/Simulated/ScenarioObject.h"
#include "Platform/Simulated/SimulatedGraphics.h"
#include "Platform/Simulated/SimulatedRegistry.h"

namespace vantor::simulated {

// What a scenario says of graphics processors and screens. All throw ScenarioError with its place.

RegistryNode registryTree(const ScenarioValue& value);
std::vector<SimulatedScreen> screenList(const ScenarioValue& value);
/// null, "fail", or what the service answers.
GraphicsAnswer graphicsAnswer(const ScenarioValue& value);
std::optional<double> frameRate(const ScenarioValue& value);

}  // namespace vantor::simulated
