#include "Platform/Linux/LinuxProcessorCounters.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <string_view>
#include <system_error>

#include <sys/stat.h>
#include <sys/sysinfo.h>

#include "Foundation/NumberText.h"
#include "Platform/Linux/ProcStat.h"

namespace vantor {
namespace {

std::vector<std::uint32_t> runningCPUs(KernelFile& stat) {
    std::vector<std::uint32_t> cpus;
    ProcStatReader reader(stat.read().value_or(""));
    for (ProcessorFigures figures; reader.next(figures);)
        cpus.push_back(figures.cpu);
    return cpus;
}

std::vector<std::optional<std::size_t>> placesByNumber(const std::vector<std::uint32_t>& order) {
    std::vector<std::optional<std::size_t>> places;
    for (std::size_t place = 0; place < order.size(); ++place) {
        places.resize(std::max<std::size_t>(places.size(), order[place] + 1));
        places[order[place]] = place;
    }
    return places;
}

/// Those that run; where there is no reading, all that are present.
std::int64_t countConfigured(std::size_t running, std::size_t present) noexcept {
    return static_cast<std::int64_t>(running > 0 ? running : present);
}

bool isProcessFolder(const std::string& name) noexcept {
    return name.find_first_not_of("0123456789") == name.npos;
}

/// The link count of /proc is 2, as for any folder, 1 for each folder that isn't a process ("sys",
/// "bus", "irq"...) and 1 for each process. So the two and those folders come off. A driver loaded
/// later may add a folder, and shows as one process too many; looking for it would mean listing
/// /proc at each reading.
std::int64_t linksBesidesProcesses(const std::filesystem::path& proc) {
    std::int64_t links = 2;
    std::error_code failed;
    std::filesystem::directory_iterator entry(proc, failed);
    for (; !failed && entry != std::filesystem::directory_iterator(); entry.increment(failed)) {
        std::error_code gone;  // a process may have ended meanwhile
        const bool folder =
            entry->symlink_status(gone).type() == std::filesystem::file_type::directory;
        links += folder && !isProcessFolder(entry->path().filename().string());
    }
    return links;
}

std::int32_t cutToCount(std::int64_t count) noexcept {
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(count, 0, kMost));
}

}  // namespace

LinuxProcessorCounters::LinuxProcessorCounters(const KernelFiles& files)
    : stat_(files.proc / "stat"), loads_(files.proc / "loadavg"), procFolder_(files.proc.string()),
      topology_(readCPUTopology(files.sys / "devices/system/cpu", runningCPUs(stat_))),
      configuredCPUs_(countConfigured(runningCPUs(stat_).size(), topology_.order.size())),
      placeOfCPU_(placesByNumber(topology_.order)), processors_(topology_.order.size()),
      linksBesidesProcesses_(linksBesidesProcesses(files.proc)) {}

std::int64_t LinuxProcessorCounters::logicalCores() const noexcept {
    return static_cast<std::int64_t>(topology_.logicalCores);
}

std::int64_t LinuxProcessorCounters::physicalCores() const noexcept {
    return static_cast<std::int64_t>(topology_.physicalCores);
}

bool LinuxProcessorCounters::readTicks(std::span<ProcessorTicks> into) noexcept {
    if (!takeReading())
        return false;
    const std::size_t count = std::min(into.size(), processors_.size());
    for (std::size_t place = 0; place < count; ++place)
        into[place] = processors_[place].ticks();
    return true;
}

/// Null for a CPU that wasn't present at construction.
SteadyTicks* LinuxProcessorCounters::processorOf(std::uint32_t cpu) noexcept {
    const bool known = cpu < placeOfCPU_.size() && placeOfCPU_[cpu];
    return known ? &processors_[*placeOfCPU_[cpu]] : nullptr;
}

bool LinuxProcessorCounters::takeReading() noexcept {
    bool listed = false;
    ProcStatReader reader(stat_.read().value_or(""));
    for (ProcessorFigures figures; reader.next(figures);) {
        SteadyTicks* const processor = processorOf(figures.cpu);
        if (processor == nullptr)
            continue;
        listed = true;
        if (processor->started())
            processor->advanceTo(figures);
        else if (hasReading_)
            processor->startAtZero(figures);
        else
            processor->startAt(figures);
    }
    hasReading_ = hasReading_ || listed;
    return listed;
}

ProcessCounts LinuxProcessorCounters::readProcessCounts() noexcept {
    return {.tasks = readTasks(), .threads = readThreads()};
}

ProcessorWaits LinuxProcessorCounters::waits() const noexcept {
    ProcessorWaits sum;
    for (const SteadyTicks& processor : processors_)
        processor.addTo(sum);
    return sum;
}

std::int32_t LinuxProcessorCounters::readTasks() const noexcept {
    struct stat status {};
    if (::stat(procFolder_.c_str(), &status) != 0)
        return 0;
    return cutToCount(static_cast<std::int64_t>(status.st_nlink) - linksBesidesProcesses_);
}

/// sysinfo(2) counts threads in 16 bits, which 65,536 of them overflow; /proc/loadavg doesn't.
std::int32_t LinuxProcessorCounters::readThreads() noexcept {
    if (const auto threads = threadsIn(loads_.read().value_or("")))
        return *threads;
    struct sysinfo info {};
    return ::sysinfo(&info) == 0 ? std::int32_t{info.procs} : 0;
}

std::optional<std::int32_t> threadsIn(std::string_view loadavg) noexcept {
    const std::size_t slash = loadavg.find('/');
    if (slash == loadavg.npos)
        return std::nullopt;
    const std::string_view rest = loadavg.substr(slash + 1);
    const auto threads = wholeInteger(rest.substr(0, rest.find_first_of(" \n")));
    return threads && *threads > 0 ? std::optional(cutToCount(*threads)) : std::nullopt;
}

}  // namespace vantor
