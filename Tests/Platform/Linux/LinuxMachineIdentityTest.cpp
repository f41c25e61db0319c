#include "Platform/Linux/LinuxMachineIdentity.h"

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
    EXPECT_EQ(modelIdentifierOf(std::string(126, 'x') + " y"), std::string(126, 'x'));
}

TEST(LinuxMachineIdentityTest, NameThatIsEmptyOrNotASCIIIsNone) {
    for (const std::string_view name : {"", " \n", "Mod\xC3\xA8le",
                                        "a\x01"
                                        "b",
                                        "a\x7F"})
        EXPECT_EQ(modelIdentifierOf(name), std::nullopt) << name;
    EXPECT_EQ(modelIdentifierOf(std::string_view("a\0b", 3)), std::nullopt);
}

TEST(LinuxMachineIdentityTest, SystemVersionSwitchesNewerDrawingOn) {
    const SystemVersion version = LinuxMachineIdentity().systemVersion();
    EXPECT_EQ(version.major, 10);
    EXPECT_EQ(version.minor, 11);
    EXPECT_EQ(version.bugfix, 0);
}

}  // namespace
}  // namespace vantor::test
