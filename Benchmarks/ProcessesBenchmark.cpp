#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "Platform/Linux/LinuxClock.h"
#include "Platform/Linux/LinuxProcessSource.h"
#include "Programs/vantorbar-daemon/ProcessMeter.h"
#include "Tests/Platform/Linux/FakeProcesses.h"

namespace vantor {
namespace {

/// A /proc of our own in memory, with so many processes of a few applications.
class MadeProcesses {
public:
    explicit MadeProcesses(std::int64_t count) {
        std::string pattern = "/dev/shm/vantor-XXXXXX";
        if (::mkdtemp(pattern.data()) == nullptr)
            throw std::runtime_error("no folder in memory");
        folder_ = pattern;
        for (int id = 1; id <= count; ++id) {
            test::writeProcess(folder_, id, "process", 1000);
            const auto process = folder_ / std::to_string(id);
            test::writeText(process / "cmdline", std::string("/usr/bin/process\0", 17));
            test::writeText(process / "cgroup", "0::/user.slice/user-1000.slice/app-" +
                                                    std::to_string(id % 10) + ".scope\n");
        }
    }
    ~MadeProcesses() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    MadeProcesses(const MadeProcesses&) = delete;
    MadeProcesses& operator=(const MadeProcesses&) = delete;

    const std::filesystem::path& folder() const noexcept { return folder_; }

private:
    std::filesystem::path folder_;
};

void listProcesses(benchmark::State& state, const std::filesystem::path& proc,
                   Hierarchy hierarchy) {
    const LinuxClock clock;
    LinuxProcessSource source(clock, proc);
    ProcessMeter meter(source, clock);
    for (auto _ : state) {
        if (!meter.takeReading())
            state.SkipWithError("no reading");
        benchmark::DoNotOptimize(meter.busiest(20, hierarchy));
    }
}

/// Ceilings that we set ourselves: 3 ms for 300 and 45 ms for 5,000.
void scanProcesses(benchmark::State& state) {
    const MadeProcesses made(state.range(0));
    listProcesses(state, made.folder(), Hierarchy::separate);
}
BENCHMARK(scanProcesses)->Arg(300)->Arg(5000)->Unit(benchmark::kMillisecond);

void scanApplications(benchmark::State& state) {
    const MadeProcesses made(state.range(0));
    listProcesses(state, made.folder(), Hierarchy::combined);
}
BENCHMARK(scanApplications)->Arg(300)->Arg(5000)->Unit(benchmark::kMillisecond);

/// With the kernel's own work, which is most of it.
void scanProcessesOfThisMachine(benchmark::State& state) {
    listProcesses(state, "/proc", Hierarchy::combined);
}
BENCHMARK(scanProcessesOfThisMachine)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantor
