#include "Shared/Collectors/HistoryReading.h"

#include "Shared/Collectors/HistoryRows.h"
#include "Shared/External/SQLite/SQLDatabase.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

/// As the schedule's row of a scale has it when that scale was loaded.
double newestIDOf(const std::vector<SampleFields>& samples) noexcept {
    double newest = sampleindexconfig{}.sampleID;
    for (const SampleFields& sample : samples)
        if (isBelievable(sample))
            newest = sample.value("sample").value_or(0);
    return newest;
}

}  // namespace

std::optional<HistoryScales> HistoryReading::read(SQLDatabase& database) const {
    for (const Table& table : tables) {
        checkTable(database, table.name, table.createFormat, false);
        if (database.lastFailureMayPass())
            return std::nullopt;
    }
    HistoryScales scales;
    for (std::size_t index = 1; index < kStorageCount; ++index)
        if (!readScale(database, index, scales[index]))
            return std::nullopt;
    return database.isDatabaseValid() ? std::optional(std::move(scales)) : std::nullopt;
}

bool HistoryReading::readScale(SQLDatabase& database, std::size_t index, HistoryScale& into) const {
    into.samples = newestSamples(database, samples[index], config);
    if (database.lastFailureMayPass())
        return false;
    if (items[index].empty())
        return true;
    into.items = samplesUpTo(database, items[index], newestIDOf(into.samples), config);
    return !database.lastFailureMayPass();
}

}  // namespace vantor::inline VANTOR_MODULE
