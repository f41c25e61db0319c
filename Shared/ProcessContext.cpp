#include "Shared/ProcessContext.h"

#include <cassert>
#include <utility>

#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/Collectors/GPUStatCollector.h"
#include "Shared/Collectors/LoadStatCollector.h"
#include "Shared/Collectors/UptimeStatCollector.h"
#include "Shared/Database/HistoryDatabaseController.h"
#include "Shared/External/Logging/LGLog.h"
#include "Shared/KOLVersions.h"
#include "Shared/Platforms/PlatformController.h"
#include "Shared/SharedInstance.h"
#include "Shared/VTRDaemonConnection.h"
#include "Shared/VTRImageCache.h"
#include "Shared/VTRPreferences.h"
#include "Shared/VTRTranslations.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

/// The only mutable global.
ProcessContext* currentContext = nullptr;

}  // namespace

struct ProcessContext::Singletons {
    SharedInstance<KOLVersions> versions;
    SharedInstance<HistoryDatabaseController> historyDatabaseController;
    SharedInstance<PlatformController> platformController;
    SharedInstance<VTRPreferences> preferences;
    bool preferencesEnded = false;
    SharedInstance<VTRImageCache> imageCache;
    SharedInstance<CPUStatCollector> cpuCollector;
    SharedInstance<LoadStatCollector> loadCollector;
    SharedInstance<UptimeStatCollector> uptimeCollector;
    SharedInstance<GPUStatCollector> gpuCollector;
    SharedInstance<VTRTranslations> translations;
    SharedInstance<VTRDaemonConnection> daemonConnection;
};

ProcessContext::ProcessContext(const Ports& ports)
    : ports_(ports), previous_(std::exchange(currentContext, this)),
      singletons_(std::make_unique<Singletons>()) {}

ProcessContext::~ProcessContext() {
    singletons_.reset();  // while this context is still the current one
    log_.drop();
    currentContext = previous_;
}

ProcessContext& ProcessContext::current() noexcept {
    assert(currentContext != nullptr);
    return *currentContext;
}

ProcessContext* ProcessContext::currentOrNull() noexcept { return currentContext; }

LGLog& ProcessContext::log() {
    return log_.get([&] { return std::make_unique<LGLog>(ports_); });
}

LGLog* ProcessContext::existingLog() const noexcept { return log_.existing(); }

KOLVersions& ProcessContext::versions() {
    return singletons_->versions.get(
        [&] { return std::make_unique<KOLVersions>(ports_.machineIdentity); });
}

PlatformController& ProcessContext::platformController() {
    return singletons_->platformController.get(
        [&] { return std::make_unique<PlatformController>(ports_); });
}

PlatformController* ProcessContext::existingPlatformController() const noexcept {
    return singletons_->platformController.existing();
}

VTRPreferences* ProcessContext::preferences() {
    if (singletons_->preferencesEnded)
        return nullptr;
    return &singletons_->preferences.get([&] { return std::make_unique<VTRPreferences>(ports_); });
}

void ProcessContext::cleanupPreferences() noexcept {
    singletons_->preferencesEnded = true;
    singletons_->preferences.drop();
}

VTRImageCache& ProcessContext::imageCache() {
    return singletons_->imageCache.get([] { return std::make_unique<VTRImageCache>(); });
}

CPUStatCollector& ProcessContext::cpuCollector() {
    return singletons_->cpuCollector.get([&] {
        auto collector = std::make_unique<CPUStatCollector>(ports_);
        collector->setup();
        return collector;
    });
}

void ProcessContext::dropCPUCollector() noexcept { singletons_->cpuCollector.drop(); }

LoadStatCollector& ProcessContext::loadCollector() {
    return singletons_->loadCollector.get(
        [&] { return std::make_unique<LoadStatCollector>(ports_); });
}

void ProcessContext::dropLoadCollector() noexcept { singletons_->loadCollector.drop(); }

UptimeStatCollector& ProcessContext::uptimeCollector() {
    return singletons_->uptimeCollector.get(
        [&] { return std::make_unique<UptimeStatCollector>(ports_); });
}

void ProcessContext::dropUptimeCollector() noexcept { singletons_->uptimeCollector.drop(); }

GPUStatCollector& ProcessContext::gpuCollector() {
    return singletons_->gpuCollector.get(
        [&] { return std::make_unique<GPUStatCollector>(ports_); });
}

void ProcessContext::dropGPUCollector() noexcept { singletons_->gpuCollector.drop(); }

VTRTranslations& ProcessContext::translations() {
    return singletons_->translations.get([&] {
        auto translations = std::make_unique<VTRTranslations>(ports_);
        translations->loadTranslations();
        return translations;
    });
}

VTRDaemonConnection& ProcessContext::daemonConnection() {
    return singletons_->daemonConnection.get(
        [&] { return std::make_unique<VTRDaemonConnection>(ports_); });
}

void ProcessContext::dropDaemonConnection() noexcept { singletons_->daemonConnection.drop(); }

VTRDaemonConnection* ProcessContext::existingDaemonConnection() const noexcept {
    return singletons_->daemonConnection.existing();
}

HistoryDatabaseController& ProcessContext::historyDatabaseController() {
    return singletons_->historyDatabaseController.get(
        [&] { return std::make_unique<HistoryDatabaseController>(ports_); });
}

CPUStatCollector* ProcessContext::existingCPUCollector() const noexcept {
    return singletons_->cpuCollector.existing();
}

LoadStatCollector* ProcessContext::existingLoadCollector() const noexcept {
    return singletons_->loadCollector.existing();
}

UptimeStatCollector* ProcessContext::existingUptimeCollector() const noexcept {
    return singletons_->uptimeCollector.existing();
}

GPUStatCollector* ProcessContext::existingGPUCollector() const noexcept {
    return singletons_->gpuCollector.existing();
}

}  // namespace vantor::inline VANTOR_MODULE
