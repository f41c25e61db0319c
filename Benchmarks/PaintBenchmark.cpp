#include <filesystem>
#include <string>

#include <benchmark/benchmark.h>

#include "Painting/ImageSurface.h"
#include "Platform/Simulated/SimulatedMachine.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/ProcessContext.h"
#include "Shared/VTRPreferences.h"
#include "Targets/VantorBarCPU/Classes/VantorCPUMenuExtraView.h"

namespace vantor {
namespace {

/// One paint of the item after a new sample.
void paintItem(benchmark::State& state, const std::string& modes) {
    simulated::SimulatedMachine machine;
    machine.directories.setResources(std::filesystem::path(VANTOR_BUNDLE_DIR).parent_path());
    ProcessContext context(machine.ports());
    VTRSetObjectForKey("CPU_MenubarMode", modes);
    CPUStatCollector& collector = CPUStatCollector::sharedCPUCollector();
    VantorCPUMenuExtraView view({0, 0, 20, 22}, nullptr);
    Painting::ImageSurface surface({400, 22}, static_cast<double>(state.range(0)));
    std::uint32_t load = 0;
    for (auto _ : state) {
        load = (load + 7) % 100;
        machine.processorCounters.spend(0, {.user = load, .idle = 100 - load});
        collector.updateStats();
        surface.clear();
        Painting::Context picture = surface.context();
        benchmark::DoNotOptimize(view.drawAtOffset(picture, 0));
    }
}

void paintDefaultItem(benchmark::State& state) { paintItem(state, "100,0"); }
BENCHMARK(paintDefaultItem)->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

void paintItemWithTexts(benchmark::State& state) { paintItem(state, "100,0,2,4"); }
BENCHMARK(paintItemWithTexts)->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

void paintEveryKind(benchmark::State& state) { paintItem(state, "100,0,1,2,3,4,5,6"); }
BENCHMARK(paintEveryKind)->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vantor
