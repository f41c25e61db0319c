#include "Platform/Simulated/RegistryScenario.h"

#include <string>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "Platform/Simulated/Scenario.h"

namespace vantor::simulated {
namespace {

Scenario withMachine(std::string_view machine) {
    return scenarioFromText(fmt::format(R"({{"start": 1, "until": 1, "machine": {}}})", machine));
}

std::string reasonAgainst(std::string_view machine) {
    try {
        withMachine(machine);
    } catch (const ScenarioError& error) {
        return error.what();
    }
    return "accepted";
}

TEST(RegistryScenarioTest, TreeIsReadWhole) {
    const Scenario scenario = withMachine(R"({"registry": {"id": 0, "class": "Root", "name": "r",
        "children": [{"id": 9, "class": "IOPCIDevice", "name": "GPU", "properties": {
            "model": {"data": "YWJj"}, "size": 5, "big": 18446744073709551615, "load": 1.5,
            "in": [true, {"data": "AA=="}], "two": {"data": "YQ==", "x": "y"}}}]}})");
    ASSERT_TRUE(scenario.machine.registry);
    const RegistryNode& root = *scenario.machine.registry;
    EXPECT_EQ(root.className, "Root");
    ASSERT_EQ(root.children.size(), 1u);
    const RegistryNode& gpu = root.children[0];
    EXPECT_EQ(gpu.id, 9u);
    EXPECT_EQ(gpu.name, "GPU");
    const PropertyValue::Data letters{std::byte{'a'}, std::byte{'b'}, std::byte{'c'}};
    EXPECT_EQ(gpu.properties.at("model"), PropertyValue(letters));
    EXPECT_EQ(gpu.properties.at("size"), PropertyValue(std::int64_t{5}));
    EXPECT_EQ(gpu.properties.at("big"), PropertyValue(UINT64_MAX));
    EXPECT_EQ(gpu.properties.at("load"), PropertyValue(1.5));
    const PropertyValue::Array array{true, PropertyValue::Data{std::byte{0}}};
    EXPECT_EQ(gpu.properties.at("in"), PropertyValue(array));
    const PropertyValue::Dictionary two{{"data", "YQ=="}, {"x", "y"}};
    EXPECT_EQ(gpu.properties.at("two"), PropertyValue(two));
}

TEST(RegistryScenarioTest, ScreensKeepTheirNamesInTheOrderOfTheFile) {
    const Scenario scenario = withMachine(R"({"screens": [{"number": 7, "registry": 3,
        "names": {"fr": "Ecran", "en": "Screen"}, "resolution": [144, 145], "size": [2880, 1800]},
        {"number": 8, "registry": 4}]})");
    ASSERT_EQ(scenario.screens.size(), 2u);
    const SimulatedScreen& first = scenario.screens[0];
    EXPECT_EQ(first.screen.number, 7u);
    EXPECT_EQ(first.display, 3u);
    ASSERT_EQ(first.screen.productNames.size(), 2u);
    EXPECT_EQ(first.screen.productNames[0].second, "Ecran");
    EXPECT_EQ(first.screen.resolution, (Size{144, 145}));
    EXPECT_EQ(first.screen.size, (Size{2880, 1800}));
    EXPECT_FALSE(scenario.screens[1].screen.size);
}

TEST(RegistryScenarioTest, GraphicsControlIsAbsentFailingOrAnswering) {
    EXPECT_FALSE(withMachine("{}").machine.graphicsControl);
    EXPECT_FALSE(withMachine(R"({"graphicsControl": null})").machine.graphicsControl->isThere);
    const auto failing = withMachine(R"({"graphicsControl": "fail"})").machine.graphicsControl;
    EXPECT_TRUE(failing->isThere);
    EXPECT_FALSE(failing->active);
    const auto answering = withMachine(R"({"graphicsControl": 1})").machine.graphicsControl;
    EXPECT_TRUE(answering->isThere);
    EXPECT_EQ(answering->active, 1);
}

TEST(RegistryScenarioTest, FrameRateMayFail) {
    EXPECT_FALSE(withMachine("{}").machine.frameRate);
    EXPECT_EQ(*withMachine(R"({"fps": null})").machine.frameRate, std::nullopt);
    EXPECT_EQ(*withMachine(R"({"fps": 59.5})").machine.frameRate, 59.5);
}

