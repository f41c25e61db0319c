#include "Programs/vantorbar-daemon/DaemonBus.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include <fmt/format.h>
#include <systemd/sd-bus.h>

#include "Platform/Linux/BusValues.h"
#include "Platform/Linux/LinuxBuses.h"

namespace vantor {
namespace {

constexpr const char* kDaemonPath = "/com/kolbrin/vantorbardaemon";
constexpr const char* kClientPath = "/com/kolbrin/vantorbarclient";
constexpr const char* kClientInterface = "com.kolbrin.vantorbarclient";
// Of a name that is asked for, and of the bus's answers.
constexpr std::uint32_t kDoNotQueue = 4, kOwner = 1, kOwnerAlready = 4;

BusAddressee busItself(const char* member) {
    return {.peer = "org.freedesktop.DBus",
            .path = "/org/freedesktop/DBus",
            .interface = "org.freedesktop.DBus",
            .member = member};
}

bool isError(sd_bus_message& message) noexcept {
    return sd_bus_message_is_method_error(&message, nullptr) != 0;
}

std::optional<std::uint32_t> numberIn(sd_bus_message& answer) noexcept {
    std::uint32_t number = 0;
    const bool isNumber = !isError(answer) && sd_bus_message_has_signature(&answer, "u") > 0 &&
                          sd_bus_message_read(&answer, "u", &number) > 0;
    return isNumber ? std::optional(number) : std::nullopt;
}

/// Nothing where `call` is none of ours: such a method, with such arguments.
std::optional<DaemonRequest> requestIn(sd_bus_message& call) noexcept {
    const char* const member = sd_bus_message_get_member(&call);
    const DaemonMethod* const method = member == nullptr ? nullptr : daemonMethodNamed(member);
    if (method == nullptr || sd_bus_message_has_signature(&call, method->arguments) <= 0)
        return std::nullopt;
    DaemonRequest request{.operation = method->operation};
    const bool hasKey = *method->arguments == 'x';
    if (hasKey && sd_bus_message_read(&call, "x", &request.key) <= 0)
        return std::nullopt;
    return request;
}

/// Where nobody waits for an answer these send none.
void answerNothing(sd_bus_message& call) noexcept { sd_bus_reply_method_return(&call, ""); }
void answerVersion(sd_bus_message& call) noexcept {
    sd_bus_reply_method_return(&call, "xx", kDaemonVersion, kDaemonRevision);
}
void answerUnknown(sd_bus_message& call) noexcept {
    sd_bus_reply_method_errorf(&call, SD_BUS_ERROR_UNKNOWN_METHOD, "There is no such operation");
}
void answerRefused(sd_bus_message& call) noexcept {
    sd_bus_reply_method_errorf(&call, SD_BUS_ERROR_ACCESS_DENIED, "Not a client of this daemon");
}

bool appendRecord(sd_bus_message& message, const ProcessRecord& record) noexcept {
    return sd_bus_message_append(&message, "a{sv}", 2, "name", "s", record.name.c_str(), "c", "d",
                                 record.percent) >= 0;
}

/// The dictionary of a response: its type, and the records.
bool appendResponse(sd_bus_message& message, const std::vector<ProcessRecord>& records) {
    const std::string type = fmt::format("{}", kProcessesKey);
    bool isGood = sd_bus_message_open_container(&message, 'a', "{sv}") >= 0 &&
                  sd_bus_message_append(&message, "{sv}", "type", "s", type.c_str()) >= 0 &&
                  sd_bus_message_open_container(&message, 'e', "sv") >= 0 &&
                  sd_bus_message_append(&message, "s", "processes") >= 0 &&
                  sd_bus_message_open_container(&message, 'v', "aa{sv}") >= 0 &&
                  sd_bus_message_open_container(&message, 'a', "a{sv}") >= 0;
    for (const ProcessRecord& record : records)
        isGood = isGood && appendRecord(message, record);
    for (int container = 0; container < 4; ++container)
        isGood = isGood && sd_bus_message_close_container(&message) >= 0;
    return isGood;
}

}  // namespace

std::optional<std::string> daemonBusAddress(const Environment& environment) {
    if (nonEmpty(environment, "DBUS_STARTER_BUS_TYPE") == "system")
        return systemBusAddress(environment);
    const auto session = sessionBusAddress(environment);
    return session ? session : systemBusAddress(environment);
}

DaemonBus::DaemonBus(const Environs& environs, std::vector<std::uint32_t> users)
    : environs_(environs), users_(std::move(users)) {}

void DaemonBus::own(ProcessService& service, std::function<void()> ready,
                    std::function<void()> taken) {
    service_ = &service;
    ready_ = std::move(ready);
    taken_ = std::move(taken);
    // Before the name is ours: calls may wait for it already.
    calls_ = environs_.bus.onCall({{}, kDaemonPath, kDaemonName, {}},
                                  [this](sd_bus_message& message) { receive(message); });
    askForName();
}

void DaemonBus::askForName() {
    const BusMessage question = environs_.bus.newCall(busItself("RequestName"));
    if (!question || sd_bus_message_append(question.get(), "su", kDaemonName, kDoNotQueue) < 0)
        return;
    nameAnswer_ = environs_.bus.call(*question, [this](sd_bus_message& answer) {
        const auto result = numberIn(answer).value_or(0);
        if (result != kOwner && result != kOwnerAlready)
            taken_();
        else if (!std::exchange(isAnnounced_, true))
            ready_();
    });
}

void DaemonBus::release(std::function<void()> gone) {
    gone_ = std::move(gone);
    const BusMessage question = environs_.bus.newCall(busItself("ReleaseName"));
    if (!question || sd_bus_message_append(question.get(), "s", kDaemonName) < 0)
        return gone_();
    // Calls to the name that the bus took before the release come before its answer.
    nameAnswer_ = environs_.bus.call(*question, [this](sd_bus_message&) {
        environs_.queue.async([handle = weakSource_.handle()] {
            if (DaemonBus* const self = handle.get())
                self->endOrGoOn();
        });
    });
}

void DaemonBus::endOrGoOn() {
    const bool isWanted = std::ranges::any_of(callers_, [](const auto& entry) {
        return entry.second.state == Caller::State::asked ||
               entry.second.state == Caller::State::admitted;
    });
    if (isWanted)
        askForName();
    else
        gone_();
}

void DaemonBus::receive(sd_bus_message& message) {
    const char* const sender = sd_bus_message_get_sender(&message);
    Caller* const caller = sender == nullptr ? nullptr : callerOf(message);
    if (caller == nullptr || caller->state == Caller::State::refused)
        return;  // not even an answer: it would be work that others wait for
    if (!caller->rate.allow(environs_.clock.monotonic()) || !isWithinBusBounds(message))
        return refuse(sender, *caller);
    const auto request = requestIn(message);
    if (!request)
        return answerUnknown(message);
    WaitingCall call{*request, nullptr};
    if (request->operation == DaemonOperation::version)
        call.message.reset(sd_bus_message_ref(&message));
    else
        answerNothing(message);
    take(sender, *caller, std::move(call));
}

void DaemonBus::take(const std::string& name, Caller& caller, WaitingCall call) {
    if (caller.state == Caller::State::turnedAway)
        admit(name, caller);
    if (caller.state == Caller::State::admitted)
        serve(name, call);
    else if (caller.state == Caller::State::asked && caller.waiting.size() < kWaitingCalls)
        caller.waiting.push_back(std::move(call));
    else if (call.message)
        answerRefused(*call.message);
}

DaemonBus::Caller* DaemonBus::callerOf(sd_bus_message& message) {
    const std::string_view name = sd_bus_message_get_sender(&message);
    const auto found = callers_.find(name);
    return found == callers_.end() ? meet(std::string(name)) : &found->second;
}

/// Somebody new, of whom the bus is asked. Null where too many are known.
DaemonBus::Caller* DaemonBus::meet(const std::string& name) {
    if (callers_.size() >= kCallers)
        return nullptr;
    Caller& caller = callers_[name];
    // In this order: who leaves before the subscription is there has no user any more.
    caller.departure = environs_.bus.onSignal(
        busItself("NameOwnerChanged"), [this, name](sd_bus_message&) { forgetLater(name); }, name);
    const BusMessage question = environs_.bus.newCall(busItself("GetConnectionUnixUser"));
    if (question && sd_bus_message_append(question.get(), "s", name.c_str()) >= 0)
        caller.userAnswer = environs_.bus.call(
            *question, [this, name](sd_bus_message& answer) { learnUser(name, answer); });
    return &caller;
}

void DaemonBus::learnUser(const std::string& name, sd_bus_message& answer) {
    const auto found = callers_.find(name);
    if (found == callers_.end() || found->second.state != Caller::State::asked)
        return;
    const auto user = numberIn(answer);
    if (!user)
        return forgetLater(name);
    Caller& caller = found->second;
    caller.user = *user;
    if (std::ranges::find(users_, *user) == users_.end())
        return refuse(name, caller);
    admit(name, caller);
    for (WaitingCall& call : std::exchange(caller.waiting, {}))
        take(name, caller, std::move(call));
}

void DaemonBus::admit(const std::string& name, Caller& caller) {
    const bool isIn = service_->addClient(name, caller.user);
    caller.state = isIn ? Caller::State::admitted : Caller::State::turnedAway;
}

/// It stays known, so that nobody asks who it is again, until it leaves the bus.
void DaemonBus::refuse(const std::string& name, Caller& caller) {
    caller.state = Caller::State::refused;
    for (const WaitingCall& call : std::exchange(caller.waiting, {}))
        if (call.message)
            answerRefused(*call.message);
    service_->removeClient(name);
}

void DaemonBus::serve(const std::string& name, const WaitingCall& call) {
    if (call.message)
        answerVersion(*call.message);
    else
        service_->handle(name, call.request);
}

void DaemonBus::sendProcesses(const std::string& client,
                              const std::vector<ProcessRecord>& records) {
    const auto found = callers_.find(client);
    if (found == callers_.end() || !hasRead(client, found->second))
        return;
    const BusMessage message = environs_.bus.newCall({.peer = client,
                                                      .path = kClientPath,
                                                      .interface = kClientInterface,
                                                      .member = "DaemonResponse"});
    if (!message || sd_bus_message_set_expect_reply(message.get(), 0) < 0 ||
        !appendResponse(*message, records))
        return;
    environs_.bus.send(*message);
    askForReceipt(client, found->second);
}

/// Whether the last list was taken. Lists for somebody who doesn't read would pile up at the bus.
bool DaemonBus::hasRead(const std::string& name, Caller& caller) {
    if (!caller.sentAt)
        return true;
    if (environs_.clock.monotonic() - *caller.sentAt >= kUnreadSeconds)
        forgetLater(name);
    return false;
}

/// Every library of the bus answers a ping by itself, behind what came before it.
void DaemonBus::askForReceipt(const std::string& name, Caller& caller) {
    const BusMessage ping = environs_.bus.newCall(
        {.peer = name, .path = "/", .interface = "org.freedesktop.DBus.Peer", .member = "Ping"});
    if (!ping)
        return;
    caller.sentAt = environs_.clock.monotonic();
    caller.receipt = environs_.bus.call(*ping, [this, name](sd_bus_message&) {
        if (const auto found = callers_.find(name); found != callers_.end())
            found->second.sentAt.reset();
    });
}

/// Not now: what it is told by belongs to the caller that goes.
void DaemonBus::forgetLater(const std::string& name) {
    environs_.queue.async([handle = weakSource_.handle(), name = std::string(name)] {
        DaemonBus* const self = handle.get();
        if (self == nullptr)
            return;
        self->service_->removeClient(name);
        self->callers_.erase(name);
    });
}

}  // namespace vantor
