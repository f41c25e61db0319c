#pragma once

#include <string_view>

#include "Platform/DistributedNotifications.h"
#include "Platform/Simulated/Journal.h"
#include "Platform/Simulated/SimulatedMainQueue.h"

namespace vantor::simulated {

/// The user's bus, with one program of ours on it and whoever the script speaks for.
class SimulatedDistributedNotifications final : public DistributedNotifications {
public:
    SimulatedDistributedNotifications(SimulatedMainQueue& queue, Journal* journal) noexcept
        : queue_(queue), journal_(journal) {}

    /// Another process posted it.
    void arrive(std::string name, NotificationInfo info);

    void post(std::string_view name, const NotificationInfo& info) override;
    Observation observe(std::string name, NotificationCenter::Observer observer) override;

private:
    SimulatedMainQueue& queue_;
    Journal* journal_;
    NotificationCenter center_;
};

/// The program's own centre, which the journal listens to.
class SimulatedLocalNotifications final : public NotificationCenter {
public:
    explicit SimulatedLocalNotifications(Journal* journal) noexcept : journal_(journal) {}

    void post(std::string_view name, const NotificationInfo& info = {}) override;

private:
    Journal* journal_;
};

}  // namespace vantor::simulated
