#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "Hosts/Menu/MenuChain.h"
#include "Hosts/Offscreen/OffscreenHost.h"
#include "Painting/ImageSurface.h"
#include "Platform/Simulated/SimulatedMachine.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/Collectors/LoadStatCollector.h"
#include "Shared/ProcessContext.h"
#include "Targets/VantorBarCPU/VantorBarCPU.h"
#include "Tests/Support/ScriptedMenuWindows.h"

namespace vantor {
namespace {

constexpr std::size_t kCores = 16;
constexpr double kHistorySeconds = 700;  // more than a ring holds

/// The processors' dropdown over full history, in a window that nobody sees.
struct Scene {
    explicit Scene(double scale) : scale_(scale) {
        machine.directories.setResources(std::filesystem::path(VANTOR_BUNDLE_DIR).parent_path());
        machine.processorCounters.setCPUs(kCores, kCores, kCores, kCores);
        context.emplace(machine.ports());
        extra.emplace(host);
        machine.run(0.5);
        for (double second = 0; second < kHistorySeconds; ++second) {
            work();
            machine.run(1);
        }
        menus.emplace(machine.mainQueue, [] {});
        windows.repaints.reserve(256);
    }
    ~Scene() {
        menus.reset();
        extra->willUnload();
    }
    void work() {
        load_ = (load_ + 7) % 90;
        for (std::size_t cpu = 0; cpu < kCores; ++cpu)
            machine.processorCounters.spend(cpu, {.user = load_, .system = 5, .idle = 95 - load_});
    }
    bool open() { return menus->open(*extra->menu(), windows); }
    Rect whole() const {
        const Size size = menus->windowSize(0);
        return {0, 0, size.width, size.height};
    }
    void paint(std::size_t level, std::span<const Rect> parts) {
        if (!surface || surface->size() != menus->windowSize(level))
            surface.emplace(menus->windowSize(level), scale_);
        Painting::Context picture = surface->context(Painting::Origin::upperLeft);
        menus->paint(picture, level, parts);
        menus->paintEdge(picture, level, parts, 6);
    }

    double scale_;
    std::uint32_t load_ = 0;
    simulated::SimulatedMachine machine;
    std::optional<ProcessContext> context;
    OffscreenHost host;
    std::optional<VantorBarCPU> extra;
    test::ScriptedMenuWindows windows;
    std::optional<MenuChain> menus;
    std::optional<Painting::ImageSurface> surface;
};

/// From the click to a painted dropdown, without what the toolkit does.
void openDropdown(benchmark::State& state) {
    Scene scene(static_cast<double>(state.range(0)));
    for (auto _ : state) {
        if (!scene.open())
            state.SkipWithError("it doesn't open");
        scene.paint(0, std::array{scene.whole()});
        state.PauseTiming();
        scene.menus->close();
        scene.machine.run(0.01);
        state.ResumeTiming();
    }
}
BENCHMARK(openDropdown)->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

/// What a sample costs while the dropdown is open: texts, graphs, and the paint of what changed.
void updateOpenDropdown(benchmark::State& state) {
    Scene scene(static_cast<double>(state.range(0)));
    if (!scene.open())
        state.SkipWithError("it doesn't open");
    scene.paint(0, std::array{scene.whole()});
    for (auto _ : state) {
        state.PauseTiming();
        scene.windows.repaints.clear();
        scene.work();
        state.ResumeTiming();
        CPUStatCollector::sharedCPUCollector().updateStats();
        LoadStatCollector::sharedLoadCollector().updateStats();
        scene.paint(0, scene.windows.repaints);
    }
    state.counters["parts"] = static_cast<double>(scene.windows.repaints.size());
}
BENCHMARK(updateOpenDropdown)->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

/// The pointer comes to another row: its highlight and that of the row before.
void highlightRow(benchmark::State& state) {
    Scene scene(static_cast<double>(state.range(0)));
    if (!scene.open())
        state.SkipWithError("it doesn't open");
    scene.paint(0, std::array{scene.whole()});
    bool first = false;
    for (auto _ : state) {
        scene.windows.repaints.clear();
        first = !first;
        scene.menus->highlight(0, scene.menus->picture(0).rowAt({100, first ? 60.0 : 120.0}));
        scene.machine.run(0.0001);
        scene.paint(0, scene.windows.repaints);
    }
}
BENCHMARK(highlightRow)->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vantor
