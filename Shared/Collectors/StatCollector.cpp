#include "Shared/Collectors/StatCollector.h"

#include <algorithm>

#include "Platform/Clock.h"
#include "Platform/WorkQueues.h"
#include "Platform/Workspace.h"
#include "Shared/Collectors/SampleStore.h"

// What a collector keeps: rings, their samples and the roll-ups between them. The tick and the
// schedule are in StatCollectorSchedule.cpp, the list of items in StatCollectorItems.cpp, the
// history file in StatCollectorDatabase.cpp.

namespace vantor::inline VANTOR_MODULE {
namespace {

/// How a scale is rolled up: from which ring, and over how many samples at least.
struct RollUp {
    int source, minimum;
};
// By index of the schedule. The day and the week both read the hour ring, so that a week's sample
// is a mean of hour samples and never a mean of means.
constexpr RollUp kRollUps[] = {{}, {0, 0}, {1, 4}, {1, 24}};

}  // namespace

StatCollector::StatCollector(const Ports& ports, std::string_view name,
                             std::string_view description, std::size_t sampleCount, Rings rings)
    : ports_(ports), name_(name), description_(description), sampleValueCount_(sampleCount),
      sessionID_(static_cast<std::int64_t>(ports.clock.now())), emptyValues_(sampleCount),
      rings_(rings == Rings::all ? kStorageCount : 0, SampleRing(sampleCount)),
      queue_(ports.workQueues.makeSerialQueue(std::string(description))) {
    for (std::size_t index = 0; index < kScaleCount; ++index)
        sampleIndex_[index].interval = kScaleIntervals[index];
    NotificationCenter& center = ports_.workspace.notificationCenter();
    willSleep_ = center.observe(std::string(kWorkspaceWillSleep), [this](auto&) { sleep(); });
    didWake_ = center.observe(std::string(kWorkspaceDidWake), [this](auto&) { wake(); });
}

StatCollector::~StatCollector() { ports_.mainQueue.cancel(enableDatabaseCall_); }

void StatCollector::setStorageType(StorageKind kind) {
    storageType_ = kind;
    tables_ = HistoryTables(dbTablePrefix_, storageType_);
}

void StatCollector::setTablePrefix(std::string_view prefix) {
    dbTablePrefix_ = prefix;
    tables_ = HistoryTables(dbTablePrefix_, storageType_);
}

void StatCollector::hideSamples() {
    hidden_ = std::make_unique<Hidden>(Hidden{SampleRing(sampleValueCount_), {}});
}

void StatCollector::showSamples() noexcept { hidden_.reset(); }

statsample StatCollector::sampleAtIndex(std::size_t index, StorageType type) const noexcept {
    return storageForType(static_cast<int>(type)).sampleAtIndex(index);
}

statsample StatCollector::sampleWithIdentifier(double sampleID, StorageType type) const noexcept {
    const SampleRing& samples = storageForType(static_cast<int>(type));
    if (const auto position = samples.positionOfIdentifier(sampleID))
        return samples.sampleAtIndex(*position);
    return {.sampleID = sampleID, .empty = 1, .values = emptyValues_};
}

double StatCollector::timeForType(int type) noexcept {
    return type == 2 || type == 3 ? kScaleIntervals[static_cast<std::size_t>(type)] : 6;
}

double StatCollector::lastTimeForType(int type) const noexcept {
    const SampleRing& samples = storageForType(type);
    return type > 7 || samples.sampleID(0) == 0 ? 0 : samples.time(0);
}

double StatCollector::lastIDForType(int type) const noexcept {
    return type > 7 ? 0 : storageForType(type).sampleID(0);
}

double StatCollector::lowestSampleForStorageType(int type) const noexcept {
    if (storageType_ == StorageKind::collector)
        return storageForType(type).sampleID(0);
    std::optional<double> lowest;
    for (const auto& item : items()) {
        const double newest = item->lowestSampleForStorageType(type);
        lowest = std::min(lowest.value_or(newest), newest);
    }
    return lowest.value_or(-1);
}

double StatCollector::idForInterval(int index) const noexcept {
    return hidden_ ? sampleindexconfig{}.sampleID
                   : sampleIndex_[static_cast<std::size_t>(index)].sampleID;
}

void StatCollector::setIDForInterval(double sampleID, int index) noexcept {
    sampleIndex_[static_cast<std::size_t>(index)].sampleID = sampleID;
}

void StatCollector::addSample(const SampleFields& sample, SampleRing& toStorage) noexcept {
    if (storageType_ == StorageKind::items) {  // the values go to the items
        toStorage.pushSamples();
        toStorage.setSampleID(0, sample.value("sample").value_or(0));
        toStorage.setTime(0, sample.value("time").value_or(0));
        return;
    }
    if (const auto sampleID = acceptedSampleID(sample, config_, toStorage))
        addSample(sample, toStorage, *sampleID);
}

void StatCollector::addSample(const SampleFields& sample, SampleRing& toStorage,
                              double sampleID) noexcept {
    PushSamples(toStorage);
    writeSampleFields(sample, config_, toStorage, 0);
    toStorage.setEmpty(0, emptyInFields(sample));
    toStorage.setSampleID(0, sampleID);
}

void StatCollector::addSampleToStorageType(const SampleFields& sample, int type) {
    if (storageType_ == StorageKind::collector) {
        addSample(sample, storageForType(type));
        return;
    }
    for (SampleFields item : sample.items) {
        // An item's own figures win, as they do when its rows are read back from the file.
        for (const std::string_view key : {"sample", "time"})
            if (!item.value(key))
                item.set(key, sample.value(key).value_or(0));
        addSampleItem(item, type);
    }
}

void StatCollector::addSampleItem(const SampleFields& item, int toStorageType) {
    if (StatCollectorItem* const known = itemWithKey(item.uuid, Temporary::yes))
        known->addSample(item, toStorageType);
}

void StatCollector::addScaleSample(const SampleFields& sample, int type) {
    addSample(sample, storageForType(type));
    if (storageType_ == StorageKind::items)
        addSampleToStorageType(sample, type);
}

void StatCollector::clearStorageForType(int type) noexcept {
    for (const auto& item : items_)
        item->clearStorageForType(type);
    if (!rings_.empty())
        storageForType(type).clear(SampleRing::Times::keep);
}

void StatCollector::clearAllStorages() noexcept {
    for (int type = 0; type < static_cast<int>(kStorageCount); ++type)
        clearStorageForType(type);
}

SampleFields StatCollector::averageForSamples(const SampleRing& samples, int count, double time,
                                              int minimum) const noexcept {
    const bool hasCutoff = time > 0;
    const int limit = hasCutoff ? static_cast<int>(SampleRing::kSlots) : count;
    SampleSums sums;
    for (std::size_t position = 0; position < static_cast<std::size_t>(limit); ++position) {
        if (samples.empty(position))
            continue;
        if (hasCutoff && time >= samples.time(position))
            break;
        sums.add(samples.values(position));
    }
    SampleFields average = sums.mean(minimum, config_);
    average.set("time", ports_.clock.now());
    return average;
}

SampleFields StatCollector::sampleFromStorage(int type, int index, double time,
                                              int minimum) const noexcept {
    const double interval = sampleIndex_[static_cast<std::size_t>(index)].interval;
    return averageForSamples(ring(type), 0, time - interval, minimum);
}

SampleFields StatCollector::rolledUpSample(int index, double time) const {
    const auto [source, minimum] = kRollUps[index];
    return storageType_ == StorageKind::items
               ? sampleItemsFromStorage(source, index, time, minimum)
               : sampleFromStorage(source, index, time, minimum);
}

SampleFields StatCollector::emptySampleWithIdentifier(double sampleID, double time) const noexcept {
    SampleFields gap;
    gap.set("sample", sampleID);
    gap.set("time", time);
    gap.set("empty", 1);
    for (const std::string_view key : config_.emptySampleKeys)
        gap.set(key, 0);
    return gap;
}

}  // namespace vantor::inline VANTOR_MODULE
