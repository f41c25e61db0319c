#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Foundation/NotificationCenter.h"
#include "Platform/Linux/LinuxMainQueue.h"
#include "Platform/SystemLog.h"

struct sd_bus;
struct sd_bus_message;
struct sd_bus_slot;

namespace vantor {

struct BusMessageRelease {
    void operator()(sd_bus_message* message) const noexcept;
};
/// A message on its way out; null where there is no bus to send it on.
using BusMessage = std::unique_ptr<sd_bus_message, BusMessageRelease>;

/// Where a signal comes from or a call goes to. An empty peer stands for everybody.
struct BusAddressee {
    std::string peer, path, interface, member;
};

/// One connection to a message bus, opened when it is first needed and served by the main queue.
/// Nothing here waits for the bus but `flush`: connecting, subscribing and calling all go on in
/// the background.
/// Errors: a bus that isn't there, refuses us or goes away is told to the system log in one line,
///         and from then on everything here does nothing. Where somebody wants to know of its
///         return it is looked for, more and more seldom, and what was lost is then begun anew.
/// Thread: main queue only. The queue and the log outlive it.
class BusConnection {
public:
    /// Told a message, on the main queue, inside the connection's own work: it may send, but drops
    /// neither the connection nor the slot that called it.
    using Handler = std::function<void(sd_bus_message& message)>;

    /// Keeps a subscription or a pending call alive; may outlive the connection.
    class [[nodiscard]] Slot {
    public:
        Slot() noexcept;
        ~Slot();
        Slot(Slot&&) noexcept;
        Slot& operator=(Slot&&) noexcept;
        explicit operator bool() const noexcept { return hook_ != nullptr; }

    private:
        friend class BusConnection;
        struct Hook;
        explicit Slot(std::unique_ptr<Hook> hook) noexcept;
        std::unique_ptr<Hook> hook_;
    };

    /// What the system log is told when there is no bus: which one, and what then won't work.
    struct Wording {
        std::string bus, consequence;
    };

    static constexpr double kFirstRetrySeconds = 1, kLongestRetrySeconds = 60;

    /// Nothing for `address` means that there is no bus.
    BusConnection(LinuxMainQueue& queue, SystemLog& log, Wording wording,
                  std::optional<std::string> address);
    ~BusConnection();
    BusConnection(const BusConnection&) = delete;
    BusConnection& operator=(const BusConnection&) = delete;

    /// False where there is no bus (any more). True may still be followed by the loss of it.
    bool open();

    /// Hears broadcasts only: what somebody sends to us alone is not what `from` says it is.
    /// With `firstArgument` only those whose first argument is that text.
    Slot onSignal(const BusAddressee& from, Handler handler,
                  const std::optional<std::string>& firstArgument = {});
    /// Hears what is called on an object of ours, by whomever: the handler looks at the sender.
    /// Who waits for an answer gets an empty one. Without a member, all calls of the interface are
    /// heard, and to answer them, with an error where there is no such method, is the handler's
    /// affair.
    Slot onCall(const BusAddressee& to, Handler handler);
    /// Told when the connection is lost, maybe inside one of these operations: it only takes note.
    Observation onLoss(std::function<void()> lost);
    /// From here on a bus that is lost, or wasn't there, is looked for. Told when it is reached:
    /// subscriptions and calls of before are over.
    Observation onReturn(std::function<void()> returned);
    BusMessage newSignal(const BusAddressee& from);
    BusMessage newCall(const BusAddressee& to);
    void send(sd_bus_message& message);
    /// `reply` is told the answer or the error, unless the slot goes first.
    Slot call(sd_bus_message& message, Handler reply);
    /// Returns when all that was sent has left this process, or after that many seconds.
    void flush(double maximumSeconds);
    /// Whether this very connection sent `message`.
    bool isOwn(sd_bus_message& message) const noexcept;

private:
    enum class State { unopened, open, absent };
    struct Close {
        void operator()(sd_bus* bus) const noexcept;
    };

    int connect() noexcept;
    bool hasUnsent() const noexcept;
    void serve();
    void waitForMore();
    void setTimer(std::uint64_t deadlineMicroseconds);
    void lose(int error);
    void tellLoss(int error);
    void noteReadiness();
    void lookForBusLater();
    void lookForBus();

    LinuxMainQueue& queue_;
    SystemLog& log_;
    Wording wording_;
    std::optional<std::string> address_;
    NotificationCenter losses_, returns_;
    State state_ = State::unopened;
    std::unique_ptr<sd_bus, Close> bus_;
    LinuxMainQueue::Watch watch_;
    std::uint64_t timerDeadline_;
    MainQueue::CallID timer_ = MainQueue::CallID::none;
    bool isWaitedFor_ = false, isLossTold_ = false;
    double retrySeconds_ = kFirstRetrySeconds;
    MainQueue::CallID retry_ = MainQueue::CallID::none;
};

}  // namespace vantor
