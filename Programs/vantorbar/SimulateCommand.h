#pragma once

#include <filesystem>
#include <iosfwd>

namespace CLI {
class App;
}

namespace vantor {
namespace simulated {
struct Scenario;
}
class OutputFolder;
class Simulation;

/// `vantorbar simulate SCENARIO --out DIR [--no-events]`.
void addSimulateCommand(CLI::App& app, int& exitStatus);

struct SimulateOptions {
    std::filesystem::path scenario, folder;
    bool events = true;
};

/// Runs a scenario and writes what the outside world could have seen. The exit status: 0, or 2
/// with one line on `err` where the scenario isn't one or a file can't be read or written.
int simulate(const SimulateOptions& options, std::ostream& err);

/// Gives the simulation's machine its time zone and its files, which lie in `folder`. Throws
/// ScenarioError where there is no such zone.
void placeMachine(Simulation& simulation, const simulated::Scenario& scenario,
                  const OutputFolder& folder);
/// Where such a machine keeps its history.
std::filesystem::path historyFolderOf(const OutputFolder& folder);

}  // namespace vantor
