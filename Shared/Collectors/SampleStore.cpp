#include "Shared/Collectors/SampleStore.h"

#include <algorithm>

#include "Foundation/PropertyValue.h"

namespace vantor::inline VANTOR_MODULE {

double sampleIDInFields(const SampleFields& sample, const SampleConfig& config) noexcept {
    double sampleID = 0;
    for (const std::string_view key : config.addSampleIDKeys)
        sampleID = sample.value(key).value_or(sampleID);
    return sampleID;
}

std::int32_t emptyInFields(const SampleFields& sample) noexcept {
    // A history file may say anything.
    const std::int64_t empty = PropertyValue(sample.value("empty").value_or(0)).integerValue();
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(empty, INT32_MIN, INT32_MAX));
}

std::optional<double> acceptedSampleID(const SampleFields& sample, const SampleConfig& config,
                                       const SampleRing& ring) noexcept {
    const double newest = ring.sampleID(0);
    double sampleID = sampleIDInFields(sample, config);
    if (sampleID == 0)
        sampleID = newest + 1;
    return sampleID >= 1 && sampleID > newest ? std::optional(sampleID) : std::nullopt;
}

void writeSampleFields(const SampleFields& sample, const SampleConfig& config, SampleRing& ring,
                       std::size_t position) noexcept {
    const std::span<double> values = ring.mutableValues(position);
    for (const auto& [key, place] : config.addSampleMap) {
        const std::optional<double> figure = sample.value(key);
        if (!figure)
            continue;
        if (place == SampleKey::kTime && key != "t")
            ring.setTime(position, *figure);
        else if (place >= 0 && static_cast<std::size_t>(place) < values.size())
            values[static_cast<std::size_t>(place)] = *figure;
    }
    for (const std::string_view key : {"t", "time"})  // the later one wins
        if (const std::optional<double> time = sample.value(key))
            ring.setTime(position, *time);
}

void SampleSums::add(std::span<const double> values) noexcept {
    const std::size_t size = std::min(values.size(), sums_.size());
    for (std::size_t value = 0; value < size; ++value)
        sums_[value] += values[value];
    ++count_;
}

SampleFields SampleSums::mean(int minimum, const SampleConfig& config) const noexcept {
    const bool enough = count_ > 0 && count_ >= minimum;
    SampleFields mean;
    mean.set("empty", enough ? 0 : 1);
    for (const auto& [key, position] : config.sampleKeys) {
        const double sum = sums_[static_cast<std::size_t>(position)];
        mean.set(key, enough ? sum / count_ : 0);
    }
    return mean;
}

}  // namespace vantor::inline VANTOR_MODULE
