#include <exception>
#include <string>

#include <CLI/CLI.hpp>
#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include "Programs/vantorbar/DoctorCommand.h"
#include "Programs/vantorbar/HistoryCommand.h"
#include "Programs/vantorbar/PrefsCommand.h"
#include "Programs/vantorbar/RecordCommand.h"
#include "Programs/vantorbar/RunCommand.h"
#include "Programs/vantorbar/SimulateCommand.h"
#include "Programs/vantorbar/SnapshotCommand.h"
#include "Programs/vantorbar/TopCommand.h"

namespace {

constexpr int kWrongUsage = 2;

/// The lowest descriptors are others' to write to: what we open mustn't get one of them because
/// whoever started us had closed it.
void fillStandardDescriptors() noexcept {
    for (int descriptor = open("/dev/null", O_RDWR); descriptor >= 0;
         descriptor = open("/dev/null", O_RDWR))
        if (descriptor > STDERR_FILENO) {
            close(descriptor);
            return;
        }
}

/// The line of the help that begins with "Usage", of the subcommand that was meant.
std::string usage(const CLI::App& app) {
    const std::string help = app.help();  // that of the subcommand, once one was found
    const auto begin = help.find("Usage:");
    return begin == help.npos ? help : help.substr(begin, help.find('\n', begin) - begin);
}

int complain(const CLI::App& app, const CLI::ParseError& error) {
    fmt::print(stderr, "vantorbar: {}\n{}\n", error.what(), usage(app));
    return kWrongUsage;
}

int runCommandLine(int argc, char** argv) {
    int exitStatus = 0;
    CLI::App app("Shows what the processors do.", "vantorbar");
    app.set_version_flag("--version", "vantorbar " VANTOR_VERSION);
    app.require_subcommand(1);
    vantor::addRunCommand(app, exitStatus);
    vantor::addTopCommand(app, exitStatus);
    vantor::addDoctorCommand(app, exitStatus);
    vantor::addPrefsCommand(app, exitStatus);
    vantor::addHistoryCommand(app, exitStatus);
    vantor::addSimulateCommand(app, exitStatus);
    vantor::addRecordCommand(app, exitStatus);
    vantor::addSnapshotCommand(app, exitStatus);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        // Help and version come this way, too.
        return error.get_exit_code() == 0 ? app.exit(error) : complain(app, error);
    }
    return exitStatus;
}

}  // namespace

int main(int argc, char** argv) {
    fillStandardDescriptors();
    try {
        return runCommandLine(argc, argv);
    } catch (const std::exception& exception) {
        fmt::print(stderr, "vantorbar: {}\n", exception.what());
        return 1;
    }
}
