#pragma once

#include <cstddef>

#include "Platform/Simulated/Scenario.h"
#include "Platform/Simulated/ScenarioObject.h"

namespace vantor::simulated {

// The keys of a scenario that tell what its machine is and does. What doesn't fit throws
// ScenarioError.

/// What `object` says of a machine with so many CPUs; the keys that it knows.
MachineChange machineChange(ScenarioObject& object, std::size_t cpus);

/// "machine": how it is made, and how it is at the start.
void readMachine(const ScenarioValue& value, Scenario& scenario);

}  // namespace vantor::simulated
