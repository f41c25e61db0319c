#include "Targets/VantorBarCPU/Interface/TimeTexts.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>

#include <fmt/printf.h>

#include "Shared/VTRTranslations.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kDay = 86'400, kHour = 3'600, kMinute = 60;

/// Cut to a whole number; what an integer can't hold stays at its ends.
std::int32_t whole(double number) {
    if (std::isnan(number))
        return 0;
    return static_cast<std::int32_t>(std::clamp(number, -2147483648.0, 2147483647.0));
}

/// The number with its unit; one of it has a form of its own.
std::string counted(std::int32_t number, std::string_view one, std::string_view many) {
    const std::string format = VTRLocalizedString(number == 1 ? one : many, {}, "common");
    try {
        return fmt::sprintf(format, number);
    } catch (const fmt::format_error&) {  // a table that isn't ours
        return fmt::format("{}", number);
    }
}

}  // namespace

std::string formattedTime(double seconds) {
    const std::int32_t days = whole(seconds / kDay);
    const double rest = seconds - days * kDay;
    const std::int32_t hours = whole(rest / kHour);
    const std::int32_t minutes = whole((rest - hours * kHour) / kMinute);
    const std::string minutesText = counted(minutes, "%i minute", "%i minutes");
    if (days == 0 && hours == 0)
        return minutesText;
    const std::string hoursText = counted(hours, "%i hour", "%i hours");
    if (days == 0)
        return fmt::format("{}, {}", hoursText, minutesText);
    return fmt::format("{}, {}, {}", counted(days, "%i day", "%i days"), hoursText, minutesText);
}

}  // namespace vantor::inline VANTOR_MODULE
