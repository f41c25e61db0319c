#include "Shared/Collectors/SampleRing.h"

#include <algorithm>

namespace vantor::inline VANTOR_MODULE {

SampleRing::SampleRing(std::size_t valueCount)
    : stride_(kHeaderDoubles + valueCount), records_(kSlots * stride_) {
    clear(Times::clear);
}

statsample SampleRing::sampleAtIndex(std::size_t position) const noexcept {
    const double* const fields = record(position);
    return {.sampleID = fields[kID],
            .time = fields[kTime],
            .timeActual = fields[kTimeActual],
            .empty = static_cast<std::int32_t>(fields[kEmpty]),
            .values = values(position)};
}

std::optional<std::size_t> SampleRing::positionOfIdentifier(double sampleID) const noexcept {
    // IDs rise by one a slot as a rule: the ID tells its place, which one look confirms. Where
    // the slot before it is younger, there is none further on that has the ID, too.
    const double age = record(0)[kID] - sampleID;
    if (age >= 0 && age < static_cast<double>(kSlots)) {
        const auto guess = static_cast<std::size_t>(age);
        if (record(guess)[kID] == sampleID && (guess == 0 || record(guess - 1)[kID] > sampleID))
            return guess;
    }
    for (std::size_t position = 0; position < kSlots; ++position)
        if (record(position)[kID] == sampleID)
            return position;
    return std::nullopt;
}

std::span<const double> SampleRing::values(std::size_t position) const noexcept {
    return {record(position) + kHeaderDoubles, valueCount()};
}

std::span<double> SampleRing::mutableValues(std::size_t position) noexcept {
    return {record(position) + kHeaderDoubles, valueCount()};
}

void SampleRing::pushSamples() noexcept {
    const double* const before = record(0);
    newest_ = (newest_ == 0 ? kSlots : newest_) - 1;
    std::copy_n(before, stride_, record(0));
}

void SampleRing::setEmpty(std::size_t position, std::int32_t empty) noexcept {
    record(position)[kEmpty] = empty;
}

void SampleRing::clear(Times times) noexcept {
    for (std::size_t position = 0; position < kSlots; ++position) {
        double* const fields = record(position);
        fields[kID] = 0;
        fields[kEmpty] = 1;
        if (times == Times::clear)
            fields[kTime] = 0;
        std::fill_n(fields + kHeaderDoubles, valueCount(), 0.0);
    }
}

}  // namespace vantor::inline VANTOR_MODULE
