#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Platform/ProcessorCounters.h"
#include "Shared/Collectors/CPUStatCollectorItem.h"
#include "Shared/Collectors/StatCollector.h"

namespace vantor::inline VANTOR_MODULE {

/// Percent of the time between two readings. Single precision: the figures that users compare
/// with other tools are computed so.
struct CPUShares {
    float user = 0, system = 0, nice = 0;
    CPUShares& operator+=(const CPUShares& other) noexcept;
    bool operator==(const CPUShares&) const = default;
};

/// What of the time between two readings went into waiting, in percent: for disks, and for other
/// virtual machines. Parts of idle and of system.
struct CPUWaits {
    double iowait = 0, steal = 0;
    bool operator==(const CPUWaits&) const = default;
};
CPUWaits waitsBetween(const ProcessorWaits& before, const ProcessorWaits& after) noexcept;

/// All 0 when no tick has passed. A counter that wrapped gives the right share.
CPUShares sharesBetween(const ProcessorTicks& before, const ProcessorTicks& after) noexcept;

/// What the collector knows of one logical CPU: the counters of its last reading and its shares.
struct cpu_container {
    ProcessorTicks ticks;
    const SampleRing* history;
};

/// The processors: user, system and nice in percent, per logical core, per physical core where
/// each has two threads, and as the mean over all cores, which is what the history keeps.
class CPUStatCollector final : public StatCollector {
public:
    static constexpr std::size_t sampleCount() noexcept { return 3; }

    explicit CPUStatCollector(const Ports& ports);
    ~CPUStatCollector() override;

    static CPUStatCollector& sharedCPUCollector();
    /// Ends the shared collector, if there is one; the next use makes a new one.
    static void cleanupShared() noexcept;

    /// Makes the cores and takes the first reading, from which the first shares are reckoned.
    /// Once, after construction.
    void setup();

    /// 0 where the machine doesn't say, or for more than 64.
    std::int64_t physicalCoreCount() const noexcept;
    std::int64_t logicalCoreCount() const noexcept;

    /// One a physical core; empty unless there are two threads a core.
    const std::vector<std::unique_ptr<CPUStatCollectorItem>>& physicalCores() const noexcept {
        return physicalCores_;
    }
    const CPUStatCollectorItem& core(std::size_t index) const noexcept { return *cores_[index]; }
    std::size_t cpuCount() const noexcept { return cores_.size(); }
    cpu_container dataForCPU(std::size_t index) const noexcept;

    std::int64_t coreCount() const noexcept { return coreCount_; }
    bool hyperThreading() const noexcept { return hyperThreading_; }
    std::int32_t taskCount() const noexcept { return processCounts_.tasks; }
    std::int32_t threadCount() const noexcept { return processCounts_.threads; }
    /// Of the newest sample; all 0 where the machine doesn't tell.
    const CPUWaits& waits() const noexcept { return waits_; }
    /// The ticks of CPU 0 since boot, all states together; -1 until the first measurement.
    double runningTime() const noexcept { return runningTime_; }

    void updateProcessInfo() noexcept;

protected:
    void measure() override;

private:
    CPUShares measureCores() noexcept;
    void measurePhysicalCores() noexcept;
    void storeMean(const CPUShares& sum) noexcept;

    std::vector<CPUStatCollectorItem*> cores_;  // the collector's items, by CPU
    std::vector<std::unique_ptr<CPUStatCollectorItem>> physicalCores_;
    std::vector<ProcessorTicks> previous_, current_;
    ProcessorWaits previousWaits_;
    CPUWaits waits_;
    std::int64_t coreCount_ = 0;
    bool hyperThreading_ = false;
    ProcessCounts processCounts_;
    double runningTime_ = -1;
};

}  // namespace vantor::inline VANTOR_MODULE
