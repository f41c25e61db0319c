#include "Shared/Collectors/LoadStatCollector.h"

#include "Platform/BootTime.h"
#include "Platform/Clock.h"
#include "Platform/LoadAverages.h"
#include "Shared/ProcessContext.h"

namespace vantor::inline VANTOR_MODULE {

LoadStatCollector::LoadStatCollector(const Ports& ports)
    : StatCollector(ports, "load", "<LoadStatCollector>", sampleCount()) {
    setTablePrefix("loadavg");
    mutableConfig() = {
        .addSampleIDKeys = {"sample", "id"},
        .addSampleMap = {{"one", 0}, {"fv", 1}, {"ff", 2}, {"five", 1}, {"fifteen", 2}},
        .sampleKeys = {{"one", 0}, {"five", 1}, {"fifteen", 2}},
        .emptySampleKeys = {"one", "five", "fifteen"},
        .xmlSampleKeys = {{"one", 0}, {"five", 1}, {"fifteen", 2}},
        .sqlInsert = "insert into %@ (empty, sample, time, one, five, fifteen) "
                     "values (?, ?, ?, ?, ?, ?)",
        .sqlInsertKeys = {"empty", "sample", "time", "one", "five", "fifteen"},
        .sqlCreate = "create table %@ (sample double PRIMARY KEY NOT NULL, time double NOT NULL, "
                     "empty integer NOT NULL, one double NOT NULL, five double NOT NULL, "
                     "fifteen double NOT NULL)",
        .sqlCreateLong = "create table %@ (sample double, time double, empty integer, "
                         "one double, five double, fifteen double)"};
}

LoadStatCollector& LoadStatCollector::sharedLoadCollector() {
    return ProcessContext::current().loadCollector();
}

void LoadStatCollector::cleanupShared() noexcept {
    ProcessContext& context = ProcessContext::current();
    if (LoadStatCollector* const collector = context.existingLoadCollector())
        collector->cleanup();
    context.dropLoadCollector();
}

void LoadStatCollector::measure() {
    const double sampleID = nextSampleID();
    const FixedLoads loads = ports().loadAverages.readLoads();
    SampleRing& ring = historyNow();
    PushSamples(ring);
    const std::span<double> values = ring.mutableValues(0);
    for (std::size_t load = 0; load < values.size(); ++load)
        values[load] = static_cast<double>(loads.fixed[load]) / static_cast<double>(loads.scale);
    ring.setSampleID(0, sampleID);
    ring.setEmpty(0, 0);
    ring.setTime(0, ports().clock.now());
    tellDelegates(0);
}

std::uint64_t LoadStatCollector::uptime() const noexcept {
    const std::int64_t boot = ports().bootTime.bootSeconds().value_or(0);
    const auto now = static_cast<std::int64_t>(ports().clock.now());
    return static_cast<std::uint64_t>(now - boot);
}

double LoadStatCollector::latestSampleID() const noexcept {
    return storageForType(0).sampleID(0);
}

}  // namespace vantor::inline VANTOR_MODULE
