#include "Hosts/Panel/PanelSession.h"

namespace vantor {
namespace {

/// An item that changes its length each time it is painted mustn't be painted for ever.
constexpr int kMostPaintsAtOnce = 4;

/// The place in the panel is as long as the item, and has the panel's colours.
BarOptions placeOptions() {
    BarOptions options;
    options.side = ItemSide::left;
    options.backdrop = BarBackdrop::foreign;
    options.margin = 0;
    return options;
}

}  // namespace

PanelSession::PanelSession(BarToolkit& toolkit, const DirectorySources& directories, bool isDark)
    : platform_(directories),
      appearance_(platform_.ports().appearance, platform_.distributedNotifications(), isDark),
      context_(ports()), host_(toolkit, placeOptions()), extra_(host_) {
    host_.setExtra(&extra_);
}

PanelSession::~PanelSession() {
    host_.setExtra(nullptr);
    extra_.willUnload();
}

Ports PanelSession::ports() noexcept {
    PortOverrides overrides;
    overrides.appearance = &appearance_;
    return overriddenPorts(platform_.ports(), overrides);
}

void PanelSession::displayIfNeeded() {
    for (int paint = 0; host_.needsDisplay() && paint < kMostPaintsAtOnce; ++paint)
        host_.displayIfNeeded();
}

}  // namespace vantor
