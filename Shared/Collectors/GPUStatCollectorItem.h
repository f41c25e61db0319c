#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/PropertyValue.h"
#include "Platform/Registry.h"
#include "Shared/Collectors/GPUUsage.h"
#include "Shared/Collectors/StatCollectorItem.h"

namespace vantor::inline VANTOR_MODULE {

/// One graphics processor: what it is, what it does now, and its history.
/// Units:  memory in bytes, loads in percent. Of a sample, value 0 is the share of the memory that
///         is in use, from 0 to 1, and value 1 the load; -1 stands for what isn't known.
/// Thread: main queue only.
class GPUStatCollectorItem final : public StatCollectorItem {
public:
    /// The collector's.
    static std::size_t sampleCount() noexcept;

    GPUStatCollectorItem() : StatCollectorItem(sampleCount()) {}

    /// What is kept of a reading. A load of 0 or above means processor usage for good.
    void store(const GPUUsage& usage, std::int64_t surfaceCount) noexcept;
    void addSampleWithProcessor(double processor, double memory, double time,
                                double identifier) noexcept;

    bool hasProcessorUsage() const noexcept { return hasProcessorUsage_; }
    double usedMemory() const noexcept { return usage_.used; }
    double freeMemory() const noexcept { return usage_.free; }
    double processor() const noexcept { return usage_.load; }
    /// How many things are drawn by it.
    std::int64_t surfaceCount() const noexcept { return surfaceCount_; }
    /// Nothing hangs on it and nobody draws with it.
    bool isIdle() const noexcept { return displays.empty() && surfaceCount_ == 0; }
    std::string description() const;

    RegistryObject registryEntry;       // the device; null for one that only has a history
    RegistryObject registryEntryStats;  // the driver's object with the statistics, or null
    bool connected = false;             // it is active
    bool intergrated = false;
    std::optional<std::string> model;
    double totalyMemory = 0;                            // 0 as long as it isn't known
    std::vector<PropertyValue::Dictionary> displays{};  // those that hang on it

private:
    bool hasProcessorUsage_ = false;
    GPUUsage usage_;
    std::int64_t surfaceCount_ = 0;
};

/// Whether the name in small letters has `word` in it; an absent one has none.
bool modelContains(const std::optional<std::string>& model, std::string_view word) noexcept;

}  // namespace vantor::inline VANTOR_MODULE
