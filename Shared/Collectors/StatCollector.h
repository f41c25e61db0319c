#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/NotificationCenter.h"
#include "Foundation/PropertyValue.h"
#include "Foundation/WeakHandle.h"
#include "Platform/MainQueue.h"
#include "Platform/Ports.h"
#include "Shared/Collectors/HistoryReading.h"
#include "Shared/Collectors/HistoryTables.h"
#include "Shared/Collectors/SampleConfig.h"
#include "Shared/Collectors/SampleFields.h"
#include "Shared/Collectors/SampleRing.h"
#include "Shared/Collectors/StatCollectorDelegate.h"
#include "Shared/Collectors/StatCollectorItem.h"
#include "Shared/Collectors/StatSamples.h"
#include "Shared/Collectors/StorageType.h"

namespace vantor {
class SerialQueue;
}

namespace vantor::inline VANTOR_MODULE {

class HistoryDatabaseItem;
class SQLDatabase;

/// Measures about once a second and keeps what it measured at four time scales in memory, and at
/// three of them in a history file, if it is given one. A concrete collector says how to measure
/// and under which keys its figures travel.
///
/// The loop has no repeating timer: each tick measures if anybody wants it, rolls up every scale
/// that has fallen due on one six-second grid of wall-clock time, tells the delegates and arms
/// the next tick for the next whole second. A scale that was missed gets gaps, never a late
/// sample: a gap is a gap.
/// Units:  times are seconds since 1970.
/// Errors: none. Trouble with the file loses history and nothing else; one that can't be read at
///         the start for a reason that may pass is read, and written, later.
/// Thread: main queue; making a collector and loading its history may happen elsewhere before
///         `startLogging`, which may be called from any thread. In the meantime readers are kept
///         away by `hideSamples`.
class StatCollector : public StatSamples {
public:
    enum class Rings { all, none };

    static constexpr std::size_t sampleCount() noexcept { return 0; }

    /// `name` is the collector's in journals, `description` the one in messages; both literals.
    StatCollector(const Ports& ports, std::string_view name, std::string_view description,
                  std::size_t sampleCount, Rings rings = Rings::all);
    ~StatCollector() override;
    StatCollector(const StatCollector&) = delete;
    StatCollector& operator=(const StatCollector&) = delete;

    // What it is.
    std::string_view name() const noexcept { return name_; }
    std::string_view description() const noexcept { return description_; }
    std::string_view dbTablePrefix() const noexcept { return dbTablePrefix_; }
    std::size_t sampleValueCount() const noexcept override { return sampleValueCount_; }
    bool temporary() const noexcept override { return false; }
    StorageKind storageType() const noexcept { return storageType_; }
    const SampleConfig& config() const noexcept { return config_; }
    /// The clock in whole seconds when the collector was made.
    std::int64_t sessionID() const noexcept { return sessionID_; }

    // Samples, for readers.
    std::array<sampleindexconfig, kScaleCount>& sampleIndex() noexcept { return sampleIndex_; }
    const std::array<sampleindexconfig, kScaleCount>& sampleIndex() const noexcept {
        return sampleIndex_;
    }
    /// From here until `showSamples` everything that reads a collector finds it without samples
    /// and items, so that its history can be loaded on another thread meanwhile. Main queue, before
    /// that begins and after it has ended.
    void hideSamples();
    void showSamples() noexcept;
    /// 1, 2 and 3 give hour, day and week; any other type gives the ring of now. Only where the
    /// collector has rings. The first is for writers, the second for readers.
    SampleRing& storageForType(int type) noexcept { return rings_[storageIndex(type)]; }
    const SampleRing& storageForType(int type) const noexcept {
        return hidden_ ? hidden_->ring : ring(type);
    }
    statsample sampleAtIndex(std::size_t index, StorageType type) const noexcept override;
    statsample sampleWithIdentifier(double sampleID, StorageType type) const noexcept override;
    /// Seconds between two samples: 1008 for the week, 144 for the day, else 6.
    static double timeForType(int type) noexcept;
    /// 0 where there is no sample, or for a type above 7.
    double lastTimeForType(int type) const noexcept;
    double lastIDForType(int type) const noexcept;
    /// The newest ID; with storage type 2 the lowest newest ID of all items, -1 without items.
    double lowestSampleForStorageType(int type) const noexcept;
    double idForInterval(int index) const noexcept override;
    void setIDForInterval(double sampleID, int index) noexcept;
    virtual double latestSampleID() const noexcept { return 0; }

    // Samples, for writers. One whose ID isn't newer than the newest is ignored.
    void addSample(const SampleFields& sample, SampleRing& toStorage) noexcept;
    void addSample(const SampleFields& sample, SampleRing& toStorage, double sampleID) noexcept;
    void addSampleToStorageType(const SampleFields& sample, int type);
    void addHourSample(const SampleFields& sample) { addScaleSample(sample, 1); }
    void addDaySample(const SampleFields& sample) { addScaleSample(sample, 2); }
    void addWeekSample(const SampleFields& sample) { addScaleSample(sample, 3); }
    /// One item's figures; an item that isn't known yet is made as a temporary one.
    void addSampleItem(const SampleFields& item, int toStorageType);
    void addHourSampleItem(const SampleFields& item) { addSampleItem(item, 1); }
    void addDaySampleItem(const SampleFields& item) { addSampleItem(item, 2); }
    void addWeekSampleItem(const SampleFields& item) { addSampleItem(item, 3); }
    void clearStorageForType(int type) noexcept;
    void clearAllStorages() noexcept;

    // Roll-ups.
    /// The mean of the samples that aren't gaps, from the newest: those after `time` when it is
    /// above 0, else the newest `count`. Empty, with zeros, below `minimum` samples or without
    /// any. "time" is the clock's.
    SampleFields averageForSamples(const SampleRing& samples, int count, double time,
                                   int minimum) const noexcept;
    /// The mean over the last interval of a scale before `time`.
    SampleFields sampleFromStorage(int type, int index, double time, int minimum) const noexcept;
    /// The same for every item that is a live thing with history, under "items".
    SampleFields sampleItemsFromStorage(int type, int index, double time, int minimum) const;
    SampleFields hourSample(double time) const { return rolledUpSample(1, time); }
    SampleFields daySample(double time) const { return rolledUpSample(2, time); }
    SampleFields weekSample(double time) const { return rolledUpSample(3, time); }
    SampleFields emptySampleWithIdentifier(double sampleID, double time) const noexcept;

    // The loop.
    void addDelegate(StatCollectorDelegate& delegate);
    void removeDelegate(StatCollectorDelegate& delegate) noexcept;
    void startLogging();
    /// Ends the loop at its next tick and drops the delegates.
    virtual void cleanup() noexcept;
    /// Measures now: fills the newest slot of the ring of now and tells the delegates.
    void updateStats();
    /// Measures as part of the tick of that number.
    void updateStatsForSequence(int sequence);
    virtual bool shouldUpdateStateForSequence(int sequence);
    virtual bool threadedUpdating() const noexcept { return false; }
    virtual void resetUpdateSequence() {}
    virtual double updateFrequencyForVersion(int) const noexcept { return 1; }
    virtual void newSessionRequest() {}
    void setNeedsUpdate() noexcept { needsUpdate_ = true; }
    void enableDatabase() noexcept { databaseEnabled_ = true; }

    // The schedule.
    double startTimeForInterval(float interval) const noexcept;
    void checkNextTimeAtIndex(int index) noexcept;
    double nextTimeForType(int type, float interval) const noexcept;
    bool updateSample(int index);
    double insertSampleWithIndex(int index, double identifier, double time);
    /// Writes gaps for the slots between the last sample of a row and now; those older than
    /// what a ring keeps get none.
    void fillGapsAtIndex(int index);
    void fillGaps();

    // The history file. Without a path none of it does anything. One file is one collector's.
    const std::optional<std::filesystem::path>& dbpath() const noexcept { return history_.path; }
    const std::optional<std::filesystem::path>& dbpathLong() const noexcept {
        return longHistory_.path;
    }
    /// Opens the file, so it comes after whatever may put another one in its place.
    void setDbpath(std::optional<std::filesystem::path> path) {
        setFile(history_, std::move(path));
    }
    /// The file of the long-term table.
    void setDbpathLong(std::optional<std::filesystem::path> path) {
        setFile(longHistory_, std::move(path));
    }
    virtual std::optional<std::string_view> tableAtIndex(int index) const noexcept {
        return tables_.tableAtIndex(index);
    }
    std::optional<std::string_view> itemTableAtIndex(int index) const noexcept {
        return tables_.itemTableAtIndex(index);
    }
    /// Makes the tables of hour, day, week and month where they are missing, and answers what
    /// `migrateDatabase` makes of whether one was, or else of `result`.
    virtual bool prepareDatabase(bool result);
    virtual bool migrateDatabase(bool) { return false; }
    /// True when a table had to be made, else `result`.
    bool checkIfTablesExist(int index, HistoryDatabaseItem* inDB, bool result);
    bool checkIfLongTermTablesExist(int index, HistoryDatabaseItem* inDB, bool result);

