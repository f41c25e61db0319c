#pragma once

#include <source_location>
#include <string_view>

#include "Platform/Ports.h"

namespace vantor::inline VANTOR_MODULE {

/// Where history files tell of trouble.
/// Thread: any.
void logHistory(const Ports& ports, std::string_view text,
                std::source_location place = std::source_location::current());

}  // namespace vantor::inline VANTOR_MODULE
