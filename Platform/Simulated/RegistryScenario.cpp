#include "Platform/Simulated/RegistryScenario.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <set>
#include <string>
#include <utility>

#include "Foundation/Base64.h"

namespace vantor::simulated {
namespace {

constexpr std::int64_t kMostID = std::numeric_limits<std::int64_t>::max();
constexpr int kDeepest = 128;  // of trees and of values

PropertyValue property(const ScenarioValue& value, int depth);

PropertyValue::Data dataOf(const ScenarioValue& value) {
    auto data = dataFromBase64(value.text());
    if (!data)
        value.fail("expected base64");
    return *std::move(data);
}

PropertyValue dictionaryOf(const ScenarioValue& value, int depth) {
    const auto members = value.members();
    if (members.size() == 1 && members[0].first == "data")
        return dataOf(members[0].second);
    PropertyValue::Dictionary dictionary;
    for (const auto& [key, entry] : members)
        dictionary[key] = property(entry, depth + 1);
    return dictionary;
}

PropertyValue property(const ScenarioValue& value, int depth) {
    if (depth > kDeepest)
        value.fail("nested too deeply");
    if (value.isObject())
        return dictionaryOf(value, depth);
    if (!value.isArray())
        return value.propertyValue();
    PropertyValue::Array array;
    for (const ScenarioValue& element : value.elements())
        array.push_back(property(element, depth + 1));
    return array;
}

PropertyValue::Dictionary properties(const ScenarioValue& value) {
    PropertyValue::Dictionary all;
    for (const auto& [key, entry] : value.members())
        all[key] = property(entry, 0);
    return all;
}

std::uint64_t identifier(const ScenarioValue& value) {
    return static_cast<std::uint64_t>(value.integer(0, kMostID));
}

RegistryNode readNode(const ScenarioValue& value, std::set<std::uint64_t>& known, int depth) {
    if (depth > kDeepest)
        value.fail("nested too deeply");
    ScenarioObject object(value);
    const ScenarioValue id = object.require("id");
    RegistryNode node{.id = identifier(id),
                      .className = object.require("class").text(),
                      .name = object.require("name").text(),
                      .properties = {},
                      .children = {}};
    if (!known.insert(node.id).second)
        id.fail("another object has this ID");
    object.with("properties", [&](auto& all) { node.properties = properties(all); });
    object.with("children", [&](const ScenarioValue& children) {
        for (const ScenarioValue& child : children.elements())
            node.children.push_back(readNode(child, known, depth + 1));
    });
    object.finish();
    return node;
}

Size size(const ScenarioValue& value) {
    const auto sides = value.elements(2);
    return {sides[0].numberAtLeast(0), sides[1].numberAtLeast(0)};
}

SimulatedScreen screen(const ScenarioValue& value) {
    ScenarioObject object(value);
    SimulatedScreen listed;
    constexpr std::int64_t kMostNumber = std::numeric_limits<std::uint32_t>::max();
    listed.screen.number =
        static_cast<std::uint32_t>(object.require("number").integer(0, kMostNumber));
    listed.display = identifier(object.require("registry"));
    object.with("names", [&](const ScenarioValue& names) {
        for (const auto& [language, name] : names.members())
            listed.screen.productNames.emplace_back(language, name.text());
    });
    object.with("resolution", [&](auto& pair) { listed.screen.resolution = size(pair); });
    object.with("size", [&](auto& pair) { listed.screen.size = size(pair); });
    object.finish();
    return listed;
}

}  // namespace

RegistryNode registryTree(const ScenarioValue& value) {
    std::set<std::uint64_t> known;
    return readNode(value, known, 0);
}

std::vector<SimulatedScreen> screenList(const ScenarioValue& value) {
    std::vector<SimulatedScreen> screens;
    for (const ScenarioValue& element : value.elements())
        screens.push_back(screen(element));
    return screens;
}

GraphicsAnswer graphicsAnswer(const ScenarioValue& value) {
    constexpr double kMost = 1LL << 53;
    if (value.isNull())
        return {};
    if (value.isText() && value.text() == "fail")
        return {.isThere = true, .active = std::nullopt};
    if (value.isText())
        value.fail("expected a number, \"fail\" or null");
    const double answer = value.number();
    if (std::abs(answer) > kMost || answer != std::trunc(answer))
        value.fail("expected a whole number");
    return {.isThere = true, .active = static_cast<std::int64_t>(answer)};
}

std::optional<double> frameRate(const ScenarioValue& value) {
    return value.isNull() ? std::nullopt : std::optional(value.number());
}

}  // namespace vantor::simulated
