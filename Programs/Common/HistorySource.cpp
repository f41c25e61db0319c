#include "Programs/Common/HistorySource.h"

#include "Platform/Simulated/SimulatedMachine.h"
#include "Shared/Collectors/CPUStatCollector.h"
#include "Shared/Collectors/LoadStatCollector.h"

namespace vantor {
namespace {

/// As the collector itself says.
HistorySource sourceOf(const StatCollector& collector) {
    return {.name = collector.name(),
            .kind = collector.storageType(),
            .tables = HistoryTables(collector.dbTablePrefix(), collector.storageType()),
            .columns = collector.config().sampleKeys,
            .exported = collector.config().xmlSampleKeys};
}

/// Its items have no keys for an export of their own: the columns' names serve.
HistorySource graphicsSource() {
    const std::vector<SampleKey> columns{{"processor", 0}, {"memory", 1}};
    return {.name = "gpu",
            .kind = StorageKind::items,
            .tables = HistoryTables("gpu", StorageKind::items),
            .columns = columns,
            .exported = columns};
}

}  // namespace

std::vector<HistorySource> historySources() {
    simulated::SimulatedMachine machine;  // what a collector keeps is the same on every machine
    const CPUStatCollector cpu(machine.ports());
    const LoadStatCollector load(machine.ports());
    return {sourceOf(cpu), sourceOf(load), graphicsSource()};
}

}  // namespace vantor
