#include "Platform/Simulated/Scenario.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantor::simulated {
namespace {

std::string reasonAgainst(std::string_view text) {
    try {
        scenarioFromText(text);
    } catch (const ScenarioError& error) {
        return error.what();
    }
    return "accepted";
}

TEST(ScenarioTest, HasDefaults) {
    const Scenario scenario = scenarioFromText(R"({"start": 10000, "until": 5})");
    EXPECT_EQ(scenario.latencySeconds, 0.002);
    EXPECT_EQ(scenario.cpus, 2U);
    EXPECT_EQ(scenario.configuredCPUs, 2);
    EXPECT_EQ(scenario.bootSeconds, 6400);
    EXPECT_EQ(scenario.locale, "en_US");
    EXPECT_EQ(scenario.extra, Scenario::Extra::cpu);
}

TEST(ScenarioTest, CountsFollowTheLogicalCores) {
    const Scenario scenario =
        scenarioFromText(R"({"start": 1, "until": 1, "machine": {"logical": 8}})");
    EXPECT_EQ(scenario.cpus, 8U);
    EXPECT_EQ(scenario.physicalCores, 8);
    EXPECT_EQ(scenario.configuredCPUs, 8);
}

TEST(ScenarioTest, ABootTimeOfZeroFails) {
    const Scenario scenario =
        scenarioFromText(R"({"start": 9999, "until": 1, "machine": {"boot": 0.7}})");
    EXPECT_FALSE(scenario.bootSeconds);
}

TEST(ScenarioTest, StoredValuesKeepTheirKinds) {
    const Scenario scenario = scenarioFromText(
        R"({"start": 1, "until": 1, "preferences": {"a": 1, "b": 1.0, "c": true, "d": "x"}})");
    EXPECT_EQ(scenario.preferences.at("a"), PropertyValue(std::int64_t{1}));
    EXPECT_EQ(scenario.preferences.at("b"), PropertyValue(1.0));
    EXPECT_EQ(scenario.preferences.at("c"), PropertyValue(true));
    EXPECT_EQ(scenario.preferences.at("d"), PropertyValue("x"));
}

TEST(ScenarioTest, APreferenceEventNamesItsNotification) {
    const Scenario scenario = scenarioFromText(R"({"start": 1, "until": 1, "events": [
        {"at": 0, "preference": {"key": "DropdownTheme", "value": 1, "post": "global",
                                 "resetKey": "dropdown"}}]})");
    const auto& write = std::get<PreferenceWrite>(scenario.events.at(0).action);
    EXPECT_EQ(write.notification, "VantorBarGlobalDisplayChange");
    EXPECT_EQ(write.info.at("key"), "DropdownTheme");
    EXPECT_EQ(write.info.at("resetKey"), "dropdown");
}

TEST(ScenarioTest, ProcessesMayLackTheirParts) {
    const Scenario scenario = scenarioFromText(R"({"start": 1, "until": 1,
        "machine": {"processes": [{"name": "a", "c": 1.5}, {"c": 2}, {}]},
        "events": [{"at": 0, "processes": null}, {"at": 0, "processes": []},
                   {"at": 0, "tasks": 1}]})");
    EXPECT_EQ(scenario.machine.processes,
              PropertyValue(PropertyValue::Array{
                  PropertyValue::Dictionary{{"name", "a"}, {"c", 1.5}},
                  PropertyValue::Dictionary{{"c", std::int64_t{2}}}, PropertyValue::Dictionary{}}));
    const auto changed = [&](std::size_t event) {
        return std::get<MachineChange>(scenario.events.at(event).action).processes;
    };
    EXPECT_EQ(changed(0), PropertyValue{});
    EXPECT_EQ(changed(1), PropertyValue(PropertyValue::Array{}));
    EXPECT_EQ(changed(2), std::nullopt);
}

TEST(ScenarioTest, TheDaemonComesAndGoes) {
    const Scenario scenario = scenarioFromText(R"({"start": 1, "until": 1, "events": [
        {"at": 0, "daemon": "down"}, {"at": 0, "daemon": "crash"}, {"at": 0, "daemon": "up"}]})");
    const DaemonChange expected[] = {DaemonChange::down, DaemonChange::crash, DaemonChange::up};
    for (std::size_t event = 0; event < 3; ++event)
        EXPECT_EQ(std::get<DaemonChange>(scenario.events.at(event).action), expected[event]);
}

