#include "Programs/vantorbar/SimulateCommand.h"

#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <utility>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "Platform/Linux/LinuxDirectories.h"
#include "Programs/vantorbar/EventJournal.h"
#include "Programs/vantorbar/OutputFolder.h"
#include "Programs/vantorbar/ProgramDirectories.h"
#include "Programs/vantorbar/Simulation.h"
#include "Programs/vantorbar/StateDump.h"
#include "Programs/vantorbar/ZoneFile.h"

namespace vantor {
namespace {

constexpr int kUnusable = 2;

TimeZoneRules zoneOf(const simulated::Scenario& scenario) {
    auto rules = timeZoneNamed(scenario.timezone);
    if (!rules)
        throw simulated::ScenarioError("timezone", "expected the name of a time zone");
    return *std::move(rules);
}

void runScenario(const simulated::Scenario& scenario, const SimulateOptions& options) {
    TimeZoneRules zone = zoneOf(scenario);
    OutputFolder folder(options.folder);
    std::filesystem::create_directory(folder.path() / "databases");
    std::filesystem::create_directory(folder.path() / "logs");

    simulated::Journal silent;
    std::optional<EventJournal> events;
    if (options.events)
        events.emplace(folder.path() / "events.jsonl");
    simulated::Journal& journal = events ? *events : silent;
    Simulation simulation(scenario, journal, folder);
    simulation.machine().timeZone.setRules(std::move(zone));
    simulation.machine().directories.setLogs(folder.path() / "logs");
    // The artwork and the texts are the program's own, whatever the machine.
    simulation.machine().directories.setResources(
        LinuxDirectories(programDirectories()).resources());
    if (events)
        events->attach(simulation.machine().clock, simulation.machine().mainQueue, scenario.start);
    simulation.run();
    if (events)
        events->finish();

    const auto domain = jsonOfValue(simulation.machine().preferences.readAll());
    folder.writeFile("domain.json", domain.dump(1) + "\n");
    folder.publish();
}

}  // namespace

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
