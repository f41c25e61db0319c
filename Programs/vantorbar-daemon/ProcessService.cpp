#include "Programs/vantorbar-daemon/ProcessService.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

namespace vantor {

ProcessService::ProcessService(const Environs& environs, Outlet& outlet,
                               std::function<void()> alone)
    : environs_(environs), outlet_(outlet), alone_(std::move(alone)),
      meter_(environs.source, environs.clock) {
    waitForClients();
}

ProcessService::~ProcessService() {
    environs_.queue.cancel(reading_);
    environs_.queue.cancel(ending_);
}

bool ProcessService::addClient(const std::string& client, std::uint32_t user) {
    if (!book_.add(client, user))
        return false;
    environs_.queue.cancel(std::exchange(ending_, MainQueue::CallID::none));
    return true;
}

void ProcessService::removeClient(std::string_view client) {
    if (!book_.has(client))
        return;
    book_.remove(client);
    restIfNobodyAsks();
    if (book_.isEmpty())
        waitForClients();
}

void ProcessService::handle(const std::string& client, const DaemonRequest& request) {
    if (!book_.has(client))
        return;
    switch (request.operation) {
    case DaemonOperation::version:
        return;
    case DaemonOperation::enableHierachy:
        return book_.setHierarchy(client, Hierarchy::combined);
    case DaemonOperation::disableHierachy:
        return book_.setHierarchy(client, Hierarchy::separate);
    case DaemonOperation::startRequestWithKey:
        return start(client, request);
    case DaemonOperation::stopRequestWithKey:
        return stop(client, request);
    default:
        return refuse(request);
    }
}

void ProcessService::start(const std::string& client, const DaemonRequest& request) {
    if (request.key != kProcessesKey)
        return refuse(request);
    if (!book_.start(client, request.key))
        return;
    if (reading_ == MainQueue::CallID::none)
        begin();
    else
        sendTo(client);  // what the others have; nothing while all wait for the first list
}

void ProcessService::stop(std::string_view client, const DaemonRequest& request) {
    if (request.key != kProcessesKey)
        return refuse(request);
    book_.stop(client, request.key);
    restIfNobodyAsks();
}

/// Siblings of the processor module ask for these; a daemon that has more to offer than this one
/// answers them.
void ProcessService::refuse(const DaemonRequest& request) {
    const auto operation = static_cast<std::size_t>(request.operation);
    if (refused_[operation])
        return;
    refused_[operation] = true;
    const bool hasKey = *daemonMethod(request.operation).arguments == 'x';
    environs_.log.write(fmt::format("{}{}: not offered here", daemonMethod(request.operation).name,
                                    hasKey ? fmt::format(" {}", request.key) : ""));
}

void ProcessService::begin() {
    const auto age = meter_.age();
    if (age && *age >= kFirstSeconds && *age <= kOldestSeconds)
        return readAndSend();
    if (age && *age < kFirstSeconds)
        return readAfter(kFirstSeconds - *age);
    lists_ = {};
    meter_.forget();
    readAfter(meter_.takeReading() ? kFirstSeconds : kPaceSeconds);
}

void ProcessService::readAndSend() {
    reading_ = MainQueue::CallID::none;
    readAfter(kPaceSeconds);
    if (!meter_.takeReading())
        return;
    lists_ = {};
    book_.forEachAsking(kProcessesKey, [this](const std::string& client) { sendTo(client); });
}

void ProcessService::sendTo(const std::string& client) {
    const auto& records = list(book_.hierarchy(client));
    if (!records.empty())
        outlet_.sendProcesses(client, records);
}

/// Made once for all clients: somebody who starts and stops all the time costs no files.
const std::vector<ProcessRecord>& ProcessService::list(Hierarchy hierarchy) {
    auto& made = lists_[hierarchy == Hierarchy::combined ? 1 : 0];
    if (!made)
        made = meter_.busiest(kRecords, hierarchy);
    return *made;
}

void ProcessService::readAfter(double delaySeconds) {
    reading_ = environs_.queue.after(delaySeconds, [this] { readAndSend(); });
}

void ProcessService::restIfNobodyAsks() {
    if (!book_.isAsked(kProcessesKey))
        environs_.queue.cancel(std::exchange(reading_, MainQueue::CallID::none));
}

void ProcessService::waitForClients() {
    environs_.queue.cancel(ending_);
    ending_ = environs_.queue.after(kAloneSeconds, [this] { leaveAlone(); });
}

void ProcessService::leaveAlone() {
    waitForClients();
    alone_();
}

}  // namespace vantor
