#include "Shared/Platforms/PlatformMac.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Shared/Platforms/PlatformModel.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PlatformMacTest : public testing::Test {
protected:
    simulated::SimulatedMachineIdentity::Answers& answers() {
        return world.machine.machineIdentity.answers;
    }
    Ports ports() { return world.machine.ports(); }

    test::World world;
};

TEST_F(PlatformMacTest, MachineThatIsNotKnownAnswersNothingOfItsModel) {
    const PlatformMac platform(ports());
    EXPECT_EQ(platform.identifier(), "Unknown");
    EXPECT_EQ(platform.name(), "Unknown");
    EXPECT_EQ(platform.screenSize(), std::nullopt);
    EXPECT_EQ(platform.maximumMemory(), 0);
    EXPECT_EQ(platform.memorySlots(), 0);
    EXPECT_EQ(platform.icon(), "");
    EXPECT_EQ(platform.variationName(), std::nullopt);
    EXPECT_THAT(platform.supportedSensors(), IsEmpty());
    EXPECT_THAT(platform.defaultSensorKeys(), IsEmpty());
    EXPECT_FALSE(platform.hideIntergratedGraphics());
    EXPECT_FALSE(platform.ignoreGraphicsControl());
}

TEST_F(PlatformMacTest, FauxMacAnswersForItself) {
    answers().model = "MacBookPro8,2";
    const FauxMac platform(ports());
    EXPECT_EQ(platform.identifier(), "FauxMac");
    EXPECT_EQ(platform.name(), "FauxMac");
    EXPECT_EQ(platform.screenSize(), 0);
    EXPECT_EQ(platform.icon(), "imac-unibody.png");
    EXPECT_EQ(platform.maximumMemory(), 0);
    EXPECT_THAT(platform.supportedSensors(), IsEmpty());
    EXPECT_THAT(platform.defaultSensorKeys(), IsEmpty());
}

TEST_F(PlatformMacTest, MachineTellsItsDetailsAsTexts) {
    answers().processorBrand = "Intel(R) Core(TM) i7";
    answers().processorHertz = 2'799'999'999;
    answers().memoryBytes = 17'179'869'184;
    answers().boardID =
        PropertyValue::Data{std::byte{'M'}, std::byte{'a'}, std::byte{0}, std::byte{'x'}};
    answers().hardwareAddresses["en0"] = {0x00, 0x1b, 0x63, 0x84, 0x45, 0xe6};
    const PlatformMac platform(ports());
    EXPECT_EQ(platform.cpu(), "Intel(R) Core(TM) i7");
    EXPECT_EQ(platform.cpuSpeed(), "2799");
    EXPECT_EQ(platform.memory(), "17179869184");
    EXPECT_EQ(platform.boardID(), "Ma");
    EXPECT_EQ(platform.networkHardwareAdress(), "00:1B:63:84:45:E6");
    EXPECT_EQ(platform.osVersion(), "10.11.0");
    EXPECT_TRUE(platform.isSSLSupported());
}

TEST_F(PlatformMacTest, MachineThatTellsNothingHasEmptyDetails) {
    answers().hardwareAddresses["en1"] = {};
    const PlatformMac platform(ports());
    EXPECT_EQ(platform.cpu(), "");
    EXPECT_EQ(platform.cpuSpeed(), "");
    EXPECT_EQ(platform.memory(), "0");
    EXPECT_EQ(platform.boardID(), "");
    EXPECT_EQ(platform.serial(), std::nullopt);
    EXPECT_EQ(platform.variation(), "");
    EXPECT_EQ(platform.networkHardwareAdress(), std::nullopt);
}

TEST_F(PlatformMacTest, VersionThatCannotBeReadIsLogged) {
    answers().version = {10, 11, 0, -5551};
    EXPECT_EQ(PlatformMac(ports()).osVersion(), "0.0.0");
    EXPECT_THAT(world.journal.systemLogLines,
                ElementsAre("Unable to obtain system version: -5551"));
}

