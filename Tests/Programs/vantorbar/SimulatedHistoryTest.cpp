#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Programs/Common/HistoryTool.h"
#include "Programs/vantorbar/SimulateCommand.h"
#include "Tests/Support/HistoryFile.h"
#include "Tests/Support/TemporaryFolder.h"

// What a scripted machine keeps over the ends of its programs.

namespace vantor {
namespace {

using nlohmann::json;
using testing::HasSubstr;

std::string textOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

constexpr double kStart = 1'425'900'000;
/// A run that starts on a whole second counts up past the sample at 6.
constexpr double kFirst = 12;

class SimulatedHistoryTest : public testing::Test {
protected:
    int simulateText(const std::string& scenario, const std::string& out = "out") {
        std::ofstream(folder / "scenario.json") << scenario;
        return simulate({.scenario = folder / "scenario.json", .folder = folder / out}, errors);
    }
    /// 1000 seconds with these events, and the state at their end.
    int simulateEvents(const std::string& events, const std::string& out = "out") {
        return simulateText(fmt::format(R"({{"start": {}, "until": 1000, "machine": {{"rate":
                [[30, 10, 60, 0], [10, 0, 85, 5]]}}, "events": [{}], "outputs":
                [{{"at": 999, "dump": "state.json"}}]}})",
                                        kStart, events),
                            out);
    }
    json collector(const std::string& name) {
        return json::parse(textOf(folder / "out/state.json"))["collectors"][name];
    }
    json hour() { return collector("cpu")["storages"]["1"]; }
    std::vector<json> events(const std::string& kind) {
        std::vector<json> found;
        std::istringstream lines(textOf(folder / "out/events.jsonl"));
        for (std::string line; std::getline(lines, line);)
            if (json event = json::parse(line); event["kind"] == kind)
                found.push_back(std::move(event));
        return found;
    }
    test::HistoryFile file(const std::string& name) {
        return test::HistoryFile(folder / "out/databases" / name);
    }

    test::TemporaryFolder folder;
    std::ostringstream errors;
};

TEST_F(SimulatedHistoryTest, TheHistoryFilesAreAmongTheResults) {
    ASSERT_EQ(simulateEvents(""), 0) << errors.str();
    EXPECT_EQ(file("cpu.db").number("SELECT count(*) FROM hour_cpuhistory"), 143);
    EXPECT_EQ(file("load.db").number("SELECT count(*) FROM day_loadavghistory"), 6);
    EXPECT_TRUE(std::filesystem::is_directory(folder / "out/logs"));
    EXPECT_FALSE(std::filesystem::exists(folder / "out/.machine"));
}

TEST_F(SimulatedHistoryTest, EachFileIsWrittenEveryDaySampleAfterWhatItTells) {
    ASSERT_EQ(simulateEvents(""), 0) << errors.str();
    const auto commits = events("commit");
    ASSERT_EQ(commits.size(), 18U);
    EXPECT_EQ(commits[0]["file"], "cpu.db");
    EXPECT_EQ(commits[0]["statements"], 24);
    EXPECT_EQ(commits[0]["failed"], 0);
    EXPECT_NEAR(commits[0]["at"].get<double>(), 144, 0.1);
    EXPECT_EQ(commits[1]["file"], "load.db");
    EXPECT_EQ(commits[2]["file"], "gpu.db");
    const std::string text = textOf(folder / "out/events.jsonl");
    const auto day = text.find(R"("collector":"cpu","mode":2)");
    EXPECT_LT(day, text.find(R"("kind":"commit")"));
    EXPECT_LT(text.find(R"("collector":"cpu","mode":7)", day), text.find(R"("kind":"commit")"));
}

TEST_F(SimulatedHistoryTest, ARestartGoesOnWhereTheFileEnds) {
    ASSERT_EQ(simulateEvents(R"({"at": 500, "restart": 60})"), 0) << errors.str();
    const json samples = hour();
    // Three day samples' worth was in the file; what came after it wasn't, nor was the pause.
    EXPECT_EQ(samples.back()["sampleID"], 2);
    EXPECT_EQ(samples.back()["time"], kStart + kFirst);
    for (std::size_t position = 0; position + 1 < samples.size(); ++position) {
        EXPECT_EQ(samples[position]["sampleID"],
                  samples[position + 1]["sampleID"].get<double>() + 1);
        EXPECT_EQ(samples[position]["time"], samples[position + 1]["time"].get<double>() + 6);
    }
    std::size_t gaps = 0;
    for (const json& sample : samples)
        gaps += sample["empty"] == 1 ? 1 : 0;
    EXPECT_EQ(gaps, (564 - 432) / 6);  // and the one that a start on a whole second misses
}

TEST_F(SimulatedHistoryTest, AKilledProgramLosesWhatItHadNotWritten) {
    ASSERT_EQ(simulateEvents(R"({"at": 140, "kill": 860})"), 0) << errors.str();
    EXPECT_EQ(file("cpu.db").number("SELECT count(*) FROM hour_cpuhistory"), 0);
    EXPECT_TRUE(events("commit").empty());
}

