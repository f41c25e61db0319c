#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Platform/Simulated/Scenario.h"

/// A text is a scenario, or an error with its place; nothing else.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        vantor::simulated::scenarioFromText({reinterpret_cast<const char*>(data), size});
    } catch (const vantor::simulated::ScenarioError&) {
    }
    return 0;
}
