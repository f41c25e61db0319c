#pragma once

#include "Foundation/WeakHandle.h"
#include "Platform/Ports.h"
#include "Shared/VTRModule.h"

namespace vantor::inline VANTOR_MODULE {

/// Wires the shared collectors to the item: it gives them their files, starts them, thins out
/// their measuring, and has the item shown anew after each processor sample.
/// Thread: main queue, but for the work that `setup` starts. It goes on elsewhere, with collectors
///         that nobody else uses until the module listens to them: their samples are hidden.
class VTRCPUModule final : public VTRModule {
public:
    explicit VTRCPUModule(VTRModuleDelegate& extra);
    /// Waits for the start-up work.
    ~VTRCPUModule() override;

    void setup() override;
    /// Throws away the files that are damaged, and gives each collector its own.
    bool prepareDatabase() override;
    void loadNotifications() override;
    void globalPreferencesChange(const Notification&) override { view()->loadConfig(); }
    void preferencesChange(const Notification& notification);
    void loadCombinedMode() {}
    void partialUnload() override;
    void willUnload() override;

    void collectorUpdatedForMode(StatCollector& collector, int mode) override;

private:
    void startCollectors();
    void listenToCollectors();

    Ports ports_;
    Observation preferencesChange_;
    WeakSource<VTRCPUModule> self_{*this};
};

}  // namespace vantor::inline VANTOR_MODULE
