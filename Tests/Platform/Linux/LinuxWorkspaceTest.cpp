#include "Platform/Linux/LinuxWorkspace.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Platform/Linux/LinuxDirectories.h"
#include "Tests/Support/BusTest.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;
using test::BusPeer;
using test::runUntil;
using test::settle;
using testing::ElementsAre;

const BusAddressee kPrepareForSleep{.peer = "",
                                    .path = "/org/freedesktop/login1",
                                    .interface = "org.freedesktop.login1.Manager",
                                    .member = "PrepareForSleep"};

class LinuxWorkspaceTest : public test::BusTest {
protected:
    Environment environment() const {
        return [folder = folder.path()](const std::string& name) -> std::optional<std::string> {
            const std::map<std::string, fs::path> variables{{"XDG_DATA_HOME", folder / "mine"},
                                                            {"XDG_DATA_DIRS", folder / "all"},
                                                            {"PATH", "/usr/bin:/bin"}};
            const auto found = variables.find(name);
            return found == variables.end() ? std::nullopt : std::optional(found->second.string());
        };
    }
    void install(const std::string& place, const std::string& id, const std::string& lines) const {
        fs::create_directories(folder / place / "applications");
        std::ofstream(folder / place / "applications" / id) << "[Desktop Entry]\nType=Application\n"
                                                            << lines << "\n";
    }
    std::string touching(const std::string& name) const {
        return "Exec=touch \"" + (folder / name).string() + "\" %U";
    }
    bool isThere(const std::string& name) {
        return runUntil(queue, [&] { return fs::exists(folder / name); });
    }

    test::TemporaryFolder folder;
    BusConnection connection = connectionTo(bus.address());
    LinuxDirectories directories{{.environment = environment(),
                                  .accountHome = [] { return std::nullopt; },
                                  .program = {},
                                  .uninstalledResources = {}}};
    LinuxWorkspace workspace{queue, connection, directories, environment()};
};

TEST_F(LinuxWorkspaceTest, SleepAndWakeArePosted) {
    NotificationCenter& center = workspace.notificationCenter();
    const auto sleeps = notes(center, kWorkspaceWillSleep);
    const auto wakes = notes(center, kWorkspaceDidWake);
    BusPeer logind(queue, bus.address(), "org.freedesktop.login1");
    BusPeer stranger(queue, bus.address());
    queue.runOnce(0);
    ASSERT_TRUE(settle(queue, connection));
    stranger.emitSignal(kPrepareForSleep, "b", 0);
    logind.emitSignal(kPrepareForSleep, "s", "no boolean");
    logind.emitSignal(kPrepareForSleep, "b", 1);
    logind.emitSignal(kPrepareForSleep, "b", 0);
    EXPECT_TRUE(runUntil(queue, [&] { return heard.size() >= 2; }));
    EXPECT_THAT(heard, ElementsAre(kWorkspaceWillSleep, kWorkspaceDidWake));
}

TEST_F(LinuxWorkspaceTest, InstalledApplicationIsStarted) {
    install("all", "org.gnome.SystemMonitor.desktop", touching("monitor started"));
    install("all", "org.gnome.Logs.desktop", touching("console started"));
    EXPECT_TRUE(workspace.launchApplication("Activity Monitor.app"));
    EXPECT_TRUE(workspace.launchApplication("Console.app"));
    EXPECT_TRUE(isThere("monitor started"));
    EXPECT_TRUE(isThere("console started"));
}

TEST_F(LinuxWorkspaceTest, OwnPreferencesAreStarted) {
    install("mine", "com.kolbrin.vantorbar.preferences.desktop", touching("ours"));
    EXPECT_TRUE(workspace.launchApplication("Vantor Bar.app"));
    EXPECT_TRUE(isThere("ours"));
}

TEST_F(LinuxWorkspaceTest, ApplicationThatTheUserRemovedIsPassedOver) {
    install("mine", "org.gnome.SystemMonitor.desktop", "Hidden=true\n");
    install("all", "org.gnome.SystemMonitor.desktop", touching("removed"));
    install("all", "xfce4-taskmanager.desktop", "TryExec=/nowhere\n" + touching("incomplete"));
    install("all", "htop.desktop", touching("right"));
    EXPECT_TRUE(workspace.launchApplication("Activity Monitor.app"));
    EXPECT_TRUE(isThere("right"));
    EXPECT_FALSE(fs::exists(folder / "removed"));
    EXPECT_FALSE(fs::exists(folder / "incomplete"));
}

TEST_F(LinuxWorkspaceTest, AnIconIsThatOfWhatALaunchWouldStart) {
    install("all", "org.gnome.SystemMonitor.desktop", "TryExec=/nowhere\nIcon=other\nExec=true");
    install("all", "htop.desktop", "Icon=htop\nExec=true");
    const fs::path loose = folder / "all/pixmaps";
    fs::create_directories(loose);
    std::ofstream(loose / "htop.png");
    std::ofstream(loose / "other.png");
    EXPECT_EQ(workspace.iconFile("/Applications/Utilities/Activity Monitor.app", 20),
              loose / "htop.png");
    EXPECT_EQ(workspace.iconFile("Console.app", 20), std::nullopt);
    EXPECT_EQ(workspace.iconFile("", 20), std::nullopt);
}

TEST_F(LinuxWorkspaceTest, WhatIsNotInstalledOrUnknownIsNotStarted) {
    install("all", "org.gnome.Logs.desktop", touching("never"));
    EXPECT_FALSE(workspace.launchApplication("Activity Monitor.app"));
    EXPECT_FALSE(workspace.launchApplication("org.gnome.Logs.desktop"));
    EXPECT_FALSE(workspace.launchApplication(""));
}

}  // namespace
}  // namespace vantor
