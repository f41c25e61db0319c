#include "Platform/Linux/Environment.h"

#include <cstdlib>

namespace vantor {

Environment processEnvironment() {
    return [](const std::string& name) -> std::optional<std::string> {
        const char* value = std::getenv(name.c_str());
        return value == nullptr ? std::nullopt : std::optional<std::string>(value);
    };
}

std::optional<std::string> nonEmpty(const Environment& environment, const std::string& name) {
    auto value = environment(name);
    return value && !value->empty() ? value : std::nullopt;
}

}  // namespace vantor
