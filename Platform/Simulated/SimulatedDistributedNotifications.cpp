#include "Platform/Simulated/SimulatedDistributedNotifications.h"

#include <memory>
#include <utility>

namespace vantor::simulated {

void SimulatedDistributedNotifications::arrive(std::string name, NotificationInfo info) {
    queue_.async([this, name = std::move(name),
                  info = std::make_unique<const NotificationInfo>(std::move(info))] {
        center_.post(name, *info);
    });
}

void SimulatedDistributedNotifications::post(std::string_view name, const NotificationInfo& info) {
    if (journal_ != nullptr)
        journal_->notification("distributed", name, info);
    arrive(std::string(name), info);
}

Observation SimulatedDistributedNotifications::observe(std::string name,
                                                       NotificationCenter::Observer observer) {
    return center_.observe(std::move(name), std::move(observer));
}

void SimulatedLocalNotifications::post(std::string_view name, const NotificationInfo& info) {
    if (journal_ != nullptr)
        journal_->notification("local", name, info);
    NotificationCenter::post(name, info);
}

}  // namespace vantor::simulated
