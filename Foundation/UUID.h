#pragma once

#include <optional>
#include <string>

namespace vantor {

/// A new random identifier in its usual form of 36 capital letters, digits and hyphens; nothing
/// where the machine has no randomness to give. Any thread.
std::optional<std::string> newUUID();

}  // namespace vantor
