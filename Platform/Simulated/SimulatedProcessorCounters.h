#pragma once

#include <array>
#include <vector>

#include "Platform/ProcessorCounters.h"
#include "Platform/Simulated/SimulatedMainQueue.h"

namespace vantor::simulated {

/// CPUs that do only what they are told: counters that stand, and rates at which they grow.
/// They wrap as a kernel's do.
class SimulatedProcessorCounters final : public ProcessorCounters {
public:
    /// Ticks a second, in the order of ProcessorTicks: user, system, idle, nice.
    using Rates = std::array<double, 4>;

    /// Counters at 0 that stand still.
    explicit SimulatedProcessorCounters(const SimulatedMainQueue& queue, std::size_t cpus = 2);

    void setCPUs(std::size_t cpus, std::int64_t configured, std::int64_t logical,
                 std::int64_t physical);
    /// The counters from now on, growing at the rates that hold. Missing CPUs stay as they are.
    void setTicks(std::span<const ProcessorTicks> ticks) noexcept;
    /// The rates from now on, growing from the counters of this moment.
    void setRates(std::span<const Rates> rates) noexcept;
    void spend(std::size_t cpu, const ProcessorTicks& more) noexcept;
    void setProcessCounts(ProcessCounts counts) noexcept { counts_ = counts; }
    ProcessCounts processCounts() const noexcept { return counts_; }
    void setWaits(const ProcessorWaits& waits) noexcept { waits_ = waits; }
    void setFailing(bool failing) noexcept { failing_ = failing; }

    std::size_t cpuCount() const noexcept override { return cpus_.size(); }
    std::int64_t configuredCPUs() const noexcept override { return configured_; }
    std::int64_t logicalCores() const noexcept override { return logical_; }
    std::int64_t physicalCores() const noexcept override { return physical_; }
    bool readTicks(std::span<ProcessorTicks> into) noexcept override;
    ProcessCounts readProcessCounts() noexcept override { return counts_; }
    ProcessorWaits waits() const noexcept override { return waits_; }

private:
    struct CPU {
        ProcessorTicks base;
        Rates rates{};
    };
    ProcessorTicks ticksNow(const CPU& cpu) const noexcept;
    /// Makes the counters of this moment the base.
    void rebase() noexcept;

    const SimulatedMainQueue& queue_;
    double start_, since_;  // seconds since 1970; rates count from `since_`
    std::vector<CPU> cpus_;
    std::int64_t configured_, logical_, physical_;
    ProcessCounts counts_;
    ProcessorWaits waits_;
    bool failing_ = false;
};

}  // namespace vantor::simulated
