#include <algorithm>
#include <cmath>
#include <filesystem>
#include <optional>

#include <benchmark/benchmark.h>

#include "Painting/ImageSurface.h"
#include "Platform/Simulated/SimulatedMachine.h"
#include "Programs/vantorbar/CatalogueSheet.h"
#include "Shared/ProcessContext.h"
#include "Targets/VantorBarCPU/Graphs/CPUGraph.h"

namespace vantor {
namespace {

const std::filesystem::path kResources = std::filesystem::path(VANTOR_BUNDLE_DIR).parent_path();
constexpr Size kGraph{304, 70};

/// A ring that is full, of waves.
class Waves final : public StatSamples {
public:
    Waves() {
        for (std::size_t sample = 0; sample < SampleRing::kSlots; ++sample)
            add();
    }
    void add() {
        ring_.pushSamples();
        ring_.setSampleID(0, ++lastID_);
        ring_.setEmpty(0, 0);
        const double values[]{30 + 25 * std::sin(lastID_ / 7), 12 + 9 * std::cos(lastID_ / 3), 0};
        std::ranges::copy(values, ring_.mutableValues(0).begin());
    }

    statsample sampleAtIndex(std::size_t index, StorageType) const noexcept override {
        return ring_.sampleAtIndex(index);
    }
    statsample sampleWithIdentifier(double sampleID, StorageType) const noexcept override {
        const auto position = ring_.positionOfIdentifier(sampleID);
        return position ? ring_.sampleAtIndex(*position)
                        : statsample{.sampleID = sampleID, .empty = 1, .values = {}};
    }
    double idForInterval(int) const noexcept override { return lastID_; }
    std::size_t sampleValueCount() const noexcept override { return ring_.valueCount(); }
    bool temporary() const noexcept override { return false; }

private:
    SampleRing ring_{3};
    double lastID_ = 0;
};

/// A world with artwork and a graph in it that has been painted once.
struct Scene {
    explicit Scene(double scale) : surface(kGraph, scale) {
        machine.directories.setResources(kResources);
        context.emplace(machine.ports());
        graph.emplace(Rect{0, 0, kGraph.width, kGraph.height});
        graph->setSizeType(1);
        graph->setBreakStroke(true);
        graph->setCollector(&samples);
        paint();
    }
    void paint() {
        Painting::Context picture = surface.context(Painting::Origin::upperLeft);
        graph->display(picture);
    }

    simulated::SimulatedMachine machine;
    std::optional<ProcessContext> context;
    Waves samples;
    Painting::ImageSurface surface;
    std::optional<CPUGraph> graph;
};

/// The paint of an open dropdown's graph at each sample.
void paintNewSample(benchmark::State& state) {
    Scene scene(static_cast<double>(state.range(0)));
    for (auto _ : state) {
        scene.samples.add();
        scene.paint();
    }
}
BENCHMARK(paintNewSample)->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

/// All columns again, with what they need read from the ring: a graph's first paint.
void paintWholeGraph(benchmark::State& state) {
    Scene scene(static_cast<double>(state.range(0)));
    for (auto _ : state) {
        scene.graph->clearCache();
        scene.paint();
    }
}
BENCHMARK(paintWholeGraph)->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

/// What reading costs of that, two samples a column.
void readWholeHistory(benchmark::State& state) {
    const Waves samples;
    const StatSamples* const source = &samples;
    HistoryColumns columns;
    for (auto _ : state) {
        columns.clear(samples.sampleValueCount());
        benchmark::DoNotOptimize(
            columns.update(samples.idForInterval(0), {&source, 1}, StorageType::hour, true));
    }
}
BENCHMARK(readWholeHistory)->Unit(benchmark::kMicrosecond);

void paintWholeCatalogue(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(
            paintCatalogue(kResources, static_cast<double>(state.range(0)), Paper::light));
}
BENCHMARK(paintWholeCatalogue)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantor
