#pragma once

#include "Platform/Appearance.h"
#include "Platform/Linux/LinuxDistributedNotifications.h"

namespace vantor {

/// The appearance of the panel in which the item stands, which needn't be the desktop's: what is
/// painted there has to be read on the panel. The contrast is the desktop's.
/// Thread: main queue.
class PanelAppearance final : public Appearance {
public:
    /// Both outlive it.
    PanelAppearance(const Appearance& desktop, LinuxDistributedNotifications& notifications,
                    bool isDark) noexcept
        : desktop_(desktop), notifications_(notifications), isDark_(isDark) {}

    bool isDark() const noexcept override { return isDark_; }
    bool increasesContrast() const noexcept override { return desktop_.increasesContrast(); }

    /// Tells this process's observers, where that is new.
    void setDark(bool isDark);

private:
    const Appearance& desktop_;
    LinuxDistributedNotifications& notifications_;
    bool isDark_;
};

}  // namespace vantor
