#pragma once

#include <string>

#include "Hosts/Text/TextFigures.h"

namespace vantor {

/// Makes `into` the newest sample as one line of JSON with its line end. `into` keeps its memory.
/// Units:  "time" is seconds since 1970; shares are percent, those of a core in the order user,
///         system, nice. Numbers are as short as reads back the same; what is absent or no number
///         is null.
void writeSampleLine(std::string& into, const TextFigures& figures);

}  // namespace vantor
