#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "Foundation/TimeZoneRules.h"

namespace vantor {

/// The rules of a time zone such as "Europe/Vienna", from the files below `folder`. "UTC" needs no
/// file. Nothing where there is no such zone.
std::optional<TimeZoneRules>
timeZoneNamed(std::string_view name, const std::filesystem::path& folder = "/usr/share/zoneinfo");

}  // namespace vantor
