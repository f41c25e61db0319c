#pragma once

#include <nlohmann/json.hpp>

#include "Shared/VTRMenuExtra.h"

namespace vantor {

/// The rows of an extra's dropdown and of its submenus, open or not, with all that stands in them.
/// What is absent, and numbers that aren't finite, are null.
nlohmann::ordered_json dropdownState(VTRMenuExtra& extra);

}  // namespace vantor
