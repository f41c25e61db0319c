#pragma once

#include <filesystem>
#include <iosfwd>

namespace CLI {
class App;
}

namespace vantor {

/// `vantorbar simulate SCENARIO --out DIR [--no-events]`.
void addSimulateCommand(CLI::App& app, int& exitStatus);

struct SimulateOptions {
    std::filesystem::path scenario, folder;
    bool events = true;
};

/// Runs a scenario and writes what the outside world could have seen. The exit status: 0, or 2
/// with one line on `err` where the scenario isn't one or a file can't be read or written.
int simulate(const SimulateOptions& options, std::ostream& err);

}  // namespace vantor
