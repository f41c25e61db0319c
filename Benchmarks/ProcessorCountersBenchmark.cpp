#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include "Platform/Linux/LinuxProcessorCounters.h"
#include "Platform/Linux/ProcStat.h"
#include "Tests/Platform/Linux/KernelTexts.h"

namespace vantor {
namespace {

/// A /proc of our own in memory, with a "stat" for so many CPUs.
class MadeProc {
public:
    explicit MadeProc(std::int64_t cpus) {
        std::string pattern = "/dev/shm/vantor-XXXXXX";
        if (::mkdtemp(pattern.data()) == nullptr)
            throw std::runtime_error("no folder in memory");
        folder_ = pattern;
        test::writeText(folder_ / "stat", test::statText(static_cast<std::uint32_t>(cpus)));
    }
    ~MadeProc() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    MadeProc(const MadeProc&) = delete;
    MadeProc& operator=(const MadeProc&) = delete;

    KernelFiles files() const { return {.proc = folder_, .sys = folder_ / "sys"}; }

private:
    std::filesystem::path folder_;
};

/// What the kernel and the copying of the text cost, and nothing else.
void barePread(benchmark::State& state) {
    const MadeProc proc(state.range(0));
    const int descriptor = ::open((proc.files().proc / "stat").c_str(), O_RDONLY | O_CLOEXEC);
    std::vector<char> buffer(std::size_t{1} << 20);
    for (auto _ : state)
        if (::pread(descriptor, buffer.data(), buffer.size(), 0) <= 0)
            state.SkipWithError("can't read");
    ::close(descriptor);
}
BENCHMARK(barePread)->Arg(8)->Arg(1024);

void parseProcStat(benchmark::State& state) {
    const std::string text = test::statText(static_cast<std::uint32_t>(state.range(0)));
    for (auto _ : state) {
        ProcStatReader reader(text);
        for (ProcessorFigures figures; reader.next(figures);)
            benchmark::DoNotOptimize(figures);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
}
BENCHMARK(parseProcStat)->Arg(8)->Arg(1024)->Arg(8192);

void readCounters(benchmark::State& state, const KernelFiles& files) {
    LinuxProcessorCounters counters(files);
    std::vector<ProcessorTicks> ticks(counters.cpuCount());
    for (auto _ : state)
        if (!counters.readTicks(ticks))
            state.SkipWithError("no reading");
}

void readTicks(benchmark::State& state) {
    const MadeProc proc(state.range(0));
    readCounters(state, proc.files());
}
BENCHMARK(readTicks)->Arg(8)->Arg(1024);

/// With the kernel's own work, which is most of it.
void readTicksOfThisMachine(benchmark::State& state) { readCounters(state, {}); }
BENCHMARK(readTicksOfThisMachine);

void readProcessCountsOfThisMachine(benchmark::State& state) {
    LinuxProcessorCounters counters;
    for (auto _ : state)
        benchmark::DoNotOptimize(counters.readProcessCounts());
}
BENCHMARK(readProcessCountsOfThisMachine);

void startOnThisMachine(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(LinuxProcessorCounters().cpuCount());
}
BENCHMARK(startOnThisMachine);

}  // namespace
}  // namespace vantor