    /// Fills the rings of hour, day and week from the file, and only from it.
    void loadPreviousSamples();
    void loadPreviousSamplesAtIndex(int index);
    /// The same for the items, which are made if need be.
    void loadPreviousSampleItems();
    void loadPreviousSampleItemsAtIndex(int index);
    /// Puts what the file has of an item behind what its rings have. Returns at once; `reply` is
    /// called for each scale that was looked up.
    void loadPreviousSamplesForItem(StatCollectorItem& item, std::function<void()> reply);
    /// The newest rows, a ring and one at most, the oldest first. Of a row's figures those that a
    /// sample of this collector can have.
    std::vector<SampleFields> samplesFromTable(std::optional<std::string_view> table);
    /// Those up to `identifier` and at most 602 IDs before it, the oldest first.
    std::vector<SampleFields> samplesFromTable(std::optional<std::string_view> table,
                                               double identifier);

    /// Keeps the row for the next commit.
    void insertSample(const SampleFields& sample, int intoTableAtIndex);
    /// Keeps the removal of all but the newest 602 IDs for the next commit.
    void removeOldSamplesAtIndex(int index);
    /// Prunes the tables and has everything that waits written.
    void runDatabaseQueue();

    std::optional<SampleFields> lastLongTermSample();
    virtual void addLongTermSample(const SampleFields&) {}
    virtual double lastSampleIDFromTable(std::string_view) const noexcept { return 0; }

    int updateSequence() const noexcept { return updateSequence_; }
    double updateTime() const noexcept { return updateTime_; }
    bool stopped() const noexcept { return stopped_; }
    bool enabled() const noexcept { return enabled_; }
    void setEnabled(bool enabled) noexcept { enabled_ = enabled; }
    bool databaseEnabled() const noexcept { return databaseEnabled_; }
    bool automaticSampleUpdates() const noexcept { return automaticSampleUpdates_; }
    void setAutomaticSampleUpdates(bool automatic) noexcept { automaticSampleUpdates_ = automatic; }
    const std::vector<StatCollectorDelegate*>& delegates() const noexcept { return delegates_; }

    // Items.
    const std::vector<std::unique_ptr<StatCollectorItem>>& items() const noexcept {
        return hidden_ ? hidden_->items : items_;
    }
    /// The live item of that key, or null. A number stands for its text.
    StatCollectorItem* itemWithKey(const PropertyValue& key);
    enum class Temporary { no, yes };
    /// With `yes`, temporary items count, and an unknown key makes one; null only where this
    /// collector has no items.
    StatCollectorItem* itemWithKey(const PropertyValue& key, Temporary temporary);
    /// The item of that key as a live one, made if need be; null where there are no items.
    StatCollectorItem* newItemWithKey(std::string_view key);
    void sort();
    /// Removes what the latest refresh didn't find; whether there was any.
    bool removeOldItems();
    void markItemsAsMissing() noexcept { setItemsExist(false); }
    void markItemsAsExisting() noexcept { setItemsExist(true); }
    virtual void resetItems() {}
    virtual bool shouldAddSampleItem(const SampleFields&) const { return true; }
    const std::optional<std::string>& selectionKey() const noexcept { return selectionKey_; }
    void setSelectionKey(std::optional<std::string> key) { selectionKey_ = std::move(key); }
    void addSelectionKeyItem(std::string_view key);
    void removeSelectionKeyItem(std::string_view key);

    int protocolVersion = 0;

protected:
    virtual void measure() = 0;
    /// A new item of this collector's kind; null for a collector without items.
    virtual std::unique_ptr<StatCollectorItem> makeItem() const { return nullptr; }

