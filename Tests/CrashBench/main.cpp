// Usage: vantor_crash_bench [--points N] LIBRARY
// Kills the program, on a scripted machine, before every call that changes a history file during
// a first start, its commits, a start on full files and a start that takes back what was cut
// short, and looks at what is left and at what the next start makes of it. Then it lets the same
// calls fail, once and for a long time. With --points at most about N calls of each kind are tried.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "Shared/Database/HistoryRecordList.h"
#include "Tests/CrashBench/KeptState.h"
#include "Tests/CrashBench/Victim.h"

namespace vantor::test {
namespace {

namespace fs = std::filesystem;

constexpr double kStart = 1'425'900'000;
constexpr double kNextRunSeconds = 330;  // with two commits in it
constexpr std::size_t kMostHotFolders = 4;
constexpr double kFaultsEnd = 300;  // seconds after the start

/// A folder in memory where there is one: a process that is killed loses nothing that it wrote.
class Workplace {
public:
    Workplace() {
        const fs::path memory = "/dev/shm";
        std::string pattern =
            ((fs::exists(memory) ? memory : fs::temp_directory_path()) / "crash-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr)
            throw std::runtime_error("no folder to work in");
        path_ = pattern;
    }
    ~Workplace() {
        std::error_code ignored;  // a leftover folder goes with the machine's next start
        fs::remove_all(path_, ignored);
    }
    fs::path operator/(const std::string& name) const { return path_ / name; }

private:
    fs::path path_;
};

void copyFolder(const fs::path& from, const fs::path& to) {
    fs::remove_all(to);
    fs::create_directories(databasesIn(to));
    if (fs::exists(from))
        fs::copy(from, to, fs::copy_options::recursive | fs::copy_options::overwrite_existing);
}

bool isWrittenBehind(double time, const KeptState& state) {
    return std::ranges::any_of(state.tables, [time](const auto& table) {
        return !table.second.empty() && table.second.back().time > time;
    });
}

bool isHot(const fs::path& folder) {
    return std::ranges::any_of(kVictimsFiles, [&](const char* name) {
        const fs::path journal = databasesIn(folder) / (std::string(name) + "-journal");
        return fs::exists(journal) && fs::file_size(journal) > 512;
    });
}

/// A run that is repeated with something going wrong each time.
struct Scene {
    std::string name;
    fs::path base;  // the files that it begins with
    double start, seconds;
};

class Bench {
public:
    Bench(fs::path program, fs::path library, long pointsPerScene)
        : program_(std::move(program)), library_(std::move(library)), points_(pointsPerScene) {}

    int run();

private:
    using Faults = Victim::Faults;

    Victim::Report play(const Scene& scene, const Faults& faults, double faultsEnd = -1) {
        return Victim{work_ / "machine", scene.start, scene.seconds, faultsEnd}.run(
            program_, library_, faults);
    }
    void makeBase(const Scene& scene);
    void killEverywhere(const Scene& scene, std::vector<fs::path>* hotFolders);
    void killAt(const Scene& scene, long call, const Victim::Report& whole,
                std::vector<fs::path>* hotFolders);
    void checkLeftovers(const Scene& scene, const std::string& where, const Victim::Report& killed,
                        const Victim::Report& whole);
    void checkNextStart(const Scene& scene, const std::string& where,
                        const std::vector<KeptState>& left, IDs ids);
    void failEverywhere(const Scene& scene);
    void checkFailed(const Scene& scene, const std::string& where, const Faults& faults,
                     const Victim::Report& whole, long callsOfStart);
    long step(long calls) const { return std::max(1L, (calls + points_ - 1) / points_); }
    std::vector<KeptState> statesIn(const fs::path& folder, const std::string& where);
    void expect(const std::string& where, const std::string& trouble) {
        if (trouble.empty())
            return;
        ++failures_;
        fmt::print(stderr, "{}: {}\n", where, trouble);
    }

