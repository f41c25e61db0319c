#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/NotificationCenter.h"
#include "Foundation/WeakHandle.h"
#include "Platform/DaemonTransport.h"
#include "Platform/Ports.h"
#include "Shared/VTRProcessesCallBackProtocol.h"

namespace vantor::inline VANTOR_MODULE {

/// The client's end of the link to the daemon, which sees what a user's process can't. It
/// connects on demand, sends requests on, and hands the answers to whoever listens.
/// A lost link isn't made anew by itself: the next request does that, or the daemon's word that
/// it has started.
/// Errors: none shows. A request that nobody hears is dropped.
/// Thread: main queue, where the requests queue themselves: those may be made anywhere.
class VTRDaemonConnection : public DaemonClient {
public:
    using Response = PropertyValue::Dictionary;
    using Listener = std::shared_ptr<VTRProcessesCallBackProtocol>;
    using VersionReply = std::function<void(std::int64_t, std::int64_t)>;

    explicit VTRDaemonConnection(const Ports& ports);
    ~VTRDaemonConnection() override;
    VTRDaemonConnection(const VTRDaemonConnection&) = delete;
    VTRDaemonConnection& operator=(const VTRDaemonConnection&) = delete;

    static VTRDaemonConnection& sharedConnection();
    /// Ends the shared connection, if there is one; the next use makes a new one.
    static void cleanupShared() noexcept;
    /// Closes the link and drops the listeners. What comes after that connects again.
    void cleanup() noexcept;

    void connect();
    void connectIfNeeded();
    bool isConnected() const noexcept { return connection_ != nullptr; }
    virtual void connected() {}
    virtual void disconnected() {}
    /// The daemon has just started. Gives it time to get ready.
    void daemonAvailable();

    /// Holds the listener until `cleanup`; null is ignored, and one that is added twice is told
    /// twice.
    void addListener(Listener listener, std::int64_t key);
    /// The last response under that key, until the next one; null where there was none.
    const Response* storageForKey(std::int64_t key) const;

    /// As they stand in the preferences, child processes are combined with their parents.
    void startProcessesWithKey(std::int64_t key);
    void stopProcessesWithKey(std::int64_t key);
    void smartTemps();
    void startSMARTStatus();
    void stopSMARTStatus();
    void startSMARTTemps();
    void stopSMARTTemps();
    void refreshDHCP(std::string service);
    void toggleAirPortPower();
    void setNetworkSet(std::string set);
    void setFanSet(PropertyValue::Array set);
    /// Asks at once, on the main queue. Without an answer, `reply` is never called.
    void version(VersionReply reply);

    /// What the system knows of a process as an application; null where it doesn't know it. The
    /// first answer is kept, an empty one, too: process IDs that are used again want
    /// `clearLsInfoCache`.
    const PropertyValue::Dictionary* lsInforForPid(std::int64_t processID);
    void clearLsInfoCache() noexcept { lsInfoCache_.clear(); }

    void daemonResponse(const Response& response) override;
    void interrupted() override;
    void invalidated() override;

private:
    void connectLater();
    void linkLost(std::string_view how);
    /// On the main queue, in its turn, if there is still somebody to do it.
    template <class Action>
    void later(Action action);
    void request(std::string_view operation, PropertyValue::Array arguments = {});
    void send(std::string_view operation, const PropertyValue::Array& arguments = {});

    Ports ports_;
    std::unique_ptr<DaemonConnection> connection_;  // null: not connected
    std::map<std::string, Response, std::less<>> storage_;
    std::map<std::string, std::vector<Listener>, std::less<>> listeners_;
    std::map<std::string, PropertyValue::Dictionary, std::less<>> lsInfoCache_;
    Observation daemonReady_;
    WeakSource<VTRDaemonConnection> weakSource_{*this};
};

}  // namespace vantor::inline VANTOR_MODULE
