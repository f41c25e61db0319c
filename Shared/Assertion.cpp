#include "Shared/Assertion.h"

#include <cstdlib>

#include <fmt/format.h>

#include "Platform/SystemLog.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

/// The last part of the path that the compiler was called with.
std::string_view fileName(std::string_view path) noexcept {
    const std::string_view name = path.substr(path.rfind('/') + 1);
    return name.empty() ? "<Unknown File>" : name;
}

}  // namespace

void failAssertion(SystemLog& systemLog, std::string_view words, std::source_location place) {
    systemLog.write(fmt::format("Assertion failure in {}:{}: {}", fileName(place.file_name()),
                                place.line(), words));
    std::abort();
}

}  // namespace vantor::inline VANTOR_MODULE
