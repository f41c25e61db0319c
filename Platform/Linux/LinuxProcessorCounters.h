#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Linux/CPUTopology.h"
#include "Platform/Linux/KernelFile.h"
#include "Platform/Linux/KernelFiles.h"
#include "Platform/Linux/SteadyTicks.h"
#include "Platform/ProcessorCounters.h"

namespace vantor {

/// The kernel's processor counters from /proc/stat. A reading is one pread.
/// Shape:  one place for each CPU that was present at construction, in the order of `CPUTopology`.
///         A CPU that the kernel doesn't list, because it is offline, keeps its place, but one
///         that was offline at construction, such as a thread of a core where threads are
///         switched off for good, isn't among the configured: their idleness is nobody's.
/// Units:  hundredths of a second; USER_HZ is 100 on every machine that we run on. User and nice
///         are as the kernel gives them, with guest time inside; system has the time in interrupts
///         and the time stolen by other virtual machines; idle has the wait for disks.
/// Errors: no reading where /proc/stat can't be read or lists none of our CPUs. The next reading
///         tries again.
class LinuxProcessorCounters final : public ProcessorCounters {
public:
    explicit LinuxProcessorCounters(const KernelFiles& files = {});

    std::size_t cpuCount() const noexcept override { return topology_.order.size(); }
    std::int64_t configuredCPUs() const noexcept override { return configuredCPUs_; }
    std::int64_t logicalCores() const noexcept override;
    std::int64_t physicalCores() const noexcept override;
    bool readTicks(std::span<ProcessorTicks> into) noexcept override;
    /// A figure that can't be read is 0.
    ProcessCounts readProcessCounts() noexcept override;
    ProcessorWaits waits() const noexcept override;

private:
    SteadyTicks* processorOf(std::uint32_t cpu) noexcept;
    bool takeReading() noexcept;
    std::int32_t readTasks() const noexcept;
    std::int32_t readThreads() noexcept;

    KernelFile stat_;
    KernelFile loads_;
    std::string procFolder_;
    CPUTopology topology_;
    std::int64_t configuredCPUs_;
    std::vector<std::optional<std::size_t>> placeOfCPU_;  // by the kernel's number
    std::vector<SteadyTicks> processors_;                 // by place
    bool hasReading_ = false;
    std::int64_t linksBesidesProcesses_;
};

/// The threads of the whole machine, from a text of /proc/loadavg, "0.20 0.18 0.12 1/80 11206":
/// the number behind the slash.
std::optional<std::int32_t> threadsIn(std::string_view loadavg) noexcept;

}  // namespace vantor
