#include "Platform/Linux/LinuxMachineIdentity.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "Tests/Platform/Linux/KernelTexts.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor::test {
namespace {

TEST(LinuxMachineIdentityTest, ModelIdentifierIsTheProductName) {
    const TemporaryFolder folder;
    writeText(folder / "class/dmi/id/product_name", "MacBookPro11,1\n");
    EXPECT_EQ(LinuxMachineIdentity({.sys = folder.path()}).modelIdentifier(), "MacBookPro11,1");
}

TEST(LinuxMachineIdentityTest, MachineWithoutAProductNameHasNoModelIdentifier) {
    const TemporaryFolder folder;
    EXPECT_EQ(LinuxMachineIdentity({.sys = folder.path()}).modelIdentifier(), std::nullopt);
}

TEST(LinuxMachineIdentityTest, BlanksAroundTheNameAreCutOff) {
    EXPECT_EQ(modelIdentifierOf("  20XW CTO1WW \n"), "20XW CTO1WW");
}

TEST(LinuxMachineIdentityTest, NameIsCutTo127Bytes) {
    EXPECT_EQ(modelIdentifierOf(std::string(200, 'x')), std::string(127, 'x'));
    EXPECT_EQ(modelIdentifierOf(fmt::format("{} y", std::string(126, 'x'))), std::string(126, 'x'));
}

TEST(LinuxMachineIdentityTest, NameThatIsEmptyOrNotASCIIIsNone) {
    for (const std::string_view name : {"", " \n", "Mod\xC3\xA8le",
                                        "a\x01"
                                        "b",
                                        "a\x7F"})
        EXPECT_EQ(modelIdentifierOf(name), std::nullopt) << name;
    EXPECT_EQ(modelIdentifierOf(std::string_view("a\0b", 3)), std::nullopt);
}

TEST(LinuxMachineIdentityTest, FirmwareAndKernelTellTheDetails) {
    const TemporaryFolder folder;
    const LinuxMachineIdentity identity({.proc = folder / "proc", .sys = folder / "sys"});
    writeText(folder / "sys/class/dmi/id/product_serial", "C02SY0000000\n");
    writeText(folder / "sys/class/dmi/id/board_name", "Mac-189A3D4F975D5FFC\n");
    writeText(folder / "sys/class/net/en0/address", "00:1b:63:84:45:E6\n");
    writeText(folder / "proc/cpuinfo", "processor\t: 0\nmodel name\t: Intel(R) Core(TM) i7\n"
                                       "cpu MHz\t\t: 1234.567\n\nprocessor\t: 1\n");
    writeText(folder / "proc/meminfo", "MemTotal:       16307852 kB\nMemFree: 1 kB\n");
    EXPECT_EQ(identity.serialNumber(), "C02SY0000000");
    EXPECT_EQ(identity.boardID()->size(), 21u);
    EXPECT_EQ(identity.boardID()->back(), std::byte{0});
    EXPECT_EQ(identity.processorBrand(), "Intel(R) Core(TM) i7");
    EXPECT_EQ(identity.processorHertz(), 1'234'567'000);
    EXPECT_EQ(identity.memoryBytes(), std::int64_t{16307852} * 1024);
    EXPECT_EQ(identity.hardwareAddress("en0"),
              (HardwareAddress{0x00, 0x1b, 0x63, 0x84, 0x45, 0xe6}));
    writeText(folder / "sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq", "4700000\n");
    EXPECT_EQ(identity.processorHertz(), 4'700'000'000);
}

TEST(LinuxMachineIdentityTest, WhatIsNotToldIsAbsent) {
    const TemporaryFolder folder;
    const LinuxMachineIdentity identity({.proc = folder / "proc", .sys = folder / "sys"});
    EXPECT_EQ(identity.serialNumber(), std::nullopt);
    EXPECT_EQ(identity.boardID(), std::nullopt);
    EXPECT_EQ(identity.processorBrand(), std::nullopt);
    EXPECT_EQ(identity.processorHertz(), std::nullopt);
    EXPECT_EQ(identity.memoryBytes(), std::nullopt);
    EXPECT_EQ(identity.memoryProfile(), std::nullopt);
    EXPECT_EQ(identity.hardwareAddress("en0"), std::nullopt);
}

TEST(LinuxMachineIdentityTest, FiguresThatMakeNoSenseAreAbsent) {
    const TemporaryFolder folder;
    const LinuxMachineIdentity identity({.proc = folder / "proc", .sys = folder / "sys"});
    for (const char* const value : {"", "-5 kB", "many", "1e300 kB", "nan"}) {
        writeText(folder / "proc/meminfo", fmt::format("MemTotal: {}\n", value));
        EXPECT_EQ(identity.memoryBytes(), std::nullopt) << value;
    }
}

TEST(LinuxMachineIdentityTest, HardwareAddressHasSixPairsOfDigits) {
    EXPECT_TRUE(hardwareAddressOf("00:1b:63:84:45:e6"));
    for (const char* const text :
         {"", "00:1b:63:84:45", "00:1b:63:84:45:e", "00-1b-63-84-45-e6", "0g:1b:63:84:45:e6",
          "00:1b:63:84:45:e6:77", "000:1b:63:84:45:e6", "+0:1b:63:84:45:e6"})
        EXPECT_EQ(hardwareAddressOf(text), std::nullopt) << text;
}

TEST(LinuxMachineIdentityTest, SystemVersionSwitchesNewerDrawingOn) {
    const SystemVersion version = LinuxMachineIdentity().systemVersion();
    EXPECT_EQ(version.major, 10);
    EXPECT_EQ(version.minor, 11);
    EXPECT_EQ(version.bugfix, 0);
}

}  // namespace
}  // namespace vantor::test
