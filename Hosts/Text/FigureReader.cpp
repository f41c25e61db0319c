#include "Hosts/Text/FigureReader.h"

#include <span>

#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/Collectors/LoadStatCollector.h"
#include "Shared/ProcessContext.h"

namespace vantor {
namespace {

ProcessorShares sharesOf(std::span<const double> values) noexcept {
    return {values[0], values[1], values[2]};
}

void readHistory(UsageHistory& into, const SampleRing& ring) {
    into.points.clear();
    into.points.reserve(SampleRing::kSlots);
    into.newestTime = ring.sampleID(0) > 0 ? ring.time(0) : 0;
    for (std::size_t position = 0; position < SampleRing::kSlots; ++position)
        if (!ring.empty(position))
            into.points.push_back({ring.time(position), sharesOf(ring.values(position)).used()});
}

void readProcessors(TextFigures& into, const CPUStatCollector& collector) {
    const statsample newest = collector.sampleAtIndex(0, StorageType::now);
    into.time = newest.time;
    if (newest.empty == 0)
        into.mean = sharesOf(newest.values);
    for (std::size_t cpu = 0; cpu < collector.cpuCount(); ++cpu)
        into.cores.push_back(
            sharesOf(collector.core(cpu).sampleAtIndex(0, StorageType::now).values));
    into.tasks = collector.taskCount();
    into.threads = collector.threadCount();
}

}  // namespace

void readFigures(TextFigures& into, Histories histories) {
    const ProcessContext& context = ProcessContext::current();
    into.mean.reset();
    into.cores.clear();
    into.loads.reset();
    if (const CPUStatCollector* collector = context.existingCPUCollector()) {
        readProcessors(into, *collector);
        if (histories == Histories::read) {
            readHistory(into.tenMinutes, collector->storageForType(0));
            readHistory(into.hour, collector->storageForType(1));
        }
    }
    if (const LoadStatCollector* collector = context.existingLoadCollector()) {
        const statsample newest = collector->sampleAtIndex(0, StorageType::now);
        if (newest.empty == 0)
            into.loads = {newest.values[0], newest.values[1], newest.values[2]};
    }
}

}  // namespace vantor
