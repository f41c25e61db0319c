#include "Programs/vantorbar/Simulation.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <variant>

#include <fmt/format.h>

#include "Hosts/Offscreen/OffscreenHost.h"
#include "Programs/vantorbar/CombinedExtra.h"
#include "Programs/vantorbar/DropdownMenus.h"
#include "Programs/vantorbar/FileDamage.h"
#include "Programs/vantorbar/StateDump.h"
#include "Shared/ProcessContext.h"
#include "Targets/VantorBarCPU/VantorBarCPU.h"

namespace vantor {
namespace {

using namespace simulated;

constexpr double kNever = std::numeric_limits<double>::infinity();

std::unique_ptr<VTRMenuExtra> makeExtra(Scenario::Extra kind, MenuExtraHost& host) {
    if (kind == Scenario::Extra::combined)
        return std::make_unique<CombinedExtra>(host);
    return std::make_unique<VantorBarCPU>(host);
}

void changeMachine(const MachineChange& change, SimulatedMachine& machine) {
    if (change.ticks)
        machine.processorCounters.setTicks(*change.ticks);
    if (change.rates)
        machine.processorCounters.setRates(*change.rates);
    if (change.loads)
        machine.loadAverages.setLoads(*change.loads);
    ProcessCounts counts = machine.processorCounters.processCounts();
    counts.tasks = change.tasks.value_or(counts.tasks);
    counts.threads = change.threads.value_or(counts.threads);
    machine.processorCounters.setProcessCounts(counts);
    if (change.processes)
        machine.daemon.setProcesses(*change.processes);
    if (change.frameRate)
        machine.windowServer.setFrameRate(*change.frameRate);
    if (change.graphicsControl)
        machine.graphicsControl.setAnswer(*change.graphicsControl);
    if (change.registry) {
        machine.registry.setTree(*change.registry);
        machine.displays.reconfigure();
    }
}

}  // namespace

/// One process of the program, from its start to its end, in a bar that the journal listens to.
struct Simulation::Program final : OffscreenListener {
    Program(const Ports& ports, Journal& hearing, Scenario::Extra kind)
        : journal(hearing), context(ports), host(this), extra(makeExtra(kind, host)),
          dropdown(*extra) {
        host.setExtra(extra.get());
    }

    void length(double length) override { journal.length(length); }
    void repaint() override { journal.repaint(); }
    void display() {
        host.displayIfNeeded();
        dropdown.displayIfNeeded();
    }

    Journal& journal;
    ProcessContext context;
    OffscreenHost host;
    std::unique_ptr<VTRMenuExtra> extra;
    DropdownMenus dropdown;
};

/// What each kind of event does.
struct Simulation::Act {
    Simulation& simulation;
    SimulatedMachine& machine = simulation.machine_;

    void operator()(const MachineChange& change) { changeMachine(change, machine); }

    void operator()(const PreferenceWrite& write) {
        machine.preferences.write(write.key, write.value);
        if (!write.notification.empty())
            machine.distributedNotifications.arrive(write.notification, write.info);
    }

    void operator()(const AppearanceChange& change) {
        if (change.dark) {
            machine.appearance.setDark(*change.dark);
            machine.distributedNotifications.arrive(std::string(kInterfaceThemeChanged), {});
        }
        if (change.contrast) {
            machine.appearance.setContrast(*change.contrast);
            machine.distributedNotifications.arrive(std::string(kIncreaseContrastChanged), {});
        }
    }

    void operator()(DaemonChange change) {
        switch (change) {
        case DaemonChange::up:
            return machine.daemon.comeUp();
        case DaemonChange::down:
            return machine.daemon.goDown();
        case DaemonChange::crash:
            return machine.daemon.crash();
        }
    }

    void operator()(const ClockStep& step) { machine.clock.step(step.seconds); }
    void operator()(const Stall& stall) { simulation.standStill(stall.seconds); }

    void operator()(const Sleep& sleep) {
        machine.workspace.willSleep();
        simulation.standStill(sleep.seconds);
        machine.workspace.didWake();
    }

    void operator()(const Restart& restart) {
        simulation.unloadProgram();
        simulation.programStart_ = machine.mainQueue.now() + restart.pauseSeconds;
    }

    void operator()(const Kill& kill) {
        if (simulation.program_)
            simulation.program_->dropdown.abandon();
        simulation.program_.reset();
        machine.mainQueue.clear();
        simulation.programStart_ =
            kill.pauseSeconds ? machine.mainQueue.now() + *kill.pauseSeconds : kNever;
    }

    void operator()(const Corruption& corruption) { simulation.corrupt(corruption); }

    /// Without a program there is no item to click on, and what isn't open needs no closing.
    void operator()(const MenuOpening& opening) {
        Program* const program = simulation.program_.get();
        if (program == nullptr)
            return simulation.require(!opening.opens || opening.menu == "main", "open");
        if (opening.opens)
            simulation.require(program->dropdown.open(opening.menu), "open");
        else
            program->dropdown.close(opening.menu);
        program->host.setMenuDown(program->dropdown.isOpen("main"));
    }

    void operator()(const Highlight& highlight) {
        Program* const program = simulation.program_.get();
        simulation.require(program != nullptr &&
                               (highlight.row ? program->dropdown.highlight(*highlight.row)
                                              : program->dropdown.highlightNothing()),
                           "highlight");
    }

