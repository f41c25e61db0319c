#include "Programs/vantorbar-daemon/DaemonBus.h"

#include <memory>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include "Platform/Simulated/SimulatedClock.h"
#include "Platform/Simulated/SimulatedProcessSource.h"
#include "Tests/Support/BusPeer.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/QueueWorld.h"

namespace vantor {
namespace {

using test::BusPeer;
using test::KeptLog;
using test::PrivateBus;
using test::settle;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kPath = "/com/kolbrin/vantorbardaemon";

BusAddressee method(const char* name) {
    return {.peer = kDaemonName, .path = kPath, .interface = kDaemonName, .member = name};
}

/// "name percent" of a record.
std::string recordIn(sd_bus_message& message) {
    const char *key = nullptr, *name = nullptr, *other = nullptr;
    double percent = -1;
    if (sd_bus_message_read(&message, "a{sv}", 2, &key, "s", &name, &other, "d", &percent) <= 0)
        return "no record";
    return fmt::format("{}={} {}={:.0f}", key, name, other, percent);
}

/// "type: records" of a response.
std::string responseIn(sd_bus_message& message) {
    const char *key = nullptr, *type = nullptr;
    if (sd_bus_message_has_signature(&message, "a{sv}") <= 0 ||
        sd_bus_message_enter_container(&message, 'a', "{sv}") <= 0 ||
        sd_bus_message_read(&message, "{sv}", &key, "s", &type) <= 0)
        return "no response";
    std::string text = fmt::format("{}={}", key, type);
    if (sd_bus_message_enter_container(&message, 'e', "sv") <= 0 ||
        sd_bus_message_read(&message, "s", &key) <= 0 ||
        sd_bus_message_enter_container(&message, 'v', "aa{sv}") <= 0 ||
        sd_bus_message_enter_container(&message, 'a', "a{sv}") <= 0)
        return text + " and no records";
    text += fmt::format(" {}:", key);
    while (sd_bus_message_at_end(&message, 0) == 0)
        text += " " + recordIn(message);
    return text;
}

/// A program that shows processes.
struct Client {
    Client(LinuxMainQueue& newQueue, SystemLog& log, const std::string& address)
        : queue(newQueue), bus(newQueue, log, {"Bus", "test"}, address),
          responses(
              bus.onCall({"", "/com/kolbrin/vantorbarclient", "com.kolbrin.vantorbarclient", ""},
                         [this](sd_bus_message& message) {
                             member = sd_bus_message_get_member(&message);
                             expectsReply = sd_bus_message_get_expect_reply(&message) != 0;
                             lists.push_back(responseIn(message));
                         })) {}

    template <class... Arguments>
    void send(const char* name, const char* types = "", Arguments... arguments) {
        const BusMessage message = bus.newCall(method(name));
        ASSERT_GE(sd_bus_message_append(message.get(), types, arguments...), 0);
        sd_bus_message_set_expect_reply(message.get(), 0);
        bus.send(*message);
    }
    /// The answer as "1.0", or the name of the error.
    std::string version() {
        std::string text;
        const BusMessage message = bus.newCall(method("Version"));
        const auto slot = bus.call(*message, [&](sd_bus_message& answer) {
            std::int64_t version = 0, revision = 0;
            if (sd_bus_message_read(&answer, "xx", &version, &revision) > 0)
                text = fmt::format("{}.{}", version, revision);
            else
                text = sd_bus_message_get_error(&answer)->name;
        });
        test::runUntil(queue, [&] { return !text.empty(); });
        return text;
    }
    bool waitForLists(std::size_t count) {
        return test::runUntil(queue, [&] { return lists.size() >= count; });
    }

    LinuxMainQueue& queue;
    BusConnection bus;
    BusConnection::Slot responses;
    std::vector<std::string> lists;
    std::string member;
    bool expectsReply = true;
};

/// The bus is real and so is its time; that of the processes and of the pace is simulated.
class DaemonBusTest : public testing::Test {
protected:
    DaemonBusTest() { source.start(5, "a"); }

    void own(std::vector<std::uint32_t> users) {
        link = std::make_unique<DaemonBus>(DaemonBus::Environs{queue, clock, log, connection},
                                           std::move(users));
        service.emplace(ProcessService::Environs{time, clock, source, log}, *link, [] {});
        link->own(
            *service, [this] { ++readyCount; }, [this] { ++takenCount; });
        ASSERT_TRUE(test::runUntil(queue, [&] { return readyCount + takenCount > 0; }));
    }
    void ownForUs() { own({geteuid()}); }
    std::unique_ptr<Client> newClient() {
        return std::make_unique<Client>(queue, log, bus.address());
    }
    void settleAll(Client& client) {
        ASSERT_TRUE(settle(queue, client.bus));
        ASSERT_TRUE(settle(queue, connection));
        ASSERT_TRUE(settle(queue, connection));  // the bus has said whose the client is
    }
    void pass(double seconds) { time.runUntil(time.now() + seconds); }