    const Ports& ports() const noexcept { return ports_; }
    SampleConfig& mutableConfig() noexcept { return config_; }
    void setStorageType(StorageKind kind);
    void setTablePrefix(std::string_view prefix);
    /// Those that there are of the file and the long-term file, null else.
    std::array<HistoryDatabaseItem*, 2> historyFiles() const noexcept {
        return {history_.item.get(), longHistory_.item.get()};
    }
    std::vector<std::unique_ptr<StatCollectorItem>>& mutableItems() noexcept { return items_; }
    SampleRing& historyNow() noexcept { return rings_[0]; }
    /// Raises the ID of the row of now by 1.
    double nextSampleID() noexcept { return sampleIndex_[0].sampleID += 1; }
    void tellDelegates(int mode);

private:
    /// A path and the open file behind it.
    struct HistoryFile {
        std::optional<std::filesystem::path> path;
        std::shared_ptr<HistoryDatabaseItem> item;  // null without a path
    };
    /// What readers find while the history is being loaded.
    struct Hidden {
        SampleRing ring;
        std::vector<std::unique_ptr<StatCollectorItem>> items;
    };
    struct ItemSearch;

    static constexpr int kLastPreparedIndex = 4;  // the month, which nothing fills yet

    const SampleRing& ring(int type) const noexcept { return rings_[storageIndex(type)]; }
    static void setFile(HistoryFile& file, std::optional<std::filesystem::path> path);
    void insertItems(const SampleFields& sample, int index, HistoryDatabaseItem& inDB);
    std::optional<ItemSearch> searchFor(const StatCollectorItem& item, int index) const;
    void placeLoadedSamples(StatCollectorItem& item, int index,
                            const std::vector<SampleFields>& newestFirst);
    std::vector<SampleFields>
    readSamples(const std::function<std::vector<SampleFields>(SQLDatabase&)>& query);
    void placeLoadedRows(int index, const std::vector<SampleFields>& oldestFirst);
    void placeLoadedItemRows(int index, const std::vector<SampleFields>& oldestFirst);
    void settleHistory();
    void beginAfresh();
    HistoryReading historyReading() const;
    void adoptHistory(const HistoryScales& scales);
    void adoptScale(int index, const HistoryScale& scale);
    std::vector<SampleFields> samplesInRings(int index) const;
    void addItemsInRings(int index, SampleFields& sample) const;
    void addGaps(int index, double until);
    void addScaleSample(const SampleFields& sample, int type);
    void writeScaleSample(SampleFields& sample, int index, double sampleID);
    SampleFields rolledUpSample(int index, double time) const;
    void updateSamplesAndLogging();
    void measureIfWanted();
    void finishTick();
    bool rollUpDueScales();
    void armTick(double delaySeconds);
    void armNextTick();
    void setItemsExist(bool exist) noexcept;
    void setSelectionKeys(const std::vector<std::string>& keys);
    void sleep();
    void wake();

    Ports ports_;
    std::string_view name_, description_, dbTablePrefix_;
    std::size_t sampleValueCount_;
    StorageKind storageType_ = StorageKind::collector;
    SampleConfig config_;
    std::int64_t sessionID_;
    std::vector<double> emptyValues_;
    std::array<sampleindexconfig, kScaleCount> sampleIndex_;
    std::vector<SampleRing> rings_;
    std::unique_ptr<Hidden> hidden_;

    HistoryTables tables_{dbTablePrefix_, storageType_};
    HistoryFile history_, longHistory_;
    bool historyMissed_ = false;  // not all of it could be read for now

    std::vector<StatCollectorDelegate*> delegates_;
    std::unique_ptr<SerialQueue> queue_;
    int updateSequence_ = 0;
    double updateTime_ = 0;  // the whole second that the current tick stands for
    std::optional<int> measuredSequence_;
    bool enabled_ = true, databaseEnabled_ = true, automaticSampleUpdates_ = true;
    bool stopped_ = false, needsUpdate_ = false;
    MainQueue::CallID enableDatabaseCall_ = MainQueue::CallID::none;

    std::vector<std::unique_ptr<StatCollectorItem>> items_;
    std::optional<std::string> selectionKey_;

    Observation willSleep_, didWake_;
    WeakSource<StatCollector> self_{*this};
};

}  // namespace vantor::inline VANTOR_MODULE
