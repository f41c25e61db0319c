#include <filesystem>
#include <thread>
#include <vector>

#include <benchmark/benchmark.h>
#include <stdlib.h>

#include "Platform/Linux/LinuxClock.h"
#include "Platform/Linux/LinuxFileSystem.h"
#include "Platform/Linux/LinuxFileWatches.h"
#include "Platform/Linux/LinuxMainQueue.h"
#include "Platform/Linux/LinuxThisProcess.h"
#include "Platform/Linux/LinuxTimeZone.h"
#include "Platform/Linux/LinuxWorkQueues.h"
#include "Platform/Simulated/SimulatedMachine.h"
#include "Shared/External/Logging/LGFileLogger.h"
#include "Shared/External/Logging/LGLogFileManagerDefault.h"
#include "Shared/ProcessContext.h"

namespace vantor {
namespace {

/// A log on this machine, into a folder of its own; what a log doesn't ask for is scripted.
struct LogOfThisMachine {
    LogOfThisMachine() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vantor-XXXXXX").string();
        folder = mkdtemp(pattern.data());
    }
    ~LogOfThisMachine() { std::filesystem::remove_all(folder); }

    Ports ports() {
        return overriddenPorts(machine.ports(), {.clock = &clock,
                                                 .mainQueue = &mainQueue,
                                                 .workQueues = &workQueues,
                                                 .fileSystem = &files,
                                                 .thisProcess = &process,
                                                 .timeZone = &zone});
    }
    void addFileLogger(LGLog& log) {
        auto manager = std::make_shared<LGLogFileManagerDefault>(log, folder);
        log.addLogger(std::make_shared<LGFileLogger>(log, std::move(manager)));
    }

    std::filesystem::path folder;
    simulated::SimulatedMachine machine;
    LinuxClock clock;
    LinuxMainQueue mainQueue;
    LinuxFileWatches watches{mainQueue};
    LinuxFileSystem files{watches};
    LinuxThisProcess process;
    LinuxTimeZone zone;
    LinuxWorkQueues workQueues;
};

/// What a message costs its caller, as long as the log can take it.
void logCall(benchmark::State& state) {
    constexpr int kBatch = 900;
    LogOfThisMachine machine;
    ProcessContext context(machine.ports());
    machine.addFileLogger(context.log());
    for (auto _ : state) {
        for (int number = 0; number < kBatch; ++number)
            LGLogInfo("a line as long as most of them are, with a figure or two: 12 of 345");
        state.PauseTiming();
        context.log().flushLog();
        state.ResumeTiming();
    }
    state.counters["perCall"] = benchmark::Counter(
        kBatch, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(logCall)->Unit(benchmark::kMicrosecond);

/// A message that nobody listens to.
void logCallUnheard(benchmark::State& state) {
    LogOfThisMachine machine;
    ProcessContext context(machine.ports());
    for (auto _ : state)
        LGLogInfo("text");
}
BENCHMARK(logCallUnheard);

/// A flood from eight threads, to the last line on the disk.
void logFlood(benchmark::State& state) {
    constexpr int kThreads = 8;
    const auto each = static_cast<int>(state.range(0)) / kThreads;
    for (auto _ : state) {
        LogOfThisMachine machine;
        ProcessContext context(machine.ports());
        machine.addFileLogger(context.log());
        {
            std::vector<std::jthread> threads;
            for (int thread = 0; thread < kThreads; ++thread)
                threads.emplace_back([each] {
                    for (int number = 0; number < each; ++number)
                        LGLogInfo("a line of the flood");
                });
        }
        context.log().flushLog();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(logFlood)->Arg(1'000'000)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime();

}  // namespace
}  // namespace vantor
