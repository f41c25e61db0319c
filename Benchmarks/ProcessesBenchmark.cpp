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

/// A /proc of our own in memory, with so many processes of ten applications: under the first one
/// of each, its children. A few of them are busy.
class MadeProcesses {
public:
    explicit MadeProcesses(std::int64_t count) : count_(static_cast<int>(count)) {
        std::string pattern = "/dev/shm/vantor-XXXXXX";
        if (::mkdtemp(pattern.data()) == nullptr)
            throw std::runtime_error("no folder in memory");
        folder_ = pattern;
        for (int id = 1; id <= count_; ++id) {
            writeStat(id);
            const auto process = folder_ / std::to_string(id);
            test::writeText(process / "cmdline", std::string("/usr/bin/process\0", 17));
            test::writeText(process / "cgroup", "0::/user.slice/user-1000.slice/app-" +
                                                    std::to_string(id % kApplications) +
                                                    ".scope\n");
        }
    }
    ~MadeProcesses() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    MadeProcesses(const MadeProcesses&) = delete;
    MadeProcesses& operator=(const MadeProcesses&) = delete;

    const std::filesystem::path& folder() const noexcept { return folder_; }
    /// Every busy process has spent another while.
    void work() {
        ticks_ += 5;
        for (int busy = 1; busy <= kBusy; ++busy)
            writeStat(busy * (count_ / kBusy));
    }

private:
    static constexpr int kApplications = 10, kBusy = 30;

    void writeStat(int id) {
        const int first = kApplications + id % kApplications;
        const int parent = id > first ? first : 1;
        test::writeText(folder_ / std::to_string(id) / "stat",
                        test::processStat(id, "process", ticks_, 50, parent));
    }

    int count_;
    std::uint64_t ticks_ = 1000;
    std::filesystem::path folder_;
};

/// Between two readings, `work` happens.
template <class Work>
void listProcesses(benchmark::State& state, const std::filesystem::path& proc, Hierarchy hierarchy,
                   Work&& work) {
    const LinuxClock clock;
    LinuxProcessSource source(clock, proc);
    ProcessMeter meter(source, clock);
    for (auto _ : state) {
        state.PauseTiming();
        work();
        state.ResumeTiming();
        if (!meter.takeReading())
            state.SkipWithError("no reading");
        benchmark::DoNotOptimize(meter.busiest(20, hierarchy));
    }
}

/// Ceilings that we set ourselves: 3 ms for 300 and 45 ms for 5,000.
void scanProcesses(benchmark::State& state) {
    MadeProcesses made(state.range(0));
    listProcesses(state, made.folder(), Hierarchy::separate, [&] { made.work(); });
}
BENCHMARK(scanProcesses)->Arg(300)->Arg(5000)->Unit(benchmark::kMillisecond);

void scanApplications(benchmark::State& state) {
    MadeProcesses made(state.range(0));
    listProcesses(state, made.folder(), Hierarchy::combined, [&] { made.work(); });
}
BENCHMARK(scanApplications)->Arg(300)->Arg(5000)->Unit(benchmark::kMillisecond);

/// With the kernel's own work, which is most of it.
void scanProcessesOfThisMachine(benchmark::State& state) {
    listProcesses(state, "/proc", Hierarchy::combined, [] {});
}
BENCHMARK(scanProcessesOfThisMachine)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantor
