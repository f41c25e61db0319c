#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string_view>

#include "Platform/Simulated/Scenario.h"
#include "Platform/Simulated/SimulatedMachine.h"
#include "Programs/vantorbar/OutputFolder.h"

namespace vantor {

/// Runs the real extra through one scenario, in virtual time.
///
/// At one instant the scenario's events take effect first, then every call that is due runs, then
/// the item is painted if it was marked, then the instant's outputs are taken. What a stall or a
/// sleep holds up takes effect when the main queue runs again, in the order of its times.
class Simulation {
public:
    /// `scenario`, `journal` and `folder` outlive the simulation. `folder` gets the outputs.
    Simulation(const simulated::Scenario& scenario, simulated::Journal& journal,
               const OutputFolder& folder);
    ~Simulation();

    simulated::SimulatedMachine& machine() noexcept { return machine_; }
    double start() const noexcept { return scenario_.start; }

    /// To the end, where the extra is unloaded. Throws where an output can't be written, and
    /// ScenarioError where an event can't take place.
    void run();

private:
    struct Program;
    struct Act;

    void setUpMachine();
    void startProgram();
    void unloadProgram();
    /// When something happens next; infinity when nothing does.
    double nextTime() const;
    void runInstant();
    void catchUp();
    void takeEvent();
    void takeOutput();
    void standStill(double seconds);
    void corrupt(const simulated::Corruption& corruption);
    void require(bool done, std::string_view key) const;
    void write(const simulated::DumpOutput& dump);
    void write(const simulated::SnapshotOutput& snapshot);
    double eventTime() const;
    double outputTime() const;

    const simulated::Scenario& scenario_;
    const OutputFolder& folder_;
    double end_;  // seconds since 1970, as all times here
    double programStart_;
    bool wasStarted_ = false;
    std::size_t nextEvent_ = 0, nextOutput_ = 0;
    simulated::Journal& journal_;
    simulated::SimulatedMachine machine_;
    std::unique_ptr<Program> program_;
};

}  // namespace vantor
