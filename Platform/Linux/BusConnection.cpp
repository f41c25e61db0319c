#include "Platform/Linux/BusConnection.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include <fmt/format.h>
#include <poll.h>
#include <systemd/sd-bus.h>

#include "Platform/Linux/LinuxClock.h"

namespace vantor {
namespace {

constexpr std::uint64_t kNoDeadline = std::numeric_limits<std::uint64_t>::max();
// A peer that floods the bus gets no more of the main queue than this at a time.
constexpr int kMessagesPerPass = 64;

double secondsUntil(std::uint64_t deadlineMicroseconds) noexcept {
    return (static_cast<double>(deadlineMicroseconds) * 1e3 -
            static_cast<double>(monotonicNanoseconds())) /
           1e9;
}

std::string describe(int error) {
    const char* text = strerrordesc_np(-error);
    return text == nullptr ? fmt::format("error {}", -error) : text;
}

/// Without a callback of ours a refused subscription would end the whole connection.
int ignoreAnswer(sd_bus_message*, void*, sd_bus_error*) noexcept { return 0; }

std::string matchRule(const BusAddressee& from, const std::optional<std::string>& firstArgument) {
    std::string rule = fmt::format("type='signal',path='{}',interface='{}',member='{}'", from.path,
                                   from.interface, from.member);
    if (!from.peer.empty())
        rule += fmt::format(",sender='{}'", from.peer);
    if (firstArgument)
        rule += fmt::format(",arg0='{}'", *firstArgument);
    return rule;
}

}  // namespace

void BusMessageRelease::operator()(sd_bus_message* message) const noexcept {
    sd_bus_message_unref(message);
}

void BusConnection::Close::operator()(sd_bus* bus) const noexcept { sd_bus_close_unref(bus); }

/// What the bus library calls back through. It is C: nothing may be thrown through it.
struct BusConnection::Slot::Hook {
    explicit Hook(Handler newHandler, BusAddressee newTarget = {})
        : handler(std::move(newHandler)), target(std::move(newTarget)) {}
    ~Hook() { sd_bus_slot_unref(slot); }
    Hook(const Hook&) = delete;
    Hook& operator=(const Hook&) = delete;

    static int heardSignal(sd_bus_message* message, void* hook, sd_bus_error*) noexcept {
        if (sd_bus_message_get_destination(message) == nullptr)
            static_cast<Hook*>(hook)->handler(*message);
        return 0;
    }
    /// For what it doesn't take, the bus library answers that there is no such method.
    static int heardCall(sd_bus_message* message, void* hook, sd_bus_error*) noexcept {
        const auto& self = *static_cast<Hook*>(hook);
        const bool all = self.target.member.empty();
        if (sd_bus_message_is_method_call(message, self.target.interface.c_str(),
                                          all ? nullptr : self.target.member.c_str()) <= 0)
            return 0;
        self.handler(*message);
        if (all)
            return 1;
        const int result = sd_bus_reply_method_return(message, "");
        return result < 0 ? result : 1;
    }
    static int gotReply(sd_bus_message* message, void* hook, sd_bus_error*) noexcept {
        static_cast<Hook*>(hook)->handler(*message);
        return 0;
    }

