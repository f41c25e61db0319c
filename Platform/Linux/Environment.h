#pragma once

#include <functional>
#include <optional>
#include <string>

namespace vantor {

/// Answers the environment variable of a name, or nothing where it isn't set.
using Environment = std::function<std::optional<std::string>(const std::string& name)>;

/// This process's own. Ask it at the start, before somebody changes it on another thread.
Environment processEnvironment();

/// The variable's value, or nothing where it isn't set or empty.
std::optional<std::string> nonEmpty(const Environment& environment, const std::string& name);

}  // namespace vantor
