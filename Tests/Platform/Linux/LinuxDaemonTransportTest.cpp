#include "Platform/Linux/LinuxDaemonTransport.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <systemd/sd-bus.h>

#include "Platform/DaemonProtocol.h"
#include "Tests/Support/BusTest.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;
using test::BusPeer;
using test::PrivateBus;
using test::runUntil;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kService = "com.kolbrin.vantorbardaemon";

std::ptrdiff_t openDescriptors() {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator{});
}
std::ptrdiff_t threads() {
    return std::distance(fs::directory_iterator("/proc/self/task"), fs::directory_iterator{});
}

/// "StartRequestWithKey x 1", and how often an answer was wanted.
std::string described(sd_bus_message* call) {
    const std::string signature = sd_bus_message_get_signature(call, 1);
    std::string text = fmt::format("{} {}", sd_bus_message_get_member(call), signature);
    std::int64_t key = 0;
    const char* letters = nullptr;
    if (signature == "x" && sd_bus_message_read(call, "x", &key) > 0)
        text += fmt::format(" {}", key);
    if (signature == "s" && sd_bus_message_read(call, "s", &letters) > 0)
        text += fmt::format(" {}", letters);
    return text + (sd_bus_message_get_expect_reply(call) > 0 ? " answer" : "");
}

/// Somebody who calls clients of the daemon.
class Caller {
public:
    Caller(LinuxMainQueue& queue, const std::string& address, const std::string& name = {})
        : peer_(queue, address, name) {
        peer_.setAnswer([this](sd_bus_message* call) {
            calls.push_back(described(call));
            client = sd_bus_message_get_sender(call);
            return onCall ? onCall(call) : 1;
        });
    }

    template <class... Arguments>
    void respond(const std::string& to, const char* types, Arguments... arguments) {
        sd_bus_message* call = nullptr;
        ASSERT_GE(sd_bus_message_new_method_call(peer_.get(), &call, to.c_str(),
                                                 "/com/kolbrin/vantorbarclient",
                                                 "com.kolbrin.vantorbarclient", "DaemonResponse"),
                  0);
        const BusMessage message(call);
        ASSERT_GE(sd_bus_message_append(call, types, arguments...), 0);
        ASSERT_GE(sd_bus_message_set_expect_reply(call, 0), 0);
        ASSERT_GE(sd_bus_send(peer_.get(), call, nullptr), 0);
        ASSERT_GE(sd_bus_flush(peer_.get()), 0);
    }
    void respondWithType(const std::string& to, const char* type) {
        respond(to, "a{sv}", 1, "type", "s", type);
    }
    BusPeer& peer() noexcept { return peer_; }

    std::vector<std::string> calls;
    std::string client;
    std::function<int(sd_bus_message* call)> onCall;

private:
    BusPeer peer_;
};

class LinuxDaemonTransportTest : public test::BusTest, public DaemonClient {
protected:
    void daemonResponse(const PropertyValue::Dictionary& response) override {
        responses.push_back(response);
        heard.push_back(response.contains("type") ? response.at("type").stringValue() : "untyped");
    }
    void interrupted() override {
        heard.push_back("interrupted");
        link.reset();
    }
    void invalidated() override {
        heard.push_back("invalidated");
        link.reset();
    }

    /// Over `sessionBus`, or else `systemBus`.
    void connectTo(std::optional<std::string> sessionBus, std::optional<std::string> systemBus) {
        LinuxDaemonTransport transport(queue, std::move(sessionBus), std::move(systemBus));
        link = transport.connect(*this);
    }
    /// A link that the daemon has heard of.
    void connectToDaemon(Caller& daemon) {
        connectTo(bus.address(), {});
        const std::size_t callsBefore = daemon.calls.size();
        link->call(DaemonProtocol::startRequestWithKey, {std::int64_t{1}});
        ASSERT_TRUE(runUntil(queue, [&] { return daemon.calls.size() > callsBefore; }));
    }
    bool hears(std::size_t count) {
        return runUntil(queue, [&] { return heard.size() >= count; });
    }

    std::unique_ptr<DaemonConnection> link;
    std::vector<PropertyValue::Dictionary> responses;
};

