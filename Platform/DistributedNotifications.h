#pragma once

#include "Foundation/NotificationCenter.h"

namespace vantor {

/// Port: notifications between the suite's processes. What `post` is given reaches the observers
/// of every process of this user that is there now, this one included, as a call on its main
/// queue; it never comes back inside `post`.
/// Thread: main queue only.
class DistributedNotifications {
public:
    virtual ~DistributedNotifications() = default;
    virtual void post(std::string_view name, const NotificationInfo& info) = 0;
    [[nodiscard]] virtual Observation observe(std::string name,
                                              NotificationCenter::Observer observer) = 0;
};

}  // namespace vantor
