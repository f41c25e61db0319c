#include "Shared/External/Logging/LGLog.h"

#include <algorithm>
#include <cassert>
#include <cstdlib>
#include <utility>

#include "Platform/ProcessorCounters.h"
#include "Platform/Witness.h"
#include "Shared/ProcessContext.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr std::size_t kFirstLoggers = 4;

/// For programs that end by exit(), deep inside a library.
void flushAtExit() {
    ProcessContext* const context = ProcessContext::currentOrNull();
    LGLog* const log = context != nullptr ? context->existingLog() : nullptr;
    if (log != nullptr && !log->isOnLoggingQueue())
        log->applicationWillTerminate();
}

void registerAtExit() {
    // Once a process; where there is no room left, only such an end loses what waits.
    [[maybe_unused]] static const int registered = std::atexit(flushAtExit);
}

}  // namespace

LGLog& LGLog::sharedLog() { return ProcessContext::current().log(); }

LGLog::LGLog(const Ports& ports)
    : ports_(ports),
      numProcessors_(std::max<std::int64_t>(1, ports.processorCounters.configuredCPUs())),
      loggingQueue_(ports.workQueues.makeSerialQueue("vantor.log")) {
    loggers_.reserve(kFirstLoggers);
    registerAtExit();
}

LGLog::~LGLog() = default;

SerialQueue& LGLog::loggingQueue() {
    isHeard();
    return *loggingQueue_;
}

void LGLog::whenRunning(Task task) {
    if (!started_) {
        const std::scoped_lock lock(startMutex_);
        if (!started_) {
            early_.push_back(std::move(task));
            return;
        }
    }
    loggingQueue_->async(std::move(task));
}

bool LGLog::isHeard() {
    if (started_)
        return true;
    const std::scoped_lock lock(startMutex_);
    const bool heard = started_ || !early_.empty() || ports_.witness != nullptr;
    for (; !early_.empty(); early_.pop_front())
        loggingQueue_->async(std::exchange(early_.front(), Task{}));
    started_ = heard;
    return heard;
}

void LGLog::addLogger(std::shared_ptr<LGLogger> logger) {
    addLogger(std::move(logger), LGLogFlagAll);
}

void LGLog::addLogger(std::shared_ptr<LGLogger> logger, std::int32_t withLogLevel) {
    if (logger != nullptr)
        whenRunning([this, logger = std::move(logger), withLogLevel]() mutable {
            lt_addLogger(std::move(logger), withLogLevel);
        });
}

void LGLog::removeLogger(std::shared_ptr<LGLogger> logger) {
    if (logger != nullptr)
        whenRunning([this, logger = std::move(logger)] { lt_removeLogger(*logger); });
}

void LGLog::removeAllLoggers() {
    whenRunning([this] { lt_removeAllLoggers(); });
}

void LGLog::logArgs(LGDelivery delivery, std::int32_t level, std::int32_t flag,
                    std::int32_t context, const char* file, const char* function, std::int32_t line,
                    std::any tag, const char* format, fmt::printf_args args) {
    if (format == nullptr || !isHeard())
        return;
    queueLogMessage(std::make_unique<const LGLogMessage>(
                        ports_, fmt::vsprintf(fmt::string_view(format), args), level, flag, context,
                        file, function, line, std::move(tag), 0),
                    delivery);
}

void LGLog::queueLogMessage(std::unique_ptr<const LGLogMessage> message,
                            LGDelivery asynchronously) {
    if (!isHeard())
        return;
    queueSemaphore_.acquire();
    Task delivery = [this, message = std::move(message)] { lt_log(*message); };
    try {
        if (asynchronously == LGDelivery::asynchronous)
            loggingQueue_->async(std::move(delivery));
        else
            loggingQueue_->sync(std::move(delivery));
    } catch (...) {  // the queue has no thread: the message is lost, its place isn't
        queueSemaphore_.release();
        throw;
    }
}

void LGLog::flushLog() {
    if (isHeard())
        loggingQueue_->sync([this] { lt_flush(); });
}

void LGLog::applicationWillTerminate() {
    if (started_)
        flushLog();
}

void LGLog::lt_log(const LGLogMessage& message) {
    if (ports_.witness != nullptr)
        ports_.witness->logged(message.logMsg);
    for (const LGLoggerNode& node : loggers_) {
        if (!node.accepts(message.logFlag))
            continue;
        const auto deliver = [&logger = *node.logger, &message] { logger.logMessage(message); };
        if (numProcessors_ == 1)
            node.loggerQueue->sync(deliver);
        else
            loggingGroup_.async(*node.loggerQueue, deliver);
    }
    loggingGroup_.wait();
    queueSemaphore_.release();
}

void LGLog::lt_addLogger(std::shared_ptr<LGLogger> logger, std::int32_t logLevel) {
    std::unique_ptr<SerialQueue> ownQueue;
    SerialQueue* queue = logger->loggerQueue();
    if (queue == nullptr) {
        ownQueue = ports_.workQueues.makeSerialQueue(std::string(logger->loggerName()));
        queue = ownQueue.get();
    }
    LGLogger& added = *logger;
    loggers_.push_back({std::move(logger), std::move(ownQueue), queue, logLevel});
    queue->async([&added] { added.didAddLogger(); });
}

/// The node's end waits for the logger's queue.
void LGLog::lt_removeLogger(const LGLogger& logger) {
    const auto node = std::ranges::find(loggers_, &logger, [](const LGLoggerNode& each) {
        return static_cast<const LGLogger*>(each.logger.get());
    });
    if (node == loggers_.end())
        return;
    node->loggerQueue->async([&removed = *node->logger] { removed.willRemoveLogger(); });
    loggers_.erase(node);
}

void LGLog::lt_removeAllLoggers() {
    for (const LGLoggerNode& node : loggers_)
        node.loggerQueue->async([&removed = *node.logger] { removed.willRemoveLogger(); });
    loggers_.clear();
}

void LGLog::lt_flush() {
    for (const LGLoggerNode& node : loggers_)
        loggingGroup_.async(*node.loggerQueue, [&logger = *node.logger] { logger.flush(); });
    loggingGroup_.wait();
}

void LGLogInfo(std::string_view text, const std::source_location& where) noexcept {
    try {
        LGLog& log = LGLog::sharedLog();
        if (!log.isHeard())
            return;
        log.queueLogMessage(std::make_unique<const LGLogMessage>(
                                log.ports(), std::string(text), kLGLogLevel, LGLogFlagInfo, 0,
                                where.file_name(), where.function_name(),
                                static_cast<std::int32_t>(where.line()), std::any{}, 0),
                            LGDelivery::asynchronous);
    } catch (...) {  // no memory, or no thread to be had: what calls goes on
    }
}

}  // namespace vantor::inline VANTOR_MODULE
