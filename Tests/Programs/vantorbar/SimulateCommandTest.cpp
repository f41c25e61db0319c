#include "Programs/vantorbar/SimulateCommand.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Foundation/Image.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

using nlohmann::json;
using testing::HasSubstr;

std::string textOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

class SimulateCommandTest : public testing::Test {
protected:
    int simulateText(const std::string& scenario, const std::string& out = "out") {
        std::ofstream(folder / "scenario.json") << scenario;
        return simulate({.scenario = folder / "scenario.json", .folder = folder / out}, errors);
    }
    json dump(const std::string& name) { return json::parse(textOf(folder / "out" / name)); }
    std::vector<json> events(const std::string& kind) {
        std::vector<json> found;
        std::istringstream lines(textOf(folder / "out/events.jsonl"));
        for (std::string line; std::getline(lines, line);)
            if (json event = json::parse(line); event["kind"] == kind)
                found.push_back(std::move(event));
        return found;
    }

    test::TemporaryFolder folder;
    std::ostringstream errors;
};

TEST_F(SimulateCommandTest, WritesWhatTheWorldCouldSee) {
    ASSERT_EQ(simulateText(R"({"start": 1425900000, "until": 20})"), 0) << errors.str();
    EXPECT_EQ(events("length").at(0)["length"], 20);
    EXPECT_EQ(events("loaded").at(0)["extra"], "cpu");
    EXPECT_EQ(events("loaded").at(0)["at"], 0);
    EXPECT_EQ(events("unloaded").at(0)["at"], 20);
    EXPECT_EQ(events("systemlog").at(0)["text"], "Vantor Bar loading extra - cpu");
    EXPECT_EQ(events("measure").at(0)["collector"], "gpu");
    EXPECT_EQ(events("measure").at(0)["sequence"], nullptr);
    EXPECT_EQ(events("measure").at(1)["sequence"], -6);
    EXPECT_EQ(events("updated").at(0)["mode"], 0);
    EXPECT_EQ(textOf(folder / "out/domain.json"), "{}\n");
    EXPECT_TRUE(std::filesystem::is_directory(folder / "out/databases"));
}

TEST_F(SimulateCommandTest, TheFirstPaintsTellTheItemsWidth) {
    ASSERT_EQ(simulateText(R"({"start": 1425900000, "until": 0.5})"), 0) << errors.str();
    std::vector<double> lengths;
    for (const json& event : events("length"))
        lengths.push_back(event["length"]);
    EXPECT_EQ(lengths, (std::vector<double>{20, 0, 42}));
    EXPECT_EQ(events("repaint").size(), 2U);  // the second one shows what the first cut off
}

TEST_F(SimulateCommandTest, ASnapshotIsAsWideAsTheItem) {
    ASSERT_EQ(simulateText(R"({"start": 1425900000, "until": 5, "outputs": [
        {"at": 4, "snapshot": "one.png"},
        {"at": 4, "snapshot": "two.png", "of": "item", "scale": 2, "background": "1 1 1 1"}]})"),
              0)
        << errors.str();
    const auto one = Image::fromFile(folder / "out/one.png");
    const auto two = Image::fromFile(folder / "out/two.png");
    ASSERT_TRUE(one && two);
    EXPECT_EQ(one->size(), (Size{42, 22}));
    EXPECT_EQ(two->size(), (Size{84, 44}));
    EXPECT_EQ(two->pixels()[0], 0xFFFFFFFFU);
}

TEST_F(SimulateCommandTest, ASnapshotShowsTheProgramsOwnArtwork) {
    ASSERT_EQ(simulateText(R"({"start": 1425900000, "until": 5, "preferences":
        {"CPU_MenubarMode": "100"}, "outputs": [{"at": 4, "snapshot": "label.png"}]})"),
              0)
        << errors.str();
    const auto label = Image::fromFile(folder / "out/label.png");
    ASSERT_TRUE(label);
    EXPECT_TRUE(std::ranges::any_of(label->pixels(), [](auto pixel) { return pixel != 0; }));
}

TEST_F(SimulateCommandTest, AMeasurementStandsBeforeItsUpdate) {
    ASSERT_EQ(simulateText(R"({"start": 1425900000, "until": 3})"), 0);
    const std::string text = textOf(folder / "out/events.jsonl");
    EXPECT_LT(text.find("\"measure\""), text.find("\"updated\""));
}

