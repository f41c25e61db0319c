#pragma once

#include <optional>
#include <string>

namespace vantor::inline VANTOR_MODULE {

class LGLogger;
class LGLogMessage;

/// Makes the line that a logger writes. On the queue of the logger that it belongs to.
class LGLogFormatter {
public:
    virtual ~LGLogFormatter() = default;
    /// Nothing: the message isn't written.
    virtual std::optional<std::string> formatLogMessage(const LGLogMessage& message) = 0;
    virtual void didAddToLogger(LGLogger&) {}
    virtual void willRemoveFromLogger(LGLogger&) {}
};

}  // namespace vantor::inline VANTOR_MODULE
