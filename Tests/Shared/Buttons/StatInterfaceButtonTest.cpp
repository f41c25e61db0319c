#include "Shared/Buttons/StatInterfaceButton.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "Painting/ImageSurface.h"
#include "Shared/VTRPreferenceFunctions.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

class StatInterfaceButtonTest : public testing::Test {
protected:
    StatInterfaceButtonTest() {
        world.machine.directories.setResources(
            std::filesystem::path(VANTOR_BUNDLE_DIR).parent_path());
    }
    test::World world;
    StatInterfaceButton button{Rect{0, 0, 20, 20}};
};

std::uint32_t centreOf(StatInterfaceButton& button) {
    Painting::ImageSurface surface({20, 20}, 1);
    Painting::Context context = surface.context();
    button.display(context);
    return surface.pixel(10, 6);
}

}  // namespace

TEST_F(StatInterfaceButtonTest, EachTagOpensItsProgram) {
    const std::string utilities = "/Applications/Utilities/";
    const std::string paths[]{utilities + "Activity Monitor.app",
                              utilities + "Console.app",
                              utilities + "Terminal.app",
                              "/Applications/Vantor Bar.app",
                              utilities + "Disk Utility.app",
                              utilities + "Network Utility.app",
                              "/System/Library/PreferencePanes/Network.prefPane",
                              utilities + "System Profiler.app",
                              "/System/Library/PreferencePanes/EnergySaver.prefPane"};
    for (std::int64_t tag = 1; tag <= 9; ++tag) {
        button.setTag(tag);
        button.openApp();
    }
    EXPECT_EQ(world.machine.workspace.launched(),
              std::vector<std::string>(std::begin(paths), std::end(paths)));
}

TEST_F(StatInterfaceButtonTest, TheDesktopsIconStandsForOurArtwork) {
    const test::TemporaryFolder folder;
    const std::filesystem::path file = folder / "icon.png";
    Painting::ImageSurface icon({32, 32}, 1);
    icon.context().fill(Rect{0, 0, 32, 32}, Colour{1, 0, 0, 1});
    ASSERT_TRUE(icon.writePNG(file));
    button.setTag(3);
    const std::uint32_t artwork = centreOf(button);

    world.machine.workspace.setIcon("/Applications/Utilities/Terminal.app", file);
    button.updateColors();
    EXPECT_EQ(centreOf(button), 0xFFFF0000);
    world.machine.workspace.setIcon("/Applications/Utilities/Terminal.app", folder / "gone.png");
    button.updateColors();

    EXPECT_EQ(centreOf(button), artwork);
}

TEST_F(StatInterfaceButtonTest, AProgramsFirstPlaceWinsWhereItExists) {
    const std::string places[]{"/Applications/Utilities/Vantor Bar.app",
                               "/System/Library/CoreServices/Applications/Network Utility.app",
                               "/Applications/Utilities/System Information.app"};
    for (const std::string& place : places)
        world.machine.workspace.install(place);
    EXPECT_EQ(launcherPath(4), places[0]);
    EXPECT_EQ(launcherPath(6), places[1]);
    EXPECT_EQ(launcherPath(8), places[2]);
}

TEST_F(StatInterfaceButtonTest, AnUnknownTagOpensNothing) {
    for (const std::int64_t tag : {0, -1, 10}) {
        button.setTag(tag);
        button.openApp();
        EXPECT_EQ(launcherPath(tag), "");
    }
    EXPECT_TRUE(world.machine.workspace.launched().empty());
}

TEST_F(StatInterfaceButtonTest, APressOpensOnceItsTargetIsSetUp) {
    button.setTag(1);
    button.mouseDown(1);
    button.mouseUp(1);
    EXPECT_TRUE(world.machine.workspace.launched().empty());

    button.setupTarget();
    button.mouseUp(2);  // the press was elsewhere
    EXPECT_TRUE(world.machine.workspace.launched().empty());
    button.mouseDown(3);
    EXPECT_TRUE(button.highlighted());
    button.mouseUp(3);
    EXPECT_EQ(world.machine.workspace.launched().size(), 1u);
    EXPECT_FALSE(button.highlighted());
}

TEST_F(StatInterfaceButtonTest, APressedIconIsPaler) {
    button.setTag(3);  // nearly black, on the light ground
    const std::uint32_t plain = centreOf(button);
    button.mouseDown(1);
    EXPECT_GT(centreOf(button) & 0xFF, plain & 0xFF);
}

TEST_F(StatInterfaceButtonTest, AnUnknownTagHasTheGroundAlone) {
    VTRSetBoolForKey("Theme-SeperateStyles", false);
    VTRSetIntegerForKey("DropdownTheme", 0);
    button.setTag(99);
    EXPECT_EQ(centreOf(button), 0xFFFAFAFAu);
}

}  // namespace vantor