TEST_F(LinuxDaemonTransportTest, CallsArriveInOrderAndWantNoAnswer) {
    Caller daemon(queue, bus.address(), kService);
    connectTo(bus.address(), {});
    link->call(DaemonProtocol::enableHierachy, {});
    link->call(DaemonProtocol::startRequestWithKey, {std::int64_t{-1}});
    link->call(DaemonProtocol::refreshDHCP, {"en0"});
    link->call(DaemonProtocol::setFanSet, {PropertyValue(PropertyValue::Array{1.5, "fan"})});
    ASSERT_TRUE(runUntil(queue, [&] { return daemon.calls.size() >= 4; }));
    link->call(DaemonProtocol::toggleAirPortPower, {});
    EXPECT_TRUE(runUntil(queue, [&] { return daemon.calls.size() >= 5; }));
    EXPECT_THAT(daemon.calls,
                ElementsAre("EnableHierachy ", "StartRequestWithKey x -1", "RefreshDHCP s en0",
                            "SetFanSet av", "ToggleAirPortPower "));
}

TEST_F(LinuxDaemonTransportTest, ValuesThatNoBusCarriesAreNotSent) {
    Caller daemon(queue, bus.address(), kService);
    connectTo(bus.address(), {});
    link->call(DaemonProtocol::refreshDHCP, {"\xff"});
    link->call(DaemonProtocol::refreshDHCP, {std::string("a\0b", 3)});
    link->call(DaemonProtocol::refreshDHCP, {PropertyValue{}});
    link->call(DaemonProtocol::refreshDHCP, {"good"});
    EXPECT_TRUE(runUntil(queue, [&] { return !daemon.calls.empty(); }));
    EXPECT_THAT(daemon.calls, ElementsAre("RefreshDHCP s good"));
}

TEST_F(LinuxDaemonTransportTest, ResponsesOfTheDaemonArrive) {
    Caller daemon(queue, bus.address(), kService);
    connectToDaemon(daemon);
    daemon.respond(daemon.client, "a{sv}", 2, "type", "s", "1", "processes", "aa{sv}", 3,  //
                   2, "name", "s", "editor", "c", "d", 12.5,                               //
                   2, "c", "y", 7, "icon", "(ii)", 1, 2,                                   //
                   0);
    EXPECT_TRUE(hears(1));
    const PropertyValue::Array& records = *responses.at(0).at("processes").array();
    ASSERT_EQ(records.size(), 3U);
    EXPECT_EQ(records[0],
              PropertyValue(PropertyValue::Dictionary{{"name", "editor"}, {"c", 12.5}}));
    EXPECT_EQ(records[1], PropertyValue(PropertyValue::Dictionary{{"c", std::uint32_t{7}}}));
    EXPECT_TRUE(records[2].dictionary()->empty());
}

TEST_F(LinuxDaemonTransportTest, OnlyTheOwnerOfTheNameIsHeard) {
    Caller daemon(queue, bus.address(), kService), stranger(queue, bus.address());
    connectToDaemon(daemon);
    stranger.respondWithType(daemon.client, "forged");
    daemon.respondWithType(daemon.client, "real");
    EXPECT_TRUE(hears(1));
    EXPECT_THAT(heard, ElementsAre("real"));
}

TEST_F(LinuxDaemonTransportTest, WhatIsNoResponseIsIgnored) {
    Caller daemon(queue, bus.address(), kService);
    connectToDaemon(daemon);
    daemon.respond(daemon.client, "");
    daemon.respond(daemon.client, "s", "type");
    daemon.respond(daemon.client, "a{ss}", 1, "type", "1");
    daemon.respond(daemon.client, "a{sv}s", 1, "type", "s", "1", "more");
    daemon.respondWithType(daemon.client, "good");
    EXPECT_TRUE(hears(1));
    EXPECT_THAT(heard, ElementsAre("good"));
}

TEST_F(LinuxDaemonTransportTest, ResponsesThatAreTooLargeAreIgnored) {
    Caller daemon(queue, bus.address(), kService);
    connectToDaemon(daemon);
    daemon.respondWithType(daemon.client, std::string(2 << 20, 'x').c_str());
    daemon.respondWithType(daemon.client, "good");
    EXPECT_TRUE(hears(1));
    EXPECT_THAT(heard, ElementsAre("good"));
}

