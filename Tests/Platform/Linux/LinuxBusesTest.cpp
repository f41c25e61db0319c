#include "Platform/Linux/LinuxBuses.h"

#include <map>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

#include "Platform/Linux/Descriptor.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

Environment environmentWith(const std::string& name, const std::string& value) {
    return [=](const std::string& asked) -> std::optional<std::string> {
        return asked == name ? std::optional(value) : std::nullopt;
    };
}

Descriptor listenAt(const std::filesystem::path& path) {
    Descriptor listening(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.string().copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(bind(listening.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address),
              0);
    return listening;
}

TEST(LinuxBusesTest, OnlySocketsOfThisMachineAreUsed) {
    struct Case {
        const char* set;
        std::optional<std::string> used;
    };
    const Case cases[] = {
        {"unix:path=/a,guid=1", "unix:path=/a,guid=1"},
        {"unix:abstract=a", "unix:abstract=a"},
        {"tcp:host=a;unix:path=/b;autolaunch:;unix:path=/c", "unix:path=/b;unix:path=/c"},
        {"autolaunch:", std::nullopt},
        {"unixexec:path=/bin/false", std::nullopt},
        {";;", std::nullopt},
    };
    for (const auto& [set, used] : cases) {
        EXPECT_EQ(sessionBusAddress(environmentWith("DBUS_SESSION_BUS_ADDRESS", set)), used) << set;
        EXPECT_EQ(systemBusAddress(environmentWith("DBUS_SYSTEM_BUS_ADDRESS", set)), used) << set;
    }
}

TEST(LinuxBusesTest, SessionBusIsTheSocketOfTheUsersRuntimeFolder) {
    const test::TemporaryFolder folder;
    const auto environment = environmentWith("XDG_RUNTIME_DIR", folder / "");
    EXPECT_EQ(sessionBusAddress(environment), std::nullopt);
    const auto listening = listenAt(folder / "bus");
    EXPECT_EQ(sessionBusAddress(environment), "unix:path=" + (folder / "bus").string());
}

TEST(LinuxBusesTest, LettersThatMeanSomethingInAnAddressAreEscaped) {
    const test::TemporaryFolder folder;
    std::filesystem::create_directory(folder / "a;b c");
    const auto listening = listenAt(folder / "a;b c/bus");
    EXPECT_EQ(sessionBusAddress(environmentWith("XDG_RUNTIME_DIR", folder / "a;b c")),
              "unix:path=" + (folder / "a%3bb%20c/bus").string());
}

TEST(LinuxBusesTest, NothingSetMeansNoSessionBus) {
    EXPECT_EQ(sessionBusAddress(environmentWith("", "")), std::nullopt);
}

}  // namespace
}  // namespace vantor
