#include "Platform/Simulated/Scenario.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "Platform/Appearance.h"
#include "Platform/Simulated/RegistryScenario.h"
#include "Platform/Simulated/ScenarioObject.h"

namespace vantor::simulated {
namespace {

constexpr std::int64_t kMostCPUs = 8192;
constexpr std::int64_t kMostTicks = std::numeric_limits<std::uint32_t>::max();
constexpr std::int64_t kMostTasks = std::numeric_limits<std::int32_t>::max();
constexpr double kDefaultUptimeSeconds = 3600;

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

std::optional<std::string> optionalText(const ScenarioValue& value) {
    return value.isNull() ? std::nullopt : std::optional(value.text());
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

std::string notificationNamed(const ScenarioValue& post) {
    static constexpr std::pair<std::string_view, std::string_view> kNotifications[] = {
        {"cpu", "VantorBarCPUPreferencesChanged"},
        {"global", "VantorBarGlobalDisplayChange"},
        {"combined", "VantorBarCombinedDisplayChange"},
        {"none", ""}};
    for (const auto& [word, notification] : kNotifications)
        if (post.text() == word)
            return std::string(notification);
    post.fail("expected \"cpu\", \"global\", \"combined\" or \"none\"");
}

PreferenceWrite preferenceWrite(const ScenarioValue& value) {
    ScenarioObject object(value);
    PreferenceWrite write{.key = object.require("key").text(),
                          .value = {},
                          .notification = "VantorBarCPUPreferencesChanged",
                          .info = {}};
    if (const auto stored = object.require("value"); !stored.isNull())
        write.value = stored.propertyValue();
    write.info["key"] = write.key;
    object.with("resetKey", [&](const ScenarioValue& word) {
        if (!word.isNull())
            write.info["resetKey"] = word.text();
    });
    object.with("post",
                [&](const ScenarioValue& post) { write.notification = notificationNamed(post); });
    object.finish();
    return write;
}

/// One road for each kind of event: whether it has one of the keys, and what it then means.
using EventReader = std::optional<ScenarioEvent::Action> (*)(ScenarioObject&, const Scenario&);

std::optional<ScenarioEvent::Action> machineEvent(ScenarioObject& object,
                                                  const Scenario& scenario) {
    for (const std::string_view key : {"ticks", "rate", "load", "tasks", "threads", "fps",
                                       "graphicsControl", "processes", "registry"})
        if (object.find(key))
            return machineChange(object, scenario.cpus);
    return std::nullopt;
}

std::optional<ScenarioEvent::Action> preferenceEvent(ScenarioObject& object, const Scenario&) {
    const auto value = object.find("preference");
    return value ? std::optional<ScenarioEvent::Action>(preferenceWrite(*value)) : std::nullopt;
}

std::optional<ScenarioEvent::Action> appearanceEvent(ScenarioObject& object, const Scenario&) {
    AppearanceChange change;
    object.with("dark", [&](const ScenarioValue& value) { change.dark = value.boolean(); });
    object.with("contrast", [&](const ScenarioValue& value) { change.contrast = value.boolean(); });
    return change.dark || change.contrast ? std::optional<ScenarioEvent::Action>(change)
                                          : std::nullopt;
}

/// "key": seconds.
template <class Action>
std::optional<ScenarioEvent::Action> secondsEvent(ScenarioObject& object, std::string_view key,
                                                  double least = 0) {
    const auto value = object.find(key);
    if (!value)
        return std::nullopt;
    return ScenarioEvent::Action(Action{value->numberAtLeast(least)});
}

std::optional<ScenarioEvent::Action> timeEvent(ScenarioObject& object, const Scenario&) {
    constexpr double kAny = std::numeric_limits<double>::lowest();
    if (auto action = secondsEvent<ClockStep>(object, "clock", kAny))
        return action;
    if (auto action = secondsEvent<Stall>(object, "stall"))
        return action;
    return secondsEvent<Sleep>(object, "sleep");
}

std::optional<ScenarioEvent::Action> lifeEvent(ScenarioObject& object, const Scenario&) {
    if (auto action = secondsEvent<Restart>(object, "restart"))
        return action;
    const auto value = object.find("kill");
    if (!value)
        return std::nullopt;
    Kill kill;
    if (!value->isNull())
        kill.pauseSeconds = value->numberAtLeast(0);
    return kill;
}

std::string fileName(const ScenarioValue& name) {
    if (name.text().empty() || name.text().find('/') != std::string::npos || name.text()[0] == '.')
        name.fail("expected the name of a file");
    return name.text();
}

Corruption::Kind corruptionNamed(const ScenarioValue& as) {
    static constexpr std::pair<std::string_view, Corruption::Kind> kKinds[] = {
        {"zeros", Corruption::Kind::zeros},
        {"text", Corruption::Kind::text},
        {"truncated", Corruption::Kind::truncated},
        {"empty", Corruption::Kind::empty}};
    for (const auto& [word, kind] : kKinds)
        if (as.text() == word)
            return kind;
    as.fail("expected \"zeros\", \"text\", \"truncated\" or \"empty\"");
}

std::optional<ScenarioEvent::Action> corruptionEvent(ScenarioObject& object, const Scenario&) {
    const auto value = object.find("corrupt");
    if (!value)
        return std::nullopt;
    ScenarioObject entries(*value);
    Corruption corruption{fileName(entries.require("file")),
                          corruptionNamed(entries.require("as"))};
    entries.finish();
    return corruption;
}

std::optional<ScenarioEvent::Action> daemonEvent(ScenarioObject& object, const Scenario&) {
    static constexpr std::pair<std::string_view, DaemonChange> kChanges[] = {
        {"up", DaemonChange::up}, {"down", DaemonChange::down}, {"crash", DaemonChange::crash}};
    const auto value = object.find("daemon");
    if (!value)
        return std::nullopt;
    for (const auto& [word, change] : kChanges)
        if (value->text() == word)
            return change;
    value->fail("expected \"up\", \"down\" or \"crash\"");
}

double timeNotBefore(ScenarioObject& object, double earlier) {
    const ScenarioValue at = object.require("at");
    const double time = at.numberAtLeast(0);
    if (time < earlier)
        at.fail("time goes backwards");
    return time;
}

std::string menuName(const ScenarioValue& name) {
    static constexpr std::string_view kNames[] = {"main", "cores", "history", "load", "uptime"};
    const std::string& text = name.text();
    const bool isGraphics = text.starts_with("memory:") || text.starts_with("processor:");
    if (!isGraphics && std::ranges::find(kNames, text) == std::end(kNames))
        name.fail("expected the name of a menu");
    return text;
}

std::optional<ScenarioEvent::Action> dropdownEvent(ScenarioObject& object, const Scenario&) {
    if (const auto opened = object.find("open"))
        return MenuOpening{menuName(*opened), true};
    if (const auto closed = object.find("close"))
        return MenuOpening{menuName(*closed), false};
    if (const auto row = object.find("highlight"))
        return Highlight{row->isNull() ? std::nullopt : std::optional(row->text())};
    if (const auto tag = object.find("click"))
        return LauncherClick{tag->integer(1, 9)};
    return std::nullopt;
}

ScenarioEvent event(const ScenarioValue& value, double earlier, const Scenario& scenario) {
    static constexpr EventReader kReaders[] = {machineEvent, preferenceEvent, appearanceEvent,
                                               timeEvent,    lifeEvent,       corruptionEvent,
                                               daemonEvent,  dropdownEvent};
    ScenarioObject object(value);
    const double at = timeNotBefore(object, earlier);
    std::optional<ScenarioEvent::Action> action;
    for (const EventReader read : kReaders)
        if (!action)
            action = read(object, scenario);
    if (!action && value.json().size() <= 1)
        value.fail("nothing happens");
    object.finish();
    return {at, *action};
}

SnapshotOutput snapshot(ScenarioObject& object) {
    SnapshotOutput picture{.file = fileName(object.require("snapshot")), .background = {}};
    object.with("of", [&](const ScenarioValue& of) {
        picture.of = of.text() == "item" ? of.text() : menuName(of);
    });
    object.with("scale", [&](const ScenarioValue& scale) {
        picture.scale = static_cast<int>(scale.integer(1, 2));
    });
    object.with("background", [&](const ScenarioValue& background) {
        picture.background = colorFromString(background.text());
        if (!picture.background)
            background.fail("expected a colour, as in \"1 1 1 1\"");
    });
    return picture;
}

ScenarioOutput output(const ScenarioValue& value, double earlier) {
    ScenarioObject object(value);
    const double at = timeNotBefore(object, earlier);
    if (object.find("snapshot")) {
        const SnapshotOutput picture = snapshot(object);
        object.finish();
        return {at, picture};
    }
    const std::string file = fileName(object.require("dump"));
    object.finish();
    return {at, DumpOutput{file}};
}

Scenario::Extra extraNamed(const ScenarioValue& value) {
    if (value.text() == "cpu")
        return Scenario::Extra::cpu;
    if (value.text() == "combined")
        return Scenario::Extra::combined;
    value.fail("expected \"cpu\" or \"combined\"");
}

void readTime(ScenarioObject& object, Scenario& scenario) {
    scenario.start = object.require("start").numberAtLeast(0);
    scenario.until = object.require("until").numberAtLeast(0);
    object.with("latency", [&](auto& value) { scenario.latencySeconds = value.numberAtLeast(0); });
    object.with("timezone", [&](auto& value) { scenario.timezone = value.text(); });
    object.with("locale", [&](auto& value) { scenario.locale = value.text(); });
    const auto boot = static_cast<std::int64_t>(scenario.start - kDefaultUptimeSeconds);
    scenario.bootSeconds = boot;
}

void readSettings(ScenarioObject& object, Scenario& scenario) {
    object.with("preferences", [&](const ScenarioValue& value) {
        ScenarioObject{value};
        scenario.preferences = *value.propertyValue().dictionary();
    });
    object.with("dark", [&](auto& value) { scenario.dark = value.boolean(); });
    object.with("contrast", [&](auto& value) { scenario.contrast = value.boolean(); });
    object.with("extra", [&](auto& value) { scenario.extra = extraNamed(value); });
    object.with("system", [&](const ScenarioValue& value) {
        constexpr std::int64_t kMost = std::numeric_limits<int>::max();
        const auto parts = value.elements(3);
        const auto part = [&](std::size_t index) {
            return static_cast<int>(parts[index].integer(0, kMost));
        };
        scenario.system = {part(0), part(1), part(2)};
    });
}

void readLists(ScenarioObject& object, Scenario& scenario) {
    object.with("events", [&](const ScenarioValue& value) {
        for (const ScenarioValue& element : value.elements()) {
            const double earlier = scenario.events.empty() ? 0 : scenario.events.back().at;
            scenario.events.push_back(event(element, earlier, scenario));
        }
    });
    object.with("outputs", [&](const ScenarioValue& value) {
        for (const ScenarioValue& element : value.elements()) {
            const double earlier = scenario.outputs.empty() ? 0 : scenario.outputs.back().at;
            scenario.outputs.push_back(output(element, earlier));
        }
    });
}

/// "line 3, column 14" of a byte in a text.
std::string placeOfByte(std::string_view text, std::size_t byte) {
    const std::string_view before = text.substr(0, byte > 0 ? byte - 1 : 0);
    const auto lineStart = before.rfind('\n') + 1;
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    return fmt::format("line {}, column {}", line, before.size() - lineStart + 1);
}

ScenarioJSON parsed(std::string_view text) {
    try {
        return ScenarioJSON::parse(text);
    } catch (const nlohmann::json::parse_error& error) {
        throw ScenarioError(placeOfByte(text, error.byte), "not JSON");
    } catch (const nlohmann::json::exception&) {
        throw ScenarioError("", "a number is out of range");
    }
}

}  // namespace

Scenario scenarioFromText(std::string_view text) {
    const ScenarioJSON root = parsed(text);
    ScenarioObject object(ScenarioValue(root, ""));
    Scenario scenario;
    readTime(object, scenario);
    object.with("machine", [&](const ScenarioValue& value) { readMachine(value, scenario); });
    readSettings(object, scenario);
    readLists(object, scenario);
    object.finish();
    return scenario;
}

Scenario scenarioFromFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::string text;
    if (stream && !std::filesystem::is_directory(file))
        text.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
    else
        throw ScenarioError("", "can't be read");
    return scenarioFromText(text);
}

}  // namespace vantor::simulated
