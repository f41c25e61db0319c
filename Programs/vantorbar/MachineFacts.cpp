#include "Programs/vantorbar/MachineFacts.h"

#include <fstream>

#include <fmt/format.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include "Foundation/PropertyList.h"
#include "Hosts/Text/Terminal.h"
#include "Painting/Engine.h"
#include "Platform/BootTime.h"
#include "Platform/Directories.h"
#include "Platform/Linux/LinuxBuses.h"
#include "Platform/Linux/SharedFile.h"
#include "Platform/LoadAverages.h"
#include "Platform/MachineIdentity.h"
#include "Platform/Ports.h"
#include "Platform/PreferenceDomain.h"
#include "Platform/Registry.h"
#include "Platform/SystemLog.h"
#include "Programs/vantorbar/TerminalHere.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

constexpr double kLongestAnswerSeconds = 2;

/// The doctor reports by itself what a bus connection would log.
class NoLog final : public SystemLog {
public:
    void write(std::string_view) noexcept override {}
};

std::string firstLine(const fs::path& file) {
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);  // "" where there is none
    return line;
}

ProcessorFacts processorFacts(const Ports& ports) {
    ProcessorCounters& counters = ports.processorCounters;
    ProcessorFacts facts{counters.cpuCount(),          counters.logicalCores(),
                         counters.physicalCores(),     false,
                         counters.readProcessCounts(), {}};
    std::vector<ProcessorTicks> ticks(facts.cpus);
    facts.countersReadable = counters.readTicks(ticks);
    facts.offline = firstLine(ports.directories.systemRoot() / "sys/devices/system/cpu/offline");
    return facts;
}

IdentityFacts identityFacts(const MachineIdentity& identity) {
    return {identity.modelIdentifier(), identity.processorBrand(), identity.memoryBytes()};
}

std::string textOfData(const PropertyValue& value) {
    std::string text;
    if (const auto* const data = value.as<PropertyValue::Data>())
        for (const std::byte byte : *data)
            text.push_back(static_cast<char>(byte));
    return text;
}

void addDriverFacts(RegistryEntry& driver, GraphicsFacts& facts) {
    const auto* const statistics = driver.property("PerformanceStatistics").dictionary();
    if (statistics == nullptr)
        return;
    facts.tellsMemory = statistics->contains("vramUsedBytes");
    facts.tellsLoad = statistics->contains("Device Utilization %");
    facts.power = driver.property("power-state").stringValue();
    facts.memoryBytes =
        static_cast<std::uint64_t>(driver.property("VRAM,totalsize").integerValue());
}

bool hasDeviceNames(const fs::path& root) {
    return fs::exists(root / "usr/share/misc/pci.ids") ||
           fs::exists(root / "usr/share/hwdata/pci.ids");
}

/// Asks `service` for the version of an interface, and waits for the answer.
BusFacts busFacts(LinuxMainQueue& queue, BusConnection& bus, const BusAddressee& service,
                  const char* property) {
    BusFacts facts;
    bool answered = false;
    const BusMessage question =
        bus.newCall({service.peer, service.path, "org.freedesktop.DBus.Properties", "Get"});
    if (!question ||
        sd_bus_message_append(question.get(), "ss", service.interface.c_str(), property) < 0)
        return facts;
    const auto slot = bus.call(*question, [&](sd_bus_message& answer) {
        answered = true;
        facts.servesUs = sd_bus_message_is_method_error(&answer, nullptr) == 0;
        queue.stop();
    });
    const auto deadline = queue.after(kLongestAnswerSeconds, [&queue] { queue.stop(); });
    if (bus.open())
        queue.run();
    queue.cancel(deadline);
    facts.isThere = answered || bus.open();
    return facts;
}

TerminalFacts terminalFacts() {
    const TerminalHere here = terminalHere();
    const bool isTerminal = isatty(STDOUT_FILENO) == 1;
    const TerminalSize size = terminalSize(STDOUT_FILENO);
    return {isTerminal, here.term, here.codeset, here.abilities(), size.columns, size.rows};
}

}  // namespace

FolderFacts folderFacts(const std::optional<fs::path>& path) {
    if (!path)
        return {};
    std::error_code unreadable;  // as good as missing
    fs::path nearest = *path;
    while (!fs::exists(nearest, unreadable) && nearest.has_relative_path())
        nearest = nearest.parent_path();
    const bool isFolder = fs::is_directory(nearest, unreadable);
    return {path, nearest == *path, isFolder && access(nearest.c_str(), W_OK | X_OK) == 0};
}

PreferenceFacts preferenceFacts(const std::optional<fs::path>& folder) {
    PreferenceFacts facts;
    if (!folder)
        return facts;
    facts.file = *folder / fmt::format("{}.plist", kExtrasDomain);
    const FileReading reading = readSharedFile(*facts.file);
    if (reading.state == FileReading::State::unreadable) {
        facts.state = PreferenceFacts::State::unreadable;
        facts.reason = reading.reason;
    } else if (reading.state == FileReading::State::whole) {
        const auto value = propertyListValue(reading.bytes);
        const bool isDictionary = value && value->dictionary() != nullptr;
        facts.state =
            isDictionary ? PreferenceFacts::State::readable : PreferenceFacts::State::damaged;
        facts.keys = isDictionary ? value->dictionary()->size() : 0;
    }
    return facts;
}

std::vector<GraphicsFacts> graphicsFacts(Registry& registry) {
    std::vector<GraphicsFacts> all;
    for (const RegistryObject& device :
         registry.objectsMatching({{std::string(kMatchServiceClass), "IOPCIDevice"}})) {
        if (device->property("IOName").stringValue() != "display")
            continue;
        GraphicsFacts facts{.model = textOfData(device->property("model")),
                            .driver = device->property("driver").stringValue(),
                            .power = {}};
        for (const RegistryObject& child : device->children())
            addDriverFacts(*child, facts);
        all.push_back(std::move(facts));
    }
    return all;
}

MachineFacts factsFromPorts(const Ports& ports) {
    MachineFacts facts;
    facts.identity = identityFacts(ports.machineIdentity);
    facts.graphics = graphicsFacts(ports.registry);
    facts.hasDeviceNames = hasDeviceNames(ports.directories.systemRoot());
    facts.processors = processorFacts(ports);
    const FixedLoads loads = ports.loadAverages.readLoads();
    facts.load = static_cast<double>(loads.fixed[0]) / loads.scale;
    facts.bootSeconds = ports.bootTime.bootSeconds();
    facts.preferences = preferenceFacts(ports.directories.preferences());
    facts.applicationSupport = folderFacts(ports.directories.applicationSupport());
    facts.logs = folderFacts(ports.directories.logs());
    facts.preferenceFolder = folderFacts(ports.directories.preferences());
    facts.resources = folderFacts(ports.directories.resources());
    return facts;
}

void addFactsOfThisProcess(MachineFacts& facts) {
    facts.terminal = terminalFacts();
    facts.paintingTrouble = Painting::Engine::trouble();
    LinuxMainQueue queue;
    NoLog log;
    LinuxBuses buses(queue, log, processEnvironment());
    facts.sessionBus =
        busFacts(queue, buses.session,
                 {"org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
                  "org.freedesktop.portal.Settings", ""},
                 "version");
    facts.systemBus = busFacts(
        queue, buses.system,
        {"org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager", ""},
        "PreparingForSleep");
}

}  // namespace vantor
