#pragma once

#include <memory>
#include <string_view>

#include "Platform/WorkQueues.h"
#include "Shared/External/Logging/LGLogFormatter.h"

namespace vantor::inline VANTOR_MODULE {

/// Somebody who takes messages from the log. What has a body here is a logger's choice.
/// Thread: `logMessage` and the three that tell of its life run on the logger's queue; nothing
///         may be thrown there.
class LGLogger {
public:
    virtual ~LGLogger() = default;
    virtual void logMessage(const LGLogMessage& message) = 0;
    virtual std::shared_ptr<LGLogFormatter> logFormatter() = 0;
    virtual void setLogFormatter(std::shared_ptr<LGLogFormatter> formatter) = 0;

    virtual void didAddLogger() {}
    virtual void willRemoveLogger() {}
    virtual void flush() {}
    /// Null where the log is to make one, named after the logger.
    virtual SerialQueue* loggerQueue() noexcept { return nullptr; }
    virtual std::string_view loggerName() const { return {}; }
};

}  // namespace vantor::inline VANTOR_MODULE