TEST_F(PlatformMacTest, SerialTellsWhenTheMachineWasMade) {
    answers().serial = "C02SY0000000";
    PlatformMac platform(ports());
    platform.decodeSerial();
    EXPECT_EQ(platform.manufactureYear(), 16);
    EXPECT_EQ(platform.manufactureWeek(), 54);
}

TEST_F(PlatformMacTest, SerialThatTellsNothingChangesNothing) {
    answers().serial = "C02SY0000000";
    PlatformMac platform(ports());
    platform.decodeSerial();
    for (const std::optional<std::string>& serial :
         {std::optional<std::string>{}, std::optional<std::string>("System Serial#")}) {
        answers().serial = serial;
        platform.decodeSerial();
        EXPECT_EQ(platform.manufactureYear(), 16);
    }
}

TEST_F(PlatformMacTest, PeriodFollowsTheSerial) {
    answers().serial = "C02H10AADV14";
    const PlatformMac platform(ports(), platformModelNamed("MacBookPro8_1"));
    EXPECT_EQ(platform.variation(), "DV14");
    EXPECT_EQ(platform.variationName(), "Late 2011");
}

TEST_F(PlatformMacTest, FansHaveDisplayNames) {
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"IO", "HD/Expansion"},     {"CPU_MEM", "CPU Fan"},  {"OUT3", "CPU 4 Outlet"},
        {"IN4", "FB-DIMM 1 Inlet"}, {"BOOSTB", "Booster 2"}, {"PS1OUT", "Power Supply 2 Outlet"}};
    for (const auto& [label, name] : cases)
        EXPECT_EQ(PlatformMac::nameForFan(label), name) << label;
}

TEST_F(PlatformMacTest, LabelWithoutANameIsItsOwn) {
    EXPECT_EQ(PlatformMac::nameForFan("Somewhere"), "Somewhere");
    EXPECT_EQ(PlatformMac::nameForFan("exhaust"), "exhaust");
    EXPECT_EQ(PlatformMac::nameForFan(""), "");
}

constexpr const char* kProfile = R"(<?xml version="1.0"?>
<plist version="1.0"><array><dict>
	<key>_items</key><array><dict>
		<key>_items</key><array>
			<dict><key>_name</key><string>BANK 0</string></dict>
			<dict><key>_name</key><string>BANK 1</string></dict>
		</array></dict></array></dict></array></plist>)";

TEST_F(PlatformMacTest, MemorySlotsAreStoredOnTheMainQueue) {
    answers().memoryProfile = kProfile;
    PlatformMac platform(ports());
    platform.fetchMemoryInfo();
    EXPECT_THAT(platform.memorySlotInfo(), IsEmpty());
    world.machine.run(0);
    ASSERT_EQ(platform.memorySlotInfo().size(), 2u);
    EXPECT_EQ(platform.memorySlotInfo()[1].dictionary()->at("_name"), PropertyValue("BANK 1"));
}

TEST_F(PlatformMacTest, FailureLeavesNoMemorySlots) {
    for (const char* const profile :
         {"", "no list", "<plist><array/></plist>", "<plist><dict/></plist>",
          "<plist><array><dict><key>_items</key><array/></dict></array></plist>",
          "<plist><array><string>x</string></array></plist>", "\xFF"}) {
        PlatformMac platform(ports());
        platform.setMemorySlotInfo({PropertyValue("old")});
        answers().memoryProfile = profile;
        platform.fetchMemoryInfo();
        world.machine.run(0);
        EXPECT_THAT(platform.memorySlotInfo(), IsEmpty()) << profile;
    }
}

TEST_F(PlatformMacTest, SlotsThatComeAfterTheMachineIsGoneAreDropped) {
    answers().memoryProfile = kProfile;
    {
        PlatformMac platform(ports());
        platform.fetchMemoryInfo();
    }
    world.machine.run(0);
    EXPECT_EQ(world.machine.mainQueue.nextDue(), std::nullopt);
}

}  // namespace
}  // namespace vantor
