#include "Tests/CrashBench/Victim.h"

#include <algorithm>
#include <fstream>
#include <sstream>

#include <csignal>
#include <dlfcn.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/resource.h>
#include <unistd.h>

#include "Platform/Simulated/SimulatedMachine.h"
#include "Platform/Simulated/SimulatedMenuExtraHost.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/Database/HistoryDatabaseController.h"
#include "Shared/ProcessContext.h"
#include "Targets/VantorBarCPU/VantorBarCPU.h"
#include "Tests/CrashBench/KeptState.h"
#include "Tests/Support/Child.h"

namespace vantor::test {
namespace {

namespace fs = std::filesystem;

/// Lines that are with the system as soon as they are written, so that a kill loses none.
class Lines {
public:
    explicit Lines(const std::string& file)
        : descriptor_(open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600)) {}
    ~Lines() { close(descriptor_); }
    void add(const std::string& line) const {
        const std::string whole = line + "\n";
        if (write(descriptor_, whole.data(), whole.size()) < 0)
            std::abort();
    }

private:
    int descriptor_;
};

/// Writes down each measurement's number and what a file has after each of its commits.
class Witnessing final : public simulated::Journal {
public:
    Witnessing(const Lines& lines, fs::path folder) : lines_(lines), folder_(std::move(folder)) {}

    void measures(std::string_view, std::optional<int>) override { ++measured; }
    void committed(std::string_view file, std::size_t, std::size_t) override {
        lines_.add(fmt::format("commit {} {}", file,
                               KeptState::besideOthers(databasesIn(folder_) / file).digest()));
    }

    long measured = 0;

private:
    const Lines& lines_;
    fs::path folder_;
};

void endFaults() {
    // Only where the faults' library was loaded before us.
    if (auto* const end = reinterpret_cast<void (*)()>(dlsym(RTLD_DEFAULT, "endFileFaults")))
        end();
    rlimit limit{RLIM_INFINITY, RLIM_INFINITY};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_FSIZE, &limit);
}

void limitFiles(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);  // as the program does
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
}

long mostWaiting(const fs::path& folder) {
    std::size_t most = 0;
    for (const char* const name : kVictimsFiles)
        if (const auto file = databaseItemWithPath(databasesIn(folder) / name))
            most = std::max(most, file->queries());
    return static_cast<long>(most);
}

Victim::Report reportFrom(const fs::path& file) {
    Victim::Report report;
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string kind, name;
        words >> kind;
        if (std::size_t digest = 0; kind == "commit" && words >> name >> digest)
            report.commits[name].push_back(digest);
        if (kind == "end")
            words >> report.measured >> report.mostWaiting;
    }
    return report;
}

}  // namespace

fs::path databasesIn(const fs::path& folder) {
    simulated::SimulatedDirectories directories;
    directories.setRoot(folder);
    return *directories.applicationSupport() / "Vantor Bar/databases";
}

Victim::Report Victim::run(const fs::path& program, const fs::path& library,
                           const Faults& faults) const {
    const fs::path reportFile = folder.string() + ".report", count = folder.string() + ".count";
    fs::remove(reportFile);
    fs::remove(count);
    Child child({program.string(), "--victim", folder.string(), fmt::format("{}", start),
                 fmt::format("{}", seconds), fmt::format("{}", faultsEnd),
                 fmt::format("{}", faults.fileLimitBytes), reportFile.string()},
                {"LD_PRELOAD=" + library.string(), "FILE_FAULTS_IN=/databases",
                 "FILE_FAULTS_KIND=" + faults.kind, fmt::format("FILE_FAULTS_AT={}", faults.first),
                 fmt::format("FILE_FAULTS_LAST={}", faults.last),
                 "FILE_FAULTS_COUNT=" + count.string()});
    const bool ended = child.status() == 0;
    Report report = reportFrom(reportFile);
    report.ended = ended;
    std::ifstream(count) >> report.calls;
    return report;
}

int beVictim(const std::vector<std::string>& words) {
    const fs::path folder = words.at(0);
    const double start = std::stod(words.at(1)), seconds = std::stod(words.at(2));
    const double faultsEnd = std::stod(words.at(3));
    if (const long limit = std::stol(words.at(4)); limit > 0)
        limitFiles(static_cast<rlim_t>(limit));
    const Lines lines(words.at(5));
    Witnessing witness(lines, folder);
    simulated::SimulatedMachine machine(start, 0.002, &witness);
    machine.processorCounters.setCPUs(2, 2, 2, 2);
    machine.directories.setRoot(folder);
    ProcessContext context(machine.ports());
    simulated::SimulatedMenuExtraHost host;
    VantorBarCPU extra(host);
    const double untilEnd = faultsEnd < 0 ? seconds : faultsEnd;
    machine.run(untilEnd);
    const long waiting = mostWaiting(folder);
    endFaults();
    machine.run(seconds - untilEnd);
    lines.add(fmt::format("end {} {}", witness.measured, std::max(waiting, mostWaiting(folder))));
    return 0;
}

}  // namespace vantor::test
