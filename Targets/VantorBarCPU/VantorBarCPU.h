#pragma once

#include "Shared/VTRMenuExtra.h"

namespace vantor::inline VANTOR_MODULE {

/// The processor item.
class VantorBarCPU final : public VTRMenuExtra {
public:
    using VTRMenuExtra::VTRMenuExtra;

    std::string_view extraName() const override { return "cpu"; }
    std::string_view AXDescription() const override { return "Vantor Bar CPU"; }
    void loadModules() override;

    // Each starts an application a moment later, when the open menu has closed.
    void openActivityMonitor() { openApplication("Activity Monitor.app"); }
    void openConsole() { openApplication("Console.app"); }
    void openPreferencePane() { openApplication("Vantor Bar.app"); }

private:
    /// `name` is a literal.
    void openApplication(std::string_view name);
};

}  // namespace vantor::inline VANTOR_MODULE
