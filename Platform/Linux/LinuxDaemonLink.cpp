#include "Platform/Linux/LinuxDaemonLink.h"

#include <utility>

#include <systemd/sd-bus.h>

#include "Platform/DaemonProtocol.h"
#include "Platform/Linux/BusValues.h"

namespace vantor {
namespace {

constexpr const char* kService = "com.kolbrin.vantorbardaemon";

BusAddressee driver(std::string member) {
    return {.peer = "org.freedesktop.DBus",
            .path = "/org/freedesktop/DBus",
            .interface = "org.freedesktop.DBus",
            .member = std::move(member)};
}

/// On the bus an operation has no colon and begins with a capital.
BusAddressee daemonMethod(std::string_view operation) {
    std::string member(operation.substr(0, operation.find(':')));
    member.front() = static_cast<char>(member.front() - 'a' + 'A');
    return {.peer = kService,
            .path = "/com/kolbrin/vantorbardaemon",
            .interface = kService,
            .member = std::move(member)};
}

const BusAddressee& clientMethod() {
    static const BusAddressee method{.peer = "",
                                     .path = "/com/kolbrin/vantorbarclient",
                                     .interface = "com.kolbrin.vantorbarclient",
                                     .member = "DaemonResponse"};
    return method;
}

bool isError(sd_bus_message& reply) { return sd_bus_message_is_method_error(&reply, nullptr) > 0; }

bool isNobody(sd_bus_message& reply) {
    return sd_bus_message_is_method_error(&reply, SD_BUS_ERROR_SERVICE_UNKNOWN) > 0;
}

}  // namespace

LinuxDaemonLink::LinuxDaemonLink(LinuxMainQueue& queue, std::vector<std::string> addresses,
                                 DaemonClient& client)
    : queue_(queue), addresses_(std::move(addresses)), client_(client) {}

LinuxDaemonLink::~LinuxDaemonLink() = default;

/// As a call of its own on the main queue, unless the link or this bus is given up first: handlers
/// of the bus may not drop it, and clients may drop all of this.
template <class Action>
void LinuxDaemonLink::later(Action action) {
    queue_.async([handle = weakSource_.handle(), attempt = attempt_, action = std::move(action)] {
        auto* const self = handle.get();
        if (self != nullptr && self->attempt_ == attempt)
            action(*self);
    });
}

void LinuxDaemonLink::whenUp(std::function<void()> send) {
    if (state_ == State::unopened)
        tryNextBus();
    if (state_ == State::up)
        send();
    else if (state_ == State::asking && waiting_.size() < kMostWaiting)
        waiting_.push_back(std::move(send));
}

void LinuxDaemonLink::tryNextBus() {
    leaveBus();
    state_ = State::asking;
    while (!addresses_.empty()) {
        const std::string address = std::move(addresses_.front());
        addresses_.erase(addresses_.begin());
        bus_ = std::make_unique<BusConnection>(queue_, noLog_, BusConnection::Wording{}, address);
        if (askForDaemon())
            return;
        leaveBus();
    }
    later([](LinuxDaemonLink& self) { self.end(&DaemonClient::invalidated); });
}

/// In this order the bus tells who the daemon is before anything of the daemon's arrives.
bool LinuxDaemonLink::askForDaemon() {
    loss_ = bus_->onLoss([this] { busFailed(); });
    responses_ = bus_->onCall(clientMethod(), [this](sd_bus_message& call) { responseCame(call); });
    ownerChanges_ = bus_->onSignal(
        driver("NameOwnerChanged"), [this](sd_bus_message& signal) { ownerChanged(signal); },
        kService);
    ownerReply_ = askBus("GetNameOwner", [this](sd_bus_message& reply) {
        const char* owner = nullptr;
        if (!isError(reply) && sd_bus_message_read(&reply, "s", &owner) > 0)
            owner_ = owner;
    });
    startReply_ =
        askBus("StartServiceByName", [this](sd_bus_message& reply) { daemonStarted(reply); });
    return responses_ && ownerChanges_ && startReply_;
}

/// Asks the bus itself about the daemon's name.
BusConnection::Slot LinuxDaemonLink::askBus(const char* member, BusConnection::Handler reply) {
    const BusMessage question = bus_->newCall(driver(member));
    if (!question || sd_bus_message_append(question.get(), "s", kService) < 0)
        return {};
    const bool hasFlags = std::string_view(member) == "StartServiceByName";
    if (hasFlags && sd_bus_message_append(question.get(), "u", std::uint32_t{0}) < 0)
        return {};
    return bus_->call(*question, std::move(reply));
}

void LinuxDaemonLink::leaveBus() noexcept {
    ++attempt_;
    loss_.end();
    for (auto* const slot : {&responses_, &ownerChanges_, &ownerReply_, &startReply_})
        *slot = {};
    questions_.clear();
    owner_.clear();
    bus_.reset();
}

/// A daemon that somebody started by hand is there though the bus can't start it.
void LinuxDaemonLink::daemonStarted(sd_bus_message& reply) {
    if (isError(reply) && owner_.empty())
        return busFailed();
    state_ = State::up;
    for (const auto& send : std::exchange(waiting_, {}))
        send();
}

/// Before the daemon was there another bus may have it; afterwards the link is at its end.
void LinuxDaemonLink::busFailed() {
    later([](LinuxDaemonLink& self) {
        if (self.state_ == State::asking)
            self.tryNextBus();
        else
            self.end(&DaemonClient::invalidated);
    });
}

void LinuxDaemonLink::ownerChanged(sd_bus_message& signal) {
    const char *name = nullptr, *before = nullptr, *now = nullptr;
    if (sd_bus_message_read(&signal, "sss", &name, &before, &now) <= 0)
        return;
    const std::string former = std::exchange(owner_, now);
    if (!former.empty() && former != owner_)
        later([](LinuxDaemonLink& self) { self.end(&DaemonClient::interrupted); });
}

void LinuxDaemonLink::responseCame(sd_bus_message& call) {
    const char* const sender = sd_bus_message_get_sender(&call);
    if (sender == nullptr || owner_.empty() || owner_ != sender)
        return;
    auto response = readBusDictionary(call);
    if (!response)
        return;
    later([kept = std::make_unique<const PropertyValue::Dictionary>(*std::move(response))](
              LinuxDaemonLink& self) { self.client_.daemonResponse(*kept); });
}

void LinuxDaemonLink::call(std::string_view operation, const PropertyValue::Array& arguments) {
    whenUp([this, to = daemonMethod(operation), arguments] {
        const BusMessage message = bus_->newCall(to);
        bool isGood = message && sd_bus_message_set_expect_reply(message.get(), 0) >= 0;
        for (const PropertyValue& argument : arguments)
            isGood = isGood && appendBusArgument(*message, argument);
        if (isGood)
            bus_->send(*message);
    });
}

void LinuxDaemonLink::version(VersionReply reply) {
    whenUp([this, reply = std::move(reply)] { askVersion(reply); });
}

void LinuxDaemonLink::askVersion(VersionReply reply) {
    questions_.remove_if([](const Question& question) { return question.isAnswered; });
    const BusMessage message = bus_->newCall(daemonMethod(DaemonProtocol::version));
    if (!message)
        return;
    Question& question = questions_.emplace_back();
    question.slot =
        bus_->call(*message, [this, &question, reply = std::move(reply)](sd_bus_message& answer) {
            question.isAnswered = true;
            versionCame(answer, reply);
        });
}

void LinuxDaemonLink::versionCame(sd_bus_message& message, VersionReply reply) {
    std::int64_t first = 0, second = 0;
    if (isNobody(message))
        return busFailed();
    if (isError(message) || sd_bus_message_has_signature(&message, "xx") <= 0 ||
        sd_bus_message_read(&message, "xx", &first, &second) <= 0)
        return;
    later([first, second, reply = std::move(reply)](LinuxDaemonLink&) { reply(first, second); });
}

/// Told last: the client may drop this.
void LinuxDaemonLink::end(void (DaemonClient::*tell)()) {
    leaveBus();
    state_ = State::ended;
    waiting_.clear();
    (client_.*tell)();
}

}  // namespace vantor
