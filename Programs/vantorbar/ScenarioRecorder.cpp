#include "Programs/vantorbar/ScenarioRecorder.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Platform/Appearance.h"
#include "Platform/BootTime.h"
#include "Platform/Clock.h"
#include "Platform/DistributedNotifications.h"
#include "Platform/MachineIdentity.h"
#include "Platform/PreferenceDomain.h"
#include "Platform/WindowServer.h"
#include "Platform/Witness.h"
#include "Platform/Workspace.h"
#include "Programs/Common/PropertyJSON.h"
#include "Programs/vantorbar/RecordedGraphics.h"

namespace vantor {
namespace {

using json = nlohmann::ordered_json;

/// A clock that is set moves by more than this between two readings; one that is disciplined
/// doesn't.
constexpr double kSmallestStepSeconds = 0.05;

json ticksJSON(const std::vector<ProcessorTicks>& ticks) {
    json rows = json::array();
    for (const ProcessorTicks& cpu : ticks)
        rows.push_back({cpu.user, cpu.system, cpu.idle, cpu.nice});
    return rows;
}

json loadsJSON(const FixedLoads& loads) { return {{"fixed", loads.fixed}, {"scale", loads.scale}}; }

/// By the keys of a change of the machine.
json graphicsJSON(const Ports& ports) {
    const auto rate = ports.windowServer.frameRate();
    return {{"registry", recordedRegistry(ports.registry)},
            {"graphicsControl", recordedGraphicsControl(ports.graphicsControl)},
            {"fps", rate ? json(*rate) : json()}};
}

}  // namespace

class ScenarioRecorder::Counters final : public ProcessorCounters {
public:
    Counters(ProcessorCounters& counters, ScenarioRecorder& recorder)
        : counters_(counters), recorder_(recorder) {}

    std::size_t cpuCount() const noexcept override { return counters_.cpuCount(); }
    std::int64_t configuredCPUs() const noexcept override { return counters_.configuredCPUs(); }
    std::int64_t logicalCores() const noexcept override { return counters_.logicalCores(); }
    std::int64_t physicalCores() const noexcept override { return counters_.physicalCores(); }

    bool readTicks(std::span<ProcessorTicks> into) noexcept override {
        const bool read = counters_.readTicks(into);
        const std::vector<ProcessorTicks> ticks(into.begin(), into.end());
        if (!std::exchange(hasBaseline_, true))
            recorder_.machine_["ticks"] = ticksJSON(ticks);
        else
            recorder_.momentNow().ticks = ticks;
        return read;
    }
    ProcessCounts readProcessCounts() noexcept override {
        const ProcessCounts counts = counters_.readProcessCounts();
        recorder_.momentNow().counts = counts;
        return counts;
    }

private:
    ProcessorCounters& counters_;
    ScenarioRecorder& recorder_;
    bool hasBaseline_ = false;
};

class ScenarioRecorder::Loads final : public LoadAverages {
public:
    Loads(LoadAverages& loads, ScenarioRecorder& recorder) : loads_(loads), recorder_(recorder) {}

    FixedLoads readLoads() noexcept override {
        const FixedLoads loads = loads_.readLoads();
        recorder_.momentNow().loads = loads;
        return loads;
    }

private:
    LoadAverages& loads_;
    ScenarioRecorder& recorder_;
};

/// Looks at the graphics processors before the program does: what is read twice at one moment
/// says the same.
class ScenarioRecorder::Measurements final : public Witness {
public:
    explicit Measurements(ScenarioRecorder& recorder) : recorder_(recorder) {}

