#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>

#include "Platform/Simulated/SimulatedMachine.h"
#include "Platform/Simulated/SimulatedMenuExtraHost.h"
#include "Shared/ProcessContext.h"
#include "Targets/VantorBarCPU/VantorBarCPU.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

/// Files in memory, so that what is measured is ours and not a disk's.
class MemoryFolder {
public:
    MemoryFolder() {
        std::string pattern = "/dev/shm/vantor-XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr)
            throw std::runtime_error("no folder in memory");
        path_ = pattern;
    }
    ~MemoryFolder() {
        std::error_code ignored;  // a leftover folder goes with the next start of the machine
        fs::remove_all(path_, ignored);
    }
    const fs::path& path() const noexcept { return path_; }

private:
    fs::path path_;
};

/// A machine of eight CPUs whose files are in `folder`.
class Machine : public simulated::SimulatedMachine {
public:
    explicit Machine(const fs::path& folder, double start = kStart)
        : simulated::SimulatedMachine(start) {
        processorCounters.setCPUs(8, 8, 8, 4);
        directories.setRoot(folder);
        preferences.write("TimerFrequency", std::int64_t{2});
    }
};

/// Runs the program until `seconds` have passed.
void runProgram(Machine& machine, double seconds) {
    ProcessContext context(machine.ports());
    simulated::SimulatedMenuExtraHost host;
    VantorBarCPU extra(host);
    machine.run(seconds);
}

/// The start on files that are full at all three scales.
void startWithFullFiles(benchmark::State& state) {
    constexpr double kFull = 602 * 1008.0 + 2000;
    const MemoryFolder folder;
    Machine first(folder.path());
    runProgram(first, kFull);
    for (auto _ : state) {
        Machine machine(folder.path(), Machine::kStart + kFull + 60);
        runProgram(machine, 0);
    }
}
BENCHMARK(startWithFullFiles)->Unit(benchmark::kMillisecond);

/// A year of two collectors with their files, in virtual time.
void yearWithFiles(benchmark::State& state) {
    for (auto _ : state) {
        const MemoryFolder folder;
        Machine machine(folder.path());
        runProgram(machine, 365 * 86400.0);
    }
}
BENCHMARK(yearWithFiles)->Unit(benchmark::kSecond)->Iterations(1);

}  // namespace
}  // namespace vantor
