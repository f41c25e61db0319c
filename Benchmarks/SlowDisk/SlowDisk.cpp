// Usage: vantor_slow_disk SECONDS
// Runs the item for nobody, with its history written far more often than ever, and tells how late
// its ticks came: for SECONDS while each flush of a file takes 5 seconds, when a commit takes half
// a minute, and for as long on the disk as it is. The first half needs the library of
// Tests/CrashBench/FileFaults.cpp loaded before the program's own; the files lie where
// XDG_DATA_HOME and its like say.

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <string_view>
#include <vector>

#include <dlfcn.h>
#include <fmt/format.h>

#include "Hosts/None/NoHost.h"
#include "Platform/Linux/LinuxPlatform.h"
#include "Platform/Witness.h"
#include "Programs/Common/ProgramDirectories.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/Collectors/LoadStatCollector.h"
#include "Shared/ProcessContext.h"
#include "Targets/VantorBarCPU/VantorBarCPU.h"

namespace vantor {
namespace {

constexpr double kSecondsBetweenCommits = 1;
constexpr double kSecondsToSettle = 10;  // at the start, and until the last slow flush is over

/// Keeps how late each tick of the processors' collector was, and counts what was written.
class Ticks final : public Witness {
public:
    explicit Ticks(const Clock& clock) : clock_(clock) {}

    void measures(std::string_view collector, std::optional<int> sequence) override {
        if (collector == "cpu" && sequence)
            late.push_back(clock_.now() - CPUStatCollector::sharedCPUCollector().updateTime());
    }
    void updated(std::string_view, int) override {}
    void committed(std::string_view, std::size_t statements, std::size_t) override {
        commits += statements > 0 ? 1 : 0;
    }
    void extraLoaded(std::string_view) override {}
    void extraUnloaded(std::string_view) override {}
    void logged(std::string_view) override {}

    std::vector<double> late;  // seconds
    std::atomic<int> commits = 0;

private:
    const Clock& clock_;
};

/// Whether there was anything to tell.
bool tell(std::string_view disk, Ticks& ticks) {
    std::vector<double> late = std::exchange(ticks.late, {});
    const int commits = ticks.commits.exchange(0);
    if (late.empty() || commits == 0) {
        fmt::print(stderr, "{}: no tick, or no commit came to its end\n", disk);
        return false;
    }
    std::ranges::sort(late);
    const auto atShare = [&](double share) {
        return 1000 * late[static_cast<std::size_t>(share * static_cast<double>(late.size() - 1))];
    };
    fmt::print("{:20} {:6} ticks {:5} commits   late by {:6.2f} ms at most, {:6.2f} half of them\n",
               disk, late.size(), commits, atShare(1), atShare(0.5));
    return true;
}

class SlowDisk {
public:
    explicit SlowDisk(double seconds) : seconds_(seconds) { context_.emplace(ports()); }

    int run(void (*endFaults)()) {
        VantorBarCPU extra(host_);
        commitAndAgain();
        bool isTold = runPhase("each flush 5 s");
        endFaults();
        isTold = runPhase("the disk as it is") && isTold;
        extra.willUnload();
        return isTold ? 0 : 1;
    }

private:
    Ports ports() {
        Ports ports = platform_.ports();
        ports.witness = &ticks_;
        return ports;
    }
    void commitAndAgain() {
        CPUStatCollector::sharedCPUCollector().runDatabaseQueue();
        LoadStatCollector::sharedLoadCollector().runDatabaseQueue();
        platform_.mainQueue().after(kSecondsBetweenCommits, [this] { commitAndAgain(); });
    }
    void runFor(double seconds) {
        platform_.mainQueue().after(seconds, [this] { platform_.mainQueue().stop(); });
        platform_.mainQueue().run();
    }
    bool runPhase(std::string_view disk) {
        runFor(kSecondsToSettle);
        ticks_.late.clear();
        ticks_.commits = 0;
        runFor(seconds_);
        return tell(disk, ticks_);
    }

    double seconds_;
    LinuxPlatform platform_{programDirectories()};
    Ticks ticks_{platform_.ports().clock};
    std::optional<ProcessContext> context_;
    NoHost host_;
};

int slowDisk(int count, char** words) {
    const double seconds = count == 2 ? std::atof(words[1]) : 0;
    auto* const endFaults = reinterpret_cast<void (*)()>(dlsym(RTLD_DEFAULT, "endFileFaults"));
    if (!(seconds > 0) || endFaults == nullptr) {
        fmt::print(stderr, "Usage: LD_PRELOAD=libvantor_file_faults.so vantor_slow_disk SECONDS\n");
        return 2;
    }
    return SlowDisk(seconds).run(endFaults);
}

}  // namespace
}  // namespace vantor

int main(int argc, char** argv) { return vantor::slowDisk(argc, argv); }
