#include "Programs/vantorbar/Doctor.h"

#include <algorithm>
#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantor {
namespace {

using testing::HasSubstr;

FolderFacts healthyFolder() { return {"/home/somebody/place", true, true}; }

MachineFacts healthyMachine() {
    MachineFacts facts;
    facts.processors = {8, 8, 4, true, {245, 1034}, ""};
    facts.identity = {"20XW", "Some CPU", std::int64_t{1} << 34};
    facts.graphics = {{"AMD Radeon", "amdgpu", "awake", std::uint64_t{1} << 33, true, true}};
    facts.load = 0.5;
    facts.bootSeconds = 1425900000;
    facts.sessionBus = facts.systemBus = {true, true};
    facts.preferences = {"/home/somebody/settings.plist", PreferenceFacts::State::readable, 3, ""};
    facts.applicationSupport = facts.logs = facts.preferenceFolder = facts.resources =
        healthyFolder();
    facts.terminal = {
        true, "xterm", "UTF-8", {Glyphs::unicode, ColourDepth::palette, Cursor::placed}, 80, 24};
    return facts;
}

Finding findingOf(const MachineFacts& facts, std::string_view name) {
    const auto findings = examine(facts);
    const auto found = std::ranges::find(findings, name, &Finding::name);
    EXPECT_NE(found, findings.end()) << name;
    return found == findings.end() ? Finding{} : *found;
}

TEST(DoctorTest, AHealthyMachineLacksNothing) {
    const auto findings = examine(healthyMachine());
    EXPECT_EQ(statusOf(findings), 0);
    for (const Finding& finding : findings) {
        EXPECT_EQ(finding.verdict, Verdict::fine) << finding.name;
        EXPECT_FALSE(finding.what.empty()) << finding.name;
        EXPECT_EQ(finding.remedy, "") << finding.name;
    }
}

TEST(DoctorTest, EachFaultHasItsVerdictAndARemedy) {
    struct Case {
        std::string_view name;
        Verdict verdict;
        std::function<void(MachineFacts&)> breakIt;
    };
    using State = PreferenceFacts::State;
    const std::vector<Case> cases{
        {"Processors", Verdict::missing, [](auto& facts) { facts.processors.cpus = 0; }},
        {"Graphics", Verdict::limited, [](auto& facts) { facts.graphics[0].driver = ""; }},
        {"Graphics", Verdict::limited,
         [](auto& facts) { facts.graphics[0] = {"NVIDIA", "nvidia", "awake", 0, false, false}; }},
        {"Device names", Verdict::limited, [](auto& facts) { facts.hasDeviceNames = false; }},
        {"Processors", Verdict::limited, [](auto& facts) { facts.processors.physicalCores = 0; }},
        {"Processors offline", Verdict::limited,
         [](auto& facts) { facts.processors.offline = "4-7"; }},
        {"Processor counters", Verdict::missing,
         [](auto& facts) { facts.processors.countersReadable = false; }},
        {"Processes", Verdict::limited, [](auto& facts) { facts.processors.processes = {}; }},
        {"Boot time", Verdict::limited, [](auto& facts) { facts.bootSeconds.reset(); }},
        {"Session bus", Verdict::limited, [](auto& facts) { facts.sessionBus = {}; }},
        {"Appearance", Verdict::limited, [](auto& facts) { facts.sessionBus.servesUs = false; }},
        {"Sleep and wake", Verdict::limited, [](auto& facts) { facts.systemBus = {}; }},
        {"Sleep and wake", Verdict::limited, [](auto& facts) { facts.systemBus.servesUs = false; }},
        {"Settings", Verdict::missing, [](auto& facts) { facts.preferences = {}; }},
        {"Settings", Verdict::limited,
         [](auto& facts) { facts.preferences.state = State::damaged; }},
        {"Settings", Verdict::missing,
         [](auto& facts) { facts.preferences.state = State::unreadable; }},
        {"Settings folder", Verdict::missing, [](auto& facts) { facts.preferenceFolder = {}; }},
        {"History folder", Verdict::missing,
         [](auto& facts) { facts.applicationSupport.isWritable = false; }},
        {"Log folder", Verdict::missing, [](auto& facts) { facts.logs.isWritable = false; }},
        {"Resources", Verdict::missing, [](auto& facts) { facts.resources.exists = false; }},
        {"Painting", Verdict::limited, [](auto& facts) { facts.paintingTrouble = "no cairo"; }},
        {"Terminal", Verdict::limited, [](auto& facts) { facts.terminal.abilities = {}; }},
        {"Terminal", Verdict::limited, [](auto& facts) { facts.terminal.codeset = "ASCII"; }},
    };
    for (const auto& [name, verdict, breakIt] : cases) {
        MachineFacts facts = healthyMachine();
        breakIt(facts);
        const Finding finding = findingOf(facts, name);
        EXPECT_EQ(finding.verdict, verdict) << name;
        EXPECT_NE(finding.remedy, "") << name;
        EXPECT_EQ(statusOf(examine(facts)), verdict == Verdict::missing ? 1 : 0) << name;
    }
}

TEST(DoctorTest, ProcessorsAreCountedInPlainWords) {
    MachineFacts facts = healthyMachine();
    EXPECT_EQ(findingOf(facts, "Processors").what, "8 in 4 cores, 2 threads a core");
    facts.processors.physicalCores = 8;
    EXPECT_EQ(findingOf(facts, "Processors").what, "8 in 8 cores, one thread a core");
}

TEST(DoctorTest, MachineAndGraphicsAreToldInPlainWords) {
    MachineFacts facts = healthyMachine();
    EXPECT_EQ(findingOf(facts, "Machine").what, "20XW, Some CPU, 16.0 GiB");
    EXPECT_EQ(findingOf(facts, "Graphics").what,
              "AMD Radeon, driven by amdgpu, 8.0 GiB, awake, which tells memory and load");
    facts.graphics[0] = {"GeForce", "nouveau", "awake", 0, false, false};
    EXPECT_EQ(findingOf(facts, "Graphics").what,
              "GeForce, driven by nouveau, awake, which tells neither memory nor load");
    facts.identity = {};
    EXPECT_EQ(findingOf(facts, "Machine").what, "unnamed model, unnamed processor, unknown memory");
}

TEST(DoctorTest, MachineWithoutGraphicsSaysSo) {
    MachineFacts facts = healthyMachine();
    facts.graphics.clear();
    facts.hasDeviceNames = false;
    EXPECT_EQ(findingOf(facts, "Graphics").what, "none on the PCI bus");
    EXPECT_EQ(findingOf(facts, "Device names").verdict, Verdict::fine);
}

TEST(DoctorTest, SleepingGraphicsAreNoFault) {
    MachineFacts facts = healthyMachine();
    facts.graphics[0] = {"GeForce", "nvidia", "asleep", 0, false, false};
    EXPECT_EQ(findingOf(facts, "Graphics").verdict, Verdict::fine);
}

TEST(DoctorTest, ProcessorsOfUnequalCoresAreNotDividedEvenly) {
    MachineFacts facts = healthyMachine();
    facts.processors.cpus = facts.processors.logicalCores = 12;
    facts.processors.physicalCores = 8;
    EXPECT_EQ(findingOf(facts, "Processors").what, "12 in 8 cores, some with several threads");
}

TEST(DoctorTest, NoTerminalIsNoFault) {
    MachineFacts facts = healthyMachine();
    facts.terminal = {};
    EXPECT_EQ(findingOf(facts, "Terminal").verdict, Verdict::fine);
}

TEST(DoctorTest, SettingsThatWereNeverStoredAreNoFault) {
    MachineFacts facts = healthyMachine();
    facts.preferences.state = PreferenceFacts::State::absent;
    EXPECT_EQ(findingOf(facts, "Settings").verdict, Verdict::fine);
}

TEST(DoctorTest, TheReportHasALineForEachFindingAndForEachRemedy) {
    const std::vector<Finding> findings{{"Counters", Verdict::fine, "readable", ""},
                                        {"Bus", Verdict::limited, "none", "start it"},
                                        {"Log", Verdict::missing, "no place", "make one"}};
    EXPECT_EQ(report(findings), "ok       Counters            readable\n"
                                "limited  Bus                 none\n"
                                "                             -> start it\n"
                                "MISSING  Log                 no place\n"
                                "                             -> make one\n");
}

}  // namespace
}  // namespace vantor
