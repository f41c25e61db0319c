#include "Shared/Views/MenubarGraphSamples.h"

#include <cmath>

#include "Shared/VTRPreferences.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

std::size_t slotOf(int index) noexcept {
    return std::min(static_cast<std::size_t>(std::max(index, 0)), kGraphSlots - 1);
}

}  // namespace

// The records aren't cleared as a whole: a run has thirty of them as a rule, and room for 602.
MenubarGraphRun::MenubarGraphRun(std::int64_t count, SampleSources collectors) noexcept
    : count_(static_cast<std::size_t>(
          std::clamp<std::int64_t>(count, 0, std::int64_t{SampleRing::kSlots}))) {
    for (std::size_t index = 0; index < count_; ++index)
        read(index, collectors);
}

void MenubarGraphRun::read(std::size_t index, SampleSources collectors) noexcept {
    menubar_graph_sample& record = records_[index] = {};
    for (const StatSamples* const collector : collectors) {
        if (collector->temporary())
            continue;
        const statsample sample = collector->sampleAtIndex(index, StorageType::now);
        const std::size_t count =
            sample.empty == 0 ? std::min(sample.values.size(), kGraphSlots) : 0;
        for (std::size_t value = 0; value < count; ++value)
            record.values[value] += sample.values[value];
        record.empty = count == 0;  // the last collector decides
    }
    for (std::size_t value = 0; value < kGraphSlots; ++value)
        peaks_[value] = std::max(peaks_[value], record.values[value]);
}

double MenubarGraphRun::dynamicPeak(const GraphDictionary& graph) const noexcept {
    if (!graph.dynamicPeak)
        return 0;
    if (graph.individualPeaks)
        return peaks_[slotOf(graph.index)];
    double peak = 0;
    for (const int index : graph.peakIndexes)
        peak = std::max(peak, peaks_[slotOf(index)]);
    return peak;
}

double MenubarGraphRun::scaled(const menubar_graph_sample& record, const GraphDictionary& graph,
                               double peak) const noexcept {
    double value = 0;
    for (const int key : graph.keys)
        value += record.values[slotOf(key)];
    if (graph.divide)
        value /= static_cast<double>(static_cast<float>(*graph.divide));
    if (graph.peakIndex)
        value /= std::max(1.0, record.values[slotOf(*graph.peakIndex)]);
    if (peak > 0)
        value /= peak;
    return std::isfinite(value) ? value : 0;
}

void MenubarGraphRun::scale(const GraphDictionary& graph) noexcept {
    const double peak = dynamicPeak(graph);
    const std::size_t slot = slotOf(graph.index);
    for (std::size_t index = 0; index < count_; ++index)
        records_[index].graphValues[slot] = scaled(records_[index], graph, peak);
}

double sumOfNewestSamples(SampleSources collectors, std::span<const int> keys,
                          bool wholeSum) noexcept {
    std::array<double, kGraphSlots> sums{};
    for (const StatSamples* const collector : collectors) {
        const statsample sample = collector->sampleAtIndex(0, StorageType::now);
        if (collector->temporary() || sample.empty != 0)
            continue;
        for (std::size_t value = 0; value < std::min(sample.values.size(), kGraphSlots); ++value)
            sums[value] += sample.values[value];
    }
    double total = 0;
    for (const int key : keys)
        total += sums[slotOf(key)];
    if (!collectors.empty() && !wholeSum)
        total /= static_cast<double>(collectors.size());
    return std::isfinite(total) ? total : 0;
}

bool graphConditionsHold(const GraphDictionary& graph) {
    return std::ranges::all_of(graph.conditions, [](const PreferenceCondition& condition) {
        return VTRIntegerForKey(condition.key) == condition.value;
    });
}

}  // namespace vantor::inline VANTOR_MODULE
