#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace vantor {

/// What a process has used so far.
struct ProgramUsage {
    int process = 0;
    double processorSeconds = 0;
    double runningSeconds = 0;      // since it was started
    std::uint64_t memoryBytes = 0;  // shared pages count for their part; 0 where it isn't told
};

/// Nothing for a process that isn't there. `proc` is the kernel's folder of processes. Any thread.
std::optional<ProgramUsage> usageOfProcess(const std::filesystem::path& proc, int process);

/// The items that this user is running, in the order in which the folder lists them.
std::vector<ProgramUsage> usageOfItems(const std::filesystem::path& proc, std::uint32_t user);

}  // namespace vantor
