#include "Shared/Collectors/GPUStatCollectorItem.h"

#include <algorithm>

#include <fmt/format.h>

#include "Shared/Collectors/GPUStatCollector.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr const char* kAbsent = "(null)";

char lowerCase(char letter) noexcept {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + ('a' - 'A')) : letter;
}

}  // namespace

std::size_t GPUStatCollectorItem::sampleCount() noexcept { return GPUStatCollector::sampleCount(); }

void GPUStatCollectorItem::store(const GPUUsage& usage, std::int64_t surfaceCount) noexcept {
    usage_ = usage;
    surfaceCount_ = surfaceCount;
    hasProcessorUsage_ = hasProcessorUsage_ || usage.load >= 0;
}

void GPUStatCollectorItem::addSampleWithProcessor(double processor, double memory, double time,
                                                  double identifier) noexcept {
    SampleRing& ring = storageForType(0);
    PushSamples(ring);
    const std::span<double> values = ring.mutableValues(0);
    values[1] = processor;
    values[0] = memory;
    ring.setSampleID(0, identifier);
    ring.setTime(0, time);
    ring.setEmpty(0, 0);
}

std::string GPUStatCollectorItem::description() const {
    return fmt::format(
        "key = '{}', model = {}, intergrated = {:d}, connected = {:d}, temporary {:d}",
        key.value_or(kAbsent), model.value_or(kAbsent), intergrated, connected, temporary());
}

bool modelContains(const std::optional<std::string>& model, std::string_view word) noexcept {
    return model && !std::ranges::search(*model, word, {}, lowerCase).empty();
}

}  // namespace vantor::inline VANTOR_MODULE