    void measures(std::string_view collector, std::optional<int> sequence) override {
        if (collector != "gpu")
            return;
        json changed = recorder_.changedGraphics();
        if (changed.empty())
            return;
        if (sequence)
            recorder_.momentNow().graphics = std::move(changed);
        else
            recorder_.addEvent(recorder_.mainTime(), std::move(changed));
    }
    void updated(std::string_view, int) override {}
    void committed(std::string_view, std::size_t, std::size_t) override {}
    void extraLoaded(std::string_view) override {}
    void extraUnloaded(std::string_view) override {}
    void logged(std::string_view) override {}

private:
    ScenarioRecorder& recorder_;
};

ScenarioRecorder::ScenarioRecorder(const Ports& ports)
    : ports_(ports), counters_(std::make_unique<Counters>(ports.processorCounters, *this)),
      loads_(std::make_unique<Loads>(ports.loadAverages, *this)),
      measurements_(std::make_unique<Measurements>(*this)), start_(ports.clock.now()),
      monotonicStart_(ports.clock.monotonic()),
      preferences_(jsonOfValue(ports.preferences.readAll())), dark_(ports.appearance.isDark()),
      contrastOn_(ports.appearance.increasesContrast()) {
    machine_ = {{"cpus", counters_->cpuCount()},
                {"logical", counters_->logicalCores()},
                {"physical", counters_->physicalCores()},
                {"ncpu", counters_->configuredCPUs()},
                {"boot", ports.bootTime.bootSeconds().value_or(0)}};
    if (const auto model = ports.machineIdentity.modelIdentifier())
        machine_["model"] = *model;
    graphics_ = graphicsJSON(ports);
    machine_.update(graphics_);
    machine_["screens"] = recordedScreens(ports.displays, ports.registry);

    NotificationCenter& workspace = ports.workspace.notificationCenter();
    willSleep_ =
        workspace.observe(std::string(kWorkspaceWillSleep), [this](auto&) { fallAsleep(); });
    didWake_ = workspace.observe(std::string(kWorkspaceDidWake), [this](auto&) { wakeUp(); });
    DistributedNotifications& center = ports.distributedNotifications;
    theme_ = center.observe(std::string(kInterfaceThemeChanged), [this](auto&) {
        addEvent(mainTime(), {{"dark", ports_.appearance.isDark()}});
    });
    contrast_ = center.observe(std::string(kIncreaseContrastChanged), [this](auto&) {
        addEvent(mainTime(), {{"contrast", ports_.appearance.increasesContrast()}});
    });
}

ScenarioRecorder::~ScenarioRecorder() = default;

Ports ScenarioRecorder::ports() noexcept {
    Ports ports = overriddenPorts(
        ports_, {.processorCounters = counters_.get(), .loadAverages = loads_.get()});
    ports.witness = measurements_.get();
    return ports;
}

/// What isn't as it was last seen.
json ScenarioRecorder::changedGraphics() {
    json now = graphicsJSON(ports_);
    json changed = json::object();
    for (const auto& [key, value] : now.items())
        if (value != graphics_[key])
            changed[key] = value;
    graphics_ = std::move(now);
    return changed;
}

double ScenarioRecorder::mainTime() const noexcept {
    return ports_.clock.monotonic() - monotonicStart_;
}

void ScenarioRecorder::addEvent(double at, json event) { events_.emplace(at, std::move(event)); }

void ScenarioRecorder::noteClockStep() {
    const double step = ports_.clock.now() - (start_ + mainTime()) - stepped_;
    if (std::abs(step) < kSmallestStepSeconds)
        return;
    stepped_ += step;
    addEvent(mainTime(), {{"clock", step}});
}

/// A reading is made on a tick, and a tick stands for the whole second just begun. A tick that
/// comes more than a second late stands for an earlier one, but nothing happened in between. A tick
/// that a sleep held up is late from the waking on.
ScenarioRecorder::Moment& ScenarioRecorder::momentNow() {
    wakeUp();  // who measures is awake, though the word of it may still be on its way
    noteClockStep();
    const double second = std::floor(ports_.clock.now());
    const double at = std::max(second - start_ - stepped_, awakeSince_);
    Moment& moment = moments_[at];
    if (moment.lateness == 0)
        moment.lateness = mainTime() - at;
    return moment;
}

void ScenarioRecorder::fallAsleep() noexcept { sleepBegan_ = mainTime(); }

/// In a machine that is suspended the monotonic clock stands still, and delays with it: to the
/// program that is a short sleep and a wall clock that was set.
void ScenarioRecorder::wakeUp() {
    if (!sleepBegan_)
        return;
    awakeSince_ = mainTime();
    addEvent(*sleepBegan_, {{"sleep", awakeSince_ - *sleepBegan_}});
    sleepBegan_.reset();
    noteClockStep();
}

json ScenarioRecorder::scenario(double seconds) const {
    std::multimap<double, json> all = events_;
    for (const auto& [at, moment] : moments_) {
        json change = json::object();
        if (moment.ticks)
            change["ticks"] = ticksJSON(*moment.ticks);
        if (moment.loads)
            change["load"] = loadsJSON(*moment.loads);
        if (moment.counts)
            change.update({{"tasks", moment.counts->tasks}, {"threads", moment.counts->threads}});
        change.update(moment.graphics);
        all.emplace(at, std::move(change));
        if (moment.lateness > 0)
            all.emplace(at, json{{"stall", moment.lateness}});
    }
    json events = json::array();
    for (const auto& [at, what] : all) {
        json event = {{"at", std::max(0.0, at)}};
        event.update(what);
        events.push_back(std::move(event));
    }
    return {{"start", start_},
            {"until", seconds},
            {"latency", 0},
            {"machine", machine_},
            {"preferences", preferences_},
            {"dark", dark_},
            {"contrast", contrastOn_},
            {"events", std::move(events)}};
}

}  // namespace vantor
