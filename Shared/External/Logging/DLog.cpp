#include "Shared/External/Logging/DLog.h"

#include <cstdio>

#include "Foundation/CivilTime.h"
#include "Platform/Clock.h"
#include "Platform/TimeZone.h"
#include "Shared/ProcessContext.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

/// The year is the week's, as the stamp always had it.
std::string stamp(const Ports& ports) {
    const double now = ports.clock.now();
    const CivilTime at = civilTime(now, ports.timeZone.secondsFromGMT(now));
    return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}.{:03}", weekYear(at), at.month, at.day,
                       at.hour, at.minute, at.second, at.millisecond);
}

}  // namespace

void DLogText(std::string_view text) {
    fmt::print("{}: {}\n", stamp(ProcessContext::current().ports()), text);
    std::fflush(stdout);  // whoever debugs sees it if it fails
}

}  // namespace vantor::inline VANTOR_MODULE
