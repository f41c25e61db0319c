#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "Shared/Collectors/StatSamples.h"
#include "Shared/Graphs/HistoryGraphConfig.h"
#include "Shared/Views/MenubarGraphSamples.h"

namespace vantor::inline VANTOR_MODULE {

/// What of a column's data there is.
enum class ColumnState : std::int8_t { data = 0, gap = 1, painted = 2 };

/// What an update brought.
struct HistoryUpdate {
    std::size_t added = 0;  // new columns
    bool merged = false;    // the newest column that there was before got another sample
};

/// The mean of two samples is that of `a` taken twice where `b` is 0, and the other way round: a
/// zero doesn't drag down its neighbour. The value to average with `b` in the place of `a`.
double containGraphValue(double a, double b) noexcept;

/// The columns of a history graph: as they came from the collector, and scaled for painting.
/// Shape:  kColumns columns, column 0 the newest; values by index as the collector has them, in
///         place from `clear` on, so that a new sample costs no allocation.
/// Units:  those of the collector; scaled, 0 to 1 as a rule.
/// Errors: none. A sample that its collector no longer has is a gap.
/// Thread: main.
class HistoryColumns {
public:
    static constexpr std::size_t kColumns = 601;

    using Sources = std::span<const StatSamples* const>;

    /// Forgets all columns, and makes room for that many values in each.
    void clear(std::size_t valueCount);

    /// Takes the samples that are newer than the newest column, up to `latestSampleID`: an ID a
    /// column, or two where `useAllSamples`. Several sources are added up, ID by ID.
    HistoryUpdate update(double latestSampleID, Sources sources, StorageType type,
                         bool useAllSamples) noexcept;
    double newestSampleID() const noexcept { return columns_.empty() ? 0 : column(0).sampleID; }

    /// Works out one series for the newest `count` columns. Columns past `paintedFrom` that have
    /// data are marked as painted.
    void scale(const HistorySeries& series, std::size_t count, std::size_t paintedFrom) noexcept;
    /// Scales all series again, from `low` to `peaks[slot]`.
    void rescale(std::size_t count, std::span<const double, kGraphSlots> peaks,
                 double low) noexcept;
    /// No column counts as painted.
    void forgetPainted(std::size_t count) noexcept;

    ColumnState state(std::size_t index) const noexcept {
        return index < kColumns ? states_[index] : ColumnState::gap;
    }
    double value(std::size_t slot, std::size_t index) const noexcept;
    /// A column's moment, seconds since 1970; 0 where it isn't known.
    double time(std::size_t index) const noexcept {
        return index < columns_.size() ? column(index).time : 0;
    }
    bool isGap(std::size_t index) const noexcept {
        return index >= columns_.size() || column(index).gap;
    }
    /// As it came from the collector.
    double rawValue(std::size_t index, std::size_t value) const noexcept {
        return value < valueCount_ ? values_[place(index) * valueCount_ + value] : 0;
    }
    /// The greatest of the series' values in the newest `count` columns, at least 0.
    double greatestValue(std::size_t count) const noexcept;

private:
    struct Column {
        double sampleID = 0, time = 0;
        bool gap = true;
    };
    struct Sample {
        double sampleID = 0, time = 0;
        bool empty = true;
    };
    using Series = std::vector<double>;  // kColumns, or none where no series has the slot

    std::size_t place(std::size_t index) const noexcept { return (newest_ + index) % kColumns; }
    Column& column(std::size_t index) noexcept { return columns_[place(index)]; }
    const Column& column(std::size_t index) const noexcept { return columns_[place(index)]; }
    std::span<double> values(std::size_t index) noexcept {
        return std::span(values_).subspan(place(index) * valueCount_, valueCount_);
    }
    Sample read(double sampleID, Sources sources, StorageType type) noexcept;
    void merge(const Sample& sample) noexcept;
    void push(const Sample& sample) noexcept;
    Series& seriesOf(std::size_t slot);

    // Columns stand in a circle, so that a new one moves no other.
    std::size_t newest_ = 0, valueCount_ = 0;
    std::vector<Column> columns_;
    std::vector<double> values_, sums_;
    std::array<ColumnState, kColumns> states_{};
    std::array<Series, kGraphSlots> series_;
};

}  // namespace vantor::inline VANTOR_MODULE
