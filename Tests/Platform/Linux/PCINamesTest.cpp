#include "Platform/Linux/PCINames.h"

#include <gtest/gtest.h>

#include "Tests/Platform/Linux/KernelTexts.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor::test {
namespace {

constexpr const char* kList = "# A list\n"
                              "1002  Advanced Micro Devices, Inc. [AMD/ATI]\n"
                              "\t73bf  Navi 21 [Radeon RX 6800/6800 XT / 6900 XT]\n"
                              "\t\t1002 0e3a  Radeon RX 6900 XT\n"
                              "\t744c  Navi 31\n"
                              "8086  Intel Corporation\n"
                              "\t46a6  Alder Lake-P GT2 [Iris Xe Graphics]\n"
                              "beef  Some Vendor\n"
                              "C 03  Display controller\n"
                              "\t00  VGA compatible controller\n";

std::string modelOf(std::uint16_t vendor, std::uint16_t device) {
    return graphicsModel({vendor, device}, pciNameIn(kList, {vendor, device}));
}

TEST(PCINamesTest, CardsAreCalledAsTheyAreSold) {
    EXPECT_EQ(modelOf(0x1002, 0x73BF), "AMD Radeon RX 6800/6800 XT / 6900 XT");
    EXPECT_EQ(modelOf(0x8086, 0x46A6), "Intel Iris Xe Graphics");
    EXPECT_EQ(modelOf(0x1002, 0x744C), "AMD Navi 31");
}

TEST(PCINamesTest, WhatIsNotListedHasNumbers) {
    EXPECT_EQ(modelOf(0x1002, 0x0001), "AMD graphics 1002:0001");
    EXPECT_EQ(modelOf(0xBEEF, 0x0001), "Some Vendor graphics beef:0001");
    EXPECT_EQ(modelOf(0x1234, 0x1111), "graphics 1234:1111");
}

TEST(PCINamesTest, DeviceOfAnotherVendorIsNotTaken) {
    EXPECT_EQ(pciNameIn(kList, {0x8086, 0x73BF}).device, "");
    EXPECT_EQ(pciNameIn(kList, {0x8086, 0x73BF}).vendor, "Intel Corporation");
}

TEST(PCINamesTest, BrokenListNamesNothing) {
    for (const char* const list : {"", "\n\n", "1002", "1002\n", "\t73bf  x\n", "100  x\n\t73bf y"})
        EXPECT_EQ(pciNameIn(list, {0x1002, 0x73BF}).device, "") << list;
    EXPECT_EQ(graphicsModel({0x1002, 1}, {"AMD", "Broken ]["}), "AMD Broken ][");
    EXPECT_EQ(graphicsModel({0x1002, 1}, {"AMD", "Empty []"}), "AMD Empty []");
}

TEST(PCINamesTest, InstalledListIsRead) {
    const TemporaryFolder root;
    EXPECT_EQ(graphicsModelByList({0x8086, 0x46A6}, root.path()), "Intel graphics 8086:46a6");
    writeText(root / "usr/share/hwdata/pci.ids", kList);
    EXPECT_EQ(graphicsModelByList({0x8086, 0x46A6}, root.path()), "Intel Iris Xe Graphics");
}

}  // namespace
}  // namespace vantor::test
