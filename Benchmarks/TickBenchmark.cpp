#include <algorithm>

#include <benchmark/benchmark.h>

#include "Platform/Simulated/SimulatedMachine.h"
#include "Platform/Simulated/SimulatedMenuExtraHost.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/ProcessContext.h"
#include "Targets/VantorBarCPU/VantorBarCPU.h"

namespace vantor {
namespace {

/// Counters that cost next to nothing to read, so that what is measured is ours.
class FlatCounters final : public ProcessorCounters {
public:
    explicit FlatCounters(std::size_t cpus) : cpus_(cpus) {}
    std::size_t cpuCount() const noexcept override { return cpus_; }
    std::int64_t configuredCPUs() const noexcept override { return logicalCores(); }
    std::int64_t logicalCores() const noexcept override { return static_cast<std::int64_t>(cpus_); }
    std::int64_t physicalCores() const noexcept override { return logicalCores() / 2; }
    bool readTicks(std::span<ProcessorTicks> into) noexcept override {
        ++reading_;
        std::ranges::fill(into, ProcessorTicks{30 * reading_, 10 * reading_, 60 * reading_, 0});
        return true;
    }
    ProcessCounts readProcessCounts() noexcept override { return {}; }

private:
    std::size_t cpus_;
    std::uint32_t reading_ = 0;
};

/// One tick of both collectors and the item, beyond the kernel's own reading.
void tick(benchmark::State& state) {
    simulated::SimulatedMachine machine;
    machine.preferences.write("TimerFrequency", std::int64_t{2});
    FlatCounters counters(static_cast<std::size_t>(state.range(0)));
    ProcessContext context(overriddenPorts(machine.ports(), {.processorCounters = &counters}));
    simulated::SimulatedMenuExtraHost host;
    VantorBarCPU extra(host);
    machine.run(20.5);
    for (auto _ : state)
        machine.run(1);
}
BENCHMARK(tick)->Arg(8)->Arg(1024)->Unit(benchmark::kMicrosecond);

/// A week of a machine of eight CPUs in virtual time, without files.
void week(benchmark::State& state) {
    for (auto _ : state) {
        simulated::SimulatedMachine machine;
        machine.processorCounters.setCPUs(8, 8, 8, 4);
        machine.processorCounters.setRates({});
        machine.preferences.write("TimerFrequency", std::int64_t{2});
        ProcessContext context(machine.ports());
        simulated::SimulatedMenuExtraHost host;
        VantorBarCPU extra(host);
        machine.run(7 * 86400.0);
    }
}
BENCHMARK(week)->Unit(benchmark::kSecond)->Iterations(1);

}  // namespace
}  // namespace vantor
