#include "Platform/Simulated/SimulatedMachine.h"

namespace vantor::simulated {

SimulatedMachine::SimulatedMachine(double start, double latencySeconds, Journal* journalOrNull)
    : journal(journalOrNull), mainQueue(start, latencySeconds), clock(mainQueue),
      processorCounters(mainQueue), systemLog(journal), workspace(journal),
      distributedNotifications(mainQueue, journal), localNotifications(journal),
      daemon(mainQueue, distributedNotifications, journal), fileSystem(clock, mainQueue),
      displays(registry) {}

Ports SimulatedMachine::ports() {
    return {.clock = clock,
            .mainQueue = mainQueue,
            .workQueues = workQueues,
            .processorCounters = processorCounters,
            .loadAverages = loadAverages,
            .bootTime = bootTime,
            .directories = directories,
            .systemLog = systemLog,
            .workspace = workspace,
            .daemonTransport = daemon,
            .preferences = preferences,
            .distributedNotifications = distributedNotifications,
            .localNotifications = localNotifications,
            .appearance = appearance,
            .machineIdentity = machineIdentity,
            .regionalSettings = regionalSettings,
            .callStack = callStack,
            .fileSystem = fileSystem,
            .thisProcess = thisProcess,
            .timeZone = timeZone,
            .registry = registry,
            .graphicsControl = graphicsControl,
            .displays = displays,
            .windowServer = windowServer,
            .witness = journal};
}

}  // namespace vantor::simulated
