#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Foundation/Image.h"
#include "Programs/vantorbar/SimulateCommand.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

class SimulatedDropdownTest : public testing::Test {
protected:
    /// `entries` are further ones of the scenario, which runs for 30 seconds.
    int run(const std::string& entries) {
        std::ofstream(folder / "scenario.json")
            << R"({"start": 1425900000, "until": 30, "machine": {"logical": 4, "physical": 2,
                "processes": [{"name": "alpha", "c": 12.5}])"
            << graphics << "}, " << entries << "}";
        return simulate({.scenario = folder / "scenario.json", .folder = folder / "out"}, errors);
    }
    std::string textOf(const std::string& name) {
        std::ifstream stream(folder / "out" / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    }
    json dropdown() { return json::parse(textOf("dump.json"))["dropdown"]; }
    std::vector<json> events(const std::string& kind) {
        std::vector<json> found;
        std::istringstream lines(textOf("events.jsonl"));
        for (std::string line; std::getline(lines, line);)
            if (json event = json::parse(line); event["kind"] == kind)
                found.push_back(std::move(event));
        return found;
    }

    std::string graphics;  // of the machine
    test::TemporaryFolder folder;
    std::ostringstream errors;
};

TEST_F(SimulatedDropdownTest, ItsRowsAreToldOpenOrNot) {
    ASSERT_EQ(run(R"("outputs": [{"at": 5, "dump": "dump.json"}])"), 0) << errors.str();
    EXPECT_EQ(dropdown()["enabled"], false);
    EXPECT_EQ(dropdown()["main"][0]["key"], "header-cpu");
    EXPECT_EQ(dropdown()["main"][0]["title"], "CPU");
    EXPECT_EQ(dropdown()["main"][1]["submenu"], "history");
    EXPECT_EQ(dropdown()["main"][2]["frame"], (json{0.0, 86.0, 225.0, 50.0}));
    EXPECT_EQ(dropdown()["cores"].size(), 11U);
    EXPECT_EQ(dropdown()["history"].size(), 2U);
}

TEST_F(SimulatedDropdownTest, OpenItShowsFiguresAndProcesses) {
    ASSERT_EQ(run(R"("events": [{"at": 5, "open": "main"}],
                     "outputs": [{"at": 8, "dump": "dump.json"}])"),
              0)
        << errors.str();
    EXPECT_EQ(dropdown()["enabled"], true);
    EXPECT_EQ(dropdown()["main"][5]["label"], "alpha");
    EXPECT_EQ(dropdown()["main"][5]["field"], "12.5%");
    EXPECT_EQ(dropdown()["main"][2]["rows"][3]["field"], "100%");
}

TEST_F(SimulatedDropdownTest, OpeningAndClosingIsSeenOutside) {
    ASSERT_EQ(run(R"("events": [{"at": 5, "open": "main"}, {"at": 9, "close": "main"}])"), 0)
        << errors.str();
    EXPECT_EQ(events("notification").size(), 4U);  // two of the menu, and two of the end
    std::vector<std::string> calls;
    for (const json& event : events("daemon"))
        calls.push_back(event["call"]);
    EXPECT_THAT(calls,
                ElementsAre("enableHierachy", "startRequestWithKey:", "stopRequestWithKey:"));
}

TEST_F(SimulatedDropdownTest, ASubmenuOpensFromItsRow) {
    ASSERT_EQ(run(R"("events": [{"at": 5, "open": "main"}, {"at": 6, "open": "uptime"}],
                     "outputs": [{"at": 8, "dump": "dump.json"}])"),
              0)
        << errors.str();
    EXPECT_EQ(dropdown()["main"][16]["highlighted"], true);
    EXPECT_EQ(dropdown()["uptime"][1]["field"], "Monday 9 Mar, 10:20 AM");
}

TEST_F(SimulatedDropdownTest, ASubmenuOfAClosedMenuIsAnError) {
    EXPECT_EQ(run(R"("events": [{"at": 5, "open": "cores"}])"), 2);
    EXPECT_THAT(errors.str(), HasSubstr("events/0/open"));
}

