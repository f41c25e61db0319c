#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace vantor {

/// Which CPUs a machine has, in an order that has the threads of one core side by side.
struct CPUTopology {
    std::vector<std::uint32_t> order;  // numbers of CPUs, each once
    /// 0 where the kernel says nothing of cores.
    std::size_t logicalCores = 0, physicalCores = 0;
};

/// What the kernel says of one CPU.
struct CPUPlace {
    struct Core {
        std::int64_t package = 0, die = 0, core = 0;
        /// The lowest CPU of the core: core numbers alone can repeat from cluster to cluster.
        std::uint32_t firstCPU = 0;
        auto operator<=>(const Core&) const = default;
    };
    std::uint32_t cpu = 0;
    std::optional<Core> core;             // nothing of a CPU that is offline
    std::vector<std::uint32_t> siblings;  // CPUs of the same core; may be empty
};

/// The numbers in a list such as "0-3,8", rising. Empty where it's no such list.
std::vector<std::uint32_t> cpusOfList(std::string_view list);

/// Orders by package, die, core and number. The kernel forgets the core of a CPU that goes
/// offline, and drops it from its siblings' lists, too. Such a CPU takes the free place in the core
/// where its number belongs by the distance that other siblings' numbers have, so that a machine
/// started with one thread offline still pairs right; where nothing tells, it comes behind the
/// known ones, by its number, as a core of its own.
CPUTopology arrangeCPUs(std::vector<CPUPlace> places);

/// The topology below `folder` (/sys/devices/system/cpu). It covers the CPUs that are present,
/// online or not; where the kernel doesn't list those, the possible ones; failing that, those
/// with a folder; without any folder `running`, in any order, each taken as a core that isn't
/// counted.
CPUTopology readCPUTopology(const std::filesystem::path& folder,
                            const std::vector<std::uint32_t>& running);

}  // namespace vantor
