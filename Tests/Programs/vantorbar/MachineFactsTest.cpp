#include "Programs/vantorbar/MachineFacts.h"

#include <fstream>

#include <gtest/gtest.h>

#include "Platform/Simulated/SimulatedMachine.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSettings = "com.kolbrin.vantorbar5.extras.plist";

void write(const fs::path& file, std::string_view text) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << text;
}

TEST(MachineFactsTest, PortsTellWhatTheMachineIs) {
    const test::TemporaryFolder folder;
    simulated::SimulatedMachine machine;
    machine.directories.setRoot(folder.path());
    machine.loadAverages.setLoads({{3072, 0, 0}, 2048});
    machine.bootTime.setBootSeconds(1425890000);
    const MachineFacts facts = factsFromPorts(machine.ports());
    EXPECT_EQ(facts.processors.cpus, machine.processorCounters.cpuCount());
    EXPECT_TRUE(facts.processors.countersReadable);
    EXPECT_EQ(facts.load, 1.5);
    EXPECT_EQ(facts.bootSeconds, 1425890000);
    EXPECT_EQ(facts.logs.path, folder / "Logs");
}

TEST(MachineFactsTest, RegistryTellsOfGraphicsProcessors) {
    simulated::SimulatedMachine machine;
    const simulated::RegistryNode driver{
        3,
        "IOAccelerator",
        "amdgpu",
        {{"PerformanceStatistics", PropertyValue::Dictionary{{"vramUsedBytes", 5}}},
         {"VRAM,totalsize", std::int64_t{1} << 30},
         {"power-state", "awake"}},
        {}};
    const simulated::RegistryNode card{2,
                                       "IOPCIDevice",
                                       "card",
                                       {{"IOName", "display"},
                                        {"model", PropertyValue::Data{std::byte{'A'}}},
                                        {"driver", "amdgpu"}},
                                       {driver}};
    machine.registry.setTree(
        {1, "Root", "Root", {}, {card, {4, "IOPCIDevice", "bridge", {{"IOName", "bridge"}}, {}}}});
    const auto facts = graphicsFacts(machine.ports().registry);
    ASSERT_EQ(facts.size(), 1u);
    EXPECT_EQ(facts[0].model, "A");
    EXPECT_EQ(facts[0].driver, "amdgpu");
    EXPECT_EQ(facts[0].power, "awake");
    EXPECT_EQ(facts[0].memoryBytes, std::uint64_t{1} << 30);
    EXPECT_TRUE(facts[0].tellsMemory);
    EXPECT_FALSE(facts[0].tellsLoad);
}

TEST(MachineFactsTest, LookingChangesNothing) {
    const test::TemporaryFolder folder;
    simulated::SimulatedMachine machine;
    machine.directories.setRoot(folder.path());
    write(folder / "Preferences" / kSettings, "damaged");
    factsFromPorts(machine.ports());
    for (const auto& entry : fs::recursive_directory_iterator(folder.path()))
        EXPECT_TRUE(entry.path().filename() == "Preferences" ||
                    entry.path().filename() == kSettings)
            << entry.path();
}

TEST(MachineFactsTest, OfflineProcessorsAreAsTheKernelListsThem) {
    const test::TemporaryFolder folder;
    simulated::SimulatedMachine machine;
    machine.directories.setRoot(folder.path());
    write(folder / "System/sys/devices/system/cpu/offline", "4-7\n");
    EXPECT_EQ(factsFromPorts(machine.ports()).processors.offline, "4-7");
}

TEST(MachineFactsTest, AFolderThatDoesNotExistIsJudgedByItsNearestParent) {
    const test::TemporaryFolder folder;
    const FolderFacts facts = folderFacts(folder / "a/b/c");
    EXPECT_FALSE(facts.exists);
    EXPECT_TRUE(facts.isWritable);
}

TEST(MachineFactsTest, AFileInAFoldersPlaceIsNotWritable) {
    const test::TemporaryFolder folder;
    write(folder / "file", "");
    EXPECT_FALSE(folderFacts(folder / "file").isWritable);
    EXPECT_FALSE(folderFacts(folder / "file/below").isWritable);
}

TEST(MachineFactsTest, AUserWithoutPlacesHasNone) {
    EXPECT_FALSE(folderFacts(std::nullopt).path);
    EXPECT_FALSE(preferenceFacts(std::nullopt).file);
}

TEST(MachineFactsTest, TheSettingsFileIsReadAsItIs) {
    using State = PreferenceFacts::State;
    const test::TemporaryFolder folder;
    EXPECT_EQ(preferenceFacts(folder.path()).state, State::absent);

    write(folder / kSettings, "no property list");
    EXPECT_EQ(preferenceFacts(folder.path()).state, State::damaged);

    write(folder / kSettings, "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>a</key>"
                              "<integer>1</integer><key>b</key><true/></dict></plist>");
    const PreferenceFacts readable = preferenceFacts(folder.path());
    EXPECT_EQ(readable.state, State::readable);
    EXPECT_EQ(readable.keys, 2u);

    fs::remove(folder / kSettings);
    fs::create_directory(folder / kSettings);
    const PreferenceFacts unreadable = preferenceFacts(folder.path());
    EXPECT_EQ(unreadable.state, State::unreadable);
    EXPECT_NE(unreadable.reason, "");
}

}  // namespace
}  // namespace vantor
