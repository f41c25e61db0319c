#include "Platform/Linux/LinuxTimeZone.h"

#include <cmath>

#include <time.h>

namespace vantor {

std::int32_t LinuxTimeZone::secondsFromGMT(double time) const noexcept {
    constexpr double kFarthest = 1e12;  // beyond that there are no calendars
    if (!(std::abs(time) < kFarthest))
        return 0;
    const auto seconds = static_cast<time_t>(std::floor(time));
    tm local{};
    tzset();  // localtime_r alone would stay with what it found first
    return localtime_r(&seconds, &local) != nullptr ? static_cast<std::int32_t>(local.tm_gmtoff)
                                                    : 0;
}

}  // namespace vantor
