#include "Programs/vantorbar-daemon/ProcessService.h"

#include <string>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Platform/Simulated/SimulatedClock.h"
#include "Platform/Simulated/SimulatedFacilities.h"
#include "Platform/Simulated/SimulatedProcessSource.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr DaemonRequest kStart{DaemonOperation::startRequestWithKey, kProcessesKey};
constexpr DaemonRequest kStop{DaemonOperation::stopRequestWithKey, kProcessesKey};
constexpr DaemonRequest kCombined{.operation = DaemonOperation::enableHierachy};
constexpr DaemonRequest kSeparate{.operation = DaemonOperation::disableHierachy};

/// Notes "client first-record seconds" of each list; time counts from the start of the test.
class ProcessServiceTest : public testing::Test, public ProcessService::Outlet {
protected:
    ProcessServiceTest() {
        source.start(5, "a");
        source.start(6, "b", 5);
        source.setSession(6, 5);
    }
    void sendProcesses(const std::string& client,
                       const std::vector<ProcessRecord>& records) override {
        lists.push_back(fmt::format("{} {} {:.0f} at {:.1f}", client, records.at(0).name,
                                    records.at(0).percent, queue.now()));
    }
    void runUntil(double time) { queue.runUntil(time); }
    void enter(const std::string& client) { EXPECT_TRUE(service.addClient(client, 1000)); }

    simulated::SimulatedMainQueue queue{0, 0};
    simulated::SimulatedClock clock{queue};
    simulated::SimulatedProcessSource source{queue};
    simulated::SimulatedSystemLog log{nullptr};
    std::vector<std::string> lists;
    std::vector<double> alone;
    ProcessService service{
        {queue, clock, source, log}, *this, [this] { alone.push_back(queue.now()); }};
};

TEST_F(ProcessServiceTest, FirstListComesAtOnceAndThenOneEveryTwoSeconds) {
    enter("x");
    runUntil(1);
    service.handle("x", kStart);
    source.spend(5, 20);
    runUntil(1.5);
    EXPECT_THAT(lists, ElementsAre("x a 100 at 1.2"));
    source.spend(5, 20);
    runUntil(5.3);
    EXPECT_THAT(lists, ElementsAre("x a 100 at 1.2", "x a 10 at 3.2", "x a 0 at 5.2"));
}

TEST_F(ProcessServiceTest, NothingIsReadWhileNobodyAsks) {
    enter("x");
    runUntil(30);
    EXPECT_EQ(source.readings(), 0);
    service.handle("x", kStart);
    runUntil(31);
    service.handle("x", kStop);
    const int readings = source.readings();
    runUntil(300);
    EXPECT_EQ(source.readings(), readings);
    EXPECT_THAT(lists, SizeIs(1));
}

TEST_F(ProcessServiceTest, StoppedAsOftenAsStarted) {
    enter("x");
    service.handle("x", kStart);
    service.handle("x", kStart);
    service.handle("x", kStop);
    runUntil(3);
    EXPECT_THAT(lists, SizeIs(2)) << "one stop leaves the other";
    service.handle("x", kStop);
    runUntil(9);
    EXPECT_THAT(lists, SizeIs(2));
}

TEST_F(ProcessServiceTest, ReadingOfTheLastSecondsIsComparedWithAtOnce) {
    enter("x");
    service.handle("x", kStart);
    runUntil(0.5);
    service.handle("x", kStop);
    source.spend(5, 30);
    runUntil(3.2);
    lists.clear();
    service.handle("x", kStart);
    EXPECT_THAT(lists, ElementsAre("x a 10 at 3.2"));
}

TEST_F(ProcessServiceTest, UseSinceLongAgoIsNeverToldAsUseOfNow) {
    enter("x");
    enter("y");
    service.handle("x", kStart);
    runUntil(0.5);
    service.handle("x", kStop);
    source.spend(5, 3000);
    runUntil(30);
    lists.clear();
    service.handle("x", kStart);
    service.handle("y", kStart);
    EXPECT_THAT(lists, IsEmpty());
    runUntil(30.3);
    EXPECT_THAT(lists, ElementsAre("x a 0 at 30.2", "y a 0 at 30.2"));
}

