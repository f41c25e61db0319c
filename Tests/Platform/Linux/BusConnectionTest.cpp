#include "Platform/Linux/BusConnection.h"

#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <systemd/sd-bus.h>

#include "Platform/Linux/LinuxClock.h"
#include "Tests/Support/BusTest.h"

namespace vantor {
namespace {

using test::BusPeer;
using test::runUntil;
using test::settle;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const BusAddressee kSignal{.peer = "", .path = "/a", .interface = "b.c", .member = "D"};

class BusConnectionTest : public test::BusTest {
protected:
    /// Notes the text that a signal carries.
    BusConnection::Handler notes() {
        return [this](sd_bus_message& message) {
            const char* text = "";
            EXPECT_GT(sd_bus_message_read(&message, "s", &text), 0);
            heard.emplace_back(text);
        };
    }
    /// What the bus calls `connection`.
    std::string nameOf(BusConnection& connection) {
        BusPeer asked(queue, bus.address());
        std::string name;
        asked.setAnswer([&](sd_bus_message* call) {
            name = sd_bus_message_get_sender(call);
            return sd_bus_reply_method_return(call, "");
        });
        const char* askedName = nullptr;
        EXPECT_GE(sd_bus_get_unique_name(asked.get(), &askedName), 0);
        auto to = kSignal;
        to.peer = askedName;
        const auto hello = connection.newCall(to);
        connection.send(*hello);
        EXPECT_TRUE(runUntil(queue, [&] { return !name.empty(); }));
        return name;
    }
};

TEST_F(BusConnectionTest, SignalsThatMatchAreHeard) {
    auto connection = connectionTo(bus.address());
    const auto slot = connection.onSignal(kSignal, notes());
    ASSERT_TRUE(settle(queue, connection));
    BusPeer peer(queue, bus.address());
    peer.emitSignal({.peer = "", .path = "/other", .interface = "b.c", .member = "D"}, "s", "no");
    peer.emitSignal({.peer = "", .path = "/a", .interface = "b.c", .member = "Other"}, "s", "no");
    peer.emitSignal(kSignal, "s", "yes");
    EXPECT_TRUE(runUntil(queue, [&] { return !heard.empty(); }));
    EXPECT_THAT(heard, ElementsAre("yes"));
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(BusConnectionTest, FirstArgumentNarrowsWhatIsHeard) {
    auto connection = connectionTo(bus.address());
    const auto slot = connection.onSignal(kSignal, notes(), "mine");
    ASSERT_TRUE(settle(queue, connection));
    BusPeer peer(queue, bus.address());
    peer.emitSignal(kSignal, "s", "other");
    peer.emitSignal(kSignal, "s", "mine");
    EXPECT_TRUE(runUntil(queue, [&] { return !heard.empty(); }));
    EXPECT_THAT(heard, ElementsAre("mine"));
}

TEST_F(BusConnectionTest, OnlyTheNamedPeerIsHeard) {
    BusPeer owner(queue, bus.address(), "test.Owner"), stranger(queue, bus.address());
    auto connection = connectionTo(bus.address());
    auto from = kSignal;
    from.peer = "test.Owner";
    const auto slot = connection.onSignal(from, notes());
    ASSERT_TRUE(settle(queue, connection));
    stranger.emitSignal(kSignal, "s", "stranger");
    owner.emitSignal(kSignal, "s", "owner");
    EXPECT_TRUE(runUntil(queue, [&] { return !heard.empty(); }));
    EXPECT_THAT(heard, ElementsAre("owner"));
}

TEST_F(BusConnectionTest, SignalThatAStrangerSendsToUsAloneIsIgnored) {
    BusPeer owner(queue, bus.address(), "test.Owner"), stranger(queue, bus.address());
    auto connection = connectionTo(bus.address());
    auto from = kSignal;
    from.peer = "test.Owner";
    const auto slot = connection.onSignal(from, notes());

    stranger.emitSignalTo(nameOf(connection), kSignal, "s", "forged");
    owner.emitSignal(kSignal, "s", "real");

    EXPECT_TRUE(runUntil(queue, [&] { return !heard.empty(); }));
    EXPECT_THAT(heard, ElementsAre("real"));
}

TEST_F(BusConnectionTest, DroppedSubscriptionIsSilent) {
    auto connection = connectionTo(bus.address());
    auto slot = connection.onSignal(kSignal, notes());
    ASSERT_TRUE(settle(queue, connection));
    slot = {};
    const auto other = connection.onSignal(kSignal, [&](sd_bus_message&) { heard.push_back("2"); });
    ASSERT_TRUE(settle(queue, connection));
    BusPeer(queue, bus.address()).emitSignal(kSignal, "s", "1");
    EXPECT_TRUE(runUntil(queue, [&] { return !heard.empty(); }));
    EXPECT_THAT(heard, ElementsAre("2"));
}

TEST_F(BusConnectionTest, CallIsAnswered) {
    BusPeer peer(queue, bus.address(), "test.Owner");
    peer.setAnswer(
        [](sd_bus_message* call) { return sd_bus_reply_method_return(call, "s", "hi"); });
    auto connection = connectionTo(bus.address());
    auto to = kSignal;
    to.peer = "test.Owner";
    const auto question = connection.newCall(to);
    const auto slot = connection.call(*question, notes());
    EXPECT_TRUE(runUntil(queue, [&] { return !heard.empty(); }));
    EXPECT_THAT(heard, ElementsAre("hi"));
}

TEST_F(BusConnectionTest, CallToNobodyIsAnsweredWithAnError) {
    auto connection = connectionTo(bus.address());
    auto to = kSignal;
    to.peer = "test.Nobody";
    const auto question = connection.newCall(to);
    const auto slot = connection.call(*question, [&](sd_bus_message& reply) {
        heard.push_back(sd_bus_message_is_method_error(&reply, nullptr) > 0 ? "error" : "answer");
    });
    EXPECT_TRUE(runUntil(queue, [&] { return !heard.empty(); }));
    EXPECT_THAT(heard, ElementsAre("error"));
}

TEST_F(BusConnectionTest, CallOnAnObjectOfOursIsHeardAndAnswered) {
    auto connection = connectionTo(bus.address());
    const auto slot = connection.onCall(kSignal, notes());
    const std::string name = nameOf(connection);
    std::string answers;
    BusPeer peer(queue, bus.address());
    const auto ask = [&](const char* path, const char* member, const char* text) {
        const auto noteAnswer = [](sd_bus_message* answer, void* noted, sd_bus_error*) {
            const bool isError = sd_bus_message_is_method_error(answer, nullptr) > 0;
            *static_cast<std::string*>(noted) += isError ? "error " : "answer ";
            return 0;
        };
        EXPECT_GE(sd_bus_call_method_async(peer.get(), nullptr, name.c_str(), path, "b.c", member,
                                           noteAnswer, &answers, "s", text),
                  0);
        EXPECT_GE(sd_bus_flush(peer.get()), 0);
    };
    ask("/other", "D", "no");
    ask("/a", "Other", "no");
    ask("/a", "D", "yes");
    EXPECT_TRUE(runUntil(queue, [&] { return answers.ends_with("answer "); }));
    EXPECT_EQ(answers, "error error answer ");
    EXPECT_THAT(heard, ElementsAre("yes"));
}

TEST_F(BusConnectionTest, LossIsToldOnce) {
    auto connection = connectionTo(bus.address());
    const auto observation = connection.onLoss([this] { heard.push_back("lost"); });
    ASSERT_TRUE(settle(queue, connection));
    EXPECT_THAT(heard, IsEmpty());
    bus.end();
    EXPECT_TRUE(runUntil(queue, [&] { return !heard.empty(); }));
    connection.open();
    EXPECT_THAT(heard, ElementsAre("lost"));
}

TEST_F(BusConnectionTest, FlushedSignalArrivesThoughTheSenderEndsAtOnce) {
    auto hearer = connectionTo(bus.address());
    const auto slot = hearer.onSignal(kSignal, notes());
    ASSERT_TRUE(settle(queue, hearer));
    {
        LinuxMainQueue neverRun;
        BusConnection sender(neverRun, log, {}, bus.address());
        const auto message = sender.newSignal(kSignal);
        ASSERT_GE(sd_bus_message_append(message.get(), "s", "last words"), 0);
        sender.send(*message);
        sender.flush(5);
    }
    EXPECT_TRUE(runUntil(queue, [&] { return !heard.empty(); }));
    EXPECT_THAT(heard, ElementsAre("last words"));
}

TEST_F(BusConnectionTest, NoBusIsToldOnce) {
    auto connection = connectionTo(std::nullopt);
    EXPECT_FALSE(connection.open());
    EXPECT_FALSE(connection.onSignal(kSignal, notes()));
    EXPECT_FALSE(connection.newSignal(kSignal));
    EXPECT_FALSE(connection.newCall(kSignal));
    connection.flush(5);
    EXPECT_THAT(log.lines, ElementsAre("Test bus: there is none; tests stand still"));
}

TEST_F(BusConnectionTest, BusThatRefusesIsToldOnce) {
    const test::TemporaryFolder folder;
    for (const char* address : {"unix:path=", "nonsense", ""}) {
        log.lines.clear();
        auto connection = connectionTo(address == std::string("unix:path=")
                                           ? address + (folder / "nobody").string()
                                           : address);
        connection.open();
        EXPECT_FALSE(connection.open()) << address;
        EXPECT_THAT(log.lines, ElementsAre(HasSubstr("tests stand still"))) << address;
    }
}

TEST_F(BusConnectionTest, BusThatDiesIsToldOnceAndCallsAreAnsweredWithErrors) {
    auto connection = connectionTo(bus.address());
    const auto slot = connection.onSignal(kSignal, notes());
    ASSERT_TRUE(settle(queue, connection));
    bus.freeze();
    auto to = kSignal;
    to.peer = "test.Nobody";
    const auto question = connection.newCall(to);
    const auto reply = connection.call(*question, [&](sd_bus_message& answer) {
        heard.push_back(sd_bus_message_is_method_error(&answer, nullptr) > 0 ? "error" : "answer");
    });
    bus.end();
    EXPECT_TRUE(runUntil(queue, [&] { return !log.lines.empty(); }));
    EXPECT_FALSE(connection.open());
    EXPECT_FALSE(connection.newSignal(kSignal));
    queue.runOnce(0.01);
    EXPECT_THAT(heard, ElementsAre("error"));
    EXPECT_THAT(log.lines, ElementsAre(HasSubstr("tests stand still")));
}

TEST_F(BusConnectionTest, BusThatIsWaitedForIsFoundAgainAndTheLogSaysSo) {
    auto connection = connectionTo(bus.address());
    const auto observation = connection.onReturn([this] { heard.push_back("returned"); });
    ASSERT_TRUE(connection.open());
    ASSERT_TRUE(settle(queue, connection));
    bus.restart();
    EXPECT_TRUE(runUntil(queue, [&] { return log.lines.size() == 2; }));
    EXPECT_THAT(heard, ElementsAre("returned"));
    EXPECT_THAT(log.lines, ElementsAre(HasSubstr("tests stand still"), "Test bus: it is back"));
    EXPECT_TRUE(connection.open());
}

TEST_F(BusConnectionTest, BusThatComesLateIsFoundWhereItIsWaitedFor) {
    bus.end();
    auto connection = connectionTo(bus.address());
    EXPECT_FALSE(connection.open());
    const auto observation = connection.onReturn([this] { heard.push_back("returned"); });
    bus.restart();
    EXPECT_TRUE(runUntil(queue, [&] { return !heard.empty(); }));
    EXPECT_THAT(log.lines, ElementsAre(HasSubstr("tests stand still")));
}

TEST_F(BusConnectionTest, MuteBusHoldsNobodyUp) {
    bus.freeze();
    const LinuxClock clock;
    const double before = clock.monotonic();
    auto connection = connectionTo(bus.address());
    const auto slot = connection.onSignal(kSignal, notes());
    const auto message = connection.newSignal(kSignal);
    ASSERT_TRUE(message);
    connection.send(*message);
    queue.runOnce(0);
    EXPECT_LT(clock.monotonic(), before + 0.5);
    connection.flush(0.02);
    EXPECT_LT(clock.monotonic(), before + 5);
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(BusConnectionTest, SlotsMayOutliveTheirConnection) {
    BusConnection::Slot slot;
    {
        auto connection =
            std::make_unique<BusConnection>(queue, log, BusConnection::Wording{}, bus.address());
        slot = connection->onSignal(kSignal, notes());
        ASSERT_TRUE(settle(queue, *connection));
    }
    BusPeer(queue, bus.address()).emitSignal(kSignal, "s", "late");
    queue.runOnce(0.01);
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(BusConnectionTest, ConnectionAtRestWakesNobody) {
    auto connection = connectionTo(bus.address());
    const auto slot = connection.onSignal(kSignal, notes());
    ASSERT_TRUE(settle(queue, connection));
    queue.runOnce(0);  // what settling left behind
    const LinuxClock clock;
    const double before = clock.monotonic();
    queue.runOnce(0.05);
    EXPECT_GE(clock.monotonic(), before + 0.05);
}

}  // namespace
}  // namespace vantor
