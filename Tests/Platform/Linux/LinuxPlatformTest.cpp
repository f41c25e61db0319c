#include "Platform/Linux/LinuxPlatform.h"

#include <array>
#include <map>

#include <gtest/gtest.h>

#include "Tests/Support/BusPeer.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/QueueWorld.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

using test::runUntil;
using test::settle;

class LinuxPlatformTest : public testing::Test {
protected:
    DirectorySources sources() const {
        const std::map<std::string, std::string> variables{
            {"HOME", folder.path()},
            {"DBUS_SESSION_BUS_ADDRESS", bus.address()},
            {"DBUS_SYSTEM_BUS_ADDRESS", bus.address()}};
        return {.environment = [variables](const std::string& name) -> std::optional<std::string> {
                    const auto found = variables.find(name);
                    return found == variables.end() ? std::nullopt : std::optional(found->second);
                },
                .accountHome = [] { return std::nullopt; },
                .program = {},
                .uninstalledResources = {}};
    }

    test::TemporaryFolder folder;
    test::PrivateBus bus;
};

TEST_F(LinuxPlatformTest, PortsShareOneWorld) {
    LinuxPlatform platform(sources());
    const Ports ports = platform.ports();
    bool ran = false;
    ports.workQueues.globalAsync([&] { ports.mainQueue.async([&] { ran = true; }); });
    EXPECT_TRUE(runUntil(platform.mainQueue(), [&] { return ran; }));
    EXPECT_EQ(ports.directories.preferences(), folder / ".config/Vantor Bar");
    EXPECT_GT(ports.processorCounters.cpuCount(), 0u);
}

TEST_F(LinuxPlatformTest, SettingsWrittenElsewhereAreThereWhenTheirNotificationIsHeard) {
    LinuxPlatform bar(sources()), tool(sources());
    PropertyValue heard;
    bar.ports().preferences.read("Key");  // the bar's copy is fresh: it wouldn't look again
    const auto observation = bar.ports().distributedNotifications.observe(
        "Changed", [&](const Notification&) { heard = bar.ports().preferences.read("Key"); });
    ASSERT_TRUE(settle(bar.mainQueue(), bar.sessionBus()));
    bar.ports().preferences.read("Key");

    tool.ports().preferences.write("Key", PropertyValue("new"));
    tool.ports().distributedNotifications.post("Changed", {});

    EXPECT_TRUE(runUntil(bar.mainQueue(), [&] { return heard == PropertyValue("new"); }));
}

TEST_F(LinuxPlatformTest, UserWithoutAHomeHasNoSettings) {
    auto homeless = sources();
    homeless.environment = [](const std::string&) { return std::nullopt; };
    LinuxPlatform platform(homeless);
    EXPECT_TRUE(platform.ports().preferences.readAll().empty());
    EXPECT_THROW(platform.ports().preferences.write("Key", PropertyValue("new")),
                 std::runtime_error);
}

}  // namespace
}  // namespace vantor
