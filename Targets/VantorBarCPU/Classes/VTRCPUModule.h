#pragma once

#include "Foundation/WeakHandle.h"
#include "Platform/Ports.h"
#include "Shared/VTRModule.h"

namespace vantor::inline VANTOR_MODULE {

/// Wires the shared collectors to the item: it starts them, thins out their measuring, and has
/// the item shown anew after each processor sample.
class VTRCPUModule final : public VTRModule {
public:
    explicit VTRCPUModule(VTRModuleDelegate& extra);

    void setup() override;
    void loadNotifications() override;
    void globalPreferencesChange(const Notification&) override { view()->loadConfig(); }
    void preferencesChange(const Notification& notification);
    void loadCombinedMode() {}
    void partialUnload() override;
    void willUnload() override;

    void collectorUpdatedForMode(StatCollector& collector, int mode) override;

private:
    void listenToCollectors();

    Ports ports_;
    Observation preferencesChange_;
    WeakSource<VTRCPUModule> self_{*this};
};

}  // namespace vantor::inline VANTOR_MODULE
