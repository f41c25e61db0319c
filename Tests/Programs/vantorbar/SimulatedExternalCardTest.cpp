#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Programs/vantorbar/SimulateCommand.h"
#include "Tests/Support/TemporaryFolder.h"

// What the program remembers of a card that is unplugged while it runs, is away at one start and
// back at the next.

namespace vantor {
namespace {

using nlohmann::json;

constexpr double kStart = 1'425'900'000.4;

/// A card two bridges below the root. The model is data: "card" with an end.
json card(int id, const char* slot, double load) {
    const json driver = {
        {"id", id + 3},
        {"class", "IOAccelerator"},
        {"name", "driver"},
        {"properties",
         {{"VRAM,totalsize", 1000},
          {"SurfaceList", {1}},
          {"PerformanceStatistics", {{"Device Utilization %", load}, {"vramUsedBytes", 250}}}}}};
    const json device = {
        {"id", id + 2},
        {"class", "IOPCIDevice"},
        {"name", slot},
        {"properties",
         {{"IOName", "display"}, {"model", {{"data", "Y2FyZAA="}}}, {"AAPL,slot-name", slot}}},
        {"children", json::array({driver})}};
    const json bridge = {{"id", id + 1},
                         {"class", "IOPCIDevice"},
                         {"name", "bridge"},
                         {"children", json::array({device})}};
    return {{"id", id},
            {"class", "IOPCIHostBridge"},
            {"name", "host"},
            {"children", json::array({bridge})}};
}

json tree(const json& cards) {
    return {{"id", 1}, {"class", "IORegistryEntry"}, {"name", "Root"}, {"children", cards}};
}

class SimulatedExternalCardTest : public testing::Test {
protected:
    void SetUp() override {
        const json alone = tree(json::array({card(10, "Slot-1", 10)}));
        const json both = tree(json::array({card(10, "Slot-1", 10), card(20, "Port-2", 60)}));
        const json scenario = {
            {"start", kStart},
            {"until", 1500},
            {"machine", {{"registry", both}}},
            {"events",
             {{{"at", 400}, {"registry", alone}},
              {{"at", 500}, {"restart", 5}},
              {{"at", 900}, {"registry", both}},
              {{"at", 1000}, {"restart", 5}}}},
            {"outputs",
             {{{"at", 850}, {"dump", "away.json"}}, {{"at", 1499}, {"dump", "back.json"}}}}};
        std::ofstream(folder / "scenario.json") << scenario;
        ASSERT_EQ(
            simulate({.scenario = folder / "scenario.json", .folder = folder / "out"}, errors), 0)
            << errors.str();
    }
    json item(const char* state, const char* key) {
        std::ifstream stream(folder / "out" / state);
        const json all = json::parse(stream);
        for (const json& each : all["collectors"]["gpu"]["items"])
            if (each["key"] == key)
                return each;
        return nullptr;
    }
    /// When the samples of an hour were taken that have this load, in seconds, newest first.
    static std::vector<double> timesWithLoad(const json& of, double load) {
        std::vector<double> times;
        for (const json& slot : of["storages"]["1"])
            if (slot["empty"] == 0 && slot["values"][1] == load)
                times.push_back(slot["time"].get<double>() - kStart);
        return times;
    }

    test::TemporaryFolder folder;
    std::ostringstream errors;
};

TEST_F(SimulatedExternalCardTest, WhileItIsAwayItsHistoryStays) {
    const json away = item("away.json", "Port2");
    ASSERT_FALSE(away.is_null());
    EXPECT_EQ(away["temporary"], true);
    const auto times = timesWithLoad(away, 60);
    ASSERT_FALSE(times.empty());
    EXPECT_LT(times.back(), 100);
    EXPECT_EQ(item("away.json", "Slot1")["temporary"], false);
}

TEST_F(SimulatedExternalCardTest, OnceItIsBackItsHistoryGoesOn) {
    const json back = item("back.json", "Port2");
    ASSERT_FALSE(back.is_null());
    EXPECT_EQ(back["temporary"], false);
    EXPECT_EQ(back["processor"], 60);
    const auto times = timesWithLoad(back, 60);
    ASSERT_FALSE(times.empty());
    EXPECT_GT(times.front(), 1400);
    EXPECT_LT(times.back(), 100);
    EXPECT_TRUE(std::ranges::none_of(times, [](double at) { return at > 600 && at < 900; }));
}

}  // namespace
}  // namespace vantor
