#include "Shared/Graphs/HistoryColumns.h"

#include <algorithm>
#include <cmath>

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kSmallestShown = 0.01;  // of the height, for a value at the low end of the scale

/// How many IDs there are to read: all columns' where that many are new, or where the IDs went
/// back.
std::size_t countOfNewIDs(double latest, double newest) noexcept {
    const double difference = std::trunc(latest - newest);
    return difference >= 0 && difference <= static_cast<double>(HistoryColumns::kColumns)
               ? static_cast<std::size_t>(difference)
               : HistoryColumns::kColumns;
}

bool isEven(double sampleID) noexcept { return std::floor(sampleID * 0.5) * 2 == sampleID; }

}  // namespace

double containGraphValue(double a, double b) noexcept {
    if (a == 0 && b > 0)
        return b;
    if (a > 0 && b == 0)
        return a + a;
    return a;
}

void HistoryColumns::clear(std::size_t valueCount) {
    valueCount_ = std::min(valueCount, kGraphSlots);
    newest_ = 0;
    columns_.assign(kColumns, {});
    values_.assign(kColumns * valueCount_, 0);
    sums_.assign(valueCount_, 0);
    states_.fill(ColumnState::gap);
    for (Series& series : series_)
        std::ranges::fill(series, 0);
}

HistoryUpdate HistoryColumns::update(double latestSampleID, Sources sources, StorageType type,
                                     bool useAllSamples) noexcept {
    HistoryUpdate result;
    if (columns_.empty())
        return result;
    const double last = newestSampleID();
    for (std::size_t left = countOfNewIDs(latestSampleID, last); left > 0; --left) {
        const Sample sample = read(latestSampleID - static_cast<double>(left - 1), sources, type);
        if (last >= sample.sampleID)
            continue;
        if (useAllSamples && isEven(sample.sampleID)) {
            merge(sample);
            result.merged = result.merged || result.added == 0;
        } else {
            push(sample);
            ++result.added;
        }
    }
    return result;
}

/// Leaves the values in `sums_`.
HistoryColumns::Sample HistoryColumns::read(double sampleID, Sources sources,
                                            StorageType type) noexcept {
    Sample sum;
    std::ranges::fill(sums_, 0);
    for (const StatSamples* const source : sources) {
        const statsample sample = source->sampleWithIdentifier(sampleID, type);
        sum.sampleID = sample.sampleID;
        if (sample.empty == 0 || sum.empty)
            sum.time = sample.time;  // a gap has its moment, too
        if (sample.empty != 0)
            continue;
        sum.empty = false;
        for (std::size_t value = 0; value < std::min(sample.values.size(), sums_.size()); ++value)
            sums_[value] += sample.values[value];
    }
    return sum;
}

void HistoryColumns::merge(const Sample& sample) noexcept {
    Column& newest = column(0);
    if (!sample.empty)
        newest.gap = false;
    const std::span<double> kept = values(0);
    for (std::size_t value = 0; value < kept.size(); ++value) {
        const double added = sample.empty ? 0 : std::max(sums_[value], 0.0);
        kept[value] = (kept[value] + containGraphValue(added, kept[value])) * 0.5;
    }
    newest.sampleID = sample.sampleID;
    newest.time = sample.time;
}

void HistoryColumns::push(const Sample& sample) noexcept {
    newest_ = (newest_ + kColumns - 1) % kColumns;
    column(0) = {sample.sampleID, sample.time, sample.empty};
    const std::span<double> kept = values(0);
    for (std::size_t value = 0; value < kept.size(); ++value)
        kept[value] = sample.empty ? 0 : sums_[value];
}

HistoryColumns::Series& HistoryColumns::seriesOf(std::size_t slot) {
    Series& series = series_[std::min(slot, kGraphSlots - 1)];
    if (series.empty())
        series.assign(kColumns, 0);
    return series;
}

void HistoryColumns::scale(const HistorySeries& graph, std::size_t count,
                           std::size_t paintedFrom) noexcept {
    if (columns_.empty())
        return;
    Series& series = seriesOf(graph.index);
    for (std::size_t index = 0; index < std::min(count, kColumns); ++index) {
        double value = 0;
        for (const std::size_t key : graph.keys)
            value += rawValue(index, key);
        if (graph.divide)
            value /= static_cast<double>(*graph.divide);
        if (graph.peakIndex)
            value /= std::max(1.0, rawValue(index, *graph.peakIndex));
        series[index] = std::isfinite(value) ? value : 0;
        const bool painted = index > paintedFrom;
        if (column(index).gap)
            states_[index] = ColumnState::gap;
        else
            states_[index] = painted ? ColumnState::painted : ColumnState::data;
    }
}

void HistoryColumns::rescale(std::size_t count, std::span<const double, kGraphSlots> peaks,
                             double low) noexcept {
    for (std::size_t slot = 0; slot < kGraphSlots; ++slot) {
        const double difference = peaks[slot] - low;
        const double range = difference < 0 ? 1 : difference;
        if (!(range > 0) || series_[slot].empty())
            continue;
        for (double& value : std::span(series_[slot]).first(std::min(count, kColumns))) {
            if (!(value > 0))
                continue;
            value = (value - low) / range;
            if (value == 0)
                value = kSmallestShown;
        }
    }
}

void HistoryColumns::forgetPainted(std::size_t count) noexcept {
    for (ColumnState& state : std::span(states_).first(std::min(count, kColumns)))
        if (state == ColumnState::painted)
            state = ColumnState::data;
}

double HistoryColumns::value(std::size_t slot, std::size_t index) const noexcept {
    const Series& series = series_[std::min(slot, kGraphSlots - 1)];
    return index < series.size() ? series[index] : 0;
}

double HistoryColumns::greatestValue(std::size_t count) const noexcept {
    constexpr std::size_t kSlotsLookedAt = 10;
    double greatest = 0;
    for (const Series& series : std::span(series_).first(kSlotsLookedAt))
        for (std::size_t index = 0; index < std::min(count, series.size()); ++index)
            greatest = std::max(greatest, series[index]);
    return greatest;
}

}  // namespace vantor::inline VANTOR_MODULE