TEST(ScenarioTest, SaysWhereItIsWrongAndWhy) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "line 1, column 1: not JSON"},
        {"{\n  \"start\": }", "line 2, column 12: not JSON"},
        {"[]", "expected an object"},
        {R"({"until": 1})", "\"start\" is missing"},
        {R"({"start": "x", "until": 1})", "start: expected a number"},
        {R"({"start": 1, "until": -1})", "until: expected a number of at least 0"},
        {R"({"start": 1, "until": 1, "colour": 1})", "unknown key \"colour\""},
        {R"({"start": 1, "until": 1, "machine": {"speed": 1}})", "machine: unknown key \"speed\""},
        {R"({"start": 1, "until": 1, "machine": {"logical": 1.5}})",
         "machine/logical: expected an integer from 0 to 8192"},
        {R"({"start": 1, "until": 1, "machine": {"ticks": [[1, 2, 3, 4]]}})",
         "machine/ticks: expected 2 elements, found 1"},
        {R"({"start": 1, "until": 1, "machine": {"load": {"fixed": [1, 2, 3], "scale": 0}}})",
         "machine/load/scale: expected an integer from 1 to 4294967295"},
        {R"({"start": 1, "until": 1, "events": [{"at": 2, "stall": 1}, {"at": 1, "stall": 1}]})",
         "events/1/at: time goes backwards"},
        {R"({"start": 1, "until": 1, "events": [{"at": 2, "stall": 1, "jump": 1}]})",
         "events/0: unknown key \"jump\""},
        {R"({"start": 1, "until": 1, "events": [{"at": 2}]})", "events/0: nothing happens"},
        {R"({"start": 1, "until": 1, "outputs": [{"at": 0, "dump": "../x"}]})",
         "outputs/0/dump: expected the name of a file"},
        {R"({"start": 1, "until": 1, "outputs": [{"at": 0, "snapshot": "a.png", "scale": 3}]})",
         "outputs/0/scale: expected an integer from 1 to 2"},
        {R"({"start": 1, "until": 1, "outputs": [{"at": 0, "snapshot": "a", "background": "w"}]})",
         "outputs/0/background: expected a colour, as in \"1 1 1 1\""},
        {R"({"start": 1, "until": 1, "machine": {"processes": {}}})",
         "machine/processes: expected an array"},
        {R"({"start": 1, "until": 1, "machine": {"processes": [null]}})",
         "machine/processes/0: expected an object"},
        {R"({"start": 1, "until": 1, "machine": {"processes": [{"name": 1}]}})",
         "machine/processes/0/name: expected a text"},
        {R"({"start": 1, "until": 1, "machine": {"processes": [{"c": "1"}]}})",
         "machine/processes/0/c: expected a number"},
        {R"({"start": 1, "until": 1, "machine": {"processes": [{"pid": 1}]}})",
         "machine/processes/0: unknown key \"pid\""},
        {R"({"start": 1, "until": 1, "events": [{"at": 0, "processes": 1}]})",
         "events/0/processes: expected an array"},
        {R"({"start": 1, "until": 1, "events": [{"at": 0, "daemon": 1}]})",
         "events/0/daemon: expected a text"},
        {R"({"start": 1, "until": 1, "events": [{"at": 0, "daemon": "gone"}]})",
         "events/0/daemon: expected \"up\", \"down\" or \"crash\""},
        {R"({"start": 1, "until": 1, "preferences": {"a": null}})",
         "preferences/a: null is no value"},
        {R"({"start": 1, "until": 1, "extra": "memory"})",
         "extra: expected \"cpu\" or \"combined\""},
        {R"({"start": 1e999, "until": 1})", "a number is out of range"}};
    for (const auto& [text, reason] : cases)
        EXPECT_EQ(reasonAgainst(text), reason) << text;
}

TEST(ScenarioTest, AFileIsSpoiltInOneOfFourWays) {
    const auto eventWith = [](std::string_view corrupt) {
        return R"({"start": 1, "until": 9, "events": [{"at": 1, "corrupt": )" +
               std::string(corrupt) + "}]}";
    };
    const Scenario scenario =
        scenarioFromText(eventWith(R"({"file": "cpu.db", "as": "truncated"})"));
    const auto& corruption = std::get<Corruption>(scenario.events.at(0).action);
    EXPECT_EQ(corruption.file, "cpu.db");
    EXPECT_EQ(corruption.kind, Corruption::Kind::truncated);
    EXPECT_EQ(reasonAgainst(eventWith(R"({"file": "cpu.db", "as": "dust"})")),
              "events/0/corrupt/as: expected \"zeros\", \"text\", \"truncated\" or \"empty\"");
    EXPECT_EQ(reasonAgainst(eventWith(R"({"file": "../cpu.db", "as": "zeros"})")),
              "events/0/corrupt/file: expected the name of a file");
    EXPECT_EQ(reasonAgainst(eventWith(R"({"file": "cpu.db"})")),
              "events/0/corrupt: \"as\" is missing");
}

TEST(ScenarioTest, AValueNestedWithoutEndIsRefused) {
    const std::string deep = std::string(10000, '[') + std::string(10000, ']');
    EXPECT_THAT(reasonAgainst(R"({"start": 1, "until": 1, "preferences": {"a": )" + deep + "}}"),
                testing::HasSubstr("nested too deeply"));
}

TEST(ScenarioTest, AFileThatIsNotThereIsAnError) {
    EXPECT_THROW(scenarioFromFile("/nonexistent/scenario.json"), ScenarioError);
    EXPECT_THROW(scenarioFromFile("/"), ScenarioError);
}

}  // namespace
}  // namespace vantor::simulated
