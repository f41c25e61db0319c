#include "Programs/vantorbar-preferences/Model/ItemPreview.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "Hosts/Offscreen/OffscreenHost.h"
#include "Platform/Directories.h"
#include "Platform/GraphicsControl.h"
#include "Platform/ProcessorCounters.h"
#include "Platform/Registry.h"
#include "Platform/Simulated/SimulatedMachine.h"
#include "Shared/Collectors/GPUStatCollector.h"
#include "Shared/Collectors/SampleRing.h"
#include "Shared/PreferenceChange.h"
#include "Shared/ProcessContext.h"
#include "Shared/VTRPreferenceFunctions.h"
#include "Shared/VTRPreferences.h"
#include "Targets/VantorBarCPU/VantorBarCPU.h"

namespace vantor {
namespace {

using Rates = simulated::SimulatedProcessorCounters::Rates;

constexpr std::string_view kModes = "CPU_MenubarMode";
constexpr std::string_view kCombinesCores = "CPU_MenubarCombineCores";
constexpr double kTicks = 100;          // a second, of each CPU
constexpr double kLongestInterval = 3;  // seconds between two samples of a graph
constexpr double kLeastColumns = 40;
constexpr std::uint32_t kLoadScale = 65536;

/// How busy a CPU is: waves of different lengths, so that graphs look like work and cores differ.
double busyShare(double seconds, std::size_t cpu) noexcept {
    const double phase = 1.7 * static_cast<double>(cpu);
    const double wave = 0.34 + 0.2 * std::sin(seconds / 11 + phase) +
                        0.14 * std::sin(seconds / 3.1 + 2.3 * phase) +
                        0.1 * std::sin(seconds / 1.3 + 3.7 * phase);
    return std::clamp(wave, 0.03, 0.97);
}

Rates ratesAt(double seconds, std::size_t cpu) noexcept {
    const double busy = busyShare(seconds, cpu) * kTicks;
    return {0.72 * busy, 0.28 * busy, kTicks - busy, 0};
}

/// `machine`'s, but in the user's language.
Ports portsOf(simulated::SimulatedMachine& machine, RegionalSettings& regionalSettings) {
    const Ports all = machine.ports();
    return {.clock = all.clock,
            .mainQueue = all.mainQueue,
            .workQueues = all.workQueues,
            .processorCounters = all.processorCounters,
            .loadAverages = all.loadAverages,
            .bootTime = all.bootTime,
            .directories = all.directories,
            .systemLog = all.systemLog,
            .workspace = all.workspace,
            .daemonTransport = all.daemonTransport,
            .preferences = all.preferences,
            .distributedNotifications = all.distributedNotifications,
            .localNotifications = all.localNotifications,
            .appearance = all.appearance,
            .machineIdentity = all.machineIdentity,
            .regionalSettings = regionalSettings,
            .callStack = all.callStack,
            .fileSystem = all.fileSystem,
            .thisProcess = all.thisProcess,
            .timeZone = all.timeZone,
            .registry = all.registry,
            .graphicsControl = all.graphicsControl,
            .displays = all.displays,
            .windowServer = all.windowServer};
}

struct Graphics {
    std::string model;
    bool isIntegrated = false;
};

/// As the collector finds them.
std::vector<Graphics> graphicsOf(Registry& registry) {
    std::vector<Graphics> found;
    for (const RegistryObject& device :
         registry.objectsMatching({{std::string(kMatchServiceClass), "IOPCIDevice"}})) {
        const auto told = [&](std::string_view key) {
            return GPUStatCollector::convertString(device->property(key)).stringValue();
        };
        if (told("IOName") != "display")
            continue;
        const std::string model = told("model");
        const bool isBuiltIn = found.empty() && !device->property("built-in").isNothing();
        found.push_back({model, isBuiltIn || modelContains(model, "intel")});
    }
    return found;
}

simulated::RegistryNode graphicsTree(const PreviewMachine& machine) {
    simulated::RegistryNode root{1, "Root", "Root", {}, {}};
    if (!machine.graphicsModel)
        return root;
    PropertyValue::Dictionary device{{"IOName", "display"}, {"model", *machine.graphicsModel}};
    if (machine.isGraphicsIntegrated)
        device.emplace("built-in", true);
    root.children.push_back({2, "IOPCIDevice", "display", std::move(device), {}});
    return root;
}

}  // namespace

Colour barColour(BarShade shade) noexcept {
    return shade == BarShade::dark ? Colour{0.14, 0.14, 0.15, 1} : Colour{0.93, 0.93, 0.93, 1};
}

PreviewMachine PreviewMachine::of(const Ports& ports) {
    PreviewMachine machine{.cpus = ports.processorCounters.cpuCount(),
                           .physicalCores = ports.processorCounters.physicalCores(),
                           .resources = ports.directories.resources()};
    const std::vector<Graphics> all = graphicsOf(ports.registry);
    const bool wantsIntegrated = ports.graphicsControl.open() &&
                                 ports.graphicsControl.activeGPU() == GraphicsControl::kIntegrated;
    auto active = std::ranges::find(all, wantsIntegrated, &Graphics::isIntegrated);
    if (active == all.end())
        active = all.begin();
    if (active != all.end()) {
        machine.graphicsModel = active->model;
        machine.isGraphicsIntegrated = active->isIntegrated;
    }
    return machine;
}

struct ItemPreview::World {
    World(const PreviewMachine& wanted, RegionalSettings& regionalSettings,
          const PropertyValue::Dictionary& stored);
    ~World();

