#include "Programs/vantorbar/FollowHistory.h"

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Programs/vantorbar/SimulateCommand.h"
#include "Tests/Support/Environment.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

using nlohmann::json;
using testing::EndsWith;

class FollowHistoryTest : public testing::Test {
protected:
    FollowHistoryTest() {
        std::ofstream(folder / "scenario.json")
            << R"({"start": 1425900000, "until": 900, "machine": {"rate": [[30, 10, 60, 0]],
                   "cpus": 1}, "events": [{"at": 400, "kill": 60}]})";
    }
    std::vector<json> lines() {
        std::vector<json> all;
        std::istringstream text(out.str());
        for (std::string line; std::getline(text, line);)
            all.push_back(json::parse(line));
        return all;
    }

    test::TemporaryFolder folder;
    std::ostringstream out, err;
};

TEST_F(FollowHistoryTest, ScriptedMachineIsFollowedOverAKill) {
    ASSERT_EQ(followScenario({.source = "cpu", .scenario = folder / "scenario.json"}, out, err), 0)
        << err.str();
    const auto samples = lines();
    ASSERT_EQ(samples.size(), 143U);  // from 12 to 864, every 6 seconds
    double gaps = 0;
    for (std::size_t index = 0; index < samples.size(); ++index) {
        EXPECT_EQ(samples[index]["id"], std::to_string(index + 2));
        EXPECT_EQ(samples[index]["t"], std::to_string(1425900012 + 6 * index));
        gaps += samples[index].contains("empty") ? 1 : 0;
    }
    EXPECT_EQ(gaps, 29);  // from 294, behind the batch of 288, to 462
}

TEST_F(FollowHistoryTest, ScriptedMachineLeavesNothingBehind) {
    const test::TemporaryFolder temporary;
    const test::Variable variable("TMPDIR", temporary.path().string());
    EXPECT_EQ(followScenario({.source = "load", .scenario = folder / "scenario.json"}, out, err),
              0);
    EXPECT_TRUE(std::filesystem::is_empty(temporary.path()));
}

TEST_F(FollowHistoryTest, WhatIsNoScenarioEndsWithTwo) {
    EXPECT_EQ(followScenario({.source = "cpu", .scenario = folder / "none.json"}, out, err), 2);
    EXPECT_THAT(err.str(), EndsWith("can't be read\n"));
}

TEST_F(FollowHistoryTest, FileIsFollowedUntilThereAreEnoughLines) {
    ASSERT_EQ(simulate({.scenario = folder / "scenario.json", .folder = folder / "out"}, err), 0);
    EXPECT_EQ(followFolder({.source = "load", .scale = "day", .since = 3, .count = 2},
                           folder / "out/databases", out, err),
              0);
    const auto samples = lines();
    ASSERT_EQ(samples.size(), 2U);
    EXPECT_EQ(samples[0]["id"], "4");
    EXPECT_TRUE(samples[0].contains("fifteen"));
}

TEST_F(FollowHistoryTest, MissingFileEndsWithOne) {
    EXPECT_EQ(followFolder({.source = "cpu"}, folder.path(), out, err), 1);
    EXPECT_THAT(err.str(), EndsWith("cpu.db: there is no such file\n"));
}

}  // namespace
}  // namespace vantor
