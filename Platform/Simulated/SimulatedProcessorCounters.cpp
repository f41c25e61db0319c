#include "Platform/Simulated/SimulatedProcessorCounters.h"

#include <algorithm>
#include <cmath>

namespace vantor::simulated {
namespace {

constexpr double kWrap = 0x1p32;

std::uint32_t wrapped(double counter) noexcept {
    return static_cast<std::uint32_t>(counter - std::floor(counter / kWrap) * kWrap);
}

}  // namespace

SimulatedProcessorCounters::SimulatedProcessorCounters(const SimulatedMainQueue& queue,
                                                       std::size_t cpus)
    : queue_(queue), start_(queue.now()), since_(0), cpus_(cpus),
      configured_(static_cast<std::int64_t>(cpus)), logical_(configured_), physical_(configured_) {}

void SimulatedProcessorCounters::setCPUs(std::size_t cpus, std::int64_t configured,
                                         std::int64_t logical, std::int64_t physical) {
    cpus_.resize(cpus);
    configured_ = configured;
    logical_ = logical;
    physical_ = physical;
}

ProcessorTicks SimulatedProcessorCounters::ticksNow(const CPU& cpu) const noexcept {
    const double elapsed = (queue_.now() - start_) - since_;
    const auto grown = [&](std::uint32_t base, std::size_t state) {
        return wrapped(base + std::floor(cpu.rates[state] * elapsed));
    };
    return {grown(cpu.base.user, 0), grown(cpu.base.system, 1), grown(cpu.base.idle, 2),
            grown(cpu.base.nice, 3)};
}

void SimulatedProcessorCounters::rebase() noexcept {
    for (CPU& cpu : cpus_)
        cpu.base = ticksNow(cpu);
    since_ = queue_.now() - start_;
}

void SimulatedProcessorCounters::setTicks(std::span<const ProcessorTicks> ticks) noexcept {
    rebase();
    for (std::size_t cpu = 0; cpu < std::min(cpus_.size(), ticks.size()); ++cpu)
        cpus_[cpu].base = ticks[cpu];
}

void SimulatedProcessorCounters::setRates(std::span<const Rates> rates) noexcept {
    rebase();
    for (std::size_t cpu = 0; cpu < std::min(cpus_.size(), rates.size()); ++cpu)
        cpus_[cpu].rates = rates[cpu];
}

void SimulatedProcessorCounters::spend(std::size_t cpu, const ProcessorTicks& more) noexcept {
    rebase();
    ProcessorTicks& base = cpus_[cpu].base;
    base.user += more.user;
    base.system += more.system;
    base.idle += more.idle;
    base.nice += more.nice;
}

bool SimulatedProcessorCounters::readTicks(std::span<ProcessorTicks> into) noexcept {
    if (failing_)
        return false;
    for (std::size_t cpu = 0; cpu < std::min(cpus_.size(), into.size()); ++cpu)
        into[cpu] = ticksNow(cpus_[cpu]);
    return true;
}

}  // namespace vantor::simulated
