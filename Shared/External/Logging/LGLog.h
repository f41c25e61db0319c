#pragma once

#include <any>
#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <source_location>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/printf.h>

#include "Foundation/CountingSemaphore.h"
#include "Platform/Ports.h"
#include "Platform/WorkQueues.h"
#include "Shared/External/Logging/LGLogMessage.h"
#include "Shared/External/Logging/LGLoggerNode.h"
#include "Shared/External/Logging/LGLoggingGroup.h"
#include "Shared/External/Logging/LGRegisteredClasses.h"

namespace vantor::inline VANTOR_MODULE {

/// Flags of messages, and masks of them.
enum LGLogFlag : std::int32_t { LGLogFlagInfo = 4, LGLogFlagAll = 31 };
/// At which all of this program's messages are sent.
inline constexpr std::int32_t kLGLogLevel = 13;

enum class LGDelivery : std::uint8_t { asynchronous, synchronous };

/// Takes messages on any thread and hands them to the loggers, over one serial queue: callers
/// don't wait for the disk, and all loggers see the same order.
/// Shape:  at most kMostWaiting messages wait; the one after them waits at its caller. A log that
///         nobody listens to drops them. No thread before the first message: what is asked of the
///         loggers until then is done when it comes.
/// Errors: the end of the log delivers what waits.
/// Thread: any, but for what waits (a synchronous message, `flushLog`): not on the log's own queue
///         or a logger's. The logging queue may wait for a logger's, never the other way round.
class LGLog {
public:
    static constexpr std::ptrdiff_t kMostWaiting = 1000;

    /// This process's.
    static LGLog& sharedLog();

    /// The ports outlive the log.
    explicit LGLog(const Ports& ports);
    ~LGLog();
    LGLog(const LGLog&) = delete;
    LGLog& operator=(const LGLog&) = delete;

    /// Whether a message would go anywhere. The log starts with it: what waited for that is done.
    bool isHeard();
    SerialQueue& loggingQueue();
    bool isOnLoggingQueue() const noexcept { return loggingQueue_->isCurrent(); }
    /// Runs `task` on the logging queue, in the order of the messages, and not before one comes.
    void whenRunning(Task task);

    /// Null is ignored.
    void addLogger(std::shared_ptr<LGLogger> logger);
    void addLogger(std::shared_ptr<LGLogger> logger, std::int32_t withLogLevel);
    void removeLogger(std::shared_ptr<LGLogger> logger);
    void removeAllLoggers();

    /// With a null `format` nothing happens. `format` is as printf's.
    template <class... Arguments>
    void log(LGDelivery delivery, std::int32_t level, std::int32_t flag, std::int32_t context,
             const char* file, const char* function, std::int32_t line, std::any tag,
             const char* format, const Arguments&... arguments) {
        logArgs(delivery, level, flag, context, file, function, line, std::move(tag), format,
                fmt::make_printf_args(arguments...));
    }
    /// The same with a prepared list.
    void logArgs(LGDelivery delivery, std::int32_t level, std::int32_t flag, std::int32_t context,
                 const char* file, const char* function, std::int32_t line, std::any tag,
                 const char* format, fmt::printf_args args);
    void queueLogMessage(std::unique_ptr<const LGLogMessage> message, LGDelivery asynchronously);

    /// Returns when all messages so far are delivered, and every logger has flushed.
    void flushLog();
    /// The same, where anything was logged at all.
    void applicationWillTerminate();

    LGRegisteredClasses& classes() noexcept { return classes_; }
    const Ports& ports() const noexcept { return ports_; }

private:
    void lt_log(const LGLogMessage& message);
    void lt_addLogger(std::shared_ptr<LGLogger> logger, std::int32_t logLevel);
    void lt_removeLogger(const LGLogger& logger);
    void lt_removeAllLoggers();
    void lt_flush();

    Ports ports_;
    const std::int64_t numProcessors_;
    LGRegisteredClasses classes_;
    std::vector<LGLoggerNode> loggers_;  // only on the logging queue
    LGLoggingGroup loggingGroup_;
    CountingSemaphore queueSemaphore_{kMostWaiting};

    std::recursive_mutex startMutex_;  // guards early_: a task may run at once, and ask for others
    std::deque<Task> early_;           // waits for the first message
    std::atomic<bool> started_ = false;

    std::unique_ptr<SerialQueue> loggingQueue_;  // first to go: it runs out while all is there
};

/// What every call site of this program does: information, delivered asynchronously. A message
/// that can't be kept is lost.
void LGLogInfo(std::string_view text,
               const std::source_location& where = std::source_location::current()) noexcept;

}  // namespace vantor::inline VANTOR_MODULE