    Handler handler;
    BusAddressee target;  // of calls
    sd_bus_slot* slot = nullptr;
};

BusConnection::Slot::Slot() noexcept = default;
BusConnection::Slot::Slot(std::unique_ptr<Hook> hook) noexcept : hook_(std::move(hook)) {}
BusConnection::Slot::~Slot() = default;
BusConnection::Slot::Slot(Slot&&) noexcept = default;
BusConnection::Slot& BusConnection::Slot::operator=(Slot&&) noexcept = default;

BusConnection::BusConnection(LinuxMainQueue& queue, SystemLog& log, Wording wording,
                             std::optional<std::string> address)
    : queue_(queue), log_(log), wording_(std::move(wording)), address_(std::move(address)),
      timerDeadline_(kNoDeadline) {}

BusConnection::~BusConnection() {
    queue_.cancel(timer_);
    queue_.cancel(retry_);
}

bool BusConnection::open() {
    if (state_ != State::unopened)
        return state_ == State::open;
    state_ = State::open;
    if (const int error = connect(); error < 0)
        lose(error);
    else
        waitForMore();
    return state_ == State::open;
}

/// Begins to connect; the greetings are exchanged by `serve`.
int BusConnection::connect() noexcept {
    if (!address_)
        return -ENOENT;
    sd_bus* bus = nullptr;
    int result = sd_bus_new(&bus);
    bus_.reset(bus);
    if (result >= 0)
        result = sd_bus_set_address(bus, address_->c_str());
    if (result >= 0)
        result = sd_bus_set_bus_client(bus, 1);
    return result < 0 ? result : sd_bus_start(bus);
}

BusConnection::Slot BusConnection::onSignal(const BusAddressee& from, Handler handler,
                                            const std::optional<std::string>& firstArgument) {
    if (!open())
        return {};
    auto hook = std::make_unique<Slot::Hook>(std::move(handler));
    const std::string rule = matchRule(from, firstArgument);
    const int result = sd_bus_add_match_async(bus_.get(), &hook->slot, rule.c_str(),
                                              Slot::Hook::heardSignal, ignoreAnswer, hook.get());
    waitForMore();
    return result < 0 ? Slot{} : Slot{std::move(hook)};
}

BusConnection::Slot BusConnection::onCall(const BusAddressee& to, Handler handler) {
    if (!open())
        return {};
    auto hook = std::make_unique<Slot::Hook>(std::move(handler), to);
    const int result = sd_bus_add_object(bus_.get(), &hook->slot, to.path.c_str(),
                                         Slot::Hook::heardCall, hook.get());
    return result < 0 ? Slot{} : Slot{std::move(hook)};
}

Observation BusConnection::onLoss(std::function<void()> lost) {
    return losses_.observe({}, [lost = std::move(lost)](const Notification&) { lost(); });
}

Observation BusConnection::onReturn(std::function<void()> returned) {
    isWaitedFor_ = true;
    lookForBusLater();
    return returns_.observe({},
                            [returned = std::move(returned)](const Notification&) { returned(); });
}

BusMessage BusConnection::newSignal(const BusAddressee& from) {
    sd_bus_message* message = nullptr;
    // Where it fails, `message` stays null.
    if (open())
        sd_bus_message_new_signal(bus_.get(), &message, from.path.c_str(), from.interface.c_str(),
                                  from.member.c_str());
    return BusMessage(message);
}

BusMessage BusConnection::newCall(const BusAddressee& to) {
    sd_bus_message* message = nullptr;
    if (open())
        sd_bus_message_new_method_call(bus_.get(), &message, to.peer.c_str(), to.path.c_str(),
                                       to.interface.c_str(), to.member.c_str());
    return BusMessage(message);
}

void BusConnection::send(sd_bus_message& message) {
    if (state_ != State::open)
        return;
    sd_bus_send(bus_.get(), &message, nullptr);  // a loss shows when it is served next
    waitForMore();
}

BusConnection::Slot BusConnection::call(sd_bus_message& message, Handler reply) {
    if (state_ != State::open)
        return {};
    auto hook = std::make_unique<Slot::Hook>(std::move(reply));
    const int result =
        sd_bus_call_async(bus_.get(), &hook->slot, &message, Slot::Hook::gotReply, hook.get(), 0);
    waitForMore();
    return result < 0 ? Slot{} : Slot{std::move(hook)};
}

/// Until the bus has greeted us, nothing leaves.
bool BusConnection::hasUnsent() const noexcept {
    std::uint64_t unsent = 0;
    return state_ == State::open &&
           (sd_bus_is_ready(bus_.get()) == 0 ||
            (sd_bus_get_n_queued_write(bus_.get(), &unsent) >= 0 && unsent > 0));
}

void BusConnection::flush(double maximumSeconds) {
    const std::int64_t end = monotonicNanoseconds() + std::llround(maximumSeconds * 1e9);
    while (hasUnsent()) {
        const int result = sd_bus_process(bus_.get(), nullptr);
        if (result == -EBUSY)
            break;  // a handler flushes: the work around it sends the rest
        if (result < 0)
            return lose(result);
        const std::int64_t left = end - monotonicNanoseconds();
        if (left <= 0)
            break;
        pollfd polled{.fd = sd_bus_get_fd(bus_.get()),
                      .events = static_cast<short>(sd_bus_get_events(bus_.get())),
                      .revents = 0};
        const int waitMilliseconds = static_cast<int>(left / 1'000'000) + 1;
        if (result == 0 && poll(&polled, 1, waitMilliseconds) < 0 && errno != EINTR)
            break;
    }
    waitForMore();
}

bool BusConnection::isOwn(sd_bus_message& message) const noexcept {
    const char* own = nullptr;
    const char* sender = sd_bus_message_get_sender(&message);
    return sender != nullptr && bus_ && sd_bus_is_ready(bus_.get()) > 0 &&
           sd_bus_get_unique_name(bus_.get(), &own) >= 0 && std::strcmp(own, sender) == 0;
}

void BusConnection::serve() {
    int result = 1;
    for (int count = 0; count < kMessagesPerPass && result > 0; ++count)
        result = sd_bus_process(bus_.get(), nullptr);
    if (result < 0)
        return lose(result);
    noteReadiness();
    waitForMore();
}

/// A bus that has greeted us is one that may be lost, and told of, again.
void BusConnection::noteReadiness() {
    if (!isLossTold_ || sd_bus_is_ready(bus_.get()) <= 0)
        return;
    isLossTold_ = false;
    retrySeconds_ = kFirstRetrySeconds;
    log_.write(fmt::format("{}: it is back", wording_.bus));
}

/// Has the main queue wake us for what the connection waits for now.
void BusConnection::waitForMore() {
    if (state_ != State::open)
        return;
    const int descriptor = sd_bus_get_fd(bus_.get());
    const int events = sd_bus_get_events(bus_.get());
    std::uint64_t deadline = kNoDeadline;
    const int result = sd_bus_get_timeout(bus_.get(), &deadline);
    if (descriptor < 0 || events < 0 || result < 0)
        return setTimer(0);  // it is closing: being served tells why
    if (!watch_)
        watch_ = queue_.watch(descriptor, static_cast<short>(events), [this](short) { serve(); });
    watch_.setEvents(static_cast<short>(events));
    setTimer(deadline);
}

/// The deadline is on the monotonic clock; 0 is now.
void BusConnection::setTimer(std::uint64_t deadlineMicroseconds) {
    const bool isArmed = timer_ != MainQueue::CallID::none;
    if (deadlineMicroseconds == timerDeadline_ && isArmed == (deadlineMicroseconds != kNoDeadline))
        return;
    queue_.cancel(timer_);
    timer_ = MainQueue::CallID::none;
    timerDeadline_ = deadlineMicroseconds;
    if (deadlineMicroseconds == kNoDeadline)
        return;
    timer_ = queue_.after(secondsUntil(deadlineMicroseconds), [this] {
        timer_ = MainQueue::CallID::none;
        serve();
    });
}

void BusConnection::lose(int error) {
    state_ = State::absent;
    watch_.end();
    setTimer(kNoDeadline);
    bus_.reset();
    if (!std::exchange(isLossTold_, true)) {
        tellLoss(error);
        losses_.post({});
    }
    lookForBusLater();
}

void BusConnection::tellLoss(int error) {
    if (address_)
        log_.write(fmt::format("{}: {}; {}", wording_.bus, describe(error), wording_.consequence));
    else
        log_.write(fmt::format("{}: there is none; {}", wording_.bus, wording_.consequence));
}

void BusConnection::lookForBusLater() {
    if (!isWaitedFor_ || !address_ || state_ != State::absent || retry_ != MainQueue::CallID::none)
        return;
    retry_ = queue_.after(retrySeconds_, [this] {
        retry_ = MainQueue::CallID::none;
        lookForBus();
    });
    retrySeconds_ = std::min(2 * retrySeconds_, kLongestRetrySeconds);
}

void BusConnection::lookForBus() {
    state_ = State::unopened;
    if (open())
        returns_.post({});
}

}  // namespace vantor
