#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Foundation/PropertyValue.h"
#include "Shared/Collectors/SampleConfig.h"
#include "Shared/Collectors/SampleFields.h"
#include "Shared/Collectors/SampleRing.h"
#include "Shared/Collectors/StatSamples.h"
#include "Shared/Collectors/StorageType.h"

namespace vantor::inline VANTOR_MODULE {

/// One of the things of a kind that a collector measures, such as a graphics processor, with
/// rings of its own.
/// Shape:  the four rings of now, hour, day and week, or none for a thing that keeps its
///         samples another way.
/// Thread: main queue only.
class StatCollectorItem : public StatSamples {
public:
    enum class Rings { all, none };

    static constexpr std::size_t sampleCount() noexcept { return 0; }

    explicit StatCollectorItem(std::size_t sampleCount = 0, Rings rings = Rings::all);
    StatCollectorItem(const StatCollectorItem&) = delete;
    StatCollectorItem& operator=(const StatCollectorItem&) = delete;

    std::size_t sampleValueCount() const noexcept override { return sampleValueCount_; }
    bool temporary() const noexcept override { return temporary_; }
    void setTemporary(bool temporary) noexcept { temporary_ = temporary; }

    /// Only where the item has rings.
    SampleRing& storageForType(int type) noexcept { return rings_[storageIndex(type)]; }
    const SampleRing& storageForType(int type) const noexcept { return rings_[storageIndex(type)]; }
    statsample sampleAtIndex(std::size_t index, StorageType type) const noexcept override;
    statsample sampleWithIdentifier(double sampleID, StorageType type) const noexcept override;
    double idForInterval(int index) const noexcept override;
    double lowestSampleForStorageType(int type) const noexcept;

    /// Takes the sample unless its ID isn't newer than the newest. An item's sample is never a gap.
    void addSample(const SampleFields& sample, int toStorage) noexcept;
    void addSample(const SampleFields& sample, SampleRing& toStorage, double sampleID) noexcept;
    /// Writes into a slot without moving the others, for history that is behind them.
    void addSample(const SampleFields& sample, int toStorage, std::size_t index) noexcept;

    void clearAllStorages() noexcept;
    void clearStorageForType(int type) noexcept;

    /// With a cut-off above 0, the mean of the samples after it; else that of the newest `count`
    /// whose ID is at least `identifier` minus `count`. "time" is the cut-off.
    SampleFields averageForSamples(const SampleRing& samples, int count, double time, int minimum,
                                   double identifier) const noexcept;
    /// The mean of the samples after `cutoff` under the item's key, bearing `cutoff` as its time;
    /// nothing for an item without key.
    std::optional<SampleFields> sampleFromStorage(int type, double time, int minimum,
                                                  double identifier) const;

    /// The sample's figures as texts, by the keys under which they are exported.
    PropertyValue::Dictionary xmlSampleFromSample(const statsample& sample, std::size_t index,
                                                  int protocol) const;
    /// The samples after that ID, the oldest first; for -1 the newest one, under the ID -1.
    std::vector<PropertyValue::Dictionary> samplesSinceID(double sampleID, StorageType type,
                                                          int protocol) const;

    virtual void resetAttributes() {}
    virtual void removeInvalidAttributes() {}
    /// Where the item stands beside another: negative before it, positive behind it. The base
    /// stands before any other, which leaves a list as it is.
    virtual int sort(const StatCollectorItem&) const noexcept { return -1; }

    /// The newest IDs by index of the schedule's rows; that of now first.
    std::array<double, kScaleCount - 1> historyIDs;
    bool slowUpdating = false;
    bool nohistory = false;  // takes no part in roll-ups
    bool exists = false;     // found at the latest refresh
    bool loadedHistory = false;
    bool visible = false, selected = false;
    std::optional<std::string> key;
    std::string alternateKey;
    SampleConfig config;
    int protocolVersion = 0;

protected:
    /// What a look-up that finds nothing gives: a gap of that ID, with all values 0.
    statsample emptySample(double sampleID) const noexcept;

private:
    std::size_t sampleValueCount_;
    bool temporary_ = false;
    std::vector<double> emptyValues_;
    std::vector<SampleRing> rings_;
};

}  // namespace vantor::inline VANTOR_MODULE
