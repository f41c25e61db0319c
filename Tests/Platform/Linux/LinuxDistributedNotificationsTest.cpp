#include "Platform/Linux/LinuxDistributedNotifications.h"

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <systemd/sd-bus.h>

#include "Tests/Support/BusTest.h"

namespace vantor {
namespace {

using test::BusPeer;
using test::runUntil;
using test::settle;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const BusAddressee kPosted{.peer = "",
                           .path = "/com/kolbrin/vantorbar/Notifications",
                           .interface = "com.kolbrin.vantorbar.Notifications",
                           .member = "Posted"};

/// One process's end: what it hears is noted as "name key=value ...".
struct Process {
    Process(LinuxMainQueue& queue, SystemLog& log, std::optional<std::string> address)
        : bus(queue, log, {"Session bus", "notifications stay in this process"},
              std::move(address)),
          notifications(queue, bus) {}

    void hear(const std::string& name) {
        observations.push_back(notifications.observe(name, [this](const Notification& heardNow) {
            std::string text(heardNow.name);
            for (const auto& [key, value] : heardNow.info)
                text += " " + key + "=" + value;
            heard.push_back(text);
        }));
    }

    BusConnection bus;
    LinuxDistributedNotifications notifications;
    std::vector<Observation> observations;
    std::vector<std::string> heard;
};

class LinuxDistributedNotificationsTest : public test::BusTest {
protected:
    Process one{queue, log, bus.address()};
    Process other{queue, log, bus.address()};
};

TEST_F(LinuxDistributedNotificationsTest, OtherProcessesHearWhatIsPosted) {
    other.hear("Changed");
    ASSERT_TRUE(settle(queue, other.bus));
    one.notifications.post("Changed", {{"key", "CPU_Text"}, {"resetKey", ""}});
    EXPECT_TRUE(runUntil(queue, [&] { return !other.heard.empty(); }));
    EXPECT_THAT(other.heard, ElementsAre("Changed key=CPU_Text resetKey="));
}

TEST_F(LinuxDistributedNotificationsTest, OwnObserversHearOnceAndNotInsidePost) {
    one.hear("A");
    one.hear("B");
    ASSERT_TRUE(settle(queue, one.bus));
    one.notifications.post("A", {{"k", "v"}});
    EXPECT_THAT(one.heard, IsEmpty());
    // The echo of A is on the bus before the second post, and so comes before its reply.
    ASSERT_TRUE(settle(queue, one.bus));
    one.notifications.post("B", {});
    ASSERT_TRUE(settle(queue, one.bus));
    EXPECT_THAT(one.heard, ElementsAre("A k=v", "B"));
}

TEST_F(LinuxDistributedNotificationsTest, OrderOfPostingIsKept) {
    other.hear("N");
    ASSERT_TRUE(settle(queue, other.bus));
    for (const char* number : {"1", "2", "3"})
        one.notifications.post("N", {{"n", number}});
    EXPECT_TRUE(runUntil(queue, [&] { return other.heard.size() == 3; }));
    EXPECT_THAT(other.heard, ElementsAre("N n=1", "N n=2", "N n=3"));
}

TEST_F(LinuxDistributedNotificationsTest, ProgramThatEndsRightAfterPostingIsHeard) {
    other.hear("Changed");
    ASSERT_TRUE(settle(queue, other.bus));
    {
        LinuxMainQueue neverRun;
        Process(neverRun, log, bus.address()).notifications.post("Changed", {});
    }
    EXPECT_TRUE(runUntil(queue, [&] { return !other.heard.empty(); }));
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(LinuxDistributedNotificationsTest, ArrivalIsToldBeforeTheObservers) {
    other.notifications.setArrived([&] { other.heard.push_back("arrived"); });
    other.hear("Changed");
    ASSERT_TRUE(settle(queue, other.bus));
    one.notifications.post("Changed", {});
    EXPECT_TRUE(runUntil(queue, [&] { return other.heard.size() >= 2; }));
    EXPECT_THAT(other.heard, ElementsAre("arrived", "Changed"));
}

TEST_F(LinuxDistributedNotificationsTest, OwnPostsAreNoArrivals) {
    one.notifications.setArrived([&] { one.heard.push_back("arrived"); });
    one.hear("Changed");
    ASSERT_TRUE(settle(queue, one.bus));
    one.notifications.post("Changed", {});
    ASSERT_TRUE(settle(queue, one.bus));
    EXPECT_THAT(one.heard, ElementsAre("Changed"));
}

TEST_F(LinuxDistributedNotificationsTest, MessagesThatAreNotOursAreIgnored) {
    one.hear("N");
    ASSERT_TRUE(settle(queue, one.bus));
    BusPeer peer(queue, bus.address());
    peer.emitSignal(kPosted, "");
    peer.emitSignal(kPosted, "s", "N");
    peer.emitSignal(kPosted, "sa{sv}", "N", 1, "key", "s", "value");
    peer.emitSignal(kPosted, "a{ss}s", 0, "N");
    peer.emitSignal(kPosted, "sa{ss}s", "N", 0, "more");
    peer.emitSignal(kPosted, "sa{ss}", "N", 1, "key", "good");
    EXPECT_TRUE(runUntil(queue, [&] { return !one.heard.empty(); }));
    EXPECT_THAT(one.heard, ElementsAre("N key=good"));
}

TEST_F(LinuxDistributedNotificationsTest, DictionariesThatAreTooLargeAreIgnored) {
    one.hear("N");
    ASSERT_TRUE(settle(queue, one.bus));
    NotificationInfo many;
    for (int number = 0; number < 1000; ++number)
        many.emplace(std::to_string(number), "");
    other.notifications.post("N", many);
    other.notifications.post("N", {{"key", std::string(1'000'000, 'x')}});
    other.notifications.post("N", {{"key", "good"}});
    EXPECT_TRUE(runUntil(queue, [&] { return !one.heard.empty(); }));
    EXPECT_THAT(one.heard, ElementsAre("N key=good"));
}

TEST_F(LinuxDistributedNotificationsTest, TextThatNoBusCarriesStaysInTheProcess) {
    one.hear("N");
    other.hear("N");
    ASSERT_TRUE(settle(queue, other.bus));
    one.notifications.post("N", {{"key", "\xff"}});
    one.notifications.post("N", {{"key", "good"}});
    EXPECT_TRUE(runUntil(queue, [&] { return !other.heard.empty() && one.heard.size() == 2; }));
    EXPECT_THAT(one.heard, ElementsAre("N key=\xff", "N key=good"));
    EXPECT_THAT(other.heard, ElementsAre("N key=good"));
}

TEST_F(LinuxDistributedNotificationsTest, WithoutABusTheyStayInTheProcessAndTheLogSaysSoOnce) {
    Process alone(queue, log, std::nullopt);
    EXPECT_THAT(log.lines, IsEmpty());
    alone.hear("N");
    alone.notifications.post("N", {{"k", "1"}});
    alone.notifications.post("N", {{"k", "2"}});
    EXPECT_THAT(alone.heard, IsEmpty());
    queue.runOnce(0);
    EXPECT_THAT(alone.heard, ElementsAre("N k=1", "N k=2"));
    EXPECT_THAT(log.lines, ElementsAre(HasSubstr("notifications stay in this process")));
}

TEST_F(LinuxDistributedNotificationsTest, TheyStayInTheProcessOnceTheBusDied) {
    one.hear("N");
    ASSERT_TRUE(settle(queue, one.bus));
    bus.end();
    ASSERT_TRUE(runUntil(queue, [&] { return !log.lines.empty(); }));
    one.notifications.post("N", {});
    queue.runOnce(0);
    EXPECT_THAT(one.heard, ElementsAre("N"));
    EXPECT_THAT(log.lines, ElementsAre(HasSubstr("notifications stay in this process")));
}

TEST_F(LinuxDistributedNotificationsTest, TheyReachOthersAgainWhenTheBusIsBack) {
    one.hear("M");
    other.hear("N");
    ASSERT_TRUE(settle(queue, one.bus) && settle(queue, other.bus));
    bus.restart();
    ASSERT_TRUE(runUntil(queue, [&] { return log.lines.size() == 4; }));  // lost, and back
    ASSERT_TRUE(settle(queue, other.bus));
    one.notifications.post("N", {});
    EXPECT_TRUE(runUntil(queue, [&] { return !other.heard.empty(); }));
    EXPECT_THAT(other.heard, ElementsAre("N"));
}

TEST_F(LinuxDistributedNotificationsTest, EndedObservationIsSilent) {
    one.hear("N");
    one.notifications.post("N", {});
    one.observations.clear();
    queue.runOnce(0);
    EXPECT_THAT(one.heard, IsEmpty());
}

TEST_F(LinuxDistributedNotificationsTest, CallsThatComeAfterItsEndDoNothing) {
    auto ended = std::make_unique<Process>(queue, log, std::nullopt);
    ended->hear("N");
    ended->notifications.post("N", {});
    ended.reset();
    queue.runOnce(0);
    SUCCEED();  // a sanitizer would tell
}

}  // namespace
}  // namespace vantor
