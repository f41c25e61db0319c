#pragma once

#include <memory>

#include "Platform/Ports.h"
#include "Shared/SharedInstance.h"

namespace vantor::inline VANTOR_MODULE {

class CPUStatCollector;
class GPUStatCollector;
class HistoryDatabaseController;
class KOLVersions;
class LGLog;
class LoadStatCollector;
class PlatformController;
class UptimeStatCollector;
class VTRDaemonConnection;
class VTRImageCache;
class VTRPreferences;
class VTRTranslations;

/// One world: the ports, and every process-wide singleton made on first use. The `shared...`
/// operations of the classes are doors to the current one. Making a context makes it current;
/// its end makes the one before it current again.
/// Thread: made and ended on the main queue; the singletons are made by whoever asks first.
class ProcessContext {
public:
    /// The ports outlive the context.
    explicit ProcessContext(const Ports& ports);
    ~ProcessContext();
    ProcessContext(const ProcessContext&) = delete;
    ProcessContext& operator=(const ProcessContext&) = delete;

    static ProcessContext& current() noexcept;
    /// Null where there is none.
    static ProcessContext* currentOrNull() noexcept;

    const Ports& ports() const noexcept { return ports_; }

    LGLog& log();
    LGLog* existingLog() const noexcept;
    KOLVersions& versions();
    PlatformController& platformController();
    /// Null once `cleanupPreferences` was called: that singleton isn't made again.
    VTRPreferences* preferences();
    void cleanupPreferences() noexcept;
    VTRImageCache& imageCache();
    CPUStatCollector& cpuCollector();
    void dropCPUCollector() noexcept;
    LoadStatCollector& loadCollector();
    void dropLoadCollector() noexcept;
    UptimeStatCollector& uptimeCollector();
    void dropUptimeCollector() noexcept;
    GPUStatCollector& gpuCollector();
    void dropGPUCollector() noexcept;
    VTRTranslations& translations();
    VTRDaemonConnection& daemonConnection();
    void dropDaemonConnection() noexcept;
    /// Null as long as nobody asked for it.
    VTRDaemonConnection* existingDaemonConnection() const noexcept;
    HistoryDatabaseController& historyDatabaseController();

    /// The collectors that there are now; null for one that nobody asked for yet.
    CPUStatCollector* existingCPUCollector() const noexcept;
    LoadStatCollector* existingLoadCollector() const noexcept;
    /// Null for a machine that nobody asked for yet.
    PlatformController* existingPlatformController() const noexcept;
    UptimeStatCollector* existingUptimeCollector() const noexcept;
    GPUStatCollector* existingGPUCollector() const noexcept;

private:
    struct Singletons;
    Ports ports_;
    ProcessContext* previous_;
    SharedInstance<LGLog> log_;  // outlives the others, which log to their end
    std::unique_ptr<Singletons> singletons_;
};

}  // namespace vantor::inline VANTOR_MODULE
