#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include <benchmark/benchmark.h>

#include "Hosts/Offscreen/OffscreenHost.h"
#include "Painting/ImageSurface.h"
#include "Platform/Simulated/SimulatedMachine.h"
#include "Programs/vantorbar/CatalogueSheet.h"
#include "Programs/vantorbar/DropdownMenus.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/Collectors/LoadStatCollector.h"
#include "Shared/ProcessContext.h"
#include "Targets/VantorBarCPU/Graphs/CPUGraph.h"
#include "Targets/VantorBarCPU/VantorBarCPU.h"

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

/// The extra on a machine of 16 cores that has worked for a week, and its dropdown.
class Desk {
public:
    Desk() {
        machine_.directories.setResources(kResources);
        machine_.processorCounters.setCPUs(kCores, kCores, kCores, kCores / 2);
        context_.emplace(machine_.ports());
        extra_.emplace(host_);
        for (std::size_t second = 0; second < SampleRing::kSlots; ++second)
            workForASecond();
        for (int scale = 1; scale <= 3; ++scale) {
            fill(CPUStatCollector::sharedCPUCollector(), scale);
            fill(LoadStatCollector::sharedLoadCollector(), scale);
        }
        menus_.emplace(*extra_);
    }
    ~Desk() {
        menus_.reset();
        extra_->willUnload();
    }
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    void workForASecond() {
        std::array<simulated::SimulatedProcessorCounters::Rates, kCores> rates;
        for (std::size_t core = 0; core < kCores; ++core) {
            const double user = 40 + 35 * std::sin(++turn_ / 7), system = 10 + 9 * std::cos(turn_);
            rates[core] = {user, system, 100 - user - system, 0};
        }
        machine_.processorCounters.setRates(rates);
        machine_.loadAverages.setLoads(
            {{static_cast<std::uint32_t>(turn_) % 9000, 4096, 2048}, 2048});
        machine_.run(1);
    }
    bool open(std::initializer_list<std::string_view> names) {
        return std::ranges::all_of(names, [this](auto name) { return menus_->open(name); });
    }
    void close() {
        for (const std::string& name : menus_->openNames())
            menus_->close(name);
    }
    void paint() { menus_->displayIfNeeded(); }
    void forgetPictures() { machine_.localNotifications.post("HISTORYGRAPH_CLEAR_CPU"); }

private:
    static constexpr std::size_t kCores = 16;

    void fill(StatCollector& collector, int scale) {
        SampleRing& ring = collector.storageForType(scale);
        for (std::size_t sample = 1; sample <= SampleRing::kSlots; ++sample) {
            ring.pushSamples();
            ring.setSampleID(0, static_cast<double>(sample));
            ring.setEmpty(0, 0);
            ring.mutableValues(0)[0] = 2 + 1.5 * std::sin(static_cast<double>(sample) / 9);
        }
        collector.setIDForInterval(SampleRing::kSlots, scale);
    }

    simulated::SimulatedMachine machine_;
    std::optional<ProcessContext> context_;
    OffscreenHost host_;
    std::optional<VantorBarCPU> extra_;
    std::optional<DropdownMenus> menus_;
    double turn_ = 0;
};

/// A sample, with all that it changes in an open dropdown; with 1, the menu of the cores is open
/// as well.
void updateOpenDropdown(benchmark::State& state) {
    Desk desk;
    if (!desk.open({"main"}) || (state.range(0) != 0 && !desk.open({"cores"})))
        return state.SkipWithError("the menu doesn't open");
    desk.paint();
    for (auto _ : state) {
        desk.workForASecond();
        desk.paint();
    }
}
BENCHMARK(updateOpenDropdown)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

/// From the click to all pixels, with no picture kept of an earlier opening.
void openDropdown(benchmark::State& state) {
    Desk desk;
    for (auto _ : state) {
        if (!desk.open({"main", "cores", "history", "load"}))
            return state.SkipWithError("a menu doesn't open");
        desk.paint();
        state.PauseTiming();
        desk.close();
        desk.workForASecond();
        desk.forgetPictures();
        state.ResumeTiming();
    }
}
BENCHMARK(openDropdown)->Unit(benchmark::kMillisecond);

void paintWholeCatalogue(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(
            paintCatalogue(kResources, static_cast<double>(state.range(0)), Paper::light));
}
BENCHMARK(paintWholeCatalogue)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantor
