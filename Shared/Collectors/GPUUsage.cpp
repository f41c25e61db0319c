#include "Shared/Collectors/GPUUsage.h"

#include "Shared/Collectors/GPUStatCollector.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

using Dictionary = PropertyValue::Dictionary;

constexpr double kBytesPerMegabyte = 1024 * 1024;
constexpr double kCoreUnitsPerPercent = 10'000'000;

double figure(const Dictionary& statistics, std::string_view key) noexcept {
    return GPUStatCollector::convertCFNumber(propertyInDictionary(statistics, key));
}

/// An integrated processor draws in the machine's own memory, and drivers differ in which figures
/// tell how much of it.
void takeSharedMemory(const Dictionary& statistics, double total, GPUUsage& usage) noexcept {
    const double free = figure(statistics, "gartFreeBytes");
    const double used = figure(statistics, "gartUsedBytes");
    const PropertyValue& size = propertyInDictionary(statistics, "gartSizeBytes");
    const bool isAllOfIt = size && GPUStatCollector::convertCFNumber(size) == total;
    const bool addsUp = free != 0 && used != 0 && free + used == total;
    if (isAllOfIt || addsUp) {
        usage.free = free;
        usage.used = used;
    }
    if (used != 0 && usage.free > total) {
        usage.free = total - used;
        usage.used = used;
    }
}

double load(const Dictionary& statistics) noexcept {
    if (const PropertyValue& core = propertyInDictionary(statistics, "GPU Core Utilization"))
        return core.doubleValue() / kCoreUnitsPerPercent;
    if (const PropertyValue& device = propertyInDictionary(statistics, "Device Utilization %"))
        return device.doubleValue();
    return -1;
}

}  // namespace

const PropertyValue& propertyInDictionary(const Dictionary& dictionary,
                                          std::string_view key) noexcept {
    static const PropertyValue kNothing;
    const auto found = dictionary.find(key);
    return found == dictionary.end() ? kNothing : found->second;
}

GPUUsage usageInStatistics(const Dictionary* statistics, const GPUTraits& traits) {
    GPUUsage usage;
    if (statistics == nullptr)
        return usage;
    usage.used = figure(*statistics, "vramUsedBytes");
    usage.free = figure(*statistics, "vramFreeBytes");
    if (traits.isIntegrated)
        takeSharedMemory(*statistics, traits.totalBytes, usage);
    usage.load = load(*statistics);
    if (!traits.tellsMemoryInUse)
        return usage;
    if (const double inUse = figure(*statistics, "inUseVidMemoryBytes"); inUse > 0) {
        usage.used = inUse;
        usage.free = traits.totalBytes - inUse;
    }
    return usage;
}

GPUSample sampleOfUsage(GPUUsage usage, double totalBytes, bool hasProcessorUsage) noexcept {
    GPUSample sample;
    if (hasProcessorUsage)
        sample.processor = usage.load;
    if (totalBytes <= 0)
        return sample;
    if (usage.used == 0 && usage.free > 0)
        usage.used = totalBytes - usage.free;
    if (usage.used > 0)
        sample.memory = usage.used / totalBytes;
    return sample;
}

double totalMemoryInProperties(const Dictionary& properties) {
    const auto figureOf = [&](std::string_view key) {
        return GPUStatCollector::convertValue(propertyInDictionary(properties, key));
    };
    if (const double megabytes = figureOf("VRAM,totalMB"); megabytes != 0)
        return megabytes * kBytesPerMegabyte;
    if (const double bytes = figureOf("VRAM,totalsize"); bytes != 0)
        return bytes;
    return figureOf("VRAM,memsize");
}

}  // namespace vantor::inline VANTOR_MODULE
