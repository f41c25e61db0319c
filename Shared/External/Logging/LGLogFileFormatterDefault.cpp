#include "Shared/External/Logging/LGLogFileFormatterDefault.h"

#include <fmt/format.h>

#include "Foundation/CivilTime.h"
#include "Platform/TimeZone.h"
#include "Shared/External/Logging/LGLogMessage.h"

namespace vantor::inline VANTOR_MODULE {

std::optional<std::string>
LGLogFileFormatterDefault::formatLogMessage(const LGLogMessage& message) {
    const double time = message.timestamp;
    const CivilTime at = civilTime(time, ports_.timeZone.secondsFromGMT(time));
    return fmt::format("{:04}/{:02}/{:02} {:02}:{:02}:{:02}:{:03}  {}", at.year, at.month, at.day,
                       at.hour, at.minute, at.second, at.millisecond, message.logMsg);
}

}  // namespace vantor::inline VANTOR_MODULE
