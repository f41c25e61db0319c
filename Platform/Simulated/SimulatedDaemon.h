#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "Foundation/PropertyValue.h"
#include "Platform/DaemonTransport.h"
#include "Platform/Simulated/Journal.h"
#include "Platform/Simulated/SimulatedDistributedNotifications.h"
#include "Platform/Simulated/SimulatedMainQueue.h"

namespace vantor::simulated {

/// A daemon that reports the processes that it is told. It answers a request at once, and again
/// every 2 s in main-queue time until the request is stopped, its link closed, or the daemon gone.
/// Answers that are due while the main queue stands still arrive one after the other when it runs
/// again. Every call is told to the journal, whether or not the daemon is there.
/// Thread: the test's. A link may outlive it, and does nothing then.
class SimulatedDaemon final : public DaemonTransport {
public:
    SimulatedDaemon(SimulatedMainQueue& queue, SimulatedDistributedNotifications& notifications,
                    Journal* journal) noexcept
        : queue_(queue), notifications_(notifications), journal_(journal) {}
    ~SimulatedDaemon() override;

    /// An array of records; with nothing there is no daemon.
    void setProcesses(PropertyValue processes);
    /// What it answers when asked for its version; nothing leaves the question unanswered.
    void setVersion(std::optional<std::pair<std::int64_t, std::int64_t>> version) noexcept {
        version_ = version;
    }
    /// Knows of no request made before, and posts that it is ready.
    void comeUp();
    /// Away until it comes up, and nobody is told.
    void goDown() noexcept;
    /// The same, and every link is interrupted.
    void crash();
    /// Every link hears that there is no such daemon.
    void refuse();
    std::size_t linkCount() const noexcept { return links_.size(); }

    std::unique_ptr<DaemonConnection> connect(DaemonClient& client) override;

private:
    class Link;
    struct Request {
        std::uint64_t id;
        Link* link;
        std::int64_t key;
    };

    bool isThere() const noexcept { return !isAway_ && !processes_.isNothing(); }
    void send(Link& link, std::string_view operation, const PropertyValue::Array& arguments);
    void start(Link& link, std::int64_t key);
    void stop(const Link& link, std::int64_t key) noexcept;
    void answerAt(double time, std::uint64_t requestID);
    void answer(double time, const Request& request) const;
    template <class Tell>
    void tellLinks(Tell tell);

    SimulatedMainQueue& queue_;
    SimulatedDistributedNotifications& notifications_;
    Journal* journal_;
    PropertyValue processes_;
    std::optional<std::pair<std::int64_t, std::int64_t>> version_;
    bool isAway_ = false;
    std::uint64_t lastRequest_ = 0;
    std::vector<Request> requests_;
    std::vector<Link*> links_;
};

}  // namespace vantor::simulated
