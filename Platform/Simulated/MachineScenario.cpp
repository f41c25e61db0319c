#include "Platform/Simulated/MachineScenario.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Simulated/RegistryScenario.h"

namespace vantor::simulated {
namespace {

constexpr std::int64_t kMostCPUs = 8192;
constexpr std::int64_t kMostTicks = std::numeric_limits<std::uint32_t>::max();
constexpr std::int64_t kMostTasks = std::numeric_limits<std::int32_t>::max();

std::uint32_t counter(const ScenarioValue& value) {
    return static_cast<std::uint32_t>(value.integer(0, kMostTicks));
}

std::int32_t taskCount(const ScenarioValue& value) {
    return static_cast<std::int32_t>(value.integer(0, kMostTasks));
}

std::vector<ProcessorTicks> ticksRows(const ScenarioValue& value, std::size_t cpus) {
    std::vector<ProcessorTicks> rows;
    for (const ScenarioValue& row : value.elements(cpus)) {
        const auto states = row.elements(4);
        rows.push_back(
            {counter(states[0]), counter(states[1]), counter(states[2]), counter(states[3])});
    }
    return rows;
}

std::vector<SimulatedProcessorCounters::Rates> rateRows(const ScenarioValue& value,
                                                        std::size_t cpus) {
    std::vector<SimulatedProcessorCounters::Rates> rows;
    for (const ScenarioValue& row : value.elements(cpus)) {
        const auto states = row.elements(4);
        rows.push_back(
            {states[0].number(), states[1].number(), states[2].number(), states[3].number()});
    }
    return rows;
}

FixedLoads fixedLoads(const ScenarioValue& value) {
    ScenarioObject object(value);
    FixedLoads loads{{}, 2048};
    const auto fixed = object.require("fixed").elements(loads.fixed.size());
    for (std::size_t load = 0; load < fixed.size(); ++load)
        loads.fixed[load] = counter(fixed[load]);
    object.with("scale", [&](const ScenarioValue& scale) {
        loads.scale = static_cast<std::uint32_t>(scale.integer(1, kMostTicks));
    });
    object.finish();
    return loads;
}

/// One of the busiest processes; it may lack either.
PropertyValue processRecord(const ScenarioValue& value) {
    ScenarioObject object(value);
    PropertyValue::Dictionary record;
    object.with("name", [&](auto& name) { record["name"] = name.text(); });
    object.with("c", [&](const ScenarioValue& use) {
        use.number();
        record["c"] = use.propertyValue();
    });
    object.finish();
    return record;
}

PropertyValue processRecords(const ScenarioValue& value) {
    if (value.isNull())
        return {};
    PropertyValue::Array records;
    for (const ScenarioValue& element : value.elements())
        records.push_back(processRecord(element));
    return records;
}

std::optional<std::string> optionalText(const ScenarioValue& value) {
    return value.isNull() ? std::nullopt : std::optional(value.text());
}

}  // namespace

MachineChange machineChange(ScenarioObject& object, std::size_t cpus) {
    MachineChange change;
    object.with("ticks", [&](auto& value) { change.ticks = ticksRows(value, cpus); });
    object.with("rate", [&](auto& value) { change.rates = rateRows(value, cpus); });
    object.with("load", [&](auto& value) { change.loads = fixedLoads(value); });
    object.with("tasks", [&](auto& value) { change.tasks = taskCount(value); });
    object.with("threads", [&](auto& value) { change.threads = taskCount(value); });
    object.with("processes", [&](auto& value) { change.processes = processRecords(value); });
    object.with("registry", [&](auto& value) { change.registry = registryTree(value); });
    object.with("fps", [&](auto& value) { change.frameRate = frameRate(value); });
    object.with("graphicsControl",
                [&](auto& value) { change.graphicsControl = graphicsAnswer(value); });
    return change;
}

void readMachine(const ScenarioValue& value, Scenario& scenario) {
    ScenarioObject object(value);
    const auto count = [&](std::string_view key, std::int64_t fallback, std::int64_t least) {
        const auto entry = object.find(key);
        return entry ? entry->integer(least, kMostCPUs) : fallback;
    };
    scenario.logicalCores = count("logical", scenario.logicalCores, 0);
    scenario.physicalCores = count("physical", scenario.logicalCores, 0);
    scenario.cpus = static_cast<std::size_t>(count("cpus", scenario.logicalCores, 0));
    scenario.configuredCPUs = count("ncpu", static_cast<std::int64_t>(scenario.cpus), 0);
    object.with("boot", [&](const ScenarioValue& boot) {
        const auto seconds = static_cast<std::int64_t>(boot.numberAtLeast(0));
        scenario.bootSeconds = seconds == 0 ? std::nullopt : std::optional(seconds);
    });
    object.with("model", [&](auto& model) { scenario.model = optionalText(model); });
    object.with("serial", [&](auto& serial) { scenario.serial = optionalText(serial); });
    object.with("screens", [&](auto& screens) { scenario.screens = screenList(screens); });
    scenario.machine = machineChange(object, scenario.cpus);
    object.finish();
}

}  // namespace vantor::simulated
