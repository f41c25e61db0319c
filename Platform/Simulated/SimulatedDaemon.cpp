#include "Platform/Simulated/SimulatedDaemon.h"

#include <algorithm>
#include <string_view>

#include <fmt/format.h>

#include "Foundation/WeakHandle.h"
#include "Platform/DaemonProtocol.h"

namespace vantor::simulated {
namespace {

constexpr double kSecondsBetweenAnswers = 2;

}  // namespace

/// One client's link; the daemon forgets what it asked for when it closes.
class SimulatedDaemon::Link final : public DaemonConnection {
public:
    Link(SimulatedDaemon& daemon, DaemonClient& client) : daemon_(&daemon), client_(client) {
        daemon.links_.push_back(this);
    }
    ~Link() override {
        if (daemon_ == nullptr)
            return;
        std::erase(daemon_->links_, this);
        std::erase_if(daemon_->requests_,
                      [this](const auto& request) { return request.link == this; });
    }
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    void call(std::string_view operation, const PropertyValue::Array& arguments) override {
        if (daemon_ != nullptr)
            daemon_->send(*this, operation, arguments);
    }

    void version(std::function<void(std::int64_t, std::int64_t)> reply) override {
        call(DaemonProtocol::version, {});
        if (daemon_ == nullptr || !daemon_->isThere() || !daemon_->version_)
            return;
        daemon_->queue_.async([handle = handle(), pair = *daemon_->version_,
                               reply = std::make_unique<decltype(reply)>(std::move(reply))] {
            if (handle.get() != nullptr)
                (*reply)(pair.first, pair.second);
        });
    }

    DaemonClient& client() noexcept { return client_; }
    void orphan() noexcept { daemon_ = nullptr; }
    WeakHandle<Link> handle() const noexcept { return weakSource_.handle(); }

private:
    SimulatedDaemon* daemon_;
    DaemonClient& client_;
    WeakSource<Link> weakSource_{*this};
};

SimulatedDaemon::~SimulatedDaemon() {
    for (Link* const link : links_)
        link->orphan();
}

std::unique_ptr<DaemonConnection> SimulatedDaemon::connect(DaemonClient& client) {
    return std::make_unique<Link>(*this, client);
}

void SimulatedDaemon::setProcesses(PropertyValue processes) {
    processes_ = std::move(processes);
    if (processes_.isNothing())
        requests_.clear();
}

void SimulatedDaemon::comeUp() {
    requests_.clear();
    isAway_ = false;
    notifications_.arrive(std::string(kDaemonReady), {});
}

void SimulatedDaemon::goDown() noexcept {
    requests_.clear();
    isAway_ = true;
}

void SimulatedDaemon::crash() {
    goDown();
    tellLinks([](DaemonClient& client) { client.interrupted(); });
}

void SimulatedDaemon::refuse() {
    tellLinks([](DaemonClient& client) { client.invalidated(); });
}

/// Whoever is told may close links, and open new ones.
template <class Tell>
void SimulatedDaemon::tellLinks(Tell tell) {
    std::vector<WeakHandle<Link>> told;
    for (const Link* const link : links_)
        told.push_back(link->handle());
    for (const WeakHandle<Link>& link : told)
        if (link.get() != nullptr)
            tell(link.get()->client());
}

void SimulatedDaemon::send(Link& link, std::string_view operation,
                           const PropertyValue::Array& arguments) {
    if (journal_ != nullptr)
        journal_->daemon(operation, arguments);
    if (!isThere())
        return;
    if (operation == DaemonProtocol::startRequestWithKey)
        start(link, arguments.at(0).integerValue());
    if (operation == DaemonProtocol::stopRequestWithKey)
        stop(link, arguments.at(0).integerValue());
}

/// A second request for a key takes the place of the first one.
void SimulatedDaemon::start(Link& link, std::int64_t key) {
    stop(link, key);
    requests_.push_back({++lastRequest_, &link, key});
    answer(queue_.now(), requests_.back());
    answerAt(queue_.now() + kSecondsBetweenAnswers, lastRequest_);
}

void SimulatedDaemon::stop(const Link& link, std::int64_t key) noexcept {
    std::erase_if(requests_, [&](const Request& request) {
        return request.link == &link && request.key == key;
    });
}

void SimulatedDaemon::answerAt(double time, std::uint64_t requestID) {
    queue_.at(time, [this, time, requestID] {
        const auto request = std::ranges::find(requests_, requestID, &Request::id);
        if (request == requests_.end())
            return;
        answer(time, *request);
        answerAt(time + kSecondsBetweenAnswers, requestID);
    });
}

/// What was sent arrives, in its place among the calls due, unless the link is closed first.
void SimulatedDaemon::answer(double time, const Request& request) const {
    const PropertyValue::Dictionary response{{"type", fmt::format("{}", request.key)},
                                             {"processes", processes_}};
    queue_.at(time, [link = request.link->handle(),
                     response = std::make_unique<const PropertyValue::Dictionary>(response)] {
        if (link.get() != nullptr)
            link.get()->client().daemonResponse(*response);
    });
}

}  // namespace vantor::simulated
