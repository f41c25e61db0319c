#pragma once

#include <cstdint>
#include <span>

#include "Shared/Collectors/SampleConfig.h"
#include "Shared/Collectors/SampleFields.h"
#include "Shared/Collectors/SampleRing.h"

// What collectors and their items do alike with one ring.

namespace vantor::inline VANTOR_MODULE {

/// The ID that a sample brings along, or 0.
double sampleIDInFields(const SampleFields& sample, const SampleConfig& config) noexcept;

/// Whether a sample says that it is a gap, as the whole number that it says it with.
std::int32_t emptyInFields(const SampleFields& sample) noexcept;

/// The ID that a sample gets in a ring: its own, or the newest one's plus 1; nothing where the
/// ring doesn't take it, because it isn't newer than the newest.
std::optional<double> acceptedSampleID(const SampleFields& sample, const SampleConfig& config,
                                       const SampleRing& ring) noexcept;

/// Writes the figures and the time of a sample into a slot. A figure that the sample lacks
/// keeps what stood in the slot.
void writeSampleFields(const SampleFields& sample, const SampleConfig& config, SampleRing& ring,
                       std::size_t position) noexcept;

/// Adds up samples value by value.
class SampleSums {
public:
    void add(std::span<const double> values) noexcept;
    int count() const noexcept { return count_; }
    /// "empty" and, under the keys of `config`, the means; zeros and empty where fewer than
    /// `minimum` samples were added, or none.
    SampleFields mean(int minimum, const SampleConfig& config) const noexcept;

private:
    static constexpr std::size_t kValues = 32;  // more than any collector has
    std::array<double, kValues> sums_{};
    int count_ = 0;
};

}  // namespace vantor::inline VANTOR_MODULE
