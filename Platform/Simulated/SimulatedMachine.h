#pragma once

#include "Platform/Ports.h"
#include "Platform/Simulated/SimulatedClock.h"
#include "Platform/Simulated/SimulatedDaemon.h"
#include "Platform/Simulated/SimulatedDistributedNotifications.h"
#include "Platform/Simulated/SimulatedFacilities.h"
#include "Platform/Simulated/SimulatedFileSystem.h"
#include "Platform/Simulated/SimulatedGraphics.h"
#include "Platform/Simulated/SimulatedMainQueue.h"
#include "Platform/Simulated/SimulatedPreferenceDomain.h"
#include "Platform/Simulated/SimulatedProcessorCounters.h"
#include "Platform/Simulated/SimulatedRegistry.h"
#include "Platform/Simulated/SimulatedWorkQueues.h"

namespace vantor::simulated {

/// The scripted machine: every port, with its controls. It outlives the programs that run on it.
struct SimulatedMachine {
    /// On a whole second that is a multiple of 6.
    static constexpr double kStart = 1'425'900'000;

    explicit SimulatedMachine(double start = kStart, double latencySeconds = 0.002,
                              Journal* journalOrNull = nullptr);

    Ports ports();

    /// Runs everything up to `seconds` from now.
    void run(double seconds) { mainQueue.runUntil(mainQueue.now() + seconds); }

    Journal* journal;
    SimulatedMainQueue mainQueue;
    SimulatedClock clock;
    SimulatedWorkQueues workQueues;
    SimulatedProcessorCounters processorCounters;
    SimulatedLoadAverages loadAverages;
    SimulatedBootTime bootTime;
    SimulatedDirectories directories;
    SimulatedSystemLog systemLog;
    SimulatedWorkspace workspace;
    SimulatedPreferenceDomain preferences;
    SimulatedDistributedNotifications distributedNotifications;
    SimulatedLocalNotifications localNotifications;
    SimulatedDaemon daemon;
    SimulatedAppearance appearance;
    SimulatedMachineIdentity machineIdentity;
    SimulatedRegionalSettings regionalSettings;
    SimulatedCallStack callStack;
    SimulatedFileSystem fileSystem;
    SimulatedThisProcess thisProcess;
    SimulatedTimeZone timeZone;
    SimulatedRegistry registry;
    SimulatedGraphicsControl graphicsControl;
    SimulatedDisplays displays;
    SimulatedWindowServer windowServer;
};

}  // namespace vantor::simulated