    fs::path program_, library_;
    long points_, kills_ = 0, journals_ = 0, faults_ = 0, failures_ = 0;
    Workplace work_;
};

std::vector<KeptState> Bench::statesIn(const fs::path& folder, const std::string& where) {
    std::vector<KeptState> states;
    for (const char* const name : kVictimsFiles) {
        std::string integrity;
        states.push_back(KeptState::of(databasesIn(folder) / name, integrity));
        expect(where, integrity == "ok" ? "" : fmt::format("{}: {}", name, integrity));
    }
    return states;
}

void Bench::makeBase(const Scene& scene) {
    copyFolder({}, work_ / "machine");
    play(scene, {});
    copyFolder(work_ / "machine", scene.base);
}

/// Each file has what it had after one of the commits: the last that it told of, or the next one.
void Bench::checkLeftovers(const Scene& scene, const std::string& where,
                           const Victim::Report& killed, const Victim::Report& whole) {
    copyFolder(work_ / "machine", work_ / "look");
    const auto left = statesIn(work_ / "look", where);
    copyFolder(scene.base, work_ / "look");
    const auto before = statesIn(work_ / "look", where);
    for (std::size_t file = 0; file < left.size(); ++file) {
        const std::string name = kVictimsFiles[file];
        const auto told = killed.commits.find(name);
        const std::size_t commits = told == killed.commits.end() ? 0 : told->second.size();
        const auto& digests = whole.commits.at(name);
        const std::size_t digest = left[file].digest();
        const bool isBefore = commits == 0
                                  ? (before[file].rows() == 0 ? left[file].rows() == 0
                                                              : digest == before[file].digest())
                                  : digest == digests[commits - 1];
        const bool isAfter = commits < digests.size() && digest == digests[commits];
        expect(where, isBefore || isAfter ? ""
                                          : fmt::format("{} isn't as a commit left it ({} commits)",
                                                        name, commits));
        expect(where, disorderIn(left[file], IDs::dense));
    }
    checkNextStart(scene, where, left, IDs::dense);
}

void Bench::checkNextStart(const Scene& scene, const std::string& where,
                           const std::vector<KeptState>& left, IDs ids) {
    const Scene next{scene.name, {}, scene.start + scene.seconds + 30, kNextRunSeconds};
    expect(where, play(next, {}).ended ? "" : "the next start didn't end well");
    const auto after = statesIn(work_ / "machine", where);
    for (std::size_t file = 0; file < left.size(); ++file) {
        expect(where, lossFrom(left[file], after[file]));
        expect(where, disorderIn(after[file], ids));
        expect(where, isWrittenBehind(next.start, after[file]) ? "" : "history doesn't go on");
    }
}

/// Every ninth journal that the next start has to take back goes to `hotFolders` with its files.
void Bench::killAt(const Scene& scene, long call, const Victim::Report& whole,
                   std::vector<fs::path>* hotFolders) {
    copyFolder(scene.base, work_ / "machine");
    const auto killed = play(scene, {.kind = "kill", .first = call, .last = call});
    expect(scene.name, killed.ended ? fmt::format("call {} didn't kill", call) : "");
    ++kills_;
    if (hotFolders != nullptr && isHot(work_ / "machine") && journals_++ % 9 == 0 &&
        hotFolders->size() < kMostHotFolders) {
        hotFolders->push_back(work_ / fmt::format("hot{}", hotFolders->size()));
        copyFolder(work_ / "machine", hotFolders->back());
    }
    checkLeftovers(scene, fmt::format("{}, killed before call {}", scene.name, call), killed,
                   whole);
}

void Bench::killEverywhere(const Scene& scene, std::vector<fs::path>* hotFolders) {
    copyFolder(scene.base, work_ / "machine");
    const auto whole = play(scene, {});
    expect(scene.name, whole.ended && whole.calls > 0 ? "" : "the run without faults failed");
    long kills = 0;
    for (long call = 1; call <= whole.calls; call += step(whole.calls), ++kills)
        killAt(scene, call, whole, hotFolders);
    fmt::print("{}: {} calls, killed at {}\n", scene.name, whole.calls, kills);
}

/// What was whole is still there, nothing stood still, and history went on behind the fault.
void Bench::checkFailed(const Scene& scene, const std::string& where, const Faults& faults,
                        const Victim::Report& whole, long callsOfStart) {
    copyFolder(scene.base, work_ / "machine");
    const auto report = play(scene, faults, kFaultsEnd);
    ++faults_;
    expect(where, report.ended ? "" : "the program ended");
    expect(where, report.measured == whole.measured
                      ? ""
                      : fmt::format("{} measurements, not {}", report.measured, whole.measured));
    expect(where, report.mostWaiting <= static_cast<long>(HistoryRecordList::kMostRecords)
                      ? ""
                      : "too much waits");
    copyFolder(scene.base, work_ / "look");
    const auto before = statesIn(work_ / "look", where);
    const auto after = statesIn(work_ / "machine", where);
    bool goesOn = true;
    for (std::size_t file = 0; file < after.size(); ++file) {
        expect(where, lossFrom(before[file], after[file]));
        expect(where, disorderIn(after[file], IDs::rising));
        goesOn = goesOn && isWrittenBehind(scene.start + kFaultsEnd, after[file]);
    }
    // A file that couldn't be opened, or get its tables, has its turn at the next start.
    const bool mayHaveMissedTheStart = faults.first <= callsOfStart;
    expect(where, goesOn || mayHaveMissedTheStart ? "" : "nothing is written behind the fault");
    if (!goesOn)
        checkNextStart(scene, where, after, IDs::rising);
}

void Bench::failEverywhere(const Scene& scene) {
    constexpr long kForGood = 1'000'000'000;
    copyFolder(scene.base, work_ / "machine");
    const auto whole = play(scene, {});
    copyFolder(scene.base, work_ / "machine");
    const long callsOfStart = play({scene.name, {}, scene.start, 1}, {}).calls;
    const long before = faults_;
    // The four kinds and the two durations share the points.
    const long stride = step(whole.calls * 8);
    long place = 0;
    for (const char* const kind : {"ENOSPC", "EIO", "EROFS", "EACCES"})
        for (const bool lasting : {false, true})
            for (long call = 1 + place++ % stride; call <= whole.calls; call += stride)
                checkFailed(scene,
                            fmt::format("{}, {} {} call {}", scene.name, kind,
                                        lasting ? "from" : "at", call),
                            {.kind = kind, .first = call, .last = lasting ? kForGood : call}, whole,
                            callsOfStart);
    for (const long limit : {4096L, 20000L, 40960L, 100000L})
        checkFailed(scene, fmt::format("{}, files of {} bytes", scene.name, limit),
                    {.fileLimitBytes = limit}, whole, callsOfStart);
    fmt::print("{}: {} faults\n", scene.name, faults_ - before);
}

int Bench::run() {
    const auto begin = std::chrono::steady_clock::now();
    const Scene fill{"filling", work_ / "full", kStart, 4300};
    makeBase(fill);
    const Scene first{"first start", work_ / "none", kStart, 450};
    const Scene full{"full files", fill.base, kStart + 4500, 320};
    std::vector<fs::path> hot;
    killEverywhere(first, nullptr);
    killEverywhere(full, &hot);
    for (const fs::path& folder : hot)
        killEverywhere({"recovery", folder, full.start + full.seconds + 10, 150}, nullptr);
    failEverywhere({first.name, first.base, first.start, 900});
    failEverywhere({full.name, full.base, full.start, 900});
    for (const fs::path& folder : hot)
        failEverywhere({"recovery", folder, full.start + full.seconds + 10, 900});
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    fmt::print("{} kills, {} faults, {} failures, {:.0f} s\n", kills_, faults_, failures_,
               took.count());
    return failures_ == 0 && kills_ > 0 && faults_ > 0 ? 0 : 1;
}

int benchFrom(const std::vector<std::string>& words) {
    if (!words.empty() && words[0] == "--victim")
        return beVictim({words.begin() + 1, words.end()});
    const bool hasPoints = words.size() == 3 && words[0] == "--points";
    if (!hasPoints && words.size() != 1) {
        fmt::print(stderr, "Usage: vantor_crash_bench [--points N] LIBRARY\n");
        return 2;
    }
    const long points = hasPoints ? std::stol(words[1]) : 1'000'000;
    return Bench(fs::read_symlink("/proc/self/exe"), words.back(), std::max(1L, points)).run();
}

}  // namespace
}  // namespace vantor::test

int main(int argc, char** argv) { return vantor::test::benchFrom({argv + 1, argv + argc}); }