TEST_F(SimulatedDropdownTest, AHighlightFindsRowsByKeyAndBySubmenu) {
    ASSERT_EQ(run(R"("events": [{"at": 5, "open": "main"}, {"at": 6, "highlight": "load"}],
                     "outputs": [{"at": 8, "dump": "dump.json"}])"),
              0)
        << errors.str();
    EXPECT_EQ(dropdown()["main"][13]["highlighted"], true);
    EXPECT_EQ(run(R"("events": [{"at": 5, "open": "main"}, {"at": 6, "highlight": "nowhere"}])"),
              2);
}

TEST_F(SimulatedDropdownTest, ALauncherButtonTellsWhatItOpens) {
    ASSERT_EQ(run(R"("events": [{"at": 5, "open": "main"}, {"at": 6, "click": 1},
                                {"at": 6, "click": 4}])"),
              0)
        << errors.str();
    EXPECT_EQ(events("launch").at(0)["path"], "/Applications/Utilities/Activity Monitor.app");
    EXPECT_EQ(events("launch").at(1)["path"], "/Applications/Vantor Bar.app");
}

TEST_F(SimulatedDropdownTest, APictureIsAsLargeAsTheMenu) {
    ASSERT_EQ(run(R"("outputs": [{"at": 5, "snapshot": "main.png", "of": "main", "scale": 2},
                                 {"at": 5, "snapshot": "history.png", "of": "history"}])"),
              0)
        << errors.str();
    EXPECT_EQ(Image::fromFile(folder / "out/main.png")->widthPixels(), 450);
    EXPECT_EQ(Image::fromFile(folder / "out/history.png")->widthPixels(), 324);
}

/// A machine with a graphics processor in each of `slots`.
std::string registry(const std::vector<std::string>& slots) {
    std::string children;
    int id = 1;
    for (const std::string& slot : slots) {
        children += children.empty() ? "" : ", ";
        children += fmt::format(
            R"({{"id": {0}, "class": "IOPCIDevice", "name": "GFX{0}", "properties": {{
                "IOName": "display", "AAPL,slot-name": "{2}", "model": {{"data": "QU1EIFJhZGVvbg=="}},
                "VRAM,totalMB": 1}}, "children": [{{"id": {1}, "class": "IOAccelerator", "name":
                "driver", "properties": {{"PerformanceStatistics": {{"vramUsedBytes": 524288,
                "Device Utilization %": 40}}}}}}]}})",
            id + 1, id + 2, slot);
        id += 2;
    }
    return R"({"id": 1, "class": "IORegistryEntry", "name": "Root", "children": [)" + children +
           "]}";
}

TEST_F(SimulatedDropdownTest, EachGraphicsProcessorHasASection) {
    graphics = R"(, "registry": )" + registry({"A", "B"});
    ASSERT_EQ(run(R"("events": [{"at": 5, "open": "main"}],
                     "outputs": [{"at": 8, "dump": "dump.json"}])"),
              0)
        << errors.str();
    std::vector<std::string> rows;
    for (std::size_t row = 11; row < 20; ++row)
        rows.push_back(dropdown()["main"][row]["title"].get<std::string>());
    EXPECT_THAT(rows, ElementsAre("AMD RADEON", "", "", "gpu_memory_A", "gpu_processor_A",
                                  "AMD RADEON", "", "gpu_memory_B", "gpu_processor_B"));
    EXPECT_EQ(dropdown()["main"][14]["graph"]["percentage"], 0.5);
}

TEST_F(SimulatedDropdownTest, TheHistoryComesToTheBarThatThePointerIsOn) {
    graphics = R"(, "registry": )" + registry({"A", "B"});
    ASSERT_EQ(run(R"("events": [{"at": 5, "open": "main"}, {"at": 6, "open": "memory:A"},
                                {"at": 7, "open": "memory:B"}],
                     "outputs": [{"at": 8, "dump": "dump.json"}])"),
              0)
        << errors.str();
    EXPECT_EQ(dropdown()["gpus"]["A"]["memory"].size(), 1U);
    EXPECT_EQ(dropdown()["gpus"]["B"]["memory"].size(), 2U);
    EXPECT_EQ(dropdown()["gpus"]["B"]["processor"].size(), 1U);
}