TEST_F(SimulateCommandTest, ADumpShowsSharesInPercent) {
    ASSERT_EQ(simulateText(R"({"start": 1425900000, "until": 30,
        "machine": {"logical": 2, "rate": [[30, 10, 60, 0], [10, 0, 85, 5]],
                    "load": {"fixed": [3072, 2048, 1024]}, "tasks": 3, "threads": 9},
        "outputs": [{"at": 29, "dump": "state.json"}]})"),
              0)
        << errors.str();
    const json state = dump("state.json");
    EXPECT_EQ(state["running"], true);
    EXPECT_EQ(state["extra"], (json{{"loaded", true}, {"length", 42}}));
    const json& cpu = state["collectors"]["cpu"];
    EXPECT_NEAR(cpu["storages"]["0"][0]["values"][0].get<double>(), 20, 1e-4);
    EXPECT_EQ(cpu["items"].size(), 2U);
    EXPECT_EQ(cpu["items"][0]["key"], nullptr);
    EXPECT_EQ(cpu["items"][0]["history"][0]["time"], 0);
    EXPECT_EQ(cpu["physicalCores"], nullptr);
    EXPECT_EQ(cpu["taskCount"], 3);
    EXPECT_EQ(cpu["sampleIndex"].size(), 9U);
    EXPECT_EQ(cpu["storages"]["1"][0]["time"], 1425900024.0);
    EXPECT_EQ(state["collectors"]["load"]["storages"]["0"][0]["values"], (json{1.5, 1, 0.5}));
}

/// A card with a display, whose figures change on the way.
const char* const kGraphicsScenario = R"({"start": 1425900000, "until": 400, "machine": {
    "fps": 59.5, "graphicsControl": 0, "screens": [{"number": 1, "registry": 5, "names":
        {"en": "Screen"}, "resolution": [109, 109], "size": [2560, 1440]}],
    "registry": {"id": 1, "class": "IORegistryEntry", "name": "Root", "children": [
        {"id": 2, "class": "IOPCIDevice", "name": "GFX0", "properties": {"IOName": "display",
            "AAPL,slot-name": "Slot-1", "model": {"data": "QU1EIFJhZGVvbg=="}, "VRAM,totalMB": 1},
         "children": [
            {"id": 3, "class": "IOAccelerator", "name": "driver", "properties":
                {"PerformanceStatistics": {"vramUsedBytes": 524288, "Device Utilization %": 40}}},
            {"id": 4, "class": "IODisplayConnect", "name": "plug", "children": [
                {"id": 5, "class": "IODisplay", "name": "screen",
                 "properties": {"DisplayVendorID": 7}}]}]}]}},
    "events": [{"at": 20, "graphicsControl": "fail"},
               {"at": 30.5, "registry": {"id": 1, "class": "IORegistryEntry", "name": "Root"}},
               {"at": 100, "restart": 5}],
    "outputs": [{"at": 1, "dump": "first.json"}, {"at": 31, "dump": "state.json"}]})";

TEST_F(SimulateCommandTest, ADumpShowsTheGraphics) {
    ASSERT_EQ(simulateText(kGraphicsScenario), 0) << errors.str();
    const json gpu = dump("first.json")["collectors"]["gpu"];
    EXPECT_EQ(gpu["fps"], 59.5);
    EXPECT_EQ(gpu["enabled"], false);
    ASSERT_EQ(gpu["items"].size(), 1U);
    json item = gpu["items"][0];
    EXPECT_EQ(item["storages"]["0"].back()["values"], (json{0.5, 40, 0, 0, 0}));
    EXPECT_EQ(item["storages"]["1"], json::array());
    item.erase("storages");
    EXPECT_EQ(item, (json{{"key", "Slot1"},
                          {"model", "AMD Radeon"},
                          {"intergrated", false},
                          {"connected", true},
                          {"temporary", false},
                          {"hasProcessorUsage", true},
                          {"totalyMemory", 1048576},
                          {"usedMemory", 524288},
                          {"freeMemory", 0},
                          {"processor", 40},
                          {"surfaceCount", 0},
                          {"displays", json::array({{{"display-name", "Screen"},
                                                     {"ppi", 109},
                                                     {"resolution", "{2560, 1440}"},
                                                     {"vendor", 7}}})}}));
}

TEST_F(SimulateCommandTest, AChangedRegistryIsAChangeOfTheDisplays) {
    ASSERT_EQ(simulateText(kGraphicsScenario), 0) << errors.str();
    const json item = dump("state.json")["collectors"]["gpu"]["items"][0];
    EXPECT_EQ(item["displays"], json::array());
    EXPECT_EQ(item["connected"], false);
    std::vector<double> changes;
    for (const json& measurement : events("measure"))
        if (measurement["collector"] == "gpu" && measurement["sequence"].is_null())
            changes.push_back(measurement["at"]);
    ASSERT_EQ(changes.size(), 4U);  // the start, the change and its second look, the restart
    EXPECT_EQ(changes[1], 30.5);
    EXPECT_NEAR(changes[2], 31.002, 1e-6);
}

