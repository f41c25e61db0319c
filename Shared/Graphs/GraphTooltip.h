#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Foundation/Geometry.h"

namespace vantor::inline VANTOR_MODULE {

class View;

/// What the graph of a row shows at a point of the row's own coordinates, for a host to say beside
/// the pointer. Nothing where there is no graph, and wherever the user doesn't want to be told
/// ("CPU_DropdownShowTooltips").
std::optional<std::string> tooltipAt(View& row, Point point);

/// `values` with the moment before them, to the second at the fine scales; that there are none, of
/// "". A moment of 0 isn't known. The scale is a graph's storage mode.
std::string tooltipText(double time, std::int64_t storageMode, std::string_view values);

}  // namespace vantor::inline VANTOR_MODULE
