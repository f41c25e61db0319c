#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "Shared/VTRMenu.h"

namespace vantor::inline VANTOR_MODULE {

/// The section of one graphics processor: its head, and a bar each for its memory and its load,
/// with a menu for their histories. It lives from the first news of the processor to the first that
/// lacks it.
/// Thread: main.
struct StatInterfaceGPUItem {
    StatInterfaceGPUItem(std::string itemKey, std::string_view title);

    std::string key;
    bool exists = false;             // seen in the pass that is going on
    bool hasProcessorUsage = false;  // its load has a row
    std::shared_ptr<VTRMenuItem> memoryMenuitem, processorMenuitem, header;
};

/// The titles of rows that show a graphics processor begin so, followed by its key: nobody reads
/// them, but they tell what the pointer is on.
inline constexpr std::string_view kMemoryTitle = "gpu_memory_", kProcessorTitle = "gpu_processor_";

/// A model's name as people know it.
std::string gpuModelName(std::string_view text);

}  // namespace vantor::inline VANTOR_MODULE
