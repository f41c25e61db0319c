#include "Shared/VTRMenuExtra.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Platform/Simulated/SimulatedMenuExtraHost.h"
#include "Shared/External/Logging/LGLog.h"
#include "Shared/VTRPreferences.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// Writes down what its extra calls.
class RecordingModule final : public VTRModule {
public:
    RecordingModule(VTRModuleDelegate& extra, std::vector<std::string>& calls)
        : VTRModule(extra), calls_(calls) {}

    void setup() override { call("setup"); }
    void loadNotifications() override { call("loadNotifications"); }
    void rebuildMenu() override { call("rebuildMenu"); }
    void themeChange() override { call("themeChange"); }
    void menubarThemeChanged() override { call("menubarThemeChanged"); }
    void skinChange(const Notification&) override { call("skinChange"); }
    void globalPreferencesChange(const Notification&) override { call("globalPreferencesChange"); }
    void willUnload() override { call("willUnload"); }

    std::string failsAt;

private:
    void call(const std::string& name) {
        if (name == failsAt)
            throw std::runtime_error("no luck");
        calls_.push_back(name);
    }
    std::vector<std::string>& calls_;
};

class RecordingExtra final : public VTRMenuExtra {
public:
    using VTRMenuExtra::VTRMenuExtra;
    std::string_view extraName() const override { return "test"; }
    bool isCombinedExtra() const override { return combined; }
    void loadModules() override {
        for (int module = 0; module < moduleCount; ++module) {
            auto made = std::make_unique<RecordingModule>(*this, calls);
            made->setKey(module + 1);
            if (module == failingModule)
                made->failsAt = failsAt;
            mutableModules().push_back(std::move(made));
        }
    }
    void reloadModules(const Notification&) override { calls.push_back("reloadModules"); }
    void cleanup() override { calls.push_back("cleanup"); }

    std::vector<std::string> calls;
    int moduleCount = 1, failingModule = 0;
    std::string failsAt;
    bool combined = false;
};

class VTRMenuExtraTest : public testing::Test {
protected:
    void load() {
        world.machine.run(0);
        extra.calls.clear();
        world.machine.mainQueue.runUntil(world.machine.mainQueue.now());
        host.displayIfNeeded();
        world.journal.repaints = 0;
        world.journal.notifications.clear();
    }
    void arrive(const std::string& name, NotificationInfo info) {
        world.machine.distributedNotifications.arrive(name, std::move(info));
        world.machine.run(0);
        host.displayIfNeeded();
    }

    test::World world;
    simulated::SimulatedMenuExtraHost host{&world.journal};
    RecordingExtra extra{host};
};

TEST_F(VTRMenuExtraTest, TakesItsPlaceAtOnceAndStartsLater) {
    EXPECT_THAT(world.journal.lengths, ElementsAre(20));
    EXPECT_EQ(host.viewFrame(), (Rect{0, 0, 20, 22}));
    EXPECT_TRUE(extra.calls.empty());
    EXPECT_EQ(extra.modules(), nullptr);
    world.machine.run(0);
    EXPECT_THAT(extra.calls, ElementsAre("setup", "loadNotifications"));
    EXPECT_EQ(extra.state(), VTRMenuExtra::State::loaded);
}

TEST_F(VTRMenuExtraTest, SaysThatItLoads) {
    world.machine.run(0);
    EXPECT_THAT(world.journal.systemLogLines, ElementsAre("Vantor Bar loading extra - test"));
}

TEST_F(VTRMenuExtraTest, StartsItsModulesOneAfterTheOther) {
    extra.moduleCount = 2;
    world.machine.run(0);
    EXPECT_THAT(extra.calls,
                ElementsAre("setup", "loadNotifications", "setup", "loadNotifications"));
    EXPECT_TRUE((*extra.modules())[1]->menubar());
}

TEST_F(VTRMenuExtraTest, ACombinedExtraDoesNotSetItsModulesUp) {
    extra.combined = true;
    world.machine.run(0);
    EXPECT_TRUE(extra.calls.empty());
    EXPECT_FALSE((*extra.modules())[0]->menubar());
}

TEST_F(VTRMenuExtraTest, OneModuleLendsItsMenu) {
    EXPECT_EQ(extra.menu(), nullptr);
    load();
    EXPECT_EQ(extra.menu(), (*extra.modules())[0]->menu());
}

TEST_F(VTRMenuExtraTest, TwoModulesHaveNoMenu) {
    extra.moduleCount = 2;
    load();
    EXPECT_EQ(extra.menu(), nullptr);
}

