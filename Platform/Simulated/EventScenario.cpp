#include "Platform/Simulated/EventScenario.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include "Platform/Simulated/MachineScenario.h"

namespace vantor::simulated {
namespace {

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
    Corruption corruption{scenarioFileName(entries.require("file")),
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

std::optional<ScenarioEvent::Action> dropdownEvent(ScenarioObject& object, const Scenario&) {
    if (const auto opened = object.find("open"))
        return MenuOpening{scenarioMenuName(*opened), true};
    if (const auto closed = object.find("close"))
        return MenuOpening{scenarioMenuName(*closed), false};
    if (const auto row = object.find("highlight"))
        return Highlight{row->isNull() ? std::nullopt : std::optional(row->text())};
    if (const auto tag = object.find("click"))
        return LauncherClick{tag->integer(1, 9)};
    return std::nullopt;
}

}  // namespace

double scenarioTime(ScenarioObject& object, double earlier) {
    const ScenarioValue at = object.require("at");
    const double time = at.numberAtLeast(0);
    if (time < earlier)
        at.fail("time goes backwards");
    return time;
}

std::string scenarioMenuName(const ScenarioValue& name) {
    static constexpr std::string_view kNames[] = {"main", "cores", "history", "load", "uptime"};
    const std::string& text = name.text();
    const bool isGraphics = text.starts_with("memory:") || text.starts_with("processor:");
    if (!isGraphics && std::ranges::find(kNames, text) == std::end(kNames))
        name.fail("expected the name of a menu");
    return text;
}

std::string scenarioFileName(const ScenarioValue& name) {
    if (name.text().empty() || name.text().find('/') != std::string::npos || name.text()[0] == '.')
        name.fail("expected the name of a file");
    return name.text();
}

ScenarioEvent scenarioEvent(const ScenarioValue& value, double earlier, const Scenario& scenario) {
    static constexpr EventReader kReaders[] = {machineEvent, preferenceEvent, appearanceEvent,
                                               timeEvent,    lifeEvent,       corruptionEvent,
                                               daemonEvent,  dropdownEvent};
    ScenarioObject object(value);
    const double at = scenarioTime(object, earlier);
    std::optional<ScenarioEvent::Action> action;
    for (const EventReader read : kReaders)
        if (!action)
            action = read(object, scenario);
    if (!action && value.members().size() <= 1)
        value.fail("nothing happens");
    object.finish();
    return {at, *action};
}

}  // namespace vantor::simulated