TEST_F(SimulateCommandTest, TwoRunsGiveTheSameBytes) {
    const std::string scenarios[] = {
        R"({"start": 1425900000.3, "until": 400, "machine": {"logical": 8, "physical": 4},
            "events": [{"at": 40, "stall": 3.5}, {"at": 90, "kill": 10}, {"at": 200, "sleep": 50}],
            "outputs": [{"at": 95, "dump": "gone.json"}, {"at": 390, "dump": "state.json"}]})",
        R"({"start": 1425900003, "until": 300, "preferences": {"TimerFrequency": 2},
            "events": [{"at": 10, "clock": -40}, {"at": 60, "dark": true}, {"at": 90, "restart": 5},
                       {"at": 120, "preference": {"key": "TimerFrequency", "value": 0}}],
            "outputs": [{"at": 299, "dump": "state.json"}]})",
        kGraphicsScenario};
    for (const std::string& scenario : scenarios) {
        ASSERT_EQ(simulateText(scenario, "first"), 0) << errors.str();
        ASSERT_EQ(simulateText(scenario, "second"), 0);
        for (const char* const file : {"events.jsonl", "state.json", "domain.json"})
            EXPECT_EQ(textOf(folder / "first" / file), textOf(folder / "second" / file)) << file;
    }
}

TEST_F(SimulateCommandTest, WhatAStallHoldsUpTakesEffectWhenItEnds) {
    ASSERT_EQ(simulateText(R"({"start": 1425900000, "until": 60,
        "events": [{"at": 20, "stall": 5}, {"at": 22, "tasks": 8}],
        "outputs": [{"at": 21, "dump": "before.json"}, {"at": 23, "dump": "after.json"}]})"),
              0)
        << errors.str();
    EXPECT_EQ(dump("before.json")["at"], 25);
    EXPECT_EQ(dump("after.json")["at"], 25);
    for (const json& measurement : events("measure"))
        EXPECT_TRUE(measurement["at"] <= 20 || measurement["at"] >= 25);
}

TEST_F(SimulateCommandTest, SleepRestsTheDatabaseForAMinuteAfterWake) {
    ASSERT_EQ(simulateText(R"({"start": 1425900000, "until": 200,
        "events": [{"at": 20, "sleep": 50}],
        "outputs": [{"at": 71, "dump": "awake.json"}, {"at": 131, "dump": "later.json"}]})"),
              0);
    EXPECT_EQ(dump("awake.json")["collectors"]["cpu"]["databaseEnabled"], false);
    EXPECT_EQ(dump("later.json")["collectors"]["cpu"]["databaseEnabled"], true);
}

TEST_F(SimulateCommandTest, AKilledProgramSaysNothingAndStartsAgain) {
    ASSERT_EQ(simulateText(R"({"start": 1425900000, "until": 60,
        "events": [{"at": 20, "kill": 10}],
        "outputs": [{"at": 25, "dump": "dead.json"}, {"at": 45, "dump": "again.json"}]})"),
              0);
    EXPECT_EQ(dump("dead.json"), (json{{"time", 1425900025}, {"at", 25}, {"running", false}}));
    EXPECT_EQ(dump("again.json")["running"], true);
    EXPECT_EQ(events("loaded").size(), 2U);
    EXPECT_EQ(events("loaded")[1]["at"], 30);
    EXPECT_EQ(events("unloaded").size(), 1U);
}

TEST_F(SimulateCommandTest, ARestartUnloadsInGoodOrder) {
    ASSERT_EQ(simulateText(R"({"start": 1425900000, "until": 60,
        "events": [{"at": 20, "restart": 1}]})"),
              0);
    EXPECT_EQ(events("unloaded").size(), 2U);
    EXPECT_EQ(events("unloaded")[0]["at"], 20);
}

TEST_F(SimulateCommandTest, AProgramThatIsNeverStartedAgainIsNotUnloaded) {
    ASSERT_EQ(simulateText(R"({"start": 1425900000, "until": 60,
        "events": [{"at": 20, "kill": null}]})"),
              0);
    EXPECT_TRUE(events("unloaded").empty());
}

TEST_F(SimulateCommandTest, AChangedPreferenceIsFollowedAtOnce) {
    ASSERT_EQ(simulateText(R"({"start": 1425900000, "until": 60,
        "preferences": {"TimerFrequency": 2},
        "events": [{"at": 30.5, "preference": {"key": "TimerFrequency", "value": 0}}]})"),
              0);
    std::size_t before = 0, after = 0;
    for (const json& measurement : events("measure"))
        if (measurement["collector"] != "gpu")
            ++(measurement["at"] < 30.5 ? before : after);
    EXPECT_EQ(before, 2U * 30);
    EXPECT_EQ(after, 2U * 10);
    EXPECT_EQ(json::parse(textOf(folder / "out/domain.json"))["TimerFrequency"], 0);
}

