#include "Shared/VTRDaemonConnection.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Platform/DaemonProtocol.h"
#include "Shared/VTRPreferenceFunctions.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Notes the names of the processes, and what else it is told to do.
struct Listener final : VTRProcessesCallBackProtocol {
    explicit Listener(std::vector<std::string>& notes, std::string prefix = {})
        : heard(notes), mark(std::move(prefix)) {}
    void processesUpdated(const PropertyValue::Dictionary& response) override {
        std::string line = mark;
        if (const auto records = response.find("processes"); records != response.end())
            for (const PropertyValue& record : *records->second.array())
                line += record.dictionary()->contains("name")
                            ? record.dictionary()->at("name").stringValue()
                            : "?";
        heard.push_back(line);
        if (then)
            then();
    }

    std::vector<std::string>& heard;
    std::string mark;
    std::function<void()> then;
};

class VTRDaemonConnectionTest : public testing::Test {
protected:
    std::shared_ptr<Listener> listener(std::string prefix = {}) {
        return std::make_shared<Listener>(heard, std::move(prefix));
    }
    static PropertyValue processes(const char* name) {
        return PropertyValue::Array{PropertyValue::Dictionary{{"name", name}, {"c", 3.5}}};
    }

    test::World world;
    simulated::SimulatedDaemon& daemon = world.machine.daemon;
    std::vector<std::string>& calls = world.journal.daemonCalls;
    std::vector<std::string>& logged = world.journal.logLines;
    std::vector<std::string> heard;
    std::unique_ptr<VTRDaemonConnection> connection =
        std::make_unique<VTRDaemonConnection>(world.machine.ports());
};

