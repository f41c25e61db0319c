#include "Platform/Simulated/Scenario.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <limits>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "Platform/Simulated/EventScenario.h"
#include "Platform/Simulated/MachineScenario.h"

namespace vantor::simulated {
namespace {

constexpr double kDefaultUptimeSeconds = 3600;

SnapshotOutput snapshot(ScenarioObject& object) {
    SnapshotOutput picture{.file = scenarioFileName(object.require("snapshot")), .background = {}};
    object.with("of", [&](const ScenarioValue& of) {
        picture.of = of.text() == "item" ? of.text() : scenarioMenuName(of);
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
    const double at = scenarioTime(object, earlier);
    if (object.find("snapshot")) {
        const SnapshotOutput picture = snapshot(object);
        object.finish();
        return {at, picture};
    }
    const std::string file = scenarioFileName(object.require("dump"));
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
            scenario.events.push_back(scenarioEvent(element, earlier, scenario));
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