TEST_F(LinuxDaemonTransportTest, TheVersionIsAnswered) {
    Caller daemon(queue, bus.address(), kService);
    daemon.onCall = [](sd_bus_message* call) {
        return sd_bus_reply_method_return(call, "xx", std::int64_t{5}, std::int64_t{2});
    };
    connectTo(bus.address(), {});
    std::pair<std::int64_t, std::int64_t> version;
    link->version([&](std::int64_t first, std::int64_t second) { version = {first, second}; });
    EXPECT_TRUE(runUntil(queue, [&] { return version.first != 0; }));
    EXPECT_EQ(version, (std::pair<std::int64_t, std::int64_t>(5, 2)));
    EXPECT_THAT(daemon.calls, ElementsAre("Version  answer"));
}

TEST_F(LinuxDaemonTransportTest, AVersionThatIsNoneIsNotToldAndEndsNothing) {
    Caller daemon(queue, bus.address(), kService);
    int answers = 0;
    daemon.onCall = [&](sd_bus_message* call) {
        ++answers;
        return answers == 1 ? sd_bus_reply_method_return(call, "s", "5")
                            : sd_bus_reply_method_errorf(call, "test.Error", "no");
    };
    connectTo(bus.address(), {});
    const auto told = [&](std::int64_t, std::int64_t) { heard.push_back("version"); };
    link->version(told);
    link->version(told);
    ASSERT_TRUE(runUntil(queue, [&] { return answers == 2; }));
    daemon.respondWithType(daemon.client, "still there");
    EXPECT_TRUE(hears(1));
    EXPECT_THAT(heard, ElementsAre("still there"));
}

TEST_F(LinuxDaemonTransportTest, ADaemonThatGoesIsAnInterruption) {
    auto daemon = std::make_unique<Caller>(queue, bus.address(), kService);
    connectToDaemon(*daemon);
    daemon->respondWithType(daemon->client, "last");
    daemon.reset();
    EXPECT_TRUE(hears(2));
    EXPECT_THAT(heard, ElementsAre("last", "interrupted"));
}

TEST_F(LinuxDaemonTransportTest, ALinkThatWasToldOfItsEndSaysNoMore) {
    auto daemon = std::make_unique<Caller>(queue, bus.address(), kService);
    connectToDaemon(*daemon);
    const std::unique_ptr<DaemonConnection> kept = std::move(link);
    daemon.reset();
    ASSERT_TRUE(hears(1));
    Caller next(queue, bus.address(), kService);
    kept->call(DaemonProtocol::smartTemps, {});
    kept->version([](std::int64_t, std::int64_t) {});
    bus.end();
    queue.runOnce(0.01);
    EXPECT_THAT(heard, ElementsAre("interrupted"));
    EXPECT_THAT(next.calls, IsEmpty());
}

TEST_F(LinuxDaemonTransportTest, WithoutSuchAServiceTheLinkIsInvalid) {
    connectTo(bus.address(), {});
    link->call(DaemonProtocol::smartTemps, {});
    EXPECT_THAT(heard, IsEmpty());
    EXPECT_TRUE(hears(1));
    EXPECT_THAT(heard, ElementsAre("invalidated"));
}

TEST_F(LinuxDaemonTransportTest, WithoutABusTheLinkIsInvalidButNotInsideTheCall) {
    connectTo({}, "unix:path=/nonexistent/bus");
    link->call(DaemonProtocol::smartTemps, {});
    EXPECT_THAT(heard, IsEmpty());
    queue.runOnce(0);
    EXPECT_THAT(heard, ElementsAre("invalidated"));
}