TEST_F(VTRMenuExtraTest, ACombinedExtraShowsItsOwnMenu) {
    extra.combined = true;
    extra.moduleCount = 2;
    load();
    EXPECT_EQ(extra.menu(), extra.combinedMenu());
    EXPECT_EQ(extra.combinedMenu()->delegate(), &extra);
}

TEST_F(VTRMenuExtraTest, FindsAModuleByItsKey) {
    extra.moduleCount = 2;
    load();
    EXPECT_EQ(extra.moduleWithKey(2), (*extra.modules())[1].get());
    EXPECT_EQ(extra.moduleWithKey(3), nullptr);
}

TEST_F(VTRMenuExtraTest, OpeningAndClosingAMenuIsTold) {
    load();
    extra.menuWillOpen(*extra.menu());
    EXPECT_TRUE(extra.menu()->visible());
    extra.menuDidClose(*extra.menu());
    EXPECT_FALSE(extra.menu()->visible());
    EXPECT_THAT(world.journal.notifications,
                ElementsAre("local VTRMenuStateChanged", "local VTRMenuStateChanged"));
}

TEST_F(VTRMenuExtraTest, AThemeChangeReachesTheModulesAndTheItem) {
    load();
    world.machine.localNotifications.post("VantorBarMenubarThemeChanged");
    host.displayIfNeeded();
    EXPECT_THAT(extra.calls, ElementsAre("menubarThemeChanged"));
    EXPECT_EQ(world.journal.repaints, 1);
    EXPECT_THAT(world.journal.notifications, ElementsAre("local VantorBarMenubarThemeChanged"));
}

TEST_F(VTRMenuExtraTest, WithSeparateStylesAThemeChangeReachesTheDropdown) {
    load();
    VTRSetBoolForKey("Theme-SeperateStyles", true);
    world.machine.localNotifications.post("VantorBarMenubarThemeChanged");
    EXPECT_THAT(extra.calls, ElementsAre("menubarThemeChanged", "themeChange"));
    EXPECT_EQ(world.journal.notifications.back(), "local DropdownThemeChanged");
}

TEST_F(VTRMenuExtraTest, ADarkDesktopIsAThemeChange) {
    load();
    world.machine.appearance.setDark(true);
    arrive("AppleInterfaceThemeChangedNotification", {});
    EXPECT_THAT(extra.calls, ElementsAre("menubarThemeChanged"));
}

TEST_F(VTRMenuExtraTest, ADisplayChangeWithoutResetKeyRefreshesTheKeyAndTellsTheModules) {
    load();
    EXPECT_EQ(VTRIntegerForKey("MenubarTheme"), 1);
    VTRSetIntegerForKey("MenubarTheme", 5);
    EXPECT_EQ(VTRIntegerForKey("MenubarTheme"), 5);
    world.machine.preferences.write("MenubarTheme", std::int64_t{7});
    arrive("VantorBarGlobalDisplayChange", {{"key", "MenubarTheme"}});
    EXPECT_EQ(VTRIntegerForKey("MenubarTheme"), 7);
    EXPECT_THAT(extra.calls, ElementsAre("skinChange", "globalPreferencesChange"));
    EXPECT_EQ(world.journal.repaints, 1);
    EXPECT_TRUE(world.journal.notifications.empty());
}

TEST_F(VTRMenuExtraTest, ADropdownOrStylesChangeIsAThemeChange) {
    load();
    for (const char* const resetKey : {"dropdown", "styles"}) {
        extra.calls.clear();
        world.journal.notifications.clear();
        arrive("VantorBarGlobalDisplayChange", {{"key", "x"}, {"resetKey", resetKey}});
        EXPECT_THAT(extra.calls,
                    ElementsAre("skinChange", "themeChange", "globalPreferencesChange"));
        EXPECT_THAT(world.journal.notifications, ElementsAre("local DropdownThemeChanged"));
    }
}

TEST_F(VTRMenuExtraTest, ALauncherChangeRebuildsTheMenus) {
    load();
    arrive("VantorBarGlobalDisplayChange", {{"key", "x"}, {"resetKey", "launcher"}});
    EXPECT_THAT(extra.calls, ElementsAre("skinChange", "rebuildMenu", "globalPreferencesChange"));
}

TEST_F(VTRMenuExtraTest, OnlyACombinedExtraReloadsItsModules) {
    load();
    arrive("VantorBarCombinedDisplayChange", {{"key", "x"}});
    EXPECT_TRUE(extra.calls.empty());
}