TEST_F(SimulatedDropdownTest, ASubmenuThatWentWithItsProcessorOpensAgainWithTheNextOne) {
    graphics =
        R"(, "graphicsControl": 0, "model": "MacBookPro8,2", "registry": )" + registry({"A"});
    ASSERT_EQ(run(R"("events": [{"at": 5, "open": "main"}, {"at": 6, "open": "memory:A"},
                                {"at": 7, "graphicsControl": 1}, {"at": 7, "registry": )" +
                  registry({"A"}) + R"(},
                                {"at": 12, "graphicsControl": 0}, {"at": 12, "registry": )" +
                  registry({"A"}) + R"(}, {"at": 17, "open": "memory:A"}],
                     "outputs": [{"at": 10, "dump": "gone.json"}, {"at": 20, "dump": "dump.json"}])"),
              0)
        << errors.str();
    EXPECT_EQ(json::parse(textOf("gone.json"))["dropdown"]["gpus"].size(), 0U);
    EXPECT_EQ(dropdown()["gpus"]["A"]["memory"].size(), 2U);
}

TEST_F(SimulatedDropdownTest, ACombinedMenuWithoutSectionsSaysSo) {
    ASSERT_EQ(run(R"("extra": "combined", "preferences": {"CombinedDropdownDisplayMode": "7"},
                     "outputs": [{"at": 5, "dump": "dump.json"}])"),
              0)
        << errors.str();
    const json rows = dropdown()["combined"];
    ASSERT_EQ(rows.size(), 7U);
    EXPECT_EQ(rows[0]["frame"], (json{0.0, 0.0, 225.0, 3.0}));
    EXPECT_EQ(rows[2]["label"], "No dropdown items enabled");
    EXPECT_EQ(rows[5]["label"], "combined tab in the Vantor Bar app");
    EXPECT_EQ(events("log").at(1)["text"], "Module is missing - '7'");
}

TEST_F(SimulatedDropdownTest, ACombinedMenuHasItsSectionsInTheUsersOrder) {
    ASSERT_EQ(run(R"("extra": "combined", "preferences": {"CombinedDropdownDisplayMode": "7,0,0"},
                     "outputs": [{"at": 5, "dump": "dump.json"}])"),
              0)
        << errors.str();
    const json rows = dropdown()["combined"];
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[1]["title"], "CPU");
}

TEST_F(SimulatedDropdownTest, ACombinedMenuWithoutASettingHasNoSections) {
    ASSERT_EQ(run(R"("extra": "combined", "outputs": [{"at": 5, "dump": "dump.json"}])"), 0)
        << errors.str();
    EXPECT_EQ(dropdown()["combined"].size(), 7U);
    EXPECT_EQ(events("log").at(0)["text"], "Dropdown keys - (null)");
}

TEST_F(SimulatedDropdownTest, ADropdownThatDiesWithItsProcessIsNotSaidToClose) {
    ASSERT_EQ(run(R"("events": [{"at": 5, "open": "main"}, {"at": 6, "open": "uptime"},
                                {"at": 9, "kill": 2}])"),
              0)
        << errors.str();
    EXPECT_EQ(events("notification").at(0)["name"], "VTRMenuStateChanged");
    EXPECT_EQ(events("notification").at(1)["at"], 30);
}

TEST_F(SimulatedDropdownTest, ASubmenuMayOpenAsTheProgramUnloads) {
    EXPECT_EQ(run(R"("events": [{"at": 5, "open": "main"}, {"at": 6, "open": "load"},
                                {"at": 6, "restart": 2}])"),
              0)
        << errors.str();
    EXPECT_EQ(events("unloaded").size(), 2U);
}

TEST_F(SimulatedDropdownTest, ADropdownThatIsNotOpenNeedsNoClosing) {
    EXPECT_EQ(run(R"("events": [{"at": 5, "open": "main"}, {"at": 6, "restart": 2},
                                {"at": 7, "open": "main"}, {"at": 9, "close": "main"}])"),
              0)
        << errors.str();
    EXPECT_EQ(events("daemon").size(), 2U);  // of the first opening
}

TEST_F(SimulatedDropdownTest, AnEmptyListOfSectionsIsOneKeyOfZero) {
    ASSERT_EQ(run(R"("extra": "combined", "preferences": {"CombinedDropdownDisplayMode": ""},
                     "outputs": [{"at": 5, "dump": "dump.json"}])"),
              0)
        << errors.str();
    EXPECT_EQ(dropdown()["combined"].size(), 2U);  // the module whose key was never set
    EXPECT_EQ(events("log").at(1)["text"], "Adding module - ''");
}

}  // namespace
}  // namespace vantor
