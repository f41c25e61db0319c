#pragma once

#include "Shared/VTRMenuExtra.h"
#include "Shared/VTRPreferences.h"
#include "Targets/VantorBarCPU/Classes/VTRCPUModule.h"

namespace vantor {

/// An item that stands for several modules; here it holds the processors'.
class CombinedExtra final : public VTRMenuExtra {
public:
    using VTRMenuExtra::VTRMenuExtra;

    std::string_view extraName() const override { return "combined"; }
    bool isCombinedExtra() const override { return true; }
    void loadModules() override { mutableModules().push_back(std::make_unique<VTRCPUModule>(*this)); }
    void reloadModules(const Notification& notification) override {
        VTRRefreshKey(infoValue(notification.info, "key"));
        rebuildCombinedMenu();
    }
};

}  // namespace vantor
