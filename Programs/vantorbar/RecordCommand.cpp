#include "Programs/vantorbar/RecordCommand.h"

#include <cmath>
#include <csignal>
#include <exception>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "Hosts/None/NoHost.h"
#include "Platform/Linux/LinuxPlatform.h"
#include "Programs/Common/ProgramDirectories.h"
#include "Programs/vantorbar/ScenarioRecorder.h"
#include "Programs/vantorbar/SignalWatch.h"
#include "Shared/ProcessContext.h"
#include "Targets/VantorBarCPU/VantorBarCPU.h"

namespace vantor {
namespace {

struct RecordArguments {
    double seconds = 60;
    std::filesystem::path file;
};

/// Appears whole or not at all.
void writeFile(const std::filesystem::path& file, const std::string& text) {
    std::filesystem::path partial = file;
    partial += ".partial";
    std::ofstream stream(partial, std::ios::binary);
    stream << text << std::flush;
    if (!stream)
        throw std::runtime_error(fmt::format("{}: can't be written", partial.string()));
    std::filesystem::rename(partial, file);
}

/// One recording on this machine: the program runs unseen until the time is up or a signal comes.
class Recording {
public:
    Recording() : platform_(programDirectories()) {}

    nlohmann::ordered_json run(double seconds) {
        const SignalWatch signals(platform_.mainQueue(), {SIGINT, SIGTERM, SIGHUP},
                                  [this](int) { platform_.mainQueue().stop(); });
        platform_.mainQueue().after(secondsUntilStart(), [this, seconds] { begin(seconds); });
        platform_.mainQueue().run();
        if (!extra_)
            throw std::runtime_error("ended before it began");
        const double recorded = std::min(seconds, platform_.ports().clock.monotonic() - began_);
        extra_->willUnload();
        return recorder_->scenario(recorded);
    }

private:
    /// A program that starts in the middle of a second replays the same however long its start
    /// takes.
    double secondsUntilStart() {
        const double now = platform_.ports().clock.now();
        const double fraction = now - std::floor(now);
        return fraction > 0.1 && fraction < 0.6 ? 0 : std::ceil(now - 0.1) + 0.1 - now;
    }

    void begin(double seconds) {
        began_ = platform_.ports().clock.monotonic();
        recorder_.emplace(platform_.ports());
        context_.emplace(recorder_->ports());
        extra_.emplace(host_);
        platform_.mainQueue().after(seconds, [this] { platform_.mainQueue().stop(); });
    }

    LinuxPlatform platform_;
    double began_ = 0;
    std::optional<ScenarioRecorder> recorder_;
    std::optional<ProcessContext> context_;
    NoHost host_;
    std::optional<VantorBarCPU> extra_;
};

int record(const RecordArguments& arguments) {
    try {
        // A display may call itself something that is no text.
        constexpr auto kMended = nlohmann::ordered_json::error_handler_t::replace;
        writeFile(arguments.file,
                  Recording().run(arguments.seconds).dump(1, ' ', false, kMended) + "\n");
        return 0;
    } catch (const std::exception& error) {
        fmt::print(stderr, "vantorbar: {}\n", error.what());
        return 1;
    }
}

}  // namespace

void addRecordCommand(CLI::App& app, int& exitStatus) {
    const auto arguments = std::make_shared<RecordArguments>();
    CLI::App* const command = app.add_subcommand("record", "Write a scenario from this machine");
    command->add_option("--seconds", arguments->seconds, "How long to listen")
        ->check(CLI::Range(1.0, 86400.0))
        ->type_name("N");
    command->add_option("OUT", arguments->file, "The file, for simulate to replay")->required();
    command->callback([arguments, &exitStatus] { exitStatus = record(*arguments); });
}

}  // namespace vantor
