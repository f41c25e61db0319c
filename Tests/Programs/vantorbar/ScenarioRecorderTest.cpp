#include "Programs/vantorbar/ScenarioRecorder.h"

#include <fstream>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "Hosts/None/NoHost.h"
#include "Platform/Appearance.h"
#include "Platform/Simulated/Scenario.h"
#include "Platform/Simulated/SimulatedMachine.h"
#include "Programs/vantorbar/Simulation.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/Collectors/GPUStatCollector.h"
#include "Shared/Collectors/LoadStatCollector.h"
#include "Shared/ProcessContext.h"
#include "Targets/VantorBarCPU/VantorBarCPU.h"
#include "Tests/Support/GraphicsTree.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

struct BusyMachine : simulated::SimulatedMachine {
    BusyMachine() : SimulatedMachine(kStart + 0.3) {
        processorCounters.setRates({{{30.3, 9.7, 60, 0}, {11, 0, 85, 4}}});
        preferences.write("TimerFrequency", std::int64_t{2});
        setGraphics(10, 250);
    }
    void setGraphics(double load, std::int64_t usedBytes) {
        registry.setTree(test::graphicsTree(
            {{.statistics = {{"Device Utilization %", load}, {"vramUsedBytes", usedBytes}},
              .driver = {{"VRAM,totalsize", std::int64_t{1000}}}}}));
    }
};

/// A machine that is recorded, and the program on it.
class ScenarioRecorderTest : public testing::Test {
protected:
    /// The kind of each event that has one of its own, in order.
    std::vector<std::string> eventKinds() const {
        std::vector<std::string> kinds;
        const auto scenario = recorder.scenario(machine.mainQueue.now() - began);
        for (const auto& event : scenario["events"])
            for (const char* const kind : {"sleep", "clock", "dark", "contrast"})
                if (event.contains(kind))
                    kinds.push_back(fmt::format("{} {:.3g}", kind,
                                                event[kind].is_boolean()
                                                    ? event[kind].get<bool>()
                                                    : event[kind].get<double>()));
        return kinds;
    }
    void expectSameFigures(const nlohmann::json& state) {
        for (int type = 0; type <= 1; ++type)
            expectSameRing(state["collectors"]["cpu"]["storages"][std::to_string(type)],
                           context.cpuCollector().storageForType(type));
    }

    /// Runs on for `moreSeconds`, then replays all that was recorded and dumps its end.
    nlohmann::json replayed(double moreSeconds) {
        machine.run(moreSeconds);
        const double seconds = machine.mainQueue.now() - began;
        const std::string text = recorder.scenario(seconds).dump();
        simulated::Scenario scenario = simulated::scenarioFromText(text);
        scenario.outputs.push_back({scenario.until, simulated::DumpOutput{"end.json"}});
        simulated::Journal silent;
        const OutputFolder output(folder / "out");
        Simulation(scenario, silent, output).run();
        std::ifstream file(output.path() / "end.json");
        return nlohmann::json::parse(file);
    }
    static void expectSameRing(const nlohmann::json& slots, const SampleRing& ring) {
        for (std::size_t position = 0; position < slots.size(); ++position) {
            EXPECT_EQ(slots[position]["sampleID"], ring.sampleID(position));
            EXPECT_NEAR(slots[position]["time"].get<double>(), ring.time(position), 1e-5);
            for (std::size_t value = 0; value < 3; ++value)
                EXPECT_EQ(slots[position]["values"][value], ring.values(position)[value]);
        }
    }

    test::TemporaryFolder folder;
    BusyMachine machine;
    double began = machine.mainQueue.now();
    ScenarioRecorder recorder{machine.ports()};
    ProcessContext context{recorder.ports()};
    NoHost host;
    VantorBarCPU extra{host};
};

TEST_F(ScenarioRecorderTest, ARecordingReplaysToTheSameFigures) {
    const nlohmann::json state = replayed(40.5);
    const nlohmann::json& collectors = state["collectors"];
    EXPECT_EQ(collectors["cpu"]["storages"]["0"].size(), 40U);
    EXPECT_EQ(collectors["cpu"]["storages"]["1"].size(), 5U);
    for (int type = 0; type <= 1; ++type) {
        expectSameRing(collectors["cpu"]["storages"][std::to_string(type)],
                       context.cpuCollector().storageForType(type));
        expectSameRing(collectors["load"]["storages"][std::to_string(type)],
                       context.loadCollector().storageForType(type));
    }
}

