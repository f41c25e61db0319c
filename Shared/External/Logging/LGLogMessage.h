#pragma once

#include <any>
#include <cstdint>
#include <string>
#include <string_view>

#include "Platform/Ports.h"

namespace vantor::inline VANTOR_MODULE {

/// Bits of `LGLogMessage::options`. Texts that aren't copied outlive the message.
enum LGLogMessageOptions : std::int32_t {
    LGLogMessageCopyFile = 1,
    LGLogMessageCopyFunction = 2,
};

/// What somebody wants to be written down. Text, time and thread are taken when it is made,
/// because it is read later, on another thread. A copy is independent.
class LGLogMessage {
public:
    /// Time and thread are asked of `ports`. `file` and `function` may be null.
    LGLogMessage(const Ports& ports, std::string logMsg, std::int32_t logLevel,
                 std::int32_t logFlag, std::int32_t logContext, const char* file,
                 const char* function, std::int32_t lineNumber, std::any tag, std::int32_t options);

    /// The thread's number in hexadecimal digits.
    std::string threadID() const;
    /// Of the source file, less its folders and its extension.
    std::string fileName() const;
    std::string methodName() const { return function(); }
    const char* file() const noexcept;
    const char* function() const noexcept;

    std::int32_t logLevel;    // the static level of the call site
    std::int32_t logFlag;     // this message's
    std::int32_t logContext;  // the caller's affair
    std::string logMsg;
    double timestamp;  // seconds since 1970
    std::int32_t lineNumber;
    std::uint32_t machThreadID;
    std::string queueLabel;
    std::string threadName;
    std::any tag;  // the caller's affair
    std::int32_t options;

private:
    const char* file_;
    const char* function_;
    std::string fileCopy_, functionCopy_;
};

/// What lies behind the last "/", up to the last ".".
std::string_view LGExtractFileNameWithoutExtension(std::string_view path) noexcept;

}  // namespace vantor::inline VANTOR_MODULE
