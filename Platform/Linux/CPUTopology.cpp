#include "Platform/Linux/CPUTopology.h"

#include <algorithm>
#include <limits>
#include <map>
#include <string>
#include <system_error>
#include <utility>

#include "Foundation/NumberText.h"
#include "Platform/Linux/KernelText.h"
#include "Platform/Linux/ProcStat.h"

namespace vantor {
namespace {

using Core = CPUPlace::Core;
using CPUsOfCores = std::map<Core, std::vector<std::uint32_t>>;  // numbers rising

bool isCPUNumber(std::optional<std::int64_t> number) noexcept {
    return number && *number >= 0 && *number < kMaximumCPUs;
}

/// Adds the numbers of one item of a list, "8" or "0-3".
bool addRange(std::string_view item, std::vector<std::uint32_t>& to) {
    const std::size_t dash = item.find('-');
    const auto first = wholeInteger(item.substr(0, dash));
    const auto last = dash == item.npos ? first : wholeInteger(item.substr(dash + 1));
    if (!isCPUNumber(first) || !isCPUNumber(last))
        return false;
    for (std::int64_t cpu = *first; cpu <= *last; ++cpu)
        to.push_back(static_cast<std::uint32_t>(cpu));
    return *first <= *last;
}

void sortOnce(std::vector<std::uint32_t>& numbers) {
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
}

// ---- Reading ------------------------------------------------------------------------------

std::vector<std::uint32_t> listIn(const std::filesystem::path& file) {
    return cpusOfList(trimmedTextOf(file).value_or(""));
}

std::optional<std::int64_t> numberIn(const std::filesystem::path& file) {
    const auto text = trimmedTextOf(file);
    return text ? wholeInteger(*text) : std::nullopt;
}

/// The CPUs that have a folder, "cpu0", "cpu1" and so on.
std::vector<std::uint32_t> cpuFoldersIn(const std::filesystem::path& folder) {
    std::vector<std::uint32_t> cpus;
    std::error_code failed;
    std::filesystem::directory_iterator entry(folder, failed);
    for (; !failed && entry != std::filesystem::directory_iterator(); entry.increment(failed)) {
        const std::string name = entry->path().filename().string();
        if (name.starts_with("cpu"))
            addRange(std::string_view(name).substr(3), cpus);  // false for "cpufreq"
    }
    return cpus;
}

std::vector<std::uint32_t> presentCPUs(const std::filesystem::path& folder,
                                       const std::vector<std::uint32_t>& running) {
    for (const char* const list : {"present", "possible"})
        if (auto cpus = listIn(folder / list); !cpus.empty())
            return cpus;
    auto cpus = cpuFoldersIn(folder);
    if (cpus.empty())
        cpus = running;
    sortOnce(cpus);
    return cpus;
}

CPUPlace readPlace(const std::filesystem::path& folder, std::uint32_t cpu) {
    const auto topology = folder / ("cpu" + std::to_string(cpu)) / "topology";
    CPUPlace place{.cpu = cpu, .core = {}, .siblings = listIn(topology / "core_cpus_list")};
    if (place.siblings.empty())
        place.siblings = listIn(topology / "thread_siblings_list");  // its name before Linux 5.3
    const auto core = numberIn(topology / "core_id");
    const bool hasSiblings = std::ranges::binary_search(place.siblings, cpu);
    if (!core && !hasSiblings)
        return {.cpu = cpu, .core = {}, .siblings = {}};
    place.core = Core{.package = numberIn(topology / "physical_package_id").value_or(0),
                      .die = numberIn(topology / "die_id").value_or(0),
                      .core = core.value_or(0)};
    if (hasSiblings)
        place.core->firstCPU = place.siblings.front();
    else if (*core < 0)  // the kernel's word for "unknown"
        place.core->firstCPU = cpu;
    return place;
}

// ---- Arranging ----------------------------------------------------------------------------

CPUsOfCores cpusOfCores(const std::vector<CPUPlace>& places) {
    CPUsOfCores cores;
    for (const CPUPlace& place : places)
        if (place.core)
            cores[*place.core].push_back(place.cpu);
    return cores;
}

/// Gives a CPU without a core that of a CPU that names it as its sibling.
void placeByLists(std::vector<CPUPlace>& places) {
    std::map<std::uint32_t, Core> named;
    for (const CPUPlace& place : places)
        for (const std::uint32_t sibling : place.siblings)
            if (place.core)
                named.emplace(sibling, *place.core);
    for (CPUPlace& place : places)
        if (const auto found = named.find(place.cpu); !place.core && found != named.end())
            place.core = found->second;
}

/// How siblings are numbered: so many to a core, so far apart. Apart by 0 if that isn't known.
struct Numbering {
    std::size_t width = 1;
    std::int64_t apart = 0;
};

/// A machine with cores of different widths has fewer CPUs offline than its narrow cores seem to
/// lack, and no numbering: there, narrow is what they are.
Numbering numberingOf(const CPUsOfCores& cores, std::size_t known, std::size_t offline) {
    Numbering numbering;
    for (const auto& [core, cpus] : cores) {
        numbering.width = std::max(numbering.width, cpus.size());
        if (cpus.size() > 1 && numbering.apart == 0)
            numbering.apart = std::int64_t{cpus[1]} - cpus[0];
    }
    return cores.size() * numbering.width - known <= offline ? numbering : Numbering{};
}

/// The core of the CPU that is the sibling of `cpu` by its number and has a free place, or one of
/// its own behind all others.
Core coreFor(std::uint32_t cpu, const CPUsOfCores& cores,
             const std::map<std::int64_t, Core>& coreOf, const Numbering& numbering) {
    for (const std::int64_t sibling : {cpu - numbering.apart, cpu + numbering.apart})
        if (const auto found = coreOf.find(sibling); found != coreOf.end())
            if (cores.at(found->second).size() < numbering.width)
                return found->second;
    return {.package = std::numeric_limits<std::int64_t>::max(), .firstCPU = cpu};
}

void placeByNumbers(std::vector<CPUPlace>& places) {
    CPUsOfCores cores = cpusOfCores(places);
    std::map<std::int64_t, Core> coreOf;
    for (const CPUPlace& place : places)
        if (place.core)
            coreOf.emplace(place.cpu, *place.core);
    const Numbering numbering = numberingOf(cores, coreOf.size(), places.size() - coreOf.size());
    for (CPUPlace& place : places) {
        if (place.core)
            continue;
        place.core = coreFor(place.cpu, cores, coreOf, numbering);
        cores[*place.core].push_back(place.cpu);
        coreOf.emplace(place.cpu, *place.core);
    }
}

}  // namespace

std::vector<std::uint32_t> cpusOfList(std::string_view list) {
    std::vector<std::uint32_t> cpus;
    std::size_t comma = 0;
    while (comma != list.npos) {
        comma = list.find(',');
        if (!addRange(list.substr(0, comma), cpus))
            return {};
        list.remove_prefix(comma == list.npos ? list.size() : comma + 1);
    }
    sortOnce(cpus);
    return cpus;
}

CPUTopology arrangeCPUs(std::vector<CPUPlace> places) {
    std::ranges::sort(places, {}, &CPUPlace::cpu);
    const bool known =
        std::ranges::any_of(places, [](const auto& p) { return p.core.has_value(); });
    placeByLists(places);
    placeByNumbers(places);
    CPUTopology topology;
    const CPUsOfCores cores = cpusOfCores(places);
    for (const auto& [core, cpus] : cores)
        topology.order.insert(topology.order.end(), cpus.begin(), cpus.end());
    if (known) {
        topology.logicalCores = topology.order.size();
        topology.physicalCores = cores.size();
    }
    return topology;
}

CPUTopology readCPUTopology(const std::filesystem::path& folder,
                            const std::vector<std::uint32_t>& running) {
    std::vector<CPUPlace> places;
    for (const std::uint32_t cpu : presentCPUs(folder, running))
        places.push_back(readPlace(folder, cpu));
    return arrangeCPUs(std::move(places));
}

}  // namespace vantor