TEST_F(VTRDaemonConnectionTest, ConnectsTwoSecondsAfterItWasMade) {
    world.machine.run(2);
    EXPECT_FALSE(connection->isConnected());
    world.machine.run(0.01);
    EXPECT_TRUE(connection->isConnected());
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(VTRDaemonConnectionTest, ARequestConnectsAtOnceAndOnlyOnce) {
    connection->smartTemps();
    EXPECT_FALSE(connection->isConnected());
    world.machine.run(0);
    EXPECT_TRUE(connection->isConnected());
    connection->startSMARTStatus();
    world.machine.run(5);
    EXPECT_EQ(daemon.linkCount(), 1U);
    EXPECT_THAT(calls, ElementsAre("smartTemps", "startSMARTStatus"));
}

TEST_F(VTRDaemonConnectionTest, EveryRequestIsSentUnderItsOwnName) {
    connection->stopProcessesWithKey(-1);
    connection->smartTemps();
    connection->startSMARTStatus();
    connection->stopSMARTStatus();
    connection->startSMARTTemps();
    connection->stopSMARTTemps();
    connection->refreshDHCP("en0");
    connection->toggleAirPortPower();
    connection->setNetworkSet("Home");
    connection->setFanSet({PropertyValue::Dictionary{{"fan", 1.0}}});
    EXPECT_THAT(calls, IsEmpty());
    world.machine.run(0);
    EXPECT_THAT(calls, ElementsAre("stopRequestWithKey: -1", "smartTemps", "startSMARTStatus",
                                   "stopSMARTStatus", "startSMARTTemps", "stopSMARTTemps",
                                   "refreshDHCP: en0", "toggleAirPortPower", "setNetworkSet: Home",
                                   "setFanSet: "));
}

TEST_F(VTRDaemonConnectionTest, StartingProcessesTellsTheDaemonWhetherToCombineThem) {
    VTRSetBoolForKey("ProcessesCombine", true);
    connection->startProcessesWithKey(1);
    world.machine.run(0);
    VTRSetBoolForKey("ProcessesCombine", false);
    connection->startProcessesWithKey(std::numeric_limits<std::int64_t>::min());
    world.machine.run(0);
    EXPECT_THAT(calls, ElementsAre("enableHierachy", "startRequestWithKey: 1", "disableHierachy",
                                   "startRequestWithKey: -9223372036854775808"));
    EXPECT_THAT(logged, ElementsAre("startProcessesWithKey 1",
                                    "startProcessesWithKey -9223372036854775808"));
}

TEST_F(VTRDaemonConnectionTest, TwoOpeningsAskTwice) {
    connection->startProcessesWithKey(1);
    connection->startProcessesWithKey(1);
    world.machine.run(0);
    EXPECT_EQ(std::ranges::count(calls, "startRequestWithKey: 1"), 2);
}

TEST_F(VTRDaemonConnectionTest, ListenersAreToldInTheOrderOfAdding) {
    const auto twice = listener("twice ");
    connection->addListener(twice, 1);
    connection->addListener(listener("once "), 1);
    connection->addListener(nullptr, 1);
    connection->addListener(twice, 1);
    connection->addListener(listener("other key "), 2);
    daemon.setProcesses(processes("editor"));
    connection->startProcessesWithKey(1);
    world.machine.run(1);
    EXPECT_THAT(heard, ElementsAre("twice editor", "once editor", "twice editor"));
}

TEST_F(VTRDaemonConnectionTest, AResponseWithoutListenersIsStored) {
    daemon.setProcesses(processes("editor"));
    connection->addListener(listener(), 2);
    connection->startProcessesWithKey(1);
    world.machine.run(1);
    ASSERT_NE(connection->storageForKey(1), nullptr);
    EXPECT_EQ(connection->storageForKey(1)->at("processes"), processes("editor"));
    EXPECT_EQ(connection->storageForKey(2), nullptr);
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(VTRDaemonConnectionTest, TheLastResponseIsTheOneThatIsKept) {
    daemon.setProcesses(processes("first"));
    connection->startProcessesWithKey(1);
    world.machine.run(1);
    daemon.setProcesses(processes("second"));
    world.machine.run(1.5);
    EXPECT_EQ(connection->storageForKey(1)->at("processes"), processes("second"));
}

TEST_F(VTRDaemonConnectionTest, AResponseWithoutAKeyInTextIsDropped) {
    connection->addListener(listener(), 1);
    connection->daemonResponse({{"processes", PropertyValue::Array{}}});
    connection->daemonResponse({{"type", std::int64_t{1}}});
    EXPECT_EQ(connection->storageForKey(1), nullptr);
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(VTRDaemonConnectionTest, AListenerIsHeldAndMayEndItAll) {
    daemon.setProcesses(processes("editor"));
    auto ending = listener();
    ending->then = [this] {
        connection->cleanup();
        connection.reset();
    };
    connection->addListener(std::move(ending), 1);
    connection->startProcessesWithKey(1);
    world.machine.run(5);
    EXPECT_THAT(heard, ElementsAre("editor"));
    EXPECT_EQ(daemon.linkCount(), 0U);
}

TEST_F(VTRDaemonConnectionTest, ARequestAfterAnInterruptionConnectsAnew) {
    daemon.setProcesses(processes("editor"));
    connection->addListener(listener(), 1);
    world.machine.run(3);
    daemon.crash();
    EXPECT_FALSE(connection->isConnected());
    EXPECT_THAT(logged, ElementsAre("interupption"));
    world.machine.run(60);
    EXPECT_FALSE(connection->isConnected());
    connection->startProcessesWithKey(1);
    world.machine.run(0);
    EXPECT_TRUE(connection->isConnected());
    EXPECT_THAT(calls, SizeIs(2));
}

TEST_F(VTRDaemonConnectionTest, AnAbsentDaemonIsAnInvalidation) {
    world.machine.run(3);
    daemon.refuse();
    EXPECT_FALSE(connection->isConnected());
    EXPECT_THAT(logged, ElementsAre("invalidation"));
}

TEST_F(VTRDaemonConnectionTest, ADaemonThatStartedIsConnectedTwoSecondsLater) {
    world.machine.run(3);
    daemon.comeUp();
    world.machine.run(0);
    EXPECT_FALSE(connection->isConnected());
    EXPECT_EQ(daemon.linkCount(), 0U);
    world.machine.run(2);
    EXPECT_FALSE(connection->isConnected());
    world.machine.run(0.01);
    EXPECT_TRUE(connection->isConnected());
    EXPECT_THAT(logged, IsEmpty());
}

TEST_F(VTRDaemonConnectionTest, ADaemonThatStartedIsConnectedWhereNoLinkWasBefore) {
    connection->daemonAvailable();
    EXPECT_FALSE(connection->isConnected());
    EXPECT_THAT(logged, IsEmpty());
    world.machine.run(2.01);
    EXPECT_TRUE(connection->isConnected());
}

TEST_F(VTRDaemonConnectionTest, ALinkThatWasReplacedIsNotHeardAnyMore) {
    daemon.setProcesses(processes("editor"));
    connection->addListener(listener(), 1);
    connection->startProcessesWithKey(1);
    world.machine.run(0.5);
    connection->daemonAvailable();
    world.machine.run(10);
    EXPECT_THAT(heard, SizeIs(1));
}

TEST_F(VTRDaemonConnectionTest, CleanupClosesDropsAndStopsObserving) {
    daemon.setProcesses(processes("editor"));
    auto held = listener();
    const std::weak_ptr<Listener> watched = held;
    connection->addListener(std::move(held), 1);
    connection->startProcessesWithKey(1);
    world.machine.run(3);
    heard.clear();
    connection->cleanup();
    EXPECT_TRUE(watched.expired());
    EXPECT_FALSE(connection->isConnected());
    daemon.comeUp();
    world.machine.run(10);
    EXPECT_FALSE(connection->isConnected());
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(VTRDaemonConnectionTest, TheSharedOneIsMadeOnceAndAnewAfterCleanup) {
    VTRDaemonConnection& first = VTRDaemonConnection::sharedConnection();
    EXPECT_EQ(&first, &VTRDaemonConnection::sharedConnection());
    first.addListener(listener(), 1);
    first.connect();
    EXPECT_EQ(daemon.linkCount(), 1U);
    VTRDaemonConnection::cleanupShared();
    EXPECT_EQ(daemon.linkCount(), 0U);
    EXPECT_EQ(world.context.existingDaemonConnection(), nullptr);
    VTRDaemonConnection::cleanupShared();
    EXPECT_EQ(world.context.existingDaemonConnection(), nullptr);
    world.machine.run(10);  // what the first one had put off
    EXPECT_FALSE(VTRDaemonConnection::sharedConnection().isConnected());
}

TEST_F(VTRDaemonConnectionTest, TheVersionIsAskedForAtOnce) {
    daemon.setProcesses(PropertyValue::Array{});
    daemon.setVersion(std::pair<std::int64_t, std::int64_t>{5, 2});
    std::pair<std::int64_t, std::int64_t> version;
    connection->version([&](std::int64_t first, std::int64_t second) {
        version = {first, second};
    });
    EXPECT_THAT(calls, ElementsAre("version:"));
    world.machine.run(0);
    EXPECT_EQ(version, (std::pair<std::int64_t, std::int64_t>(5, 2)));
}

TEST_F(VTRDaemonConnectionTest, InformationOfAProcessIsAskedForOnce) {
    auto& workspace = world.machine.workspace;
    workspace.setApplicationInformation(7, PropertyValue::Dictionary{{"name", "editor"}});
    ASSERT_NE(connection->lsInforForPid(7), nullptr);
    EXPECT_EQ(connection->lsInforForPid(7)->at("name"), PropertyValue("editor"));
    EXPECT_EQ(workspace.informationRequests(), 1);
    connection->clearLsInfoCache();
    connection->lsInforForPid(7);
    EXPECT_EQ(workspace.informationRequests(), 2);
}

TEST_F(VTRDaemonConnectionTest, AProcessWithoutInformationIsNotAskedForAgain) {
    auto& workspace = world.machine.workspace;
    workspace.setApplicationInformation(7, PropertyValue::Dictionary{});
    ASSERT_NE(connection->lsInforForPid(7), nullptr);
    EXPECT_TRUE(connection->lsInforForPid(7)->empty());
    EXPECT_EQ(workspace.informationRequests(), 1);
}

TEST_F(VTRDaemonConnectionTest, AProcessThatIsNoApplicationIsAskedForAgain) {
    EXPECT_EQ(connection->lsInforForPid(8), nullptr);
    EXPECT_EQ(connection->lsInforForPid(8), nullptr);
    EXPECT_EQ(world.machine.workspace.informationRequests(), 2);
}

}  // namespace
}  // namespace vantor
