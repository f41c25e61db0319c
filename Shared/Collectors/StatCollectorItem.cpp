#include "Shared/Collectors/StatCollectorItem.h"

#include <algorithm>
#include <cassert>

#include "Shared/Collectors/SampleStore.h"

namespace vantor::inline VANTOR_MODULE {

StatCollectorItem::StatCollectorItem(std::size_t sampleCount, Rings rings)
    : sampleValueCount_(sampleCount), emptyValues_(sampleCount) {
    historyIDs.fill(1);
    if (rings == Rings::all)
        rings_.assign(kStorageCount, SampleRing(sampleCount));
}

statsample StatCollectorItem::emptySample(double sampleID) const noexcept {
    return {.sampleID = sampleID, .empty = 1, .values = emptyValues_};
}

statsample StatCollectorItem::sampleAtIndex(std::size_t index, StorageType type) const noexcept {
    return storageForType(static_cast<int>(type)).sampleAtIndex(index);
}

statsample StatCollectorItem::sampleWithIdentifier(double sampleID,
                                                   StorageType type) const noexcept {
    const SampleRing& ring = storageForType(static_cast<int>(type));
    const auto position = ring.positionOfIdentifier(sampleID);
    return position ? ring.sampleAtIndex(*position) : emptySample(sampleID);
}

double StatCollectorItem::idForInterval(int index) const noexcept {
    return historyIDs[std::min(static_cast<std::size_t>(index), historyIDs.size() - 1)];
}

double StatCollectorItem::lowestSampleForStorageType(int type) const noexcept {
    return storageForType(type).sampleID(0);
}

void StatCollectorItem::addSample(const SampleFields& sample, int toStorage) noexcept {
    SampleRing& ring = storageForType(toStorage);
    if (const auto sampleID = acceptedSampleID(sample, config, ring))
        addSample(sample, ring, *sampleID);
}

void StatCollectorItem::addSample(const SampleFields& sample, SampleRing& toStorage,
                                  double sampleID) noexcept {
    PushSamples(toStorage);
    writeSampleFields(sample, config, toStorage, 0);
    toStorage.setEmpty(0, 0);
    toStorage.setSampleID(0, sampleID);
}

void StatCollectorItem::addSample(const SampleFields& sample, int toStorage,
                                  std::size_t index) noexcept {
    assert(index < SampleRing::kSlots);
    SampleRing& ring = storageForType(toStorage);
    writeSampleFields(sample, config, ring, index);
    ring.setEmpty(index, 0);
    ring.setSampleID(index, sampleIDInFields(sample, config));
}

void StatCollectorItem::clearAllStorages() noexcept {
    for (int type = 0; type < static_cast<int>(kStorageCount); ++type)
        clearStorageForType(type);
}

void StatCollectorItem::clearStorageForType(int type) noexcept {
    if (!rings_.empty())
        storageForType(type).clear(SampleRing::Times::clear);
}

SampleFields StatCollectorItem::averageForSamples(const SampleRing& samples, int count, double time,
                                                  int minimum, double identifier) const noexcept {
    const bool hasCutoff = time > 0;
    const int limit = hasCutoff ? static_cast<int>(SampleRing::kSlots) : count;
    const double lowestID = std::max(identifier - count, 1.0);
    SampleSums sums;
    for (std::size_t position = 0; position < static_cast<std::size_t>(limit); ++position) {
        if (samples.empty(position))
            continue;
        if (hasCutoff && samples.time(position) <= time)
            break;
        if (hasCutoff || samples.sampleID(position) >= lowestID)
            sums.add(samples.values(position));
    }
    SampleFields average = sums.mean(minimum, config);
    average.set("time", time);
    return average;
}

std::optional<SampleFields> StatCollectorItem::sampleFromStorage(int type, double time, int minimum,
                                                                 double identifier) const {
    if (!key)
        return std::nullopt;
    SampleFields sample =
        averageForSamples(storageForType(type), 0, time, minimum, identifier);
    sample.set("time", time);
    sample.uuid = *key;
    return sample;
}

}  // namespace vantor::inline VANTOR_MODULE
