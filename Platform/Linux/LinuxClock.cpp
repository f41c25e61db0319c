#include "Platform/Linux/LinuxClock.h"

#include <ctime>

namespace vantor {
namespace {

timespec read(clockid_t clock) noexcept {
    timespec time{};
    clock_gettime(clock, &time);  // fails only for clocks that don't exist; these two always do
    return time;
}

double secondsOf(const timespec& time) noexcept {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

}  // namespace

std::int64_t monotonicNanoseconds() noexcept {
    const timespec time = read(CLOCK_MONOTONIC);
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

double LinuxClock::now() const noexcept { return secondsOf(read(CLOCK_REALTIME)); }
double LinuxClock::monotonic() const noexcept { return secondsOf(read(CLOCK_MONOTONIC)); }

}  // namespace vantor