TEST_F(ScenarioRecorderTest, TheFiguresOfGraphicsProcessorsAreReplayed) {
    machine.run(10);
    machine.setGraphics(60, 500);
    machine.run(30);
    machine.setGraphics(85, 750);
    const nlohmann::json state = replayed(10)["collectors"]["gpu"]["items"][0];
    EXPECT_EQ(state["key"], "Slot1");
    EXPECT_EQ(state["model"], "AMD Radeon R9 M370X");
    EXPECT_EQ(state["processor"], 85);
    EXPECT_EQ(state["usedMemory"], 750);
    EXPECT_EQ(state["totalyMemory"], 1000);
    EXPECT_EQ(state["displays"].size(), 1U);
    const auto loadAt = [&](std::size_t position) {
        return state["storages"]["0"][position]["values"][1].get<double>();
    };
    EXPECT_EQ(loadAt(0), 85);
    EXPECT_EQ(loadAt(state["storages"]["0"].size() - 1), 10);
    const auto& history = context.existingGPUCollector()->gpu(0);
    EXPECT_EQ(history.processor(), 85);
}

TEST_F(ScenarioRecorderTest, GraphicsThatDoNotChangeAreNoEvents) {
    machine.run(30);
    const auto scenario = recorder.scenario(30);
    EXPECT_TRUE(scenario["machine"].contains("registry"));
    for (const auto& event : scenario["events"])
        EXPECT_FALSE(event.contains("registry"));
}

TEST_F(ScenarioRecorderTest, ALateTickIsReplayedAsLate) {
    machine.run(20);
    machine.mainQueue.moveTo(machine.mainQueue.now() + 0.6);  // the tick comes 0.9 s late
    const nlohmann::json state = replayed(10);
    expectSameRing(state["collectors"]["cpu"]["storages"]["0"],
                   context.cpuCollector().storageForType(0));
}

TEST_F(ScenarioRecorderTest, ClockStepsAndSleepAreReplayed) {
    machine.run(10);
    machine.clock.step(-7);
    machine.run(20);
    machine.clock.step(3600);
    const nlohmann::json state = replayed(60);
    EXPECT_EQ(state["collectors"]["cpu"]["sampleIndex"][1]["sampleID"],
              context.cpuCollector().idForInterval(1));
}

/// The clocks go on: the machine was busy falling asleep and waking.
TEST_F(ScenarioRecorderTest, ASleepDuringWhichTheClocksGoOnIsReplayed) {
    machine.run(10);
    machine.workspace.willSleep();
    machine.mainQueue.moveTo(machine.mainQueue.now() + 100);
    machine.workspace.didWake();
    expectSameFigures(replayed(30));
    EXPECT_EQ(eventKinds(), std::vector<std::string>{"sleep 100"});
}

/// The monotonic clock stands still in a sleeping machine, and the wall clock doesn't.
TEST_F(ScenarioRecorderTest, ASuspensionIsReplayedAsASleepAndAClockThatWasSet) {
    machine.run(10);
    machine.workspace.willSleep();
    machine.clock.step(300);
    machine.workspace.didWake();
    const nlohmann::json state = replayed(30);
    EXPECT_EQ(state["at"], 40);
    EXPECT_EQ(state["time"], machine.clock.now());
    expectSameFigures(state);
    EXPECT_EQ(eventKinds(), (std::vector<std::string>{"sleep 0", "clock 300"}));
}

TEST_F(ScenarioRecorderTest, AMeasurementBeforeTheWakingIsToldEndsTheSleep) {
    machine.run(10);
    machine.workspace.willSleep();
    machine.clock.step(300);
    machine.run(2);
    machine.workspace.didWake();
    expectSameFigures(replayed(30));
    EXPECT_EQ(eventKinds(), (std::vector<std::string>{"sleep 0.702", "clock 300"}));
}

TEST_F(ScenarioRecorderTest, ChangesOfTheAppearanceAreRecorded) {
    machine.run(5);
    machine.appearance.setDark(true);
    machine.distributedNotifications.arrive(std::string(kInterfaceThemeChanged), {});
    machine.run(5);
    machine.appearance.setContrast(true);
    machine.distributedNotifications.arrive(std::string(kIncreaseContrastChanged), {});
    const nlohmann::json state = replayed(5);
    EXPECT_EQ(state["preferences"]["isMenubarDark"], true);
    EXPECT_EQ(state["preferences"]["increaseContrast"], true);
    EXPECT_EQ(eventKinds(), (std::vector<std::string>{"dark 1", "contrast 1"}));
}

}  // namespace
}  // namespace vantor
