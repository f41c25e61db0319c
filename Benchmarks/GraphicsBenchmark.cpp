#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "Platform/Linux/LinuxPlatform.h"
#include "Platform/Linux/LinuxRegistry.h"
#include "Platform/Linux/NVMLReadings.h"
#include "Shared/Collectors/GPUStatCollector.h"
#include "Shared/ProcessContext.h"
#include "Tests/Support/FakeNVML.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

/// A second passes between two samples.
struct SteppingClock final : Clock {
    double time = 100;
    double now() const noexcept override { return time; }
    double monotonic() const noexcept override { return time; }
};

void write(const fs::path& file, std::string_view text) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << text;
}

/// Cards with the files that amdgpu has.
class Cards {
public:
    explicit Cards(int count) {
        std::string pattern = (fs::temp_directory_path() / "vantor-cards-XXXXXX").string();
        root_ = mkdtemp(pattern.data());
        fs::create_directories(root_ / "bus/pci/devices");
        for (int card = 0; card < count; ++card)
            add(root_ / fmt::format("bus/pci/devices/0000:0{}:00.0", card));
    }
    ~Cards() { fs::remove_all(root_); }
    KernelFiles kernel() const { return {.proc = root_, .sys = root_}; }

private:
    static void add(const fs::path& folder) {
        write(folder / "uevent", "DRIVER=amdgpu\nPCI_CLASS=30000\nPCI_ID=1002:73BF\n");
        write(folder / "power/runtime_status", "active\n");
        write(folder / "power/control", "on\n");
        write(folder / "gpu_busy_percent", "42\n");
        write(folder / "mem_info_vram_total", "17163091968\n");
        write(folder / "mem_info_vram_used", "1073741824\n");
    }
    fs::path root_;
};

/// What each sample costs with as many cards as the argument says.
void sampleCards(benchmark::State& state) {
    const Cards cards(static_cast<int>(state.range(0)));
    SteppingClock clock;
    SystemDeviceFiles files;
    LinuxRegistry registry(clock, files, {.kernel = cards.kernel(), .root = "/nonexistent"});
    const auto drivers = registry.objectsMatching({{"IOProviderClass", "IOAccelerator"}});
    for (auto step : state) {
        clock.time += 1;
        for (const RegistryObject& driver : drivers)
            benchmark::DoNotOptimize(driver->property("PerformanceStatistics"));
    }
}
BENCHMARK(sampleCards)->Arg(0)->Arg(1)->Arg(2);

DirectorySources noFolders() {
    return {.environment = [](const std::string&) { return std::optional<std::string>(); },
            .accountHome = [] { return std::nullopt; },
            .program = {},
            .uninstalledResources = {}};
}

/// What the collector takes on the main queue for a sample. The kernel's files are read at most
/// every quarter of a second, so the port's share is above.
void sampleCollector(benchmark::State& state) {
    const Cards cards(static_cast<int>(state.range(0)));
    LinuxPlatform platform(noFolders(), cards.kernel());
    const ProcessContext context(platform.ports());
    GPUStatCollector& collector = GPUStatCollector::sharedGPUCollector();
    collector.fetchGPUS();
    for (auto step : state)
        collector.updateGPUS();
}
BENCHMARK(sampleCollector)->Arg(0)->Arg(1)->Arg(2);

/// The first look at a machine: devices, displays and who is active.
void findCards(benchmark::State& state) {
    const Cards cards(static_cast<int>(state.range(0)));
    for (auto step : state) {
        LinuxPlatform platform(noFolders(), cards.kernel());
        const ProcessContext context(platform.ports());
        GPUStatCollector& collector = GPUStatCollector::sharedGPUCollector();
        const auto start = std::chrono::steady_clock::now();
        collector.fetchGPUS();
        collector.updateDisplays();
        collector.updateActiveGPU();
        collector.updateGPUS();
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        state.SetIterationTime(took.count());
    }
}
BENCHMARK(findCards)->Arg(0)->Arg(1)->Arg(2)->UseManualTime();

/// What the main queue pays for NVIDIA's library while that hangs in a reading: a sample, and
/// another library in its place, as after a change of the devices.
void sampleHangingNVML(benchmark::State& state) {
    using namespace test::nvml_functions;
    constexpr const char* kAddress = "0000:01:00.0";
    constexpr const char* kHangingRates = "API int nvmlDeviceGetUtilizationRates(void*, "
                                          "Utilization*) { note('r'); pause(); return 1; }";
    test::FakeNVML nvml;
    const std::string file = nvml.library({kInit, kShutdown, kHandle, kMemory, kHangingRates});
    std::optional<NVMLReadings> readings;
    readings.emplace(std::vector<std::string>{kAddress}, file);
    while (!nvml.calls().ends_with('r'))
        readings->request(NVMLReadings::Hold::kept);
    for (auto step : state) {
        readings->request(NVMLReadings::Hold::kept);
        benchmark::DoNotOptimize(readings->answer(kAddress));
    }
    const auto start = std::chrono::steady_clock::now();
    readings.emplace(std::vector<std::string>{kAddress}, file);
    const std::chrono::duration<double, std::micro> took = std::chrono::steady_clock::now() - start;
    state.counters["replacing_us"] = took.count();
}
BENCHMARK(sampleHangingNVML)->Iterations(100'000);

}  // namespace
}  // namespace vantor
