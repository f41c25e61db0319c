#include "Foundation/CivilTime.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace vantor {
namespace {

using std::chrono::days, std::chrono::microseconds, std::chrono::sys_days;

constexpr double kFirstSecond = -62'135'596'800, kLastSecond = 253'402'300'799;

std::chrono::year_month_day dateOf(const CivilTime& time) noexcept {
    return {std::chrono::year(time.year), std::chrono::month(time.month),
            std::chrono::day(time.day)};
}

}  // namespace

CivilTime civilTime(double time, std::int32_t secondsFromGMT) noexcept {
    const double shown = time + secondsFromGMT;
    const double within = std::isnan(shown) ? 0 : std::clamp(shown, kFirstSecond, kLastSecond);
    const microseconds whole(std::llround(within * 1e6));
    const auto day = std::chrono::floor<days>(whole);
    const std::chrono::year_month_day date{sys_days(day)};
    const std::chrono::hh_mm_ss clock(whole - day);
    const auto milliseconds = clock.subseconds() / std::chrono::milliseconds(1);
    return {.year = static_cast<int>(date.year()),
            .month = static_cast<unsigned>(date.month()),
            .day = static_cast<unsigned>(date.day()),
            .hour = static_cast<unsigned>(clock.hours().count()),
            .minute = static_cast<unsigned>(clock.minutes().count()),
            .second = static_cast<unsigned>(clock.seconds().count()),
            .millisecond = static_cast<unsigned>(milliseconds)};
}

std::optional<std::int64_t> secondsOf(const CivilTime& time) noexcept {
    if (!dateOf(time).ok() || time.hour > 23 || time.minute > 59 || time.second > 59)
        return std::nullopt;
    const std::int64_t day = sys_days(dateOf(time)).time_since_epoch().count();
    return ((day * 24 + time.hour) * 60 + time.minute) * 60 + time.second;
}

int weekYear(const CivilTime& time) noexcept {
    const sys_days day(dateOf(time));
    const days afterMonday = std::chrono::weekday(day) - std::chrono::Monday;
    const std::chrono::year_month_day thursday{day - afterMonday + days(3)};
    return static_cast<int>(thursday.year());
}

}  // namespace vantor
