#pragma once

#include <nlohmann/json.hpp>

namespace vantor {

class Displays;
class GraphicsControl;
class Registry;

// What ports tell of graphics processors and displays, as a scenario has it.

/// The whole tree, read anew. What a scenario has no form for is left out: nothing, numbers that
/// aren't finite, and a dictionary whose only key is "data".
nlohmann::ordered_json recordedRegistry(Registry& registry);

/// The screens whose displays are in the registry.
nlohmann::ordered_json recordedScreens(Displays& displays, Registry& registry);

/// A number, "fail", or null where there is no such service.
nlohmann::ordered_json recordedGraphicsControl(GraphicsControl& control);

}  // namespace vantor