    void operator()(const LauncherClick& click) {
        Program* const program = simulation.program_.get();
        simulation.require(program != nullptr && program->dropdown.clickLauncher(click.tag),
                           "click");
    }
};

Simulation::Simulation(const Scenario& scenario, Journal& journal, const OutputFolder& folder)
    : scenario_(scenario), folder_(folder), end_(scenario.start + scenario.until),
      programStart_(scenario.start), journal_(journal),
      machine_(scenario.start, scenario.latencySeconds, &journal) {
    setUpMachine();
}

Simulation::~Simulation() = default;

void Simulation::setUpMachine() {
    machine_.processorCounters.setCPUs(scenario_.cpus, scenario_.configuredCPUs,
                                       scenario_.logicalCores, scenario_.physicalCores);
    changeMachine(scenario_.machine, machine_);
    machine_.bootTime.setBootSeconds(scenario_.bootSeconds);
    machine_.machineIdentity.setModelIdentifier(scenario_.model);
    machine_.machineIdentity.answers.serial = scenario_.serial;
    machine_.displays.setScreens(scenario_.screens);
    machine_.machineIdentity.setSystemVersion(scenario_.system);
    machine_.regionalSettings.setLocale(scenario_.locale);
    machine_.appearance.setDark(scenario_.dark);
    machine_.appearance.setContrast(scenario_.contrast);
    for (const auto& [key, value] : scenario_.preferences)
        machine_.preferences.write(key, value);
}

void Simulation::startProgram() {
    programStart_ = kNever;
    wasStarted_ = true;
    program_ = std::make_unique<Program>(machine_.ports(), journal_, scenario_.extra);
}

void Simulation::unloadProgram() {
    if (program_)
        program_->extra->willUnload();
    program_.reset();
    machine_.mainQueue.clear();
}

double Simulation::eventTime() const {
    return nextEvent_ < scenario_.events.size() ? scenario_.start + scenario_.events[nextEvent_].at
                                                : kNever;
}

double Simulation::outputTime() const {
    return nextOutput_ < scenario_.outputs.size()
               ? scenario_.start + scenario_.outputs[nextOutput_].at
               : kNever;
}

double Simulation::nextTime() const {
    const double call = machine_.mainQueue.nextDue().value_or(kNever);
    return std::min({eventTime(), outputTime(), programStart_, call});
}

void Simulation::run() {
    for (double next = nextTime(); next <= end_; next = nextTime()) {
        machine_.mainQueue.moveTo(next);
        runInstant();
    }
    machine_.mainQueue.moveTo(end_);
    unloadProgram();
}

void Simulation::runInstant() {
    catchUp();
    if (programStart_ <= machine_.mainQueue.now())
        startProgram();
    machine_.mainQueue.runDueCalls();
    if (program_)
        program_->display();
    while (outputTime() <= machine_.mainQueue.now())
        takeOutput();
}

/// Events of this instant, and before them what a stall has held up. An event may stall again,
/// and hold up more.
void Simulation::catchUp() {
    for (;;) {
        const double now = machine_.mainQueue.now();
        const double event = eventTime(), output = outputTime();
        if (output < now && output < event)
            takeOutput();
        else if (event <= now)
            takeEvent();
        else
            return;
    }
}

void Simulation::takeEvent() { std::visit(Act{*this}, scenario_.events[nextEvent_++].action); }

void Simulation::takeOutput() {
    std::visit([this](const auto& what) { write(what); }, scenario_.outputs[nextOutput_++].what);
}

/// The clock goes on, nothing runs; not past the end.
void Simulation::standStill(double seconds) {
    machine_.mainQueue.moveTo(std::min(machine_.mainQueue.now() + seconds, end_));
}

void Simulation::require(bool done, std::string_view key) const {
    if (!done)
        throw ScenarioError(fmt::format("events/{}/{}", nextEvent_ - 1, key),
                            "there is no such menu or row now");
}

void Simulation::corrupt(const Corruption& corruption) {
    const auto place = fmt::format("events/{}/corrupt", nextEvent_ - 1);
    if (program_ || !wasStarted_)
        throw ScenarioError(place, "the program is running, or never was");
    const auto support = machine_.directories.applicationSupport();
    if (!support ||
        !spoilFile(*support / "Vantor Bar/databases" / corruption.file, corruption.kind))
        throw ScenarioError(place, fmt::format("can't spoil {}", corruption.file));
}

void Simulation::write(const DumpOutput& output) {
    nlohmann::ordered_json dump = {{"time", machine_.clock.now()},
                                   {"at", machine_.mainQueue.now() - scenario_.start},
                                   {"running", program_ != nullptr}};
    if (program_)
        dump.update(programState(program_->context, *program_->extra, program_->host.length()));
    folder_.writeFile(output.file, dump.dump(1) + "\n");
}

void Simulation::write(const SnapshotOutput& output) {
    OffscreenHost nobody;
    OffscreenHost& host = program_ ? program_->host : nobody;
    VTRMenu* const menu =
        program_ && output.of != "item" ? menuNamed(*program_->extra, output.of) : nullptr;
    const std::filesystem::path file = folder_.path() / output.file;
    const Painting::ImageSurface picture =
        menu != nullptr ? OffscreenMenu::snapshot(*menu, output.scale, output.background)
                        : host.snapshot(output.scale, output.background);
    if (!picture.writePNG(file))
        throw std::filesystem::filesystem_error("can't write", file,
                                                std::make_error_code(std::errc::io_error));
}

}  // namespace vantor
