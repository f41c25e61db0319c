#pragma once

#include <functional>

#include "Hosts/Gtk/BarHost.h"
#include "Hosts/Panel/PanelAppearance.h"
#include "Platform/Linux/LinuxPlatform.h"
#include "Shared/ProcessContext.h"
#include "Targets/VantorBarCPU/VantorBarCPU.h"

namespace vantor {

/// The item in a panel that is somebody else's program: one world, with its collectors and its
/// history, for all the places that the item has in there. It ends with the last of them.
/// Shape:  the places are the toolkit's bars.
/// Errors: making it throws where the system has no descriptor left.
/// Thread: the one on which the panel's main loop runs.
class PanelSession {
public:
    /// The toolkit has a place already, and outlives the session.
    PanelSession(BarToolkit& toolkit, const DirectorySources& directories, bool isDark);
    /// Ends the item in good order.
    ~PanelSession();
    PanelSession(const PanelSession&) = delete;
    PanelSession& operator=(const PanelSession&) = delete;

    /// What the panel's main loop has to serve.
    LinuxMainQueue& mainQueue() noexcept { return platform_.mainQueue(); }
    void setDark(bool isDark) { appearance_.setDark(isDark); }
    // Before the loop sleeps.
    bool needsDisplay() const noexcept { return host_.needsDisplay(); }
    void displayIfNeeded();

private:
    Ports ports() noexcept;

    LinuxPlatform platform_;
    PanelAppearance appearance_;
    ProcessContext context_;
    BarHost host_;
    VantorBarCPU extra_;
};

}  // namespace vantor
