#include "Shared/Collectors/HistoryReading.h"
#include "Shared/Collectors/StatCollector.h"
#include "Shared/Database/HistoryDatabaseItem.h"

// The history of a collector whose file couldn't be read at the start, because the disk failed or
// somebody else held it. The collector begins as on a first run, and nothing is written: its IDs
// would meet those of the rows that nobody has seen. Each commit tries to read the file in its
// place. When that succeeds, the samples of this run take their places behind those of the file.

namespace vantor::inline VANTOR_MODULE {
namespace {

SampleFields fieldsOf(const SampleRing& ring, std::size_t position, const SampleConfig& config) {
    SampleFields fields;
    fields.set("sample", ring.sampleID(position));
    fields.set("time", ring.time(position));
    fields.set("empty", ring.empty(position) ? 1 : 0);
    for (const auto& [key, place] : config.sampleKeys)
        fields.set(key, ring.values(position)[static_cast<std::size_t>(place)]);
    return fields;
}

}  // namespace

/// On the thread of the start, when all was loaded that could be.
void StatCollector::settleHistory() {
    if (!history_.item)
        return;
    if (!historyMissed_) {
        history_.item->allowWrites();
        return;
    }
    beginAfresh();
    history_.item->forgetWrites();
    history_.item->holdWrites([reading = historyReading(), collector = self_.handle(),
                               &mainQueue = ports_.mainQueue](SQLDatabase& database) {
        const std::optional<HistoryScales> scales = reading.read(database);
        if (scales)
            mainQueue.async([kept = std::make_unique<HistoryScales>(*scales), collector] {
                if (StatCollector* const self = collector.get())
                    self->adoptHistory(*kept);
            });
        return scales.has_value();
    });
}

/// What was read before something failed isn't all.
void StatCollector::beginAfresh() {
    clearAllStorages();
    std::erase_if(items_, [](const auto& item) { return item->temporary(); });
    for (int index = 1; index < kMaximumSampleIndexWithLong; ++index)
        sampleIndex_[static_cast<std::size_t>(index)] = {
            .interval = sampleIndex_[static_cast<std::size_t>(index)].interval};
}

HistoryReading StatCollector::historyReading() const {
    const bool hasItems = storageType_ == StorageKind::items;
    HistoryReading reading;
    reading.config = config_;
    for (int index = 1; index <= kLastPreparedIndex; ++index) {
        const auto table = tableAtIndex(index), items = itemTableAtIndex(index);
        if (!table || !items)
            continue;
        reading.tables.push_back(
            {std::string(*table), hasItems ? config_.sqlCreateID : config_.sqlCreate});
        if (hasItems)
            reading.tables.push_back({std::string(*items), config_.sqlCreate});
        if (index >= kMaximumSampleIndex)
            continue;
        reading.samples[static_cast<std::size_t>(index)] = *table;
        reading.items[static_cast<std::size_t>(index)] = hasItems ? *items : "";
    }
    return reading;
}

void StatCollector::adoptHistory(const HistoryScales& scales) {
    if (stopped_)
        return;
    history_.item->forgetWrites();  // all is written anew, under other IDs
    for (int index = 1; index < kMaximumSampleIndex; ++index)
        adoptScale(index, scales[static_cast<std::size_t>(index)]);
    history_.item->allowWrites();
    ports_.localNotifications.post("HISTORYGRAPH_CLEAR_CPU");
    for (int index = 1; index < kMaximumSampleIndex; ++index)
        tellDelegates(index);
    runDatabaseQueue();
}

/// The rows of the file, gaps up to the first sample of this run, and its samples.
void StatCollector::adoptScale(int index, const HistoryScale& scale) {
    sampleindexconfig& row = sampleIndex_[static_cast<std::size_t>(index)];
    const std::vector<SampleFields> own = samplesInRings(index);
    const double nextTime = row.nextTime;
    clearStorageForType(index);
    row.sampleID = sampleindexconfig{}.sampleID;
    row.time = 0;
    placeLoadedRows(index, scale.samples);
    placeLoadedItemRows(index, scale.items);
    if (own.empty() && row.time > 0) {
        fillGapsAtIndex(index);
        return;
    }
    if (row.time > 0)
        addGaps(index, own.front().value("time").value_or(0) - row.interval);
    for (SampleFields sample : own) {
        writeScaleSample(sample, index, row.sampleID + 1);
        row.sampleID += 1;
        row.time = sample.value("time").value_or(0);
    }
    row.nextTime = nextTime;
}

std::vector<SampleFields> StatCollector::samplesInRings(int index) const {
    const SampleRing& samples = ring(index);
    std::vector<SampleFields> found;
    for (std::size_t position = SampleRing::kSlots; position-- > 0;) {
        if (samples.sampleID(position) <= 0)
            continue;
        found.push_back(fieldsOf(samples, position, config_));
        if (storageType_ == StorageKind::items)
            addItemsInRings(index, found.back());
    }
    return found;
}

/// Where values live in items the collector's own ring doesn't tell which samples are gaps.
void StatCollector::addItemsInRings(int index, SampleFields& sample) const {
    for (const auto& item : items_) {
        const SampleRing& samples = item->storageForType(index);
        const auto position = samples.positionOfIdentifier(sample.value("sample").value_or(0));
        if (!position || !item->key)
            continue;
        sample.items.push_back(fieldsOf(samples, *position, item->config));
        sample.items.back().uuid = *item->key;
    }
    sample.set("empty", sample.items.empty() && !items_.empty() ? 1 : 0);
}

}  // namespace vantor::inline VANTOR_MODULE
