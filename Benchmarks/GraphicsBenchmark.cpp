#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "Platform/Linux/LinuxRegistry.h"

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

}  // namespace
}  // namespace vantor
