#include "Platform/Simulated/SimulatedDaemon.h"

#include <memory>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Platform/DaemonProtocol.h"
#include "Tests/Support/World.h"

namespace vantor::simulated {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// A client that notes "seconds since the start: key count of records".
class SimulatedDaemonTest : public testing::Test, public DaemonClient {
protected:
    void daemonResponse(const PropertyValue::Dictionary& response) override {
        heard.push_back(fmt::format("{}: {} {}", now(), response.at("type").stringValue(),
                                    response.at("processes").array()->size()));
    }
    void interrupted() override { heard.push_back(fmt::format("{}: interrupted", now())); }
    void invalidated() override { heard.push_back(fmt::format("{}: invalidated", now())); }

    double now() const { return machine.mainQueue.now() - SimulatedMachine::kStart; }
    void start(std::int64_t key = 1) { link->call(DaemonProtocol::startRequestWithKey, {key}); }
    void stop(std::int64_t key = 1) { link->call(DaemonProtocol::stopRequestWithKey, {key}); }
    static PropertyValue records(std::size_t count) {
        return PropertyValue::Array(count, PropertyValue::Dictionary{{"name", "editor"}});
    }

    test::RecordedJournal journal;
    SimulatedMachine machine{SimulatedMachine::kStart, 0.002, &journal};
    SimulatedDaemon& daemon = machine.daemon;
    std::unique_ptr<DaemonConnection> link = daemon.connect(*this);
    std::vector<std::string> heard;
};

TEST_F(SimulatedDaemonTest, AnswersAtOnceAndEveryTwoSecondsUntilItIsStopped) {
    daemon.setProcesses(records(3));
    start();
    EXPECT_THAT(heard, IsEmpty());
    machine.run(4.5);
    stop();
    machine.run(10);
    EXPECT_THAT(heard, ElementsAre("0: 1 3", "2: 1 3", "4: 1 3"));
}

TEST_F(SimulatedDaemonTest, KeysAreAnsweredEachByItself) {
    daemon.setProcesses(records(1));
    start(1);
    machine.run(1);
    start(7);
    stop(1);
    machine.run(3);
    EXPECT_THAT(heard, ElementsAre("0: 1 1", "1: 7 1", "3: 7 1"));
}

TEST_F(SimulatedDaemonTest, ASecondRequestIsAnsweredAtOnceAndReplacesTheFirst) {
    daemon.setProcesses(records(1));
    start();
    machine.run(1);
    start();
    machine.run(2.5);
    EXPECT_THAT(heard, ElementsAre("0: 1 1", "1: 1 1", "3: 1 1"));
}

TEST_F(SimulatedDaemonTest, AnswersThatAStallHeldUpArriveOneAfterTheOther) {
    daemon.setProcesses(records(1));
    start();
    machine.run(1);
    machine.mainQueue.moveTo(machine.mainQueue.now() + 6);
    machine.mainQueue.runDueCalls();
    machine.run(1);
    EXPECT_THAT(heard, ElementsAre("0: 1 1", "7: 1 1", "7: 1 1", "7: 1 1", "8: 1 1"));
}

TEST_F(SimulatedDaemonTest, AnAnswerHeldUpKeepsItsPlaceAmongTheCallsDue) {
    daemon.setProcesses(records(1));
    start();
    machine.mainQueue.after(2.5, [this] { heard.push_back("call"); });
    machine.mainQueue.moveTo(machine.mainQueue.now() + 5);
    machine.mainQueue.runDueCalls();
    EXPECT_THAT(heard, ElementsAre("5: 1 1", "5: 1 1", "call", "5: 1 1"));
}

TEST_F(SimulatedDaemonTest, WithoutProcessesThereIsNoDaemon) {
    start();
    machine.run(5);
    daemon.setProcesses(records(1));
    machine.run(5);
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(SimulatedDaemonTest, WhatGoesAwayStaysAwayUntilItComesUpAndForgetsAllRequests) {
    daemon.setProcesses(records(1));
    start();
    machine.run(1);
    daemon.goDown();
    start();
    machine.run(5);
    daemon.comeUp();
    machine.run(5);
    EXPECT_THAT(heard, SizeIs(1));
    start();
    machine.run(1);
    EXPECT_THAT(heard, ElementsAre("0: 1 1", "11: 1 1"));
}

TEST_F(SimulatedDaemonTest, ComingUpIsPostedAsByAnotherProcess) {
    int posted = 0;
    const auto observation = machine.distributedNotifications.observe(
        std::string(kDaemonReady), [&](const Notification&) { ++posted; });
    daemon.comeUp();
    EXPECT_EQ(posted, 0);
    machine.run(0);
    EXPECT_EQ(posted, 1);
    EXPECT_THAT(journal.notifications, IsEmpty());
}

TEST_F(SimulatedDaemonTest, ACrashIsAnInterruption) {
    daemon.setProcesses(records(1));
    start();
    machine.run(1);
    daemon.crash();
    start();
    machine.run(5);
    EXPECT_THAT(heard, ElementsAre("0: 1 1", "1: interrupted"));
}

TEST_F(SimulatedDaemonTest, CallsAreToldWhetherOrNotAnybodyIsThere) {
    start();
    daemon.goDown();
    link->call(DaemonProtocol::disableHierachy, {});
    link->version([](std::int64_t, std::int64_t) {});
    EXPECT_THAT(journal.daemonCalls,
                ElementsAre("startRequestWithKey: 1", "disableHierachy", "version:"));
}

TEST_F(SimulatedDaemonTest, AClosedLinkHearsNothing) {
    daemon.setProcesses(records(1));
    start();
    link.reset();
    machine.run(5);
    daemon.crash();
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(SimulatedDaemonTest, ALinkMayOutliveIt) {
    auto other = std::make_unique<SimulatedDaemon>(machine.mainQueue,
                                                   machine.distributedNotifications, nullptr);
    link = other->connect(*this);
    other.reset();
    start();
    link->version([](std::int64_t, std::int64_t) {});
    link.reset();
    EXPECT_THAT(journal.daemonCalls, IsEmpty());
}

}  // namespace
}  // namespace vantor::simulated
