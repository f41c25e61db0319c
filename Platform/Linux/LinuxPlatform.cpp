#include "Platform/Linux/LinuxPlatform.h"

#include <fmt/format.h>

namespace vantor {
namespace {

/// A user without a home has no settings: an empty path reads as an absent file.
std::filesystem::path preferenceFile(const Directories& directories) {
    const auto folder = directories.preferences();
    return folder ? *folder / fmt::format("{}.plist", kExtrasDomain) : std::filesystem::path{};
}

}  // namespace

LinuxPlatform::LinuxPlatform(const DirectorySources& sources, const KernelFiles& files)
    : directories_(sources), processorCounters_(files), bootTime_(files), machineIdentity_(files),
      preferences_(preferenceFile(directories_), systemLog_, clock_),
      buses_(mainQueue_, systemLog_, sources.environment),
      distributedNotifications_(mainQueue_, buses_.session),
      appearance_(mainQueue_, buses_.session, distributedNotifications_),
      workspace_(mainQueue_, buses_.system, directories_, sources.environment),
      fileWatches_(mainQueue_), fileSystem_(fileWatches_),
      daemonTransport_(mainQueue_, sessionBusAddress(sources.environment),
                       systemBusAddress(sources.environment)),
      registry_(clock_, deviceFiles_, {.kernel = files}), graphicsControl_(registry_),
      displays_(mainQueue_, registry_), windowServer_(clock_) {
    distributedNotifications_.setArrived([this] { preferences_.noteChanged(); });
}

Ports LinuxPlatform::ports() noexcept {
    return {.clock = clock_,
            .mainQueue = mainQueue_,
            .workQueues = workQueues_,
            .processorCounters = processorCounters_,
            .loadAverages = loadAverages_,
            .bootTime = bootTime_,
            .directories = directories_,
            .systemLog = systemLog_,
            .workspace = workspace_,
            .daemonTransport = daemonTransport_,
            .preferences = preferences_,
            .distributedNotifications = distributedNotifications_,
            .localNotifications = localNotifications_,
            .appearance = appearance_,
            .machineIdentity = machineIdentity_,
            .regionalSettings = regionalSettings_,
            .callStack = callStack_,
            .fileSystem = fileSystem_,
            .thisProcess = thisProcess_,
            .timeZone = timeZone_,
            .registry = registry_,
            .graphicsControl = graphicsControl_,
            .displays = displays_,
            .windowServer = windowServer_};
}

}  // namespace vantor
