#include "Shared/External/Logging/LGLogMessage.h"

#include <utility>

#include <fmt/format.h>

#include "Platform/Clock.h"
#include "Platform/MainQueue.h"
#include "Platform/ThisProcess.h"
#include "Platform/WorkQueues.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

const char* orEmpty(const char* text) noexcept { return text != nullptr ? text : ""; }

std::string_view currentQueueLabel(const Ports& ports) {
    const std::string_view label = ports.workQueues.currentLabel();
    return label.empty() && ports.mainQueue.isCurrent() ? "main" : label;
}

}  // namespace

LGLogMessage::LGLogMessage(const Ports& ports, std::string text, std::int32_t level,
                           std::int32_t flag, std::int32_t context, const char* file,
                           const char* function, std::int32_t line, std::any tagOrNone,
                           std::int32_t messageOptions)
    : logLevel(level), logFlag(flag), logContext(context), logMsg(std::move(text)),
      timestamp(ports.clock.now()), lineNumber(line), machThreadID(ports.thisProcess.threadID()),
      queueLabel(currentQueueLabel(ports)), threadName(ports.thisProcess.threadName()),
      tag(std::move(tagOrNone)), options(messageOptions), file_(orEmpty(file)),
      function_(orEmpty(function)) {
    if ((options & LGLogMessageCopyFile) != 0)
        fileCopy_ = file_;
    if ((options & LGLogMessageCopyFunction) != 0)
        functionCopy_ = function_;
}

std::string LGLogMessage::threadID() const { return fmt::format("{:x}", machThreadID); }

std::string LGLogMessage::fileName() const {
    return std::string(LGExtractFileNameWithoutExtension(file()));
}

const char* LGLogMessage::file() const noexcept {
    return (options & LGLogMessageCopyFile) != 0 ? fileCopy_.c_str() : file_;
}

const char* LGLogMessage::function() const noexcept {
    return (options & LGLogMessageCopyFunction) != 0 ? functionCopy_.c_str() : function_;
}

std::string_view LGExtractFileNameWithoutExtension(std::string_view path) noexcept {
    const auto slash = path.rfind('/');
    const std::string_view name = slash == path.npos ? path : path.substr(slash + 1);
    return name.substr(0, name.rfind('.'));
}

}  // namespace vantor::inline VANTOR_MODULE