TEST_F(SimulateCommandTest, ADarkDesktopIsSeenAndTold) {
    ASSERT_EQ(simulateText(R"({"start": 1425900000, "until": 60, "contrast": true,
        "events": [{"at": 30, "dark": true}], "outputs": [{"at": 31, "dump": "state.json"}]})"),
              0);
    EXPECT_EQ(dump("state.json")["preferences"],
              (json{{"isMenubarDark", true}, {"increaseContrast", true}}));
    EXPECT_EQ(events("notification").at(0)["name"], "VantorBarMenubarThemeChanged");
    EXPECT_EQ(events("notification").at(0)["center"], "local");
}

TEST_F(SimulateCommandTest, ACombinedExtraSetsNoModuleUp) {
    ASSERT_EQ(simulateText(R"({"start": 1425900000, "until": 10, "extra": "combined",
        "outputs": [{"at": 5, "dump": "state.json"}]})"),
              0);
    EXPECT_EQ(dump("state.json")["collectors"], json::object());
    EXPECT_TRUE(events("measure").empty());
    EXPECT_EQ(events("loaded").at(0)["extra"], "combined");
}

TEST_F(SimulateCommandTest, AnErrorIsOneLineAndLeavesNothing) {
    EXPECT_EQ(simulateText(R"({"start": 1, "until": 2, "colour": 3})"), 2);
    EXPECT_EQ(errors.str(),
              (folder / "scenario.json").string() + ": unknown key \"colour\"\n");
    EXPECT_FALSE(std::filesystem::exists(folder / "out"));
}

TEST_F(SimulateCommandTest, AFolderThatCannotBeMadeIsAnError) {
    std::ofstream(folder / "file") << "x";
    EXPECT_EQ(simulateText(R"({"start": 1, "until": 2})", "file/out"), 2);
    EXPECT_THAT(errors.str(), HasSubstr("file/out"));
}

TEST_F(SimulateCommandTest, AnEarlierRunsFilesAreReplaced) {
    ASSERT_EQ(simulateText(R"({"start": 1425900000, "until": 5})"), 0);
    const std::string before = textOf(folder / "out/events.jsonl");
    ASSERT_EQ(simulateText(R"({"start": 1425900000, "until": 9})"), 0);
    EXPECT_NE(textOf(folder / "out/events.jsonl"), before);
}

TEST_F(SimulateCommandTest, TheLogBearsTheScriptedTimeAndZone) {
    ASSERT_EQ(simulateText(R"({"start": 1425900000, "until": 20, "timezone": "Europe/Vienna"})"), 0)
        << errors.str();
    EXPECT_EQ(events("log").size(), 1U);
    EXPECT_EQ(events("log").at(0)["text"], "Unloading...");
    EXPECT_EQ(events("log").at(0)["at"], 20);
    EXPECT_EQ(textOf(folder / "out/logs/cpu/vantorbar 2015-03-09 11-20.log"),
              "2015/03/09 12:20:20:000  Unloading...\n");
}

TEST_F(SimulateCommandTest, ACombinedExtraHasALogOfItsOwn) {
    ASSERT_EQ(simulateText(R"({"start": 1425900000, "until": 5, "extra": "combined"})"), 0);
    EXPECT_TRUE(std::filesystem::exists(
        folder / "out/logs/combined/vantorbar 2015-03-09 11-20.log"));
}

TEST_F(SimulateCommandTest, AProgramThatStartsAgainWritesOnInItsLogForThirtyDays) {
    ASSERT_EQ(simulateText(R"({"start": 1425900000, "until": 100, "events": [
        {"at": 10, "restart": 2}, {"at": 20, "restart": 1}, {"at": 30, "clock": 2592000},
        {"at": 70, "restart": 1}]})"),
              0);
    EXPECT_EQ(textOf(folder / "out/logs/cpu/vantorbar 2015-03-09 11-20.log"),
              "2015/03/09 11:20:10:000  Unloading...\n2015/03/09 11:20:20:000  Unloading...\n");
    EXPECT_EQ(textOf(folder / "out/logs/cpu/vantorbar 2015-04-08 11-21.log"),
              "2015/04/08 11:21:10:000  Unloading...\n2015/04/08 11:21:40:000  Unloading...\n");
}

TEST_F(SimulateCommandTest, AZoneThatThereIsNotIsAnError) {
    EXPECT_EQ(simulateText(R"({"start": 1, "until": 2, "timezone": "Nowhere/Town"})"), 2);
    EXPECT_THAT(errors.str(), HasSubstr("timezone: expected the name of a time zone"));
    EXPECT_FALSE(std::filesystem::exists(folder / "out"));
}

}  // namespace
}  // namespace vantor
