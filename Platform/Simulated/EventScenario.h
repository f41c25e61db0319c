#pragma once

#include <string>

#include "Platform/Simulated/Scenario.h"
#include "Platform/Simulated/ScenarioObject.h"

namespace vantor::simulated {

// What happens in a scenario. What doesn't fit throws ScenarioError.

/// One of "events", no earlier than at `earlier`, on the machine that `scenario` has by now.
ScenarioEvent scenarioEvent(const ScenarioValue& value, double earlier, const Scenario& scenario);

/// "at", no earlier than `earlier`.
double scenarioTime(ScenarioObject& object, double earlier);
/// The name of a menu of the dropdown.
std::string scenarioMenuName(const ScenarioValue& name);
/// The name of a file, which leads nowhere else.
std::string scenarioFileName(const ScenarioValue& name);

}  // namespace vantor::simulated
