#include "Platform/Linux/SteadyTicks.h"

#include <cstddef>

namespace vantor {
namespace {

constexpr std::size_t kStates = 4;

/// In the order of `ProcessorTicks`, the two parts behind them. What is kept from falling is the
/// sum, not each figure of it: while a CPU idles, the kernel moves its time from iowait to idle and
/// back, whenever another CPU takes over or returns a waiting task. Iowait then falls and idle
/// rises by the same ticks; kept apart, idle would gain them and iowait wouldn't lose them, and the
/// CPU would seem to idle twice.
std::array<std::uint64_t, 6> sumsOf(const ProcessorFigures& figures) noexcept {
    return {figures.user,
            figures.system + figures.irq + figures.softirq + figures.steal,
            figures.idle + figures.iowait,
            figures.nice,
            figures.iowait,
            figures.steal};
}

}  // namespace

void SteadyCounter::startAt(std::uint64_t value, std::uint64_t raw) noexcept {
    value_ = value;
    raw_ = raw;
}

void SteadyCounter::advanceTo(std::uint64_t raw) noexcept {
    const bool forwards = raw > raw_;
    if (forwards && raw - raw_ <= kLargestStep)
        value_ += raw - raw_;
    if (forwards || raw_ - raw > kJitterTicks)
        raw_ = raw;
}

void SteadyTicks::startAt(const ProcessorFigures& figures) noexcept {
    const auto sums = sumsOf(figures);
    for (std::size_t i = 0; i < sums.size(); ++i)
        counters_[i].startAt(sums[i], sums[i]);
    started_ = true;
}

void SteadyTicks::startAtZero(const ProcessorFigures& figures) noexcept {
    const auto sums = sumsOf(figures);
    for (std::size_t i = 0; i < sums.size(); ++i)
        counters_[i].startAt(0, sums[i]);
    started_ = true;
}

void SteadyTicks::advanceTo(const ProcessorFigures& figures) noexcept {
    const auto sums = sumsOf(figures);
    for (std::size_t i = 0; i < sums.size(); ++i)
        counters_[i].advanceTo(sums[i]);
}

ProcessorTicks SteadyTicks::ticks() const noexcept {
    const auto cut = [this](std::size_t i) {
        return static_cast<std::uint32_t>(counters_[i].value());
    };
    return {.user = cut(0), .system = cut(1), .idle = cut(2), .nice = cut(3)};
}

void SteadyTicks::addTo(ProcessorWaits& waits) const noexcept {
    for (std::size_t state = 0; state < kStates; ++state)
        waits.all += counters_[state].value();
    waits.iowait += counters_[kStates].value();
    waits.steal += counters_[kStates + 1].value();
}

}  // namespace vantor