TEST_F(SimulatedHistoryTest, TheGapsOfTwoKillsAreExportedWhereTheyWere) {
    ASSERT_EQ(simulateEvents(R"({"at": 300, "kill": 60}, {"at": 700, "kill": 90})"), 0)
        << errors.str();
    std::ostringstream table;
    const HistoryTool tool(folder / "out/databases", table, errors);
    ASSERT_EQ(tool.exportSamples({.source = "cpu"}), 0) << errors.str();
    std::istringstream lines(table.str());
    std::string line;
    std::getline(lines, line);  // the names of the columns
    // What was written at 288 and 576 is there; what came after, and each first sample, isn't.
    double time = kStart + kFirst;
    for (; std::getline(lines, line); time += 6) {
        const double at = time - kStart;
        const bool isGap = (at > 288 && at < 360 + kFirst) || (at > 576 && at < 798);
        const std::string begin =
            fmt::format("{},{},{},", time, (time - kStart) / 6, isGap ? 1 : 0);
        EXPECT_EQ(line.substr(0, begin.size()), begin);
        EXPECT_EQ(line.ends_with(",,,"), isGap) << line;
    }
    EXPECT_EQ(time, kStart + 864 + 6);
}

TEST_F(SimulatedHistoryTest, ADamagedFileIsThrownAwayAndTheOthersKept) {
    for (const char* const kind : {"zeros", "text", "truncated"}) {
        ASSERT_EQ(simulateEvents(fmt::format(R"({{"at": 400, "kill": 20}},
            {{"at": 410, "corrupt": {{"file": "cpu.db", "as": "{}"}}}})",
                                             kind)),
                  0)
            << errors.str();
        EXPECT_EQ(hour().back()["time"], kStart + 420 + kFirst) << kind;
        EXPECT_EQ(collector("load")["storages"]["1"].back()["time"], kStart + kFirst) << kind;
        EXPECT_EQ(file("cpu.db").number("SELECT min(time) FROM hour_cpuhistory"),
                  kStart + 420 + kFirst);
    }
}

TEST_F(SimulatedHistoryTest, AnEmptyFileIsASoundOne) {
    ASSERT_EQ(simulateEvents(R"({"at": 400, "restart": 20},
        {"at": 420, "corrupt": {"file": "cpu.db", "as": "empty"}})"),
              0)
        << errors.str();
    EXPECT_EQ(hour().back()["time"], kStart + 420 + kFirst);
    for (const json& line : events("systemlog"))
        EXPECT_THAT(line["text"].get<std::string>(), testing::Not(HasSubstr("integrity_check")));
}

TEST_F(SimulatedHistoryTest, NoFileIsSpoiltUnderARunningProgram) {
    for (const char* const at : {"0", "399", "421"}) {
        errors.str("");
        const std::string corrupt =
            fmt::format(R"({{"at": {}, "corrupt": {{"file": "cpu.db", "as": "zeros"}}}})", at);
        const std::string kill = R"({"at": 400, "kill": 20})";
        const bool isLater = std::string_view(at) == "421";
        EXPECT_EQ(simulateEvents(isLater ? kill + "," + corrupt : corrupt + "," + kill), 2);
        EXPECT_EQ(errors.str(),
                  fmt::format("{}: events/{}/corrupt: the program is running, or never was\n",
                              (folder / "scenario.json").string(), isLater ? 1 : 0));
        EXPECT_FALSE(std::filesystem::exists(folder / "out"));
    }
}

TEST_F(SimulatedHistoryTest, AFileThatIsNotThereCannotBeSpoilt) {
    EXPECT_EQ(simulateEvents(R"({"at": 400, "kill": 20},
        {"at": 410, "corrupt": {"file": "disk.db", "as": "zeros"}})"),
              2);
    EXPECT_THAT(errors.str(), HasSubstr("events/1/corrupt: can't spoil disk.db"));
}

TEST_F(SimulatedHistoryTest, AnHoursPauseIsFilledSlotBySlot) {
    ASSERT_EQ(simulateText(fmt::format(R"({{"start": {}, "until": 4000, "events":
        [{{"at": 150, "restart": 3600}}], "outputs": [{{"at": 3751, "dump": "state.json"}}]}})",
                                       kStart)),
              0)
        << errors.str();
    EXPECT_EQ(hour().back()["time"], kStart + 3750 - 601 * 6.0);  // what a ring holds
    EXPECT_EQ(hour().size(), 602U);
}

TEST_F(SimulatedHistoryTest, AClockSetBackByTwoDaysBeginsAfreshBehindTheOldSamples) {
    ASSERT_EQ(simulateEvents(R"({"at": 400, "restart": 20}, {"at": 410, "clock": -172800})"), 0)
        << errors.str();
    const json samples = hour();
    EXPECT_EQ(samples[0]["empty"], 0);
    EXPECT_LT(samples[0]["time"], kStart);
    EXPECT_EQ(samples.back()["time"], kStart + kFirst);
}

TEST_F(SimulatedHistoryTest, TheBootTimeIsDumped) {
    ASSERT_EQ(simulateEvents(""), 0) << errors.str();
    EXPECT_EQ(collector("uptime"), (json{{"boottime", kStart - 3600}}));
}

TEST_F(SimulatedHistoryTest, TwoRunsGiveTheSameBytes) {
    const std::string script = R"({"at": 300, "kill": 60},
        {"at": 350, "corrupt": {"file": "load.db", "as": "truncated"}}, {"at": 500, "sleep": 100},
        {"at": 900, "restart": 1})";
    ASSERT_EQ(simulateEvents(script, "first"), 0) << errors.str();
    ASSERT_EQ(simulateEvents(script, "second"), 0) << errors.str();
    for (const char* const name :
         {"events.jsonl", "state.json", "databases/cpu.db", "databases/load.db"})
        EXPECT_EQ(textOf(folder / "first" / name), textOf(folder / "second" / name)) << name;
}

}  // namespace
}  // namespace vantor
