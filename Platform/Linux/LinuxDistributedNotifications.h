#pragma once

#include <functional>

#include "Foundation/WeakHandle.h"
#include "Platform/DistributedNotifications.h"
#include "Platform/Linux/BusConnection.h"

namespace vantor {

/// Signals on the session bus: a name and a small dictionary of texts. Without a bus they stay
/// in this process.
/// Errors: what others send that isn't such a signal, or is larger than any of ours, is dropped.
class LinuxDistributedNotifications final : public DistributedNotifications {
public:
    LinuxDistributedNotifications(MainQueue& queue, BusConnection& sessionBus);

    /// When it returns the bus has the notification, so that a program may post and end.
    void post(std::string_view name, const NotificationInfo& info) override;
    [[nodiscard]] Observation observe(std::string name,
                                      NotificationCenter::Observer observer) override;

    /// Tells this process's own observers, as a call on the main queue.
    void deliverLocally(std::string_view name, const NotificationInfo& info = {});
    /// `arrived` runs whenever another process posted something, before observers hear of it.
    void setArrived(std::function<void()> arrived) { arrived_ = std::move(arrived); }

private:
    struct Letter;

    void listen();
    void subscribe();
    void receive(sd_bus_message& message);
    void enqueue(std::unique_ptr<const Letter> letter);
    void deliver(const Letter& letter);

    MainQueue& queue_;
    BusConnection& bus_;
    std::function<void()> arrived_;
    NotificationCenter observers_;
    bool listens_ = false;
    BusConnection::Slot subscription_;
    Observation busReturns_;
    WeakSource<LinuxDistributedNotifications> weakSource_{*this};
};

}  // namespace vantor