    LinuxMainQueue queue;
    KeptLog log;
    PrivateBus bus;
    simulated::SimulatedMainQueue time{100, 0};
    simulated::SimulatedClock clock{time};
    simulated::SimulatedProcessSource source{time};
    BusConnection connection{queue, log, {"Bus", "test"}, bus.address()};
    std::unique_ptr<DaemonBus> link;
    std::optional<ProcessService> service;
    int readyCount = 0, takenCount = 0;
};

TEST_F(DaemonBusTest, ClientIsSentTheListThatItAskedFor) {
    ownForUs();
    const auto client = newClient();
    client->send("DisableHierachy");
    client->send("StartRequestWithKey", "x", std::int64_t{1});
    settleAll(*client);
    source.spend(5, 15);
    pass(0.3);
    ASSERT_TRUE(client->waitForLists(1));
    EXPECT_THAT(client->lists, ElementsAre("type=1 processes: name=a c=75"));
    EXPECT_EQ(client->member, "DaemonResponse");
    EXPECT_FALSE(client->expectsReply);
}

TEST_F(DaemonBusTest, ListsGoOnUntilTheRequestIsStopped) {
    ownForUs();
    const auto client = newClient();
    client->send("StartRequestWithKey", "x", std::int64_t{1});
    settleAll(*client);
    for (const std::size_t count : {1u, 2u, 3u}) {
        pass(2);
        ASSERT_TRUE(client->waitForLists(count));
        settleAll(*client);
    }
    client->send("StopRequestWithKey", "x", std::int64_t{1});
    settleAll(*client);
    pass(10);
    settleAll(*client);
    EXPECT_THAT(client->lists, SizeIs(3));
}

TEST_F(DaemonBusTest, VersionIsAnswered) {
    ownForUs();
    EXPECT_EQ(newClient()->version(), "1.0");
}

TEST_F(DaemonBusTest, NameThatIsSomebodyElsesIsTold) {
    const BusPeer other(queue, bus.address(), kDaemonName);
    ownForUs();
    EXPECT_EQ(takenCount, 1);
    EXPECT_EQ(readyCount, 0);
}

TEST_F(DaemonBusTest, OtherUsersAreRefused) {
    own({geteuid() + 1});
    const auto client = newClient();
    EXPECT_EQ(client->version(), SD_BUS_ERROR_ACCESS_DENIED);
    client->send("StartRequestWithKey", "x", std::int64_t{1});
    settleAll(*client);
    EXPECT_FALSE(service->hasClients());
    pass(3);
    EXPECT_EQ(source.readings(), 0);
}

TEST_F(DaemonBusTest, ClientThatLeavesTheBusIsForgotten) {
    ownForUs();
    auto client = newClient();
    client->send("StartRequestWithKey", "x", std::int64_t{1});
    settleAll(*client);
    ASSERT_TRUE(service->hasClients());
    client.reset();
    EXPECT_TRUE(test::runUntil(queue, [&] { return !service->hasClients(); }));
}

TEST_F(DaemonBusTest, NinthClientIsTurnedAwayUntilThereIsRoom) {
    ownForUs();
    std::vector<std::unique_ptr<Client>> clients;
    for (int number = 0; number < 8; ++number) {
        clients.push_back(newClient());
        EXPECT_EQ(clients.back()->version(), "1.0");
    }
    const auto ninth = newClient();
    EXPECT_EQ(ninth->version(), SD_BUS_ERROR_ACCESS_DENIED);
    clients.pop_back();
    EXPECT_TRUE(test::runUntil(queue, [&] { return ninth->version() == "1.0"; }));
}

TEST_F(DaemonBusTest, CallsThatAreNoneOfOursAreRefused) {
    ownForUs();
    const auto client = newClient();
    client->send("StartRequestWithKey", "s", "1");
    client->send("StartRequestWithKey", "");
    client->send("StartRequestWithKey", "xx", std::int64_t{1}, std::int64_t{1});
    client->send("startRequestWithKey", "x", std::int64_t{1});
    client->send("Version", "s", "x");
    client->send("SetFanSet", "as", 1, "x");
    client->send("Quit");
    settleAll(*client);
    pass(3);
    EXPECT_EQ(source.readings(), 0);
    EXPECT_THAT(log.lines, IsEmpty());
    EXPECT_EQ(client->version(), "1.0");
}

TEST_F(DaemonBusTest, RequestsOfSiblingsAreTakenAndNotOffered) {
    ownForUs();
    const auto client = newClient();
    client->send("RefreshDHCP", "s", "en0");
    client->send("SetFanSet", "av", 2, "s", "a", "d", 1.5);
    client->send("ToggleAirPortPower");
    settleAll(*client);
    EXPECT_THAT(log.lines,
                ElementsAre("RefreshDHCP: not offered here", "SetFanSet: not offered here",
                            "ToggleAirPortPower: not offered here"));
}

TEST_F(DaemonBusTest, WhoFloodsUsIsNotHeardAnyMoreAndOthersAre) {
    ownForUs();
    const auto hostile = newClient(), client = newClient();
    for (int call = 0; call < 5000; ++call)
        hostile->send("StartRequestWithKey", "x", std::int64_t{1});
    EXPECT_EQ(client->version(), "1.0");
    client->send("StartRequestWithKey", "x", std::int64_t{1});
    settleAll(*hostile);
    settleAll(*client);
    pass(3);
    ASSERT_TRUE(client->waitForLists(1));
    settleAll(*hostile);
    EXPECT_THAT(hostile->lists, IsEmpty());
}

TEST_F(DaemonBusTest, WhoSendsMessagesThatAreTooLargeIsNotHeardAnyMoreAndOthersAre) {
    ownForUs();
    const std::string large(std::size_t{2} << 20, 'x');
    const auto texts = newClient(), arrays = newClient(), strangers = newClient(),
               client = newClient();
    texts->send("SetNetworkSet", "s", large.c_str());
    arrays->send("SetFanSet", "av", 2, "s", "fan", "s", large.c_str());
    strangers->send("Quit", "as", 1, large.c_str());
    for (const auto& hostile : {&texts, &arrays, &strangers})
        (*hostile)->send("StartRequestWithKey", "x", std::int64_t{1});
    EXPECT_EQ(client->version(), "1.0");
    for (const auto& hostile : {&texts, &arrays, &strangers})
        settleAll(**hostile);
    EXPECT_THAT(log.lines, IsEmpty());
    pass(3);
    EXPECT_EQ(source.readings(), 0);
}

TEST_F(DaemonBusTest, LargestMessageWithinTheBoundsIsTaken) {
    ownForUs();
    const auto client = newClient();
    client->send("SetNetworkSet", "s", std::string(1'000'000, 'x').c_str());
    settleAll(*client);
    EXPECT_THAT(log.lines, ElementsAre("SetNetworkSet: not offered here"));
}

/// It connects and calls, and then never reads.
TEST_F(DaemonBusTest, ClientThatDoesNotReadIsSentOneListAndThenForgotten) {
    ownForUs();
    const auto client = newClient();
    sd_bus* deaf = nullptr;
    ASSERT_GE(sd_bus_new(&deaf), 0);
    ASSERT_GE(sd_bus_set_address(deaf, bus.address().c_str()), 0);
    ASSERT_GE(sd_bus_set_bus_client(deaf, 1), 0);
    ASSERT_GE(sd_bus_start(deaf), 0);
    ASSERT_GE(sd_bus_call_method_async(deaf, nullptr, kDaemonName, kPath, kDaemonName,
                                       "StartRequestWithKey", nullptr, nullptr, "x",
                                       std::int64_t{1}),
              0);
    ASSERT_GE(sd_bus_flush(deaf), 0);
    ASSERT_TRUE(test::runUntil(queue, [&] { return service->hasClients(); }));
    pass(9);
    settleAll(*client);
    EXPECT_TRUE(service->hasClients());
    pass(5);
    EXPECT_TRUE(test::runUntil(queue, [&] { return !service->hasClients(); }));
    sd_bus_close_unref(deaf);
}

TEST_F(DaemonBusTest, NameIsGivenBackWhenNobodyIsThere) {
    ownForUs();
    bool isGone = false;
    link->release([&] { isGone = true; });
    EXPECT_TRUE(test::runUntil(queue, [&] { return isGone; }));
    const BusPeer next(queue, bus.address(), kDaemonName);
}

TEST_F(DaemonBusTest, CallThatComesBeforeTheNameIsGoneIsServed) {
    ownForUs();
    bool isGone = false;
    const auto client = newClient();
    client->send("StartRequestWithKey", "x", std::int64_t{1});
    ASSERT_TRUE(settle(queue, client->bus));
    link->release([&] { isGone = true; });
    settleAll(*client);
    ASSERT_TRUE(test::runUntil(queue, [&] { return service->hasClients(); }));
    EXPECT_EQ(client->version(), "1.0") << "the name is ours again";
    EXPECT_FALSE(isGone);
    EXPECT_EQ(readyCount, 1) << "the daemon was never away";
}

TEST(DaemonBusAddressTest, StarterTellsTheBusAndElseTheSessionComesFirst) {
    struct Case {
        std::string starter, session, address;
    };
    const std::string system = "unix:path=/system", session = "unix:path=/session";
    for (const auto& [starter, sessionAddress, address] :
         {Case{"", session, session}, Case{"session", session, session},
          Case{"system", session, system}, Case{"", "tcp:host=far", system}}) {
        const Environment environment = [&](const std::string& name) -> std::optional<std::string> {
            if (name == "DBUS_STARTER_BUS_TYPE")
                return starter;
            if (name == "DBUS_SESSION_BUS_ADDRESS")
                return sessionAddress;
            return name == "DBUS_SYSTEM_BUS_ADDRESS" ? std::optional(system) : std::nullopt;
        };
        EXPECT_EQ(daemonBusAddress(environment), address) << starter << sessionAddress;
    }
}

TEST(DaemonActivationTest, BusStartsTheDaemonOfThisBuild) {
    LinuxMainQueue queue;
    KeptLog log;
    const PrivateBus bus{std::filesystem::path(VANTOR_SERVICE_DIR)};
    Client client(queue, log, bus.address());
    EXPECT_EQ(client.version(), "1.0");
}

}  // namespace
}  // namespace vantor
