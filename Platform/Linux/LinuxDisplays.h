#pragma once

#include "Platform/Displays.h"

namespace vantor {

/// A machine without screens.
class LinuxDisplays final : public Displays {
public:
    std::vector<Screen> screens() override { return {}; }
    NotificationCenter& notificationCenter() noexcept override { return center_; }

private:
    NotificationCenter center_;
};

}  // namespace vantor
