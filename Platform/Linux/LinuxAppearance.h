#pragma once

#include "Foundation/WeakHandle.h"
#include "Platform/Appearance.h"
#include "Platform/Linux/BusConnection.h"
#include "Platform/Linux/LinuxDistributedNotifications.h"

namespace vantor {

/// What the desktop portal says of colours and contrast. It is asked in the background, once the
/// main queue runs; until it answers, and where there is none, all is light and plain. Each
/// change is told to this process's observers of the distributed centre.
class LinuxAppearance final : public Appearance {
public:
    LinuxAppearance(MainQueue& queue, BusConnection& sessionBus,
                    LinuxDistributedNotifications& notifications);
    bool isDark() const noexcept override { return isDark_; }
    bool increasesContrast() const noexcept override { return increasesContrast_; }

private:
    struct Setting;

    void start();
    void askPortal();
    BusConnection::Slot ask(const Setting& setting);
    void settingChanged(sd_bus_message& message);
    void readValue(const Setting& setting, sd_bus_message& message);

    static const Setting kColourScheme, kContrast;

    BusConnection& bus_;
    LinuxDistributedNotifications& notifications_;
    bool isDark_ = false, increasesContrast_ = false;
    BusConnection::Slot changes_, colourSchemeReply_, contrastReply_;
    Observation busReturns_;
    WeakSource<LinuxAppearance> weakSource_{*this};
};

}  // namespace vantor
