#include "Programs/vantorbar/SimulateCommand.h"

#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <utility>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "Platform/Linux/DatePattern.h"
#include "Platform/Linux/LinuxDirectories.h"
#include "Programs/Common/ProgramDirectories.h"
#include "Programs/Common/PropertyJSON.h"
#include "Programs/vantorbar/EventJournal.h"
#include "Programs/vantorbar/OutputFolder.h"
#include "Programs/vantorbar/Simulation.h"
#include "Programs/vantorbar/ZoneFile.h"

namespace vantor {
namespace {

constexpr int kUnusable = 2;

namespace fs = std::filesystem;

/// The scripted machine's own files, beside the outputs until they are shown among them.
constexpr std::string_view kMachineFolder = ".machine";
constexpr std::string_view kDatabases = "Vantor Bar/databases";

TimeZoneRules zoneOf(const simulated::Scenario& scenario) {
    auto rules = timeZoneNamed(scenario.timezone);
    if (!rules)
        throw simulated::ScenarioError("timezone", "expected the name of a time zone");
    return *std::move(rules);
}

/// Moves the history files out of the machine. What the program never made is an empty folder.
void showMachineFiles(const simulated::SimulatedDirectories& directories, const fs::path& folder) {
    const fs::path made = *directories.applicationSupport() / kDatabases;
    if (fs::is_directory(made))
        fs::rename(made, folder / "databases");
    fs::create_directory(folder / "databases");
    fs::create_directory(folder / "logs");
    fs::remove_all(folder / kMachineFolder);
}

void runScenario(const simulated::Scenario& scenario, const SimulateOptions& options) {
    zoneOf(scenario);  // before anything is made
    OutputFolder folder(options.folder);

    simulated::Journal silent;
    std::optional<EventJournal> events;
    if (options.events)
        events.emplace(folder.path() / "events.jsonl");
    simulated::Journal& journal = events ? *events : silent;
    Simulation simulation(scenario, journal, folder);
    placeMachine(simulation, scenario, folder);
    if (events)
        events->attach(simulation.machine().clock, simulation.machine().mainQueue, scenario.start);
    simulation.run();
    if (events)
        events->finish();

    showMachineFiles(simulation.machine().directories, folder.path());
    const auto domain = jsonOfValue(simulation.machine().preferences.readAll());
    folder.writeFile("domain.json", domain.dump(1) + "\n");
    folder.publish();
}

}  // namespace

void placeMachine(Simulation& simulation, const simulated::Scenario& scenario,
                  const OutputFolder& folder) {
    simulated::SimulatedMachine& machine = simulation.machine();
    machine.regionalSettings.setDateWriter(dateInPattern);
    machine.timeZone.setRules(zoneOf(scenario));
    machine.directories.setRoot(folder.path() / kMachineFolder);
    machine.directories.setLogs(folder.path() / "logs");
    // The artwork and the texts are the program's own, whatever the machine.
    machine.directories.setResources(LinuxDirectories(programDirectories()).resources());
}

fs::path historyFolderOf(const OutputFolder& folder) {
    simulated::SimulatedDirectories directories;
    directories.setRoot(folder.path() / kMachineFolder);
    return *directories.applicationSupport() / kDatabases;
}

int simulate(const SimulateOptions& options, std::ostream& err) {
    try {
        runScenario(simulated::scenarioFromFile(options.scenario), options);
        return 0;
    } catch (const simulated::ScenarioError& error) {
        err << fmt::format("{}: {}\n", options.scenario.string(), error.what());
    } catch (const std::exception& error) {
        err << fmt::format("{}: {}\n", options.folder.string(), error.what());
    }
    return kUnusable;
}

void addSimulateCommand(CLI::App& app, int& exitStatus) {
    const auto options = std::make_shared<SimulateOptions>();
    CLI::App* const command = app.add_subcommand("simulate", "run a scripted machine in virtual time");
    command->add_option("SCENARIO", options->scenario, "the scenario, a JSON file")->required();
    command->add_option("--out", options->folder, "the folder that gets the results")->required();
    command->add_flag("!--no-events", options->events, "don't write events.jsonl");
    command->callback([options, &exitStatus] { exitStatus = simulate(*options, std::cerr); });
}

}  // namespace vantor
