#include "Targets/VantorBarCPU/Classes/VTRCPUModule.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>

#include "Platform/DistributedNotifications.h"
#include "Platform/MainQueue.h"
#include "Platform/WorkQueues.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/Collectors/GPUStatCollector.h"
#include "Shared/Collectors/LoadStatCollector.h"
#include "Shared/Collectors/UptimeStatCollector.h"
#include "Shared/Database/HistoryDatabaseController.h"
#include "Shared/ProcessContext.h"
#include "Shared/VTRDaemonConnection.h"
#include "Shared/VTRPreferences.h"
#include "Shared/VTRTranslations.h"
#include "Targets/VantorBarCPU/Classes/VantorCPUMenuExtraView.h"
#include "Targets/VantorBarCPU/Interface/StatInterfaceCPU.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr std::int64_t kProcessesKey = 1;

/// What the word "text" of a change stands for.
constexpr std::string_view kTextKeys[] = {
    "CPU_MenubarTextColor",  "CPU_MenubarTextShadowColor",  "CPU_MenubarTextSize",
    "Load_MenubarTextColor", "Load_MenubarTextShadowColor", "Load_MenubarTextSize"};

/// A collector that keeps a history, and the name of its file.
struct History {
    std::string_view database;
    StatCollector& collector;
};

/// In the order in which everything about them is done.
std::array<History, 3> histories() {
    return {{{"cpu", CPUStatCollector::sharedCPUCollector()},
             {"load", LoadStatCollector::sharedLoadCollector()},
             {"gpu", GPUStatCollector::sharedGPUCollector()}}};
}

/// So that one reading is there before anybody looks; then it rests until somebody does.
void primeGPUCollector() {
    GPUStatCollector& collector = GPUStatCollector::sharedGPUCollector();
    collector.setEnabled(true);
    collector.loadNotifications();
    collector.fetchGPUS();
    collector.updateDisplays();
    collector.updateActiveGPU();
    collector.updateStats();
    collector.setEnabled(false);
}

/// On the queue of the file, as everything with its connection.
bool isDatabaseValid(HistoryDatabaseItem& file) {
    bool isValid = false;
    file.queryDatabase([&](SQLDatabase& database) { isValid = database.isDatabaseValid(); });
    return isValid;
}

/// A pipe, a device or the like: opening one may wait for whoever is at its other end.
bool isNoFile(const std::filesystem::path& path) {
    std::error_code ignored;  // what can't be looked at can't be opened either
    return std::filesystem::is_other(path, ignored);
}

/// Opens the file; one that is damaged is thrown away, never repaired.
void openSoundDatabase(const std::optional<std::filesystem::path>& path) {
    auto& controller = HistoryDatabaseController::sharedHistoryDatabaseController();
    if (!path || (!isNoFile(*path) && isDatabaseValid(*controller.databaseWithPath(path))))
        return;
    controller.deleteDatabase(*path);
    controller.databaseWithPath(path);
}

}  // namespace

VTRCPUModule::VTRCPUModule(VTRModuleDelegate& extra)
    : VTRModule(extra), ports_(ProcessContext::current().ports()) {
    setView(std::make_unique<VantorCPUMenuExtraView>(Rect{0, 0, 20, 22}, &extra));
}

VTRCPUModule::~VTRCPUModule() { ports_.workQueues.drainGlobal(); }

std::string VTRCPUModule::moduleName() const { return VTRLocalizedString("CPU", {}, "cpu"); }

VTRMenu* VTRCPUModule::menu() { return interface_ ? interface_->menu() : nullptr; }

void VTRCPUModule::rebuildMenu() {
    if (interface_)
        interface_->rebuildMenu();
}

void VTRCPUModule::themeChange() {
    if (interface_)
        interface_->themeChange();
}

std::shared_ptr<VTRMenuItem> VTRCPUModule::combinedItem() const {
    return interface_ ? interface_->combinedItem() : nullptr;
}

void VTRCPUModule::setup() {
    interface_ = std::make_shared<StatInterfaceCPU>();
    for (const History& history : histories())
        history.collector.hideSamples();
    ports_.workQueues.globalAsync([this, module = self_.handle()] {
        startCollectors();
        ports_.mainQueue.async([module] {
            if (VTRCPUModule* const self = module.get())
                self->listenToCollectors();
        });
    });
}

/// On the global queue.
void VTRCPUModule::startCollectors() {
    prepareDatabase();
    for (const auto& [database, collector] : histories()) {
        collector.loadPreviousSamples();
        if (collector.storageType() == StorageKind::items)
            collector.loadPreviousSampleItems();
        collector.fillGaps();
    }
    for (const History& history : histories())
        history.collector.startLogging();
    UptimeStatCollector::sharedUptimeCollector().loadUptime();
}

bool VTRCPUModule::prepareDatabase() {
    const auto kept = histories();
    std::array<std::optional<std::filesystem::path>, kept.size()> paths;
    std::ranges::transform(kept, paths.begin(), [this](const History& history) {
        return databasePath(history.database);
    });
    for (const auto& path : paths)
        openSoundDatabase(path);
    bool result = false;
    for (std::size_t index = 0; index < kept.size(); ++index) {
        kept[index].collector.setDbpath(paths[index]);
        result = kept[index].collector.prepareDatabase(result);
    }
    return result;
}

void VTRCPUModule::listenToCollectors() {
    for (const History& history : histories()) {
        history.collector.showSamples();
        history.collector.addDelegate(*this);
    }
    primeGPUCollector();
    VTRDaemonConnection::sharedConnection().addListener(interface_, kProcessesKey);
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
    if (resetKey == "logicalcores" && interface_)
        interface_->updateCoresMenu();
    for (VTRModuleDelegate* const delegate : delegates()) {
        delegate->updateSize();
        delegate->update();
    }
}

void VTRCPUModule::collectorUpdatedForMode(StatCollector& collector, int mode) {
    const ProcessContext& context = ProcessContext::current();
    const bool isCPU = &collector == context.existingCPUCollector();
    // A sample of the loads or of the graphics never shows the item anew by itself.
    if (isCPU && mode == 0)
        for (VTRModuleDelegate* const delegate : delegates())
            delegate->update();
    if (!interface_)
        return;
    if (isCPU)
        interface_->cpuCollectorUpdatedForMode(mode);
    else if (&collector == context.existingLoadCollector())
        interface_->loadCollectorUpdatedForMode(mode);
    else if (&collector == context.existingGPUCollector())
        interface_->gpuCollectorUpdatedForMode(mode);
}

void VTRCPUModule::partialUnload() {
    ports_.workQueues.drainGlobal();  // the start-up work may still be on its way
    ports_.localNotifications.post("HISTORYGRAPH_SHUTDOWN_CPU");
    interface_.reset();
    CPUStatCollector::cleanupShared();
    LoadStatCollector::cleanupShared();
    UptimeStatCollector::cleanupShared();
    GPUStatCollector::cleanupShared();
    preferencesChange_.end();
    removeAllDelegates();
}

void VTRCPUModule::willUnload() {
    partialUnload();
    VTRDaemonConnection::cleanupShared();
}

}  // namespace vantor::inline VANTOR_MODULE