TEST_F(LinuxDaemonTransportTest, TheSystemBusIsTriedWhereTheSessionHasNoDaemon) {
    PrivateBus system;
    Caller daemon(queue, system.address(), kService);
    for (const auto& session : {std::optional<std::string>{}, std::optional(bus.address())}) {
        daemon.calls.clear();
        connectTo(session, system.address());
        link->call(DaemonProtocol::smartTemps, {});
        EXPECT_TRUE(runUntil(queue, [&] { return !daemon.calls.empty(); }));
        EXPECT_THAT(daemon.calls, ElementsAre("SmartTemps "));
    }
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(LinuxDaemonTransportTest, TheFirstCallHasTheBusStartTheDaemon) {
    const test::TemporaryFolder folder;
    const fs::path started = folder / "started";
    const PrivateBus starting(
        {kService, fmt::format("/bin/sh -c \"touch '{}'; exit 1\"", started.string())});
    connectTo(starting.address(), {});
    queue.runOnce(0.01);
    EXPECT_FALSE(fs::exists(started));
    link->call(DaemonProtocol::smartTemps, {});
    EXPECT_TRUE(hears(1));
    EXPECT_TRUE(fs::exists(started));
    EXPECT_THAT(heard, ElementsAre("invalidated"));  // what was started is no daemon
}

TEST_F(LinuxDaemonTransportTest, ABusThatDiesIsAnInvalidation) {
    Caller daemon(queue, bus.address(), kService);
    connectToDaemon(daemon);
    bus.end();
    EXPECT_TRUE(hears(1));
    EXPECT_THAT(heard, ElementsAre("invalidated"));
}

TEST_F(LinuxDaemonTransportTest, ABusThatWasStartedAnewIsUsedByTheNextLink) {
    LinuxDaemonTransport transport(queue, bus.address(), {});
    Caller daemon(queue, bus.address(), kService);
    link = transport.connect(*this);
    link->call(DaemonProtocol::smartTemps, {});
    ASSERT_TRUE(runUntil(queue, [&] { return !daemon.calls.empty(); }));
    bus.restart();
    ASSERT_TRUE(hears(1));
    Caller again(queue, bus.address(), kService);
    link = transport.connect(*this);
    link->call(DaemonProtocol::startSMARTTemps, {});
    EXPECT_TRUE(runUntil(queue, [&] { return !again.calls.empty(); }));
    EXPECT_THAT(heard, ElementsAre("invalidated"));
    EXPECT_THAT(again.calls, ElementsAre("StartSMARTTemps "));
}

TEST_F(LinuxDaemonTransportTest, AMuteBusHoldsNobodyUp) {
    bus.freeze();
    const LinuxClock clock;
    const double before = clock.monotonic();
    connectTo(bus.address(), {});
    for (int count = 0; count < 1000; ++count)
        link->call(DaemonProtocol::refreshDHCP, {std::string(1000, 'x')});
    link->version([](std::int64_t, std::int64_t) {});
    queue.runOnce(0);
    link.reset();
    EXPECT_LT(clock.monotonic(), before + 0.5);
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(LinuxDaemonTransportTest, AClosedLinkIsSilentAndGoneFromTheBus) {
    Caller daemon(queue, bus.address(), kService);
    connectToDaemon(daemon);
    daemon.respondWithType(daemon.client, "late");
    link.reset();
    const auto isOnBus = [&] {
        sd_bus_creds* creds = nullptr;
        const int found =
            sd_bus_get_name_creds(daemon.peer().get(), daemon.client.c_str(), 0, &creds);
        sd_bus_creds_unref(creds);
        return found >= 0;
    };
    EXPECT_TRUE(runUntil(queue, [&] { return !isOnBus(); }));
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(LinuxDaemonTransportTest, InterruptionsLeaveNothingOpen) {
    constexpr std::size_t kInterruptions = 1000;
    BusPeer daemon(queue, bus.address());
    LinuxDaemonTransport transport(queue, bus.address(), {});
    daemon.setAnswer([&](sd_bus_message*) { return sd_bus_release_name(daemon.get(), kService); });
    std::ptrdiff_t descriptors = 0, tasks = 0;
    for (std::size_t count = 1; count <= kInterruptions; ++count) {
        ASSERT_GE(sd_bus_request_name(daemon.get(), kService, 0), 0);
        link = transport.connect(*this);
        link->call(DaemonProtocol::smartTemps, {});
        ASSERT_TRUE(hears(count));
        if (count == 1) {
            descriptors = openDescriptors();
            tasks = threads();
        }
    }
    EXPECT_THAT(heard, testing::Each("interrupted"));
    EXPECT_EQ(openDescriptors(), descriptors);
    EXPECT_EQ(threads(), tasks);
}

}  // namespace
}  // namespace vantor
