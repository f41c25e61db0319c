#pragma once

#include "Shared/Collectors/StatCollectorItem.h"

namespace vantor::inline VANTOR_MODULE {

/// One core's newest samples: user, system and nice in percent. One ring serves every scale,
/// and readers go by position and ID: `time` stays 0.
class CPUStatCollectorItem final : public StatCollectorItem {
public:
    static constexpr std::size_t sampleCount() noexcept { return 3; }

    CPUStatCollectorItem() : StatCollectorItem(sampleCount(), Rings::none) {}

    void addSample(float user, float system, float nice) noexcept;

    statsample sampleAtIndex(std::size_t index, StorageType) const noexcept override {
        return history_.sampleAtIndex(index);
    }
    statsample sampleWithIdentifier(double sampleID, StorageType) const noexcept override;
    double idForInterval(int) const noexcept override { return sampleID_; }
    const SampleRing& history() const noexcept { return history_; }

private:
    SampleRing history_{sampleCount()};
    double sampleID_ = 0;
};

}  // namespace vantor::inline VANTOR_MODULE
