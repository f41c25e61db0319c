#include "Shared/VTRDaemonConnection.h"

#include <utility>

#include <fmt/format.h>

#include "Platform/DaemonProtocol.h"
#include "Platform/DistributedNotifications.h"
#include "Platform/MainQueue.h"
#include "Platform/Workspace.h"
#include "Shared/External/Logging/LGLog.h"
#include "Shared/ProcessContext.h"
#include "Shared/VTRPreferenceFunctions.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kConnectDelaySeconds = 2;

std::string textForm(std::int64_t key) { return fmt::format("{}", key); }

}  // namespace

VTRDaemonConnection::VTRDaemonConnection(const Ports& ports) : ports_(ports) {
    daemonReady_ = ports_.distributedNotifications.observe(
        std::string(kDaemonReady), [this](const Notification&) { daemonAvailable(); });
    connectLater();
}

VTRDaemonConnection::~VTRDaemonConnection() = default;

VTRDaemonConnection& VTRDaemonConnection::sharedConnection() {
    return ProcessContext::current().daemonConnection();
}

void VTRDaemonConnection::cleanupShared() noexcept {
    ProcessContext& context = ProcessContext::current();
    if (auto* const connection = context.existingDaemonConnection())
        connection->cleanup();
    context.dropDaemonConnection();
}

void VTRDaemonConnection::cleanup() noexcept {
    connection_.reset();
    listeners_.clear();
    daemonReady_.end();
}

template <class Action>
void VTRDaemonConnection::later(Action action) {
    ports_.mainQueue.async([handle = weakSource_.handle(), action = std::move(action)] {
        if (auto* const self = handle.get())
            action(*self);
    });
}

void VTRDaemonConnection::connect() {
    connection_ = ports_.daemonTransport.connect(*this);
    connected();
}

void VTRDaemonConnection::connectIfNeeded() {
    if (!connection_)
        connect();
}

void VTRDaemonConnection::connectLater() {
    ports_.mainQueue.after(kConnectDelaySeconds, [handle = weakSource_.handle()] {
        if (auto* const self = handle.get())
            self->connectIfNeeded();
    });
}

void VTRDaemonConnection::daemonAvailable() {
    connection_.reset();
    connectLater();
}

void VTRDaemonConnection::interrupted() { linkLost("interupption"); }

void VTRDaemonConnection::invalidated() { linkLost("invalidation"); }

void VTRDaemonConnection::linkLost(std::string_view how) {
    LGLogInfo(how);
    connection_.reset();
    disconnected();
}

void VTRDaemonConnection::addListener(Listener listener, std::int64_t key) {
    if (listener)
        listeners_[textForm(key)].push_back(std::move(listener));
}

const VTRDaemonConnection::Response* VTRDaemonConnection::storageForKey(std::int64_t key) const {
    const auto stored = storage_.find(textForm(key));
    return stored == storage_.end() ? nullptr : &stored->second;
}

void VTRDaemonConnection::daemonResponse(const Response& response) {
    const auto entry = response.find("type");
    const std::string* const type = entry == response.end() ? nullptr : entry->second.text();
    if (type == nullptr)
        return;
    storage_.insert_or_assign(*type, response);
    const auto found = listeners_.find(*type);
    if (found == listeners_.end())
        return;
    // A listener may add another one, or end all this.
    const std::vector<Listener> listeners = found->second;
    for (const Listener& listener : listeners)
        listener->processesUpdated(response);
}

void VTRDaemonConnection::send(std::string_view operation, const PropertyValue::Array& arguments) {
    connectIfNeeded();
    connection_->call(operation, arguments);
}

void VTRDaemonConnection::request(std::string_view operation, PropertyValue::Array arguments) {
    later([operation, arguments = std::move(arguments)](VTRDaemonConnection& self) {
        self.send(operation, arguments);
    });
}

void VTRDaemonConnection::startProcessesWithKey(std::int64_t key) {
    LGLogInfo(fmt::format("startProcessesWithKey {}", key));
    later([key](VTRDaemonConnection& self) {
        self.send(VTRBoolForKey("ProcessesCombine") ? DaemonProtocol::enableHierachy
                                                    : DaemonProtocol::disableHierachy);
        self.send(DaemonProtocol::startRequestWithKey, {key});
    });
}

void VTRDaemonConnection::stopProcessesWithKey(std::int64_t key) {
    request(DaemonProtocol::stopRequestWithKey, {key});
}

void VTRDaemonConnection::smartTemps() { request(DaemonProtocol::smartTemps); }

void VTRDaemonConnection::startSMARTStatus() { request(DaemonProtocol::startSMARTStatus); }

void VTRDaemonConnection::stopSMARTStatus() { request(DaemonProtocol::stopSMARTStatus); }

void VTRDaemonConnection::startSMARTTemps() { request(DaemonProtocol::startSMARTTemps); }

void VTRDaemonConnection::stopSMARTTemps() { request(DaemonProtocol::stopSMARTTemps); }

void VTRDaemonConnection::refreshDHCP(std::string service) {
    request(DaemonProtocol::refreshDHCP, {std::move(service)});
}

void VTRDaemonConnection::toggleAirPortPower() { request(DaemonProtocol::toggleAirPortPower); }

void VTRDaemonConnection::setNetworkSet(std::string set) {
    request(DaemonProtocol::setNetworkSet, {std::move(set)});
}

void VTRDaemonConnection::setFanSet(PropertyValue::Array set) {
    request(DaemonProtocol::setFanSet, {PropertyValue(std::move(set))});
}

void VTRDaemonConnection::version(VersionReply reply) {
    connectIfNeeded();
    connection_->version(std::move(reply));
}

const PropertyValue::Dictionary* VTRDaemonConnection::lsInforForPid(std::int64_t processID) {
    const std::string key = textForm(processID);
    if (const auto known = lsInfoCache_.find(key); known != lsInfoCache_.end())
        return &known->second;
    auto information = ports_.workspace.applicationInformation(processID);
    if (!information)
        return nullptr;
    return &lsInfoCache_.emplace(key, *std::move(information)).first->second;
}

}  // namespace vantor::inline VANTOR_MODULE
