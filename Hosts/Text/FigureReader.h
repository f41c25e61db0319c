#pragma once

#include "Hosts/Text/TextFigures.h"

namespace vantor {

enum class Histories { read, leave };

/// Takes the newest figures from the collectors of the current context. What isn't measured yet
/// is absent. `into` keeps its memory.
void readFigures(TextFigures& into, Histories histories);

}  // namespace vantor
