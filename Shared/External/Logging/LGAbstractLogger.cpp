#include "Shared/External/Logging/LGAbstractLogger.h"

#include <stdexcept>
#include <utility>

namespace vantor::inline VANTOR_MODULE {

LGAbstractLogger::LGAbstractLogger(LGLog& log, std::string name)
    : log_(log), name_(std::move(name)), queue_(log.ports().workQueues.makeSerialQueue(name_)) {}

LGAbstractLogger::~LGAbstractLogger() = default;

void LGAbstractLogger::finishQueue() { queue_.reset(); }

void LGAbstractLogger::requireOutsideCaller() const {
    if (isOnGlobalLoggingQueue())
        throw std::logic_error("Core architecture requirement failure");
    if (isOnInternalLoggerQueue())
        throw std::logic_error("MUST access ivar directly, NOT via self.* syntax.");
}

std::shared_ptr<LGLogFormatter> LGAbstractLogger::logFormatter() {
    requireOutsideCaller();
    std::shared_ptr<LGLogFormatter> formatter;
    hopAndWait([&] { formatter = formatter_; });
    return formatter;
}

void LGAbstractLogger::setLogFormatter(std::shared_ptr<LGLogFormatter> formatter) {
    requireOutsideCaller();
    hop([this, formatter = std::move(formatter)]() mutable {
        if (formatter == formatter_)
            return;
        if (formatter_)
            formatter_->willRemoveFromLogger(*this);
        formatter_ = std::move(formatter);
        if (formatter_)
            formatter_->didAddToLogger(*this);
    });
}

}  // namespace vantor::inline VANTOR_MODULE
