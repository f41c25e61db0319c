// The real daemon, started by a bus of the test's own, and the client's end of the link to it.

#include <csignal>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <systemd/sd-bus.h>

#include "Platform/Linux/LinuxClock.h"
#include "Platform/Linux/LinuxDaemonTransport.h"
#include "Platform/Linux/LinuxDistributedNotifications.h"
#include "Programs/vantorbar-daemon/DaemonBus.h"
#include "Shared/VTRDaemonConnection.h"
#include "Tests/Support/Child.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/QueueWorld.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;
using test::runUntil;

constexpr std::int64_t kKey = 1;
constexpr double kBeforeTheSecondList = 1.5, kBeforeTheThird = 3.5;

std::ptrdiff_t entriesOf(const char* folder) {
    return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

std::string daemonProgram() {
    return (fs::path(VANTOR_PROGRAM).parent_path() / "vantorbar-daemon").string();
}

/// Counts lists with processes in them.
struct Listener final : VTRProcessesCallBackProtocol {
    void processesUpdated(const PropertyValue::Dictionary& response) override {
        const auto found = response.find("processes");
        const bool isFull = found != response.end() && found->second.array() != nullptr &&
                            !found->second.array()->empty();
        lists += isFull ? 1 : 0;
    }
    int lists = 0;
};

class DaemonAndClientTest : public testing::Test {
protected:
    Ports portsWithABus() {
        const Ports ports = machine.ports();
        return {.clock = ports.clock,
                .mainQueue = queue,
                .workQueues = ports.workQueues,
                .processorCounters = ports.processorCounters,
                .loadAverages = ports.loadAverages,
                .bootTime = ports.bootTime,
                .directories = ports.directories,
                .systemLog = ports.systemLog,
                .workspace = ports.workspace,
                .daemonTransport = transport,
                .preferences = ports.preferences,
                .distributedNotifications = notifications,
                .localNotifications = ports.localNotifications,
                .appearance = ports.appearance,
                .machineIdentity = ports.machineIdentity,
                .regionalSettings = ports.regionalSettings,
                .callStack = ports.callStack,
                .fileSystem = ports.fileSystem,
                .thisProcess = ports.thisProcess,
                .timeZone = ports.timeZone,
                .registry = ports.registry,
                .graphicsControl = ports.graphicsControl,
                .displays = ports.displays,
                .windowServer = ports.windowServer};
    }
    DaemonAndClientTest() { connection.addListener(listener, kKey); }

    bool hasList() {
        const int before = listener->lists;
        return runUntil(queue, [&] { return listener->lists > before; });
    }
    void pass(double seconds) {
        runUntil(
            queue, [] { return false; }, seconds);
    }
    /// -1 where there is none.
    pid_t daemon() {
        sd_bus* asking = nullptr;
        sd_bus_message* answer = nullptr;
        std::uint32_t process = 0;
        if (sd_bus_new(&asking) >= 0 && sd_bus_set_address(asking, bus.address().c_str()) >= 0 &&
            sd_bus_set_bus_client(asking, 1) >= 0 && sd_bus_start(asking) >= 0 &&
            sd_bus_call_method(asking, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                               "org.freedesktop.DBus", "GetConnectionUnixProcessID", nullptr,
                               &answer, "s", kDaemonName) >= 0)
            sd_bus_message_read(answer, "u", &process);
        sd_bus_message_unref(answer);
        sd_bus_flush_close_unref(asking);
        return process == 0 ? -1 : static_cast<pid_t>(process);
    }
    bool killDaemon() {
        const pid_t process = daemon();
        return process > 0 && kill(process, SIGKILL) == 0 &&
               runUntil(queue, [&] { return !connection.isConnected(); });
    }

    LinuxMainQueue queue;
    test::KeptLog log;
    test::PrivateBus bus{fs::path(VANTOR_SERVICE_DIR)};
    BusConnection session{queue, log, {"Bus", "test"}, bus.address()};
    LinuxDistributedNotifications notifications{queue, session};
    LinuxDaemonTransport transport{queue, bus.address(), {}};
    simulated::SimulatedMachine machine;
    ProcessContext context{portsWithABus()};
    VTRDaemonConnection connection{context.ports()};
    std::shared_ptr<Listener> listener = std::make_shared<Listener>();
};

TEST_F(DaemonAndClientTest, FirstRequestStartsTheDaemonAndListsComeUntilTheRequestIsStopped) {
    const LinuxClock clock;
    ASSERT_EQ(daemon(), -1);
    const double start = clock.monotonic();
    connection.startProcessesWithKey(kKey);
    ASSERT_TRUE(hasList());
    const double first = clock.monotonic();
    EXPECT_LT(first, start + kBeforeTheSecondList);
    ASSERT_TRUE(hasList());
    EXPECT_GT(clock.monotonic(), first + kBeforeTheSecondList);
    connection.stopProcessesWithKey(kKey);
    pass(kBeforeTheThird);
    EXPECT_EQ(listener->lists, 2);
    EXPECT_NE(daemon(), -1) << "it is there as long as its client is";
}

TEST_F(DaemonAndClientTest, EachOpeningIsCounted) {
    connection.startProcessesWithKey(kKey);
    connection.startProcessesWithKey(kKey);
    ASSERT_TRUE(hasList());
    connection.stopProcessesWithKey(kKey);
    EXPECT_TRUE(hasList()) << "one request still runs";
    connection.stopProcessesWithKey(kKey);
    const int before = listener->lists;
    pass(kBeforeTheThird);
    EXPECT_EQ(listener->lists, before);
}

TEST_F(DaemonAndClientTest, DaemonThatSomebodyStartsHasTheClientConnectAnew) {
    connection.startProcessesWithKey(kKey);
    ASSERT_TRUE(hasList());
    ASSERT_TRUE(killDaemon());
    connection.connectIfNeeded();
    const test::Child byHand({daemonProgram()}, {"DBUS_SESSION_BUS_ADDRESS=" + bus.address()});
    ASSERT_TRUE(runUntil(queue, [&] { return !connection.isConnected(); }));
    ASSERT_TRUE(runUntil(queue, [&] { return connection.isConnected(); }));
    // The request ended with the link that it was made over; the next opening counts from 0.
    connection.startProcessesWithKey(kKey);
    ASSERT_TRUE(hasList());
    EXPECT_EQ(daemon(), byHand.id());
    connection.stopProcessesWithKey(kKey);
    const int before = listener->lists;
    pass(kBeforeTheThird);
    EXPECT_EQ(listener->lists, before);
}

TEST_F(DaemonAndClientTest, ListReturnsAfterEachDeathOfTheDaemonAndNothingStaysOpen) {
    constexpr int kDeaths = 25, kDeathsOfABus = 10;
    std::ptrdiff_t descriptors = 0, threads = 0;
    for (int death = 0; death < kDeaths; ++death) {
        connection.startProcessesWithKey(kKey);
        ASSERT_TRUE(hasList()) << death;
        if (death == 0) {
            descriptors = entriesOf("/proc/self/fd");
            threads = entriesOf("/proc/self/task");
        }
        ASSERT_TRUE(killDaemon()) << death;
        if (death % kDeathsOfABus == kDeathsOfABus - 1)
            bus.restart();
    }
    connection.startProcessesWithKey(kKey);
    EXPECT_TRUE(hasList());
    EXPECT_LE(entriesOf("/proc/self/fd"), descriptors);  // the session's connection isn't made anew
    EXPECT_EQ(entriesOf("/proc/self/task"), threads);
}

}  // namespace
}  // namespace vantor
