#include "Programs/vantorbar-daemon/ProcessMeter.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Platform/Simulated/SimulatedClock.h"
#include "Platform/Simulated/SimulatedProcessSource.h"
#include "Tests/Support/AllocationCounter.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class ProcessMeterTest : public testing::Test {
protected:
    void readAfter(double seconds) {
        queue.moveTo(queue.now() + seconds);
        EXPECT_TRUE(meter.takeReading());
    }
    /// "name percent" of each record.
    std::vector<std::string> told(Hierarchy hierarchy = Hierarchy::separate,
                                  std::size_t count = 20) {
        std::vector<std::string> texts;
        for (const ProcessRecord& record : meter.busiest(count, hierarchy))
            texts.push_back(fmt::format("{} {:.1f}", record.name, record.percent));
        return texts;
    }

    simulated::SimulatedMainQueue queue{1000};
    simulated::SimulatedClock clock{queue};
    simulated::SimulatedProcessSource source{queue};
    ProcessMeter meter{source, clock};
};

TEST_F(ProcessMeterTest, BusiestComeFirstAndEqualOnesByNumber) {
    for (const int id : {5, 6, 7, 8})
        source.start(id, fmt::format("p{}", id));
    readAfter(1);
    source.spend(6, 40);
    source.spend(7, 100);
    source.spend(5, 40);
    readAfter(2);
    EXPECT_THAT(told(), ElementsAre("p7 50.0", "p5 20.0", "p6 20.0", "p8 0.0"));
}

TEST_F(ProcessMeterTest, OneReadingTellsNothing) {
    source.start(5, "a");
    source.spend(5, 100'000);
    readAfter(1);
    EXPECT_THAT(told(), IsEmpty());
}

TEST_F(ProcessMeterTest, ForgottenReadingIsNotComparedWith) {
    source.start(5, "a");
    readAfter(1);
    source.spend(5, 100);
    meter.forget();
    readAfter(1);
    EXPECT_THAT(told(), IsEmpty());
    source.spend(5, 10);
    readAfter(1);
    EXPECT_THAT(told(), ElementsAre("a 10.0"));
}

TEST_F(ProcessMeterTest, ListHasNoMoreThanWasAskedFor) {
    for (int id = 1; id <= 50; ++id)
        source.start(id, "p");
    readAfter(1);
    for (int id = 1; id <= 50; ++id)
        source.spend(id, static_cast<std::uint64_t>(id));
    readAfter(1);
    EXPECT_THAT(told(Hierarchy::separate, 3), ElementsAre("p 50.0", "p 49.0", "p 48.0"));
    EXPECT_THAT(told(), SizeIs(20));
    EXPECT_EQ(source.names(), 3 + 20) << "only those that are listed are named";
}

TEST_F(ProcessMeterTest, IdleProcessesFillTheList) {
    source.start(9, "busy");
    for (const int id : {3, 4, 5})
        source.start(id, fmt::format("idle{}", id));
    readAfter(1);
    source.spend(9, 1);
    readAfter(1);
    EXPECT_THAT(told(Hierarchy::separate, 3), ElementsAre("busy 1.0", "idle3 0.0", "idle4 0.0"));
}

TEST_F(ProcessMeterTest, HierarchyTellsAChildsUseUnderItsApplication) {
    source.start(30, "firefox");
    source.start(31, "Web Content", 30);
    source.start(32, "RDD", 31);
    source.start(33, "other");
    for (const int id : {31, 32})
        source.setSession(id, 30);
    readAfter(1);
    source.spend(31, 30);
    source.spend(32, 20);
    source.spend(33, 40);
    readAfter(1);
    EXPECT_THAT(told(Hierarchy::combined), ElementsAre("firefox 50.0", "other 40.0"));
    EXPECT_THAT(told(), ElementsAre("other 40.0", "Web Content 30.0", "RDD 20.0", "firefox 0.0"));
}

TEST_F(ProcessMeterTest, ReadingThatFailedChangesNothingAndTheNextSpansIt) {
    source.start(5, "a");
    readAfter(1);
    source.spend(5, 50);
    readAfter(1);
    source.setFailing(true);
    queue.moveTo(queue.now() + 1);
    EXPECT_FALSE(meter.takeReading());
    EXPECT_THAT(told(), ElementsAre("a 50.0"));
    source.setFailing(false);
    source.spend(5, 50);
    readAfter(1);
    EXPECT_THAT(told(), ElementsAre("a 25.0"));
}

TEST_F(ProcessMeterTest, ProcessThatWasMissedOnceIsNotToldUntilItWasReadTwice) {
    source.start(5, "a");
    source.spend(5, 5000);
    source.setHidden(5, true);
    readAfter(1);
    source.setHidden(5, false);
    readAfter(1);
    EXPECT_THAT(told(), IsEmpty());
    source.spend(5, 10);
    readAfter(1);
    EXPECT_THAT(told(), ElementsAre("a 10.0"));
}

TEST_F(ProcessMeterTest, ProcessBornBetweenIsToldAndOneThatDiedIsNot) {
    source.start(5, "old");
    readAfter(1);
    source.end(5);
    queue.moveTo(queue.now() + 1);
    source.start(5, "new");
    source.spend(5, 60);
    readAfter(1);
    EXPECT_THAT(told(), ElementsAre("new 30.0"));
}

TEST_F(ProcessMeterTest, AgeIsThatOfTheLastReading) {
    EXPECT_EQ(meter.age(), std::nullopt);
    readAfter(1);
    queue.moveTo(queue.now() + 3);
    EXPECT_EQ(meter.age(), 3);
}

TEST_F(ProcessMeterTest, ReadingAgainDoesNotAllocate) {
    for (int id = 1; id <= 300; ++id)
        source.start(id, "p");
    readAfter(1);
    readAfter(1);
    queue.moveTo(queue.now() + 1);
    const test::AllocationCounter counter;
    const bool isRead = meter.takeReading();
    EXPECT_EQ(counter.count(), 0u);
    EXPECT_TRUE(isRead);
}

}  // namespace
}  // namespace vantor