    void pass(double seconds);
    void fillGraph();
    void write(std::string_view key, const PropertyValue& value);
    void setShade(BarShade shade);

    simulated::SimulatedMachine machine;
    std::vector<Rates> rates;
    double seconds = 0;  // since the beginning
    std::unique_ptr<ProcessContext> context;
    OffscreenHost host;
    std::unique_ptr<VantorBarCPU> extra;
};

ItemPreview::World::World(const PreviewMachine& wanted, RegionalSettings& regionalSettings,
                          const PropertyValue::Dictionary& stored)
    : rates(wanted.cpus) {
    const auto cpus = static_cast<std::int64_t>(wanted.cpus);
    machine.processorCounters.setCPUs(wanted.cpus, cpus, cpus, wanted.physicalCores);
    machine.directories.setResources(wanted.resources);
    machine.registry.setTree(graphicsTree(wanted));
    machine.loadAverages.setLoads({{kLoadScale * 5 / 4, kLoadScale, kLoadScale}, kLoadScale});
    for (const auto& [key, value] : stored)
        machine.preferences.write(key, value);
    context = std::make_unique<ProcessContext>(portsOf(machine, regionalSettings));
    extra = std::make_unique<VantorBarCPU>(host);
    host.setExtra(extra.get());
    fillGraph();
}

ItemPreview::World::~World() {
    host.setExtra(nullptr);
    extra->willUnload();
    extra.reset();
}

void ItemPreview::World::pass(double wantedSeconds) {
    for (const double end = seconds + wantedSeconds; seconds < end; ++seconds) {
        for (std::size_t cpu = 0; cpu < rates.size(); ++cpu)
            rates[cpu] = ratesAt(seconds, cpu);
        machine.processorCounters.setRates(rates);
        machine.run(1);
    }
}

/// As long as the widest graph that there can be needs, at the slowest pace.
void ItemPreview::World::fillGraph() {
    const double columns =
        std::clamp<double>(static_cast<double>(VTRIntegerForKey("CPU_MenubarGraphWidth")),
                           kLeastColumns, static_cast<double>(SampleRing::kSlots));
    pass(std::max(0.0, columns * kLongestInterval - seconds));
}

/// As whoever changes a setting of a running item does.
void ItemPreview::World::write(std::string_view key, const PropertyValue& value) {
    machine.preferences.write(key, value);
    postPreferenceChange(key, machine.distributedNotifications);
}

void ItemPreview::World::setShade(BarShade shade) {
    const bool dark = shade == BarShade::dark;
    if (machine.appearance.isDark() == dark)
        return;
    machine.appearance.setDark(dark);
    context->preferences()->menubarThemeChanged({"", {}});
}

ItemPreview::ItemPreview(const PreviewMachine& machine, RegionalSettings& regionalSettings,
                         const PropertyValue::Dictionary& stored)
    : world_(std::make_unique<World>(machine, regionalSettings, stored)) {}

ItemPreview::~ItemPreview() = default;

void ItemPreview::setSetting(std::string_view key, const PropertyValue& value) {
    world_->write(key, value);
    world_->machine.run(0.01);
    world_->fillGraph();
}

void ItemPreview::setSettings(const PropertyValue::Dictionary& stored) {
    for (const auto& [key, value] : world_->machine.preferences.readAll())
        if (!stored.contains(key))
            world_->write(key, {});
    for (const auto& [key, value] : stored)
        world_->write(key, value);
    world_->machine.run(0.01);
    world_->fillGraph();
}

void ItemPreview::advance() { world_->pass(1); }

Painting::ImageSurface ItemPreview::picture(BarShade shade, double scale) {
    world_->setShade(shade);
    return world_->host.snapshot(scale, std::nullopt);
}

Painting::ImageSurface ItemPreview::pictureOf(std::int64_t mode, BarShade shade, double scale) {
    VTRPreferences& preferences = *world_->context->preferences();
    const PropertyValue modes = world_->machine.preferences.read(kModes);
    const PropertyValue combines = world_->machine.preferences.read(kCombinesCores);
    // Past the notifications: nothing but the next paint goes by them.
    preferences.setObject(std::to_string(mode), kModes);
    preferences.setObject(true, kCombinesCores);
    Painting::ImageSurface picture = this->picture(shade, scale);
    preferences.setObject(modes, kModes);
    preferences.setObject(combines, kCombinesCores);
    return picture;
}

}  // namespace vantor
