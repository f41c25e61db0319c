#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/NotificationCenter.h"
#include "Foundation/WeakHandle.h"
#include "Platform/DaemonTransport.h"
#include "Platform/Linux/BusConnection.h"
#include "Platform/Linux/LinuxMainQueue.h"
#include "Platform/SystemLog.h"

namespace vantor {

/// A link to the daemon over the first of some buses that has it.
///
/// What is sent first opens the bus and has it start the daemon; until that is done, calls wait
/// here. From then on the daemon is whoever owns its name, and only what it sends is a response.
/// The link ends when the name changes hands, which is an interruption, or when no bus has such a
/// service or the bus goes, which is an invalidation; the client is told once.
/// Errors: calls beyond kMostWaiting that wait, and values that no bus carries, are dropped.
class LinuxDaemonLink final : public DaemonConnection {
public:
    static constexpr std::size_t kMostWaiting = 64;

    LinuxDaemonLink(LinuxMainQueue& queue, std::vector<std::string> addresses,
                    DaemonClient& client);
    ~LinuxDaemonLink() override;
    LinuxDaemonLink(const LinuxDaemonLink&) = delete;
    LinuxDaemonLink& operator=(const LinuxDaemonLink&) = delete;

    void call(std::string_view operation, const PropertyValue::Array& arguments) override;
    void version(std::function<void(std::int64_t, std::int64_t)> reply) override;

private:
    using VersionReply = std::function<void(std::int64_t, std::int64_t)>;
    enum class State { unopened, asking, up, ended };
    /// A bus that isn't there was told to the log by those who need it.
    struct NoLog final : SystemLog {
        void write(std::string_view) noexcept override {}
    };
    struct Question {
        BusConnection::Slot slot;
        bool isAnswered = false;
    };

    void whenUp(std::function<void()> send);
    void tryNextBus();
    bool askForDaemon();
    BusConnection::Slot askBus(const char* member, BusConnection::Handler reply);
    void leaveBus() noexcept;
    void daemonStarted(sd_bus_message& reply);
    void ownerChanged(sd_bus_message& signal);
    void responseCame(sd_bus_message& call);
    void askVersion(VersionReply reply);
    void versionCame(sd_bus_message& message, VersionReply reply);
    void busFailed();
    template <class Action>
    void later(Action action);
    void end(void (DaemonClient::*tell)());

    LinuxMainQueue& queue_;
    std::vector<std::string> addresses_;  // those not tried yet
    DaemonClient& client_;
    State state_ = State::unopened;
    std::uint64_t attempt_ = 0;
    std::vector<std::function<void()>> waiting_;
    std::string owner_;
    NoLog noLog_;
    std::unique_ptr<BusConnection> bus_;
    Observation loss_;
    BusConnection::Slot responses_, ownerChanges_, ownerReply_, startReply_;
    std::list<Question> questions_;
    WeakSource<LinuxDaemonLink> weakSource_{*this};
};

}  // namespace vantor
