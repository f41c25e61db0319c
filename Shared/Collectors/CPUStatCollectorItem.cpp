#include "Shared/Collectors/CPUStatCollectorItem.h"

namespace vantor::inline VANTOR_MODULE {

void CPUStatCollectorItem::addSample(float user, float system, float nice) noexcept {
    sampleID_ += 1;
    PushSamples(history_);
    const std::span<double> values = history_.mutableValues(0);
    values[0] = static_cast<double>(user);
    values[1] = static_cast<double>(system);
    values[2] = static_cast<double>(nice);
    history_.setSampleID(0, sampleID_);
    history_.setEmpty(0, 0);
}

statsample CPUStatCollectorItem::sampleWithIdentifier(double sampleID, StorageType) const noexcept {
    const auto position = history_.positionOfIdentifier(sampleID);
    return position ? history_.sampleAtIndex(*position) : emptySample(sampleID);
}

}  // namespace vantor::inline VANTOR_MODULE
