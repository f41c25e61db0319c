#include "Programs/vantorbar/FollowHistory.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <optional>
#include <ostream>
#include <thread>

#include <fmt/format.h>

#include "Platform/Simulated/Journal.h"
#include "Programs/Common/HistoryTool.h"
#include "Programs/vantorbar/HistoryFollower.h"
#include "Programs/vantorbar/SimulateCommand.h"
#include "Programs/vantorbar/Simulation.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

constexpr int kFine = 0, kFailed = 1, kUnusable = 2;
/// How often the file is looked at, which costs one call as long as nothing was written.
constexpr std::chrono::seconds kBetweenLooks{2};

/// One file, and how far it was followed.
class FollowedFile {
public:
    FollowedFile(const FollowOptions& options, const fs::path& folder, std::ostream& out)
        : sources_(historySources()),
          source_(*std::ranges::find(sources_, options.source, &HistorySource::name)),
          index_(std::ranges::find(kHistoryScales, options.scale, &HistoryScale::name)->index),
          reader_(folder / historyFileName(options.source, options.combined)),
          follower_(source_, index_, options.since, out), left_(options.count) {}

    bool isDone() const noexcept { return left_ == 0; }
    std::string name() const { return reader_.file().filename().string(); }
    /// Prints what is new; throws HistoryFileError.
    void look() {
        if (const auto table = reader_.table(source_, index_))
            left_ -= follower_.print(*table, left_);
    }
    /// Whether it was written since the last time this was asked.
    bool wasWritten() {
        std::error_code ignored;  // a file that is away has no time, and comes back with another
        const auto written = fs::last_write_time(reader_.file(), ignored);
        return std::exchange(written_, written) != written;
    }
    void lookAgain() noexcept { written_.reset(); }

private:
    std::vector<HistorySource> sources_;
    const HistorySource& source_;
    int index_;
    HistoryFileReader reader_;
    HistoryFollower follower_;
    std::size_t left_;
    std::optional<fs::file_time_type> written_;
};

/// Hears of each batch that a scripted program writes.
class Follower final : public simulated::Journal {
public:
    Follower(const FollowOptions& options, const fs::path& folder, std::ostream& out)
        : file_(options, folder, out) {}

    void committed(std::string_view file, std::size_t, std::size_t) override {
        if (file != file_.name() || file_.isDone())
            return;
        try {
            file_.look();
        } catch (const HistoryFileError&) {
            // The scenario spoilt it, or holds it: the next batch may be read again.
        }
    }

private:
    FollowedFile file_;
};

int complain(std::ostream& err, int status, std::string_view reason) {
    err << "vantorbar: " << reason << '\n';
    return status;
}

}  // namespace

int followFolder(const FollowOptions& options, const fs::path& folder, std::ostream& out,
                 std::ostream& err) {
    FollowedFile file(options, folder, out);
    try {
        file.wasWritten();
        file.look();
    } catch (const HistoryFileError& error) {
        return complain(err, kFailed, error.what());
    }
    while (!file.isDone() && out) {
        std::this_thread::sleep_for(kBetweenLooks);
        try {
            if (file.wasWritten())
                file.look();
        } catch (const HistoryFileError&) {
            file.lookAgain();  // a program is writing it, or making it anew
        }
    }
    return kFine;
}

int followScenario(const FollowOptions& options, std::ostream& out, std::ostream& err) {
    try {
        const auto scenario = simulated::scenarioFromFile(options.scenario);
        const OutputFolder folder(fs::temp_directory_path() / "vantorbar-follow");
        Follower follower(options, historyFolderOf(folder), out);
        Simulation simulation(scenario, follower, folder);
        placeMachine(simulation, scenario, folder);
        simulation.run();
        return kFine;
    } catch (const std::exception& error) {
        return complain(err, kUnusable,
                        fmt::format("{}: {}", options.scenario.string(), error.what()));
    }
}

}  // namespace vantor
