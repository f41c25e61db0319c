#pragma once

#include <memory>
#include <string>

#include "Foundation/WeakHandle.h"
#include "Platform/Ports.h"
#include "Shared/VTRModule.h"

namespace vantor::inline VANTOR_MODULE {

class StatInterfaceCPU;

/// Wires the shared collectors to the item: it gives them their files, starts them, thins out
/// their measuring, and has the item shown anew after each processor sample.
/// Thread: main queue, but for the work that `setup` starts. It goes on elsewhere, with collectors
///         that nobody else uses until the module listens to them: their samples are hidden.
class VTRCPUModule final : public VTRModule {
public:
    explicit VTRCPUModule(VTRModuleDelegate& extra);
    /// Waits for the start-up work.
    ~VTRCPUModule() override;

    std::string moduleName() const override;
    VTRMenu* menu() override;
    void rebuildMenu() override;
    void themeChange() override;
    std::shared_ptr<VTRMenuItem> combinedItem() const override;
    /// Null before `setup` and after unloading.
    StatInterfaceCPU* interface() const noexcept { return interface_.get(); }

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
    std::shared_ptr<StatInterfaceCPU> interface_;
    Observation preferencesChange_;
    WeakSource<VTRCPUModule> self_{*this};
};

}  // namespace vantor::inline VANTOR_MODULE