TEST(RegistryScenarioTest, ModelAndSerialMayFail) {
    const Scenario scenario = withMachine(R"({"model": "iMac14,2", "serial": "C02X"})");
    EXPECT_EQ(scenario.model, "iMac14,2");
    EXPECT_EQ(scenario.serial, "C02X");
    EXPECT_EQ(withMachine(R"({"serial": null})").serial, std::nullopt);
}

TEST(RegistryScenarioTest, EventReplacesTheTree) {
    const Scenario scenario = scenarioFromText(R"({"start": 1, "until": 1, "events": [
        {"at": 0, "registry": {"id": 4, "class": "R", "name": "n"}, "fps": 3}]})");
    const auto& change = std::get<MachineChange>(scenario.events.at(0).action);
    EXPECT_EQ(change.registry->id, 4u);
    EXPECT_EQ(*change.frameRate, 3);
}

TEST(RegistryScenarioTest, SaysWhereItIsWrongAndWhy) {
    const std::pair<const char*, const char*> cases[] = {
        {R"({"registry": null})", "machine/registry: expected an object"},
        {R"({"registry": {"class": "a", "name": "b"}})", "machine/registry: \"id\" is missing"},
        {R"({"registry": {"id": -1, "class": "a", "name": "b"}})",
         "machine/registry/id: expected an integer from 0 to 9223372036854775807"},
        {R"({"registry": {"id": 1, "class": 1, "name": "b"}})",
         "machine/registry/class: expected a text"},
        {R"({"registry": {"id": 1, "class": "a", "name": "b", "parent": 3}})",
         "machine/registry: unknown key \"parent\""},
        {R"({"registry": {"id": 1, "class": "a", "name": "b", "properties": []}})",
         "machine/registry/properties: expected an object"},
        {R"({"registry": {"id": 1, "class": "a", "name": "b", "properties": {"p": null}}})",
         "machine/registry/properties/p: null is no value"},
        {R"({"registry": {"id": 1, "class": "a", "name": "b",
             "properties": {"p": [{"data": "a"}]}}})",
         "machine/registry/properties/p/0/data: expected base64"},
        {R"({"registry": {"id": 1, "class": "a", "name": "b",
             "children": [{"id": 1, "class": "a", "name": "b"}]}})",
         "machine/registry/children/0/id: another object has this ID"},
        {R"({"graphicsControl": "no"})",
         "machine/graphicsControl: expected a number, \"fail\" or null"},
        {R"({"graphicsControl": 0.5})", "machine/graphicsControl: expected a whole number"},
        {R"({"fps": "many"})", "machine/fps: expected a number"},
        {R"({"serial": 5})", "machine/serial: expected a text"},
        {R"({"screens": {}})", "machine/screens: expected an array"},
        {R"({"screens": [{"registry": 1}]})", "machine/screens/0: \"number\" is missing"},
        {R"({"screens": [{"number": 1, "registry": 1, "names": {"en": 1}}]})",
         "machine/screens/0/names/en: expected a text"},
        {R"({"screens": [{"number": 1, "registry": 1, "size": [1]}]})",
         "machine/screens/0/size: expected 2 elements, found 1"},
        {R"({"screens": [{"number": 1, "registry": 1, "depth": 1}]})",
         "machine/screens/0: unknown key \"depth\""}};
    for (const auto& [machine, reason] : cases)
        EXPECT_EQ(reasonAgainst(machine), reason) << machine;
}

TEST(RegistryScenarioTest, TreeNestedWithoutEndIsRefused) {
    std::string tree = "[]";
    for (int depth = 200; depth > 0; --depth)
        tree = fmt::format(R"([{{"id": {}, "class": "a", "name": "b", "children": {}}}])", depth,
                           tree);
    EXPECT_NE(reasonAgainst(fmt::format(R"({{"registry": {}}})", tree.substr(1, tree.size() - 2)))
                  .find("nested too deeply"),
              std::string::npos);
}

}  // namespace
}  // namespace vantor::simulated
