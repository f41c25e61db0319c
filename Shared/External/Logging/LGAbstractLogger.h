#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "Shared/External/Logging/LGLog.h"
#include "Shared/External/Logging/LGLogger.h"

namespace vantor::inline VANTOR_MODULE {

/// The base of loggers: a queue of their own, and a formatter. Made by std::make_shared.
/// Errors: what is for outside callers throws std::logic_error on the log's queue and on the
///         logger's: it would wait for itself. Inside a logger `formatter_` is read directly.
/// Thread: any; the hop over the log's queue keeps settings and messages in one order.
class LGAbstractLogger : public LGLogger, public std::enable_shared_from_this<LGAbstractLogger> {
public:
    /// `name` is the queue's label, too. The log outlives the logger.
    explicit LGAbstractLogger(LGLog& log, std::string name = "LGAbstractLogger");
    ~LGAbstractLogger() override;
    LGAbstractLogger(const LGAbstractLogger&) = delete;
    LGAbstractLogger& operator=(const LGAbstractLogger&) = delete;

    void logMessage(const LGLogMessage&) override {}
    std::shared_ptr<LGLogFormatter> logFormatter() override;
    /// Returns without waiting.
    void setLogFormatter(std::shared_ptr<LGLogFormatter> formatter) override;
    SerialQueue* loggerQueue() noexcept override { return queue_.get(); }
    std::string_view loggerName() const override { return name_; }

    bool isOnGlobalLoggingQueue() const noexcept { return log_.isOnLoggingQueue(); }
    bool isOnInternalLoggerQueue() const noexcept { return queue_ && queue_->isCurrent(); }

protected:
    /// The first act of a concrete logger's destructor: what was asked of its queue runs while
    /// the logger is whole.
    void finishQueue();
    void requireOutsideCaller() const;
    /// Runs `closure` on the logger's queue behind the messages so far, unless the logger has
    /// gone until then.
    template <class Closure>
    void hop(Closure closure) {
        log_.whenRunning([weak = weak_from_this(), closure = std::move(closure)]() mutable {
            if (const auto self = weak.lock())
                self->queue_->async(std::move(closure));
        });
    }
    /// The same, and returns when it has run.
    template <class Closure>
    void hopAndWait(Closure closure) {
        log_.loggingQueue().sync([this, &closure] { queue_->sync(std::ref(closure)); });
    }
    const Ports& ports() const noexcept { return log_.ports(); }

    std::shared_ptr<LGLogFormatter> formatter_;  // only on the logger's queue

private:
    LGLog& log_;
    const std::string name_;
    std::unique_ptr<SerialQueue> queue_;
};

}  // namespace vantor::inline VANTOR_MODULE
