#pragma once

namespace vantor {

class Appearance;
class BootTime;
class CallStack;
class Clock;
class DaemonTransport;
class Directories;
class Displays;
class DistributedNotifications;
class FileSystem;
class GraphicsControl;
class LoadAverages;
class MachineIdentity;
class MainQueue;
class NotificationCenter;
class PreferenceDomain;
class ProcessorCounters;
class RegionalSettings;
class Registry;
class SystemLog;
class ThisProcess;
class TimeZone;
class WindowServer;
class Witness;
class WorkQueues;
class Workspace;

/// Everything the program asks of the world. Whoever makes a `ProcessContext` keeps these alive
/// for longer than it.
struct Ports {
    Clock& clock;
    MainQueue& mainQueue;
    WorkQueues& workQueues;
    ProcessorCounters& processorCounters;
    LoadAverages& loadAverages;
    BootTime& bootTime;
    Directories& directories;
    SystemLog& systemLog;
    Workspace& workspace;
    DaemonTransport& daemonTransport;
    PreferenceDomain& preferences;
    DistributedNotifications& distributedNotifications;
    NotificationCenter& localNotifications;
    Appearance& appearance;
    MachineIdentity& machineIdentity;
    RegionalSettings& regionalSettings;
    CallStack& callStack;
    FileSystem& fileSystem;
    ThisProcess& thisProcess;
    TimeZone& timeZone;
    Registry& registry;
    GraphicsControl& graphicsControl;
    Displays& displays;
    WindowServer& windowServer;
    Witness* witness = nullptr;
};

/// Ports that stand in for others; null leaves the one that there is.
struct PortOverrides {
    Clock* clock = nullptr;
    MainQueue* mainQueue = nullptr;
    WorkQueues* workQueues = nullptr;
    ProcessorCounters* processorCounters = nullptr;
    LoadAverages* loadAverages = nullptr;
    Directories* directories = nullptr;
    PreferenceDomain* preferences = nullptr;
    Appearance* appearance = nullptr;
    FileSystem* fileSystem = nullptr;
    ThisProcess* thisProcess = nullptr;
    TimeZone* timeZone = nullptr;
};

/// `ports`, with those of `overrides` in the place of its own.
inline Ports overriddenPorts(const Ports& ports, const PortOverrides& overrides) {
    const auto pick = [](auto* override_, auto& own) -> auto& {
        return override_ != nullptr ? *override_ : own;
    };
    return {.clock = pick(overrides.clock, ports.clock),
            .mainQueue = pick(overrides.mainQueue, ports.mainQueue),
            .workQueues = pick(overrides.workQueues, ports.workQueues),
            .processorCounters = pick(overrides.processorCounters, ports.processorCounters),
            .loadAverages = pick(overrides.loadAverages, ports.loadAverages),
            .bootTime = ports.bootTime,
            .directories = pick(overrides.directories, ports.directories),
            .systemLog = ports.systemLog,
            .workspace = ports.workspace,
            .daemonTransport = ports.daemonTransport,
            .preferences = pick(overrides.preferences, ports.preferences),
            .distributedNotifications = ports.distributedNotifications,
            .localNotifications = ports.localNotifications,
            .appearance = pick(overrides.appearance, ports.appearance),
            .machineIdentity = ports.machineIdentity,
            .regionalSettings = ports.regionalSettings,
            .callStack = ports.callStack,
            .fileSystem = pick(overrides.fileSystem, ports.fileSystem),
            .thisProcess = pick(overrides.thisProcess, ports.thisProcess),
            .timeZone = pick(overrides.timeZone, ports.timeZone),
            .registry = ports.registry,
            .graphicsControl = ports.graphicsControl,
            .displays = ports.displays,
            .windowServer = ports.windowServer,
            .witness = ports.witness};
}

}  // namespace vantor