TEST_F(VTRMenuExtraTest, ACombinedExtraHearsItsOwnChange) {
    extra.combined = true;
    load();
    arrive("VantorBarCombinedDisplayChange", {{"key", "x"}});
    EXPECT_THAT(extra.calls, ElementsAre("reloadModules"));
}

TEST_F(VTRMenuExtraTest, AFailedSetupTakesTheItemOutOfTheBarAndNamesTheStage) {
    extra.moduleCount = 2;
    extra.failingModule = 1;
    extra.failsAt = "setup";
    world.machine.run(0);
    EXPECT_THAT(world.journal.lengths, ElementsAre(20, 0));
    EXPECT_EQ(host.viewFrame().width, 0);
    EXPECT_EQ(extra.state(), VTRMenuExtra::State::unloaded);
    EXPECT_EQ(extra.modules(), nullptr);
    const std::string& report = world.journal.systemLogLines.at(1);
    EXPECT_THAT(report, HasSubstr("2015-03-09 11:20:00 +0000\n\n"
                                  "Vantor Bar exception in test - no luck\n"
                                  "Vantor Bar exception in test - setup module at index - 1\n\n"));
    EXPECT_THAT(world.journal.notifications,
                ElementsAre("distributed VantorBarUnloadedExtra"));
}

TEST_F(VTRMenuExtraTest, AfterAFailureItHearsNothing) {
    extra.failsAt = "loadNotifications";
    world.machine.run(0);
    extra.calls.clear();
    arrive("VantorBarGlobalDisplayChange", {{"key", "x"}});
    EXPECT_TRUE(extra.calls.empty());
    EXPECT_EQ(world.journal.loaded, 0);
}

TEST_F(VTRMenuExtraTest, UnloadsInOrder) {
    load();
    world.journal.systemLogLines.clear();
    extra.willUnload();
    EXPECT_THAT(extra.calls, ElementsAre("willUnload", "cleanup"));
    EXPECT_THAT(world.journal.systemLogLines, ElementsAre("unloading module"));
    EXPECT_THAT(world.journal.notifications, ElementsAre("distributed VantorBarUnloadedExtra"));
    EXPECT_TRUE(host.unloaded());
    EXPECT_EQ(extra.combinedMenu(), nullptr);
    EXPECT_EQ(world.journal.unloaded, 1);
}

TEST_F(VTRMenuExtraTest, AModuleThatFailsToUnloadDoesNotKeepTheRest) {
    extra.failsAt = "willUnload";
    load();
    extra.willUnload();
    EXPECT_THAT(extra.calls, ElementsAre("cleanup"));
    EXPECT_EQ(extra.state(), VTRMenuExtra::State::unloaded);
}

TEST_F(VTRMenuExtraTest, UnloadedBeforeItRanItNeverStarts) {
    extra.willUnload();
    world.machine.run(1);
    EXPECT_THAT(extra.calls, ElementsAre("cleanup"));
}

TEST_F(VTRMenuExtraTest, ItsUnloadingIsLogged) {
    load();
    extra.willUnload();
    EXPECT_THAT(world.journal.logLines, ElementsAre("Unloading..."));
}

TEST_F(VTRMenuExtraTest, AFailureIsLoggedAsItStandsInTheSystemLog) {
    extra.failsAt = "setup";
    world.machine.run(0);
    EXPECT_THAT(world.journal.logLines,
                ElementsAre(world.journal.systemLogLines.at(1), "Unloading..."));
}

TEST_F(VTRMenuExtraTest, ItsLogFilesLieInAFolderOfItsName) {
    const test::TemporaryFolder folder;
    world.machine.directories.setLogs(folder.path());
    load();
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
    extra.willUnload();
    std::ifstream file(folder / "test/vantorbar 2015-03-09 11-20.log");
    std::string line;
    std::getline(file, line);
    EXPECT_EQ(line, "2015/03/09 11:20:00:000  Unloading...");
}

TEST_F(VTRMenuExtraTest, ItsLogKeepsSevenFilesBesideTheLiveOneForThirtyDays) {
    const test::TemporaryFolder folder;
    world.machine.directories.setLogs(folder.path());
    load();
    for (int month = 0; month < 12; ++month) {
        LGLogInfo(std::string(5'242'879 / 2, 'x'));
        LGLogInfo(std::string(5'242'879 / 2, 'x'));
        world.machine.run(60);
    }
    const std::filesystem::directory_iterator files(folder / "test");
    EXPECT_EQ(std::distance(begin(files), end(files)), 8);
}

}  // namespace
}  // namespace vantor
