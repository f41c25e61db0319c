#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

#include "Shared/Collectors/StatSamples.h"
#include "Shared/Views/MenuExtraConfig.h"

namespace vantor::inline VANTOR_MODULE {

inline constexpr std::size_t kGraphSlots = 18;

/// One column of a graph. Lives as long as the paint. Without initialisers, so that a run can
/// leave the room that it doesn't need as it is.
struct menubar_graph_sample {
    std::int32_t empty;  // the column has no data
    double sampleid;
    double time;
    std::array<double, kGraphSlots> values;       // added up over the collectors
    std::array<double, kGraphSlots> graphValues;  // scaled, normally 0 to 1
};

/// The collectors whose samples are added up.
using SampleSources = std::span<const StatSamples* const>;

/// A run of recent samples, record 0 the newest, and the peaks in it.
/// Shape:  at most as many records as a ring has slots, on the stack: a paint allocates nothing.
class MenubarGraphRun {
public:
    /// Reads the newest `count` samples of the scale of now; fewer than 1 reads none.
    MenubarGraphRun(std::int64_t count, SampleSources collectors) noexcept;

    std::span<const menubar_graph_sample> records() const noexcept { return {records_.data(), count_}; }
    /// Works out the scaled series of a graph.
    void scale(const GraphDictionary& graph) noexcept;

private:
    void read(std::size_t index, SampleSources collectors) noexcept;
    double scaled(const menubar_graph_sample& record, const GraphDictionary& graph,
                  double peak) const noexcept;
    double dynamicPeak(const GraphDictionary& graph) const noexcept;

    std::size_t count_;
    std::array<double, kGraphSlots> peaks_{};
    std::array<menubar_graph_sample, SampleRing::kSlots> records_;
};

/// The newest samples of the scale of now, added up: the figures at `keys`, over the number of
/// collectors unless `wholeSum`. 0 where the sum isn't a finite number.
double sumOfNewestSamples(SampleSources collectors, std::span<const int> keys, bool wholeSum) noexcept;

/// Whether all preferences that a graph depends on are as it wants them.
bool graphConditionsHold(const GraphDictionary& graph);

/// Calls `paint` with the records and the graph, for each graph whose conditions hold, in order.
template <class Paint>
void drawGraphWithBlock(std::int64_t count, const Graphs& graphs, SampleSources collectors,
                        Paint&& paint) {
    MenubarGraphRun run(count, collectors);
    for (const GraphDictionary& graph : graphs) {
        if (!graphConditionsHold(graph))
            continue;
        run.scale(graph);
        paint(run.records(), graph);
    }
}

}  // namespace vantor::inline VANTOR_MODULE