TEST_F(ProcessServiceTest, WhoComesLaterIsSentTheLatestListAtOnceAndKeepsThePaceOfAll) {
    enter("x");
    enter("y");
    service.handle("x", kStart);
    runUntil(1);
    const int readings = source.readings();
    service.handle("y", kStart);
    EXPECT_EQ(source.readings(), readings);
    runUntil(2.3);
    EXPECT_THAT(lists, ElementsAre("x a 0 at 0.2", "y a 0 at 1.0", "x a 0 at 2.2", "y a 0 at 2.2"));
}

TEST_F(ProcessServiceTest, StartingAndStoppingAllTheTimeReadsNoMoreThanFiveTimesASecond) {
    enter("x");
    for (int step = 1; step <= 1000; ++step) {
        service.handle("x", kStart);
        runUntil(step * 0.001);
        service.handle("x", kStop);
    }
    EXPECT_LE(source.readings(), 6);
}

TEST_F(ProcessServiceTest, HierarchyIsEachClientsOwn) {
    enter("x");
    enter("y");
    service.handle("x", kCombined);
    service.handle("x", kStart);
    service.handle("y", kStart);
    source.spend(6, 10);
    runUntil(0.3);
    EXPECT_THAT(lists, ElementsAre("x a 50 at 0.2", "y b 50 at 0.2"));
    lists.clear();
    service.handle("x", kSeparate);
    source.spend(6, 20);
    runUntil(2.3);
    EXPECT_THAT(lists, ElementsAre("x b 10 at 2.2", "y b 10 at 2.2"));
}

TEST_F(ProcessServiceTest, WhatSiblingsAskIsNotOfferedAndToldOnce) {
    enter("x");
    for (int again = 0; again < 2; ++again) {
        service.handle("x", {DaemonOperation::startRequestWithKey, 2});
        service.handle("x", {DaemonOperation::stopRequestWithKey, -3});
        service.handle("x", {.operation = DaemonOperation::smartTemps});
        service.handle("x", {.operation = DaemonOperation::setFanSet});
    }
    runUntil(10);
    EXPECT_THAT(log.lines(),
                ElementsAre("StartRequestWithKey 2: not offered here",
                            "StopRequestWithKey -3: not offered here",
                            "SmartTemps: not offered here", "SetFanSet: not offered here"));
    EXPECT_THAT(lists, IsEmpty());
    EXPECT_EQ(source.readings(), 0);
}

TEST_F(ProcessServiceTest, AMinuteWithoutClientsIsTold) {
    runUntil(59.9);
    EXPECT_THAT(alone, IsEmpty());
    runUntil(60.1);
    EXPECT_THAT(alone, ElementsAre(60));
    runUntil(120.1);
    EXPECT_THAT(alone, ElementsAre(60, 120));
}

TEST_F(ProcessServiceTest, MinuteCountsFromTheLastClientsLeaving) {
    runUntil(40);
    enter("x");
    enter("y");
    service.handle("x", kStart);
    runUntil(100);
    service.removeClient("x");
    runUntil(200);
    EXPECT_THAT(alone, IsEmpty());
    service.removeClient("y");
    runUntil(250);
    EXPECT_THAT(alone, IsEmpty());
    runUntil(261);
    EXPECT_THAT(alone, ElementsAre(260));
}

TEST_F(ProcessServiceTest, WhoLeavesIsSentNothingAnyMore) {
    enter("x");
    service.handle("x", kStart);
    runUntil(1);
    service.removeClient("x");
    const int readings = source.readings();
    runUntil(9);
    EXPECT_THAT(lists, SizeIs(1));
    EXPECT_EQ(source.readings(), readings);
}

TEST_F(ProcessServiceTest, StrangersAreNotServed) {
    service.handle("x", kStart);
    runUntil(9);
    EXPECT_EQ(source.readings(), 0);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(ProcessServiceTest, ReadingThatFailsSendsNothingAndIsTriedAgain) {
    enter("x");
    source.setFailing(true);
    service.handle("x", kStart);
    runUntil(5);
    EXPECT_THAT(lists, IsEmpty());
    source.setFailing(false);
    runUntil(9);
    EXPECT_THAT(lists, ElementsAre("x a 0 at 8.0"));
}

}  // namespace
}  // namespace vantor
