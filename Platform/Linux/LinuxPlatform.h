#pragma once

#include <filesystem>

#include "Foundation/NotificationCenter.h"
#include "Platform/Linux/DeviceFiles.h"
#include "Platform/Linux/Environment.h"
#include "Platform/Linux/KernelFiles.h"
#include "Platform/Linux/LinuxAppearance.h"
#include "Platform/Linux/LinuxBootTime.h"
#include "Platform/Linux/LinuxBuses.h"
#include "Platform/Linux/LinuxCallStack.h"
#include "Platform/Linux/LinuxClock.h"
#include "Platform/Linux/LinuxDaemonTransport.h"
#include "Platform/Linux/LinuxDirectories.h"
#include "Platform/Linux/LinuxDisplays.h"
#include "Platform/Linux/LinuxDistributedNotifications.h"
#include "Platform/Linux/LinuxFileSystem.h"
#include "Platform/Linux/LinuxFileWatches.h"
#include "Platform/Linux/LinuxGraphicsControl.h"
#include "Platform/Linux/LinuxLoadAverages.h"
#include "Platform/Linux/LinuxMachineIdentity.h"
#include "Platform/Linux/LinuxMainQueue.h"
#include "Platform/Linux/LinuxPreferenceDomain.h"
#include "Platform/Linux/LinuxProcessorCounters.h"
#include "Platform/Linux/LinuxRegionalSettings.h"
#include "Platform/Linux/LinuxRegistry.h"
#include "Platform/Linux/LinuxSystemLog.h"
#include "Platform/Linux/LinuxThisProcess.h"
#include "Platform/Linux/LinuxTimeZone.h"
#include "Platform/Linux/LinuxWindowServer.h"
#include "Platform/Linux/LinuxWorkQueues.h"
#include "Platform/Linux/LinuxWorkspace.h"
#include "Platform/Ports.h"

namespace vantor {

/// All ports of a program on a Linux desktop that has no main loop of a toolkit. Making it opens
/// no bus and starts no thread: what needs either begins when it is first used, or when the main
/// queue first runs.
/// Errors: making it throws where the system has no descriptor left.
class LinuxPlatform {
public:
    explicit LinuxPlatform(const DirectorySources& sources, const KernelFiles& files = {});
    LinuxPlatform(const LinuxPlatform&) = delete;
    LinuxPlatform& operator=(const LinuxPlatform&) = delete;

    Ports ports() noexcept;
    LinuxMainQueue& mainQueue() noexcept { return mainQueue_; }
    /// Hosts with a frame clock tell it of their frames.
    LinuxWindowServer& windowServer() noexcept { return windowServer_; }
    BusConnection& sessionBus() noexcept { return buses_.session; }
    LinuxDistributedNotifications& distributedNotifications() noexcept {
        return distributedNotifications_;
    }

private:
    // What comes later uses what came before, and is gone before it. The work queues go first:
    // their tasks may use everything else.
    LinuxClock clock_;
    LinuxSystemLog systemLog_;
    LinuxCallStack callStack_;
    LinuxMainQueue mainQueue_;
    LinuxDirectories directories_;
    LinuxProcessorCounters processorCounters_;
    LinuxLoadAverages loadAverages_;
    LinuxBootTime bootTime_;
    LinuxMachineIdentity machineIdentity_;
    LinuxRegionalSettings regionalSettings_;
    NotificationCenter localNotifications_;
    LinuxPreferenceDomain preferences_;
    LinuxBuses buses_;
    LinuxDistributedNotifications distributedNotifications_;
    LinuxAppearance appearance_;
    LinuxWorkspace workspace_;
    LinuxFileWatches fileWatches_;
    LinuxFileSystem fileSystem_;
    LinuxThisProcess thisProcess_;
    LinuxTimeZone timeZone_;
    LinuxDaemonTransport daemonTransport_;
    SystemDeviceFiles deviceFiles_;
    LinuxRegistry registry_;
    LinuxGraphicsControl graphicsControl_;
    LinuxDisplays displays_;
    LinuxWindowServer windowServer_;
    LinuxWorkQueues workQueues_;
};

}  // namespace vantor
