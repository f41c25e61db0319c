#include "Targets/VantorBarCPU/Classes/VTRCPUModule.h"

#include "Platform/DistributedNotifications.h"
#include "Platform/MainQueue.h"
#include "Platform/WorkQueues.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/Collectors/LoadStatCollector.h"
#include "Shared/ProcessContext.h"
#include "Shared/VTRDaemonConnection.h"
#include "Shared/VTRPreferences.h"
#include "Targets/VantorBarCPU/Classes/VantorCPUMenuExtraView.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

/// What the word "text" of a change stands for.
constexpr std::string_view kTextKeys[] = {
    "CPU_MenubarTextColor",  "CPU_MenubarTextShadowColor",  "CPU_MenubarTextSize",
    "Load_MenubarTextColor", "Load_MenubarTextShadowColor", "Load_MenubarTextSize"};

}  // namespace

VTRCPUModule::VTRCPUModule(VTRModuleDelegate& extra)
    : VTRModule(extra), ports_(ProcessContext::current().ports()) {
    setView(std::make_unique<VantorCPUMenuExtraView>(Rect{0, 0, 20, 22}, &extra));
}

void VTRCPUModule::setup() {
    ports_.workQueues.globalAsync([module = self_.handle(), &mainQueue = ports_.mainQueue] {
        CPUStatCollector::sharedCPUCollector().startLogging();
        LoadStatCollector::sharedLoadCollector().startLogging();
        mainQueue.async([module] {
            if (VTRCPUModule* const self = module.get())
                self->listenToCollectors();
        });
    });
}

void VTRCPUModule::listenToCollectors() {
    CPUStatCollector::sharedCPUCollector().addDelegate(*this);
    LoadStatCollector::sharedLoadCollector().addDelegate(*this);
}

void VTRCPUModule::loadNotifications() {
    preferencesChange_ = ports_.distributedNotifications.observe(
        "VantorBarCPUPreferencesChanged",
        [this](const Notification& notification) { preferencesChange(notification); });
}

void VTRCPUModule::preferencesChange(const Notification& notification) {
    VTRRefreshKey(infoValue(notification.info, "key"));
    const std::string_view resetKey = infoValue(notification.info, "resetKey");
    if (resetKey == "graph")
        view()->loadConfig();
    if (resetKey == "text") {
        for (const std::string_view key : kTextKeys)
            VTRRefreshKey(key);
        view()->resetTextConfig();
    }
    for (VTRModuleDelegate* const delegate : delegates()) {
        delegate->updateSize();
        delegate->update();
    }
}

void VTRCPUModule::collectorUpdatedForMode(StatCollector& collector, int mode) {
    // A load sample never shows the item anew by itself.
    if (mode == 0 && &collector == ProcessContext::current().existingCPUCollector())
        for (VTRModuleDelegate* const delegate : delegates())
            delegate->update();
}

void VTRCPUModule::partialUnload() {
    ports_.workQueues.drainGlobal();  // the start-up work may still be on its way
    ports_.localNotifications.post("HISTORYGRAPH_SHUTDOWN_CPU");
    CPUStatCollector::cleanupShared();
    LoadStatCollector::cleanupShared();
    preferencesChange_.end();
    removeAllDelegates();
}

void VTRCPUModule::willUnload() {
    partialUnload();
    VTRDaemonConnection::cleanupShared();
}

}  // namespace vantor::inline VANTOR_MODULE
