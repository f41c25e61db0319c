#pragma once

#include <nlohmann/json.hpp>

#include "Shared/ProcessContext.h"
#include "Shared/VTRMenuExtra.h"

namespace vantor {

/// The state of a running program: its collectors with all their samples, its item, and what it
/// knows of the desktop.
nlohmann::ordered_json programState(ProcessContext& context, VTRMenuExtra& extra, double length);

}  // namespace vantor
