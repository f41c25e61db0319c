#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Foundation/WeakHandle.h"
#include "Platform/Clock.h"
#include "Platform/Linux/BusConnection.h"
#include "Platform/Linux/Environment.h"
#include "Programs/vantorbar-daemon/CallRate.h"
#include "Programs/vantorbar-daemon/ProcessService.h"

namespace vantor {

inline constexpr const char* kDaemonName = "com.kolbrin.vantorbardaemon";

/// Where the bus is that this daemon serves: the one that started it, else the session's, else
/// the system's.
std::optional<std::string> daemonBusAddress(const Environment& environment);

/// The daemon's end of the link: it owns the name, lets in who may be a client, hands requests to
/// the service and lists to the clients.
/// A client is a connection of one of a few users, as the bus knows it. Its requests wait until
/// the bus has said whose it is. It is forgotten when it leaves the bus, when it takes no list for
/// kUnreadSeconds, and not heard any more when it calls too often or sends what is too
/// large.
/// Shape:  at most kCallers are known at a time; of each at most kWaitingCalls wait, and one list
///         is under way. What isn't one of our calls, or comes from somebody who isn't let in, is
///         never looked into.
/// Thread: main queue. Everything it was made from outlives it.
class DaemonBus final : public ProcessService::Outlet {
public:
    static constexpr std::size_t kCallers = 512;  // twice what a bus gives one user
    static constexpr std::size_t kWaitingCalls = 16;
    static constexpr double kUnreadSeconds = 10;

    struct Environs {
        LinuxMainQueue& queue;
        const Clock& clock;
        SystemLog& log;
        BusConnection& bus;
    };

    /// `users` are those whose connections may be clients.
    DaemonBus(const Environs& environs, std::vector<std::uint32_t> users);

    /// Asks for the name. `ready` is told when it's ours, `taken` when somebody else has it.
    void own(ProcessService& service, std::function<void()> ready, std::function<void()> taken);
    /// Gives the name back. `gone` is told when no call can come any more; where one came before
    /// that, it is served, and the name asked for again.
    void release(std::function<void()> gone);

    void sendProcesses(const std::string& client,
                       const std::vector<ProcessRecord>& records) override;

private:
    struct WaitingCall {
        DaemonRequest request;
        BusMessage message;  // null where it has its answer already
    };
    /// Somebody on the bus who called us.
    struct Caller {
        /// Who is turned away may try again; who is refused isn't heard any more.
        enum class State { asked, admitted, turnedAway, refused } state = State::asked;
        std::uint32_t user = 0;  // once the bus has said it
        CallRate rate;
        std::vector<WaitingCall> waiting;
        BusConnection::Slot departure, userAnswer, receipt;
        std::optional<double> sentAt;  // the list whose receipt hasn't come
    };

    void askForName();
    void receive(sd_bus_message& message);
    Caller* callerOf(sd_bus_message& message);
    Caller* meet(const std::string& name);
    void learnUser(const std::string& name, sd_bus_message& answer);
    void admit(const std::string& name, Caller& caller);
    void refuse(const std::string& name, Caller& caller);
    void take(const std::string& name, Caller& caller, WaitingCall call);
    void serve(const std::string& name, const WaitingCall& call);
    void endOrGoOn();
    bool hasRead(const std::string& name, Caller& caller);
    void askForReceipt(const std::string& name, Caller& caller);
    void forgetLater(const std::string& name);

    Environs environs_;
    std::vector<std::uint32_t> users_;
    ProcessService* service_ = nullptr;
    std::function<void()> ready_, taken_, gone_;
    bool isAnnounced_ = false;
    BusConnection::Slot calls_, nameAnswer_;
    std::map<std::string, Caller, std::less<>> callers_;
    WeakSource<DaemonBus> weakSource_{*this};
};

}  // namespace vantor
