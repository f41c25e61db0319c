#pragma once

#include <string>
#include <vector>

#include "Platform/Linux/LinuxWorkQueues.h"
#include "Platform/Simulated/SimulatedMachine.h"
#include "Shared/External/Logging/LGAbstractLogger.h"

namespace vantor::test {

/// Keeps what it is told, on its queue.
class KeepingLogger final : public LGAbstractLogger {
public:
    explicit KeepingLogger(LGLog& log) : LGAbstractLogger(log, "keeping") {}
    ~KeepingLogger() override { finishQueue(); }

    void logMessage(const LGLogMessage& message) override { texts.push_back(message.logMsg); }
    void didAddLogger() override { texts.push_back("(added)"); }
    void willRemoveLogger() override { texts.push_back("(removed)"); }
    void flush() override { ++flushes; }

    std::vector<std::string> texts;
    int flushes = 0;
};

inline std::unique_ptr<const LGLogMessage> messageOf(LGLog& log, std::string text,
                                                     std::int32_t flag = LGLogFlagInfo) {
    return std::make_unique<const LGLogMessage>(log.ports(), std::move(text), kLGLogLevel, flag, 0,
                                                "file.cpp", "function", 1, std::any{}, 0);
}

inline void logText(LGLog& log, std::string text, std::int32_t flag = LGLogFlagInfo) {
    log.queueLogMessage(messageOf(log, std::move(text), flag), LGDelivery::asynchronous);
}

/// A log whose queues have threads of their own, on a machine that is scripted otherwise.
struct ThreadedLog {
    explicit ThreadedLog(std::int64_t processors = 2)
        : log((machine.processorCounters.setCPUs(2, processors, 2, 2),
               overriddenPorts(machine.ports(), {.workQueues = &queues}))) {}

    simulated::SimulatedMachine machine;
    LinuxWorkQueues queues;
    LGLog log;
};

}  // namespace vantor::test
