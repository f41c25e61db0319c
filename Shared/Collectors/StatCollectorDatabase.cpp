#include <algorithm>
#include <span>
#include <utility>

#include <fmt/format.h>

#include "Foundation/PropertyValue.h"
#include "Platform/Clock.h"
#include "Platform/SystemLog.h"
#include "Shared/Collectors/HistoryRows.h"
#include "Shared/Collectors/StatCollector.h"
#include "Shared/Database/HistoryDatabaseController.h"

// A collector's side of its history file: tables, the rows that are written and pruned, and the
// rings that are filled from them at the start.

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr double kRetainedIDs = static_cast<double>(SampleRing::kSlots);
constexpr double kClockSetBackSeconds = 86400;
/// An item costs four rings. A file that names more things than this isn't ours.
constexpr std::size_t kMostLoadedItems = 256;

/// The position behind the oldest sample that is no gap.
std::size_t firstFreePosition(const SampleRing& ring) noexcept {
    std::size_t position = SampleRing::kSlots;
    while (position > 0 && ring.empty(position - 1))
        --position;
    return position;
}

template <class Form>
const Form& formFor(bool isLong, const Form& longForm, const Form& form) {
    return isLong && !longForm.empty() ? longForm : form;
}

struct InsertForm {
    std::string_view format;
    std::span<const std::string_view> keys;
    std::string_view missing;  // what the log calls a key that the sample lacks
};

HistoryRecord recordOf(const SampleFields& sample, const InsertForm& form, std::string_view table,
                       const StatCollector& collector, SystemLog& log) {
    HistoryRecord record(form.format, table);
    for (const std::string_view key : form.keys) {
        if (const auto figure = sample.value(key))
            record.add(*figure);
        else if (key == "uuid" && !sample.uuid.empty())
            record.add(sample.uuid);
        else
            log.write(fmt::format("{} - {} - '{}'", collector.description(), form.missing, key));
    }
    return record;
}

}  // namespace

void StatCollector::setFile(HistoryFile& file, std::optional<std::filesystem::path> path) {
    file.item = databaseItemWithPath(path);
    file.path = std::move(path);
}

bool StatCollector::prepareDatabase(bool result) {
    for (int index = 1; index <= kLastPreparedIndex; ++index)
        result = checkIfTablesExist(index, history_.item.get(), result);
    return migrateDatabase(result);
}

bool StatCollector::checkIfTablesExist(int index, HistoryDatabaseItem* inDB, bool result) {
    if (inDB == nullptr)
        return result;
    const auto check = [&](SQLDatabase& database, const auto& table, std::string_view format) {
        result = checkTable(database, table, format, result);
        historyMissed_ = historyMissed_ || database.lastFailureMayPass();
    };
    inDB->queryDatabase([&](SQLDatabase& database) {
        if (storageType_ == StorageKind::collector) {
            check(database, tableAtIndex(index), config_.sqlCreate);
        } else {
            check(database, tableAtIndex(index), config_.sqlCreateID);
            check(database, itemTableAtIndex(index), config_.sqlCreate);
        }
    });
    return result;
}

bool StatCollector::checkIfLongTermTablesExist(int index, HistoryDatabaseItem* inDB, bool result) {
    if (inDB == nullptr)
        return result;
    inDB->queryDatabase([&](SQLDatabase& database) {
        if (storageType_ == StorageKind::collector) {
            result = checkTable(database, tableAtIndex(index), config_.sqlCreateLong, result);
        } else {
            result = checkTable(database, tableAtIndex(index), config_.sqlCreateIDLong, result);
            result = checkTable(database, itemTableAtIndex(index), config_.sqlCreateLong, result);
        }
    });
    return result;
}

std::vector<SampleFields> StatCollector::samplesFromTable(std::optional<std::string_view> table) {
    return table ? readSamples([&](SQLDatabase& database) {
        return newestSamples(database, *table, config_);
    })
                 : std::vector<SampleFields>();
}

std::vector<SampleFields> StatCollector::samplesFromTable(std::optional<std::string_view> table,
                                                          double identifier) {
    return table ? readSamples([&](SQLDatabase& database) {
        return samplesUpTo(database, *table, identifier, config_);
    })
                 : std::vector<SampleFields>();
}

std::vector<SampleFields>
StatCollector::readSamples(const std::function<std::vector<SampleFields>(SQLDatabase&)>& query) {
    std::vector<SampleFields> samples;
    if (history_.item)
        history_.item->queryDatabase([&](SQLDatabase& database) {
            samples = query(database);
            historyMissed_ = historyMissed_ || database.lastFailureMayPass();
        });
    return samples;
}

void StatCollector::loadPreviousSamples() {
    clearAllStorages();
    for (int index = 1; index < kMaximumSampleIndex; ++index)
        loadPreviousSamplesAtIndex(index);
}

void StatCollector::loadPreviousSamplesAtIndex(int index) {
    placeLoadedRows(index, samplesFromTable(tableAtIndex(index)));
}

void StatCollector::placeLoadedRows(int index, const std::vector<SampleFields>& oldestFirst) {
    sampleindexconfig& row = sampleIndex_[static_cast<std::size_t>(index)];
    for (const SampleFields& sample : oldestFirst) {
        if (!isBelievable(sample))
            continue;
        addScaleSample(sample, index);
        row.sampleID = sample.value("sample").value_or(0);
        row.time = sample.value("time").value_or(0);
    }
    if (row.time <= 0)
        return;
    if (row.time > ports_.clock.now() + kClockSetBackSeconds)
        row.time = 0;  // the clock was set back: the history has no last time to go on from
    else
        row.nextTime = row.time + row.interval;
}

void StatCollector::loadPreviousSampleItems() {
    for (int index = 1; index < kMaximumSampleIndex; ++index)
        loadPreviousSampleItemsAtIndex(index);
}

void StatCollector::loadPreviousSampleItemsAtIndex(int index) {
    const double newest = sampleIndex_[static_cast<std::size_t>(index)].sampleID;
    placeLoadedItemRows(index, samplesFromTable(itemTableAtIndex(index), newest));
    for (const auto& item : items_)
        item->loadedHistory = true;
}

void StatCollector::placeLoadedItemRows(int index, const std::vector<SampleFields>& oldestFirst) {
    for (const SampleFields& row : oldestFirst)
        if (!row.uuid.empty() && items_.size() < kMostLoadedItems)
            addSampleItem(row, index);
}

/// What an item's ring lacks of a scale, as a query.
struct StatCollector::ItemSearch {
    std::string sql;
    std::array<PropertyValue, 3> arguments;
    SampleConfig config;
};

std::optional<StatCollector::ItemSearch> StatCollector::searchFor(const StatCollectorItem& item,
                                                                  int index) const {
    const auto table = itemTableAtIndex(index);
    const SampleRing& samples = item.storageForType(index);
    const std::size_t free = firstFreePosition(samples);
    const std::size_t oldest = free > 0 ? free - 1 : 0;
    double upper = free > 0 ? samples.sampleID(oldest) : 0;
    if (upper == 0)
        upper = sampleIndex_[static_cast<std::size_t>(index)].sampleID - 1;
    if (upper <= 0 || !table)
        return std::nullopt;
    const double lower = upper - (kRetainedIDs - static_cast<double>(oldest));
    return ItemSearch{
        .sql = historyStatement("SELECT * FROM %@ WHERE uuid = ? AND sample < ? AND sample >= ? "
                                "ORDER BY sample ASC",
                                *table),
        .arguments = {item.key.value_or(""), upper, PropertyValue(lower).integerValue()},
        .config = config_};
}

void StatCollector::loadPreviousSamplesForItem(StatCollectorItem& item,
                                               std::function<void()> reply) {
    item.loadedHistory = true;
    if (!history_.item)
        return;
    for (int index = 1; index < kMaximumSampleIndex; ++index) {
        const auto search = searchFor(item, index);
        if (!search)
            continue;
        history_.item->queryDatabaseAsync([search = *search, collector = self_.handle(), index,
                                           reply, &item,
                                           &mainQueue = ports_.mainQueue](SQLDatabase& database) {
            auto samples = std::make_unique<std::vector<SampleFields>>(
                samplesOfQuery(database, search.sql, search.arguments, search.config));
            std::ranges::reverse(*samples);
            mainQueue.async([samples = std::move(samples), collector, index, reply, &item] {
                if (StatCollector* const self = collector.get()) {
                    self->placeLoadedSamples(item, index, *samples);
                    reply();
                }
            });
        });
    }
}

void StatCollector::placeLoadedSamples(StatCollectorItem& item, int index,
                                       const std::vector<SampleFields>& newestFirst) {
    const bool isHere =
        std::ranges::any_of(items_, [&](const auto& each) { return each.get() == &item; });
    if (!isHere)
        return;  // it went while the file was read
    std::size_t position = firstFreePosition(item.storageForType(index));
    if (position >= SampleRing::kSlots - 1)
        return;
    for (const SampleFields& sample : newestFirst) {
        if (position >= SampleRing::kSlots)
            return;
        item.addSample(sample, index, position++);
    }
}

void StatCollector::insertSample(const SampleFields& sample, int intoTableAtIndex) {
    const auto table = tableAtIndex(intoTableAtIndex);
    if (!table)
        return;
    const bool isLong = intoTableAtIndex == kLongTermIndex;
    const InsertForm form{formFor(isLong, config_.sqlInsertLong, config_.sqlInsert),
                          formFor(isLong, config_.sqlInsertKeysLong, config_.sqlInsertKeys),
                          "missing key"};
    HistoryRecord record = recordOf(sample, form, *table, *this, ports_.systemLog);
    HistoryDatabaseItem* const file = (isLong ? longHistory_ : history_).item.get();
    if (file == nullptr)
        return;
    file->addItem(std::move(record));
    if (storageType_ == StorageKind::items)
        insertItems(sample, intoTableAtIndex, *file);
}

void StatCollector::insertItems(const SampleFields& sample, int index, HistoryDatabaseItem& inDB) {
    const auto table = itemTableAtIndex(index);
    if (!table)
        return;
    const bool isLong = index == kLongTermIndex;
    const InsertForm form{formFor(isLong, config_.sqlInsertItemLong, config_.sqlInsertItem),
                          formFor(isLong, config_.sqlInsertItemKeysLong, config_.sqlInsertItemKeys),
                          "missing item key"};
    for (const SampleFields& item : sample.items)
        inDB.addItem(recordOf(item, form, *table, *this, ports_.systemLog));
}

void StatCollector::removeOldSamplesAtIndex(int index) {
    const double limit = sampleIndex_[static_cast<std::size_t>(index)].sampleID - kRetainedIDs;
    if (limit < 0 || !history_.item)
        return;
    const bool hasItems = storageType_ == StorageKind::items;
    for (const auto table :
         {tableAtIndex(index), hasItems ? itemTableAtIndex(index) : std::nullopt})
        if (table) {
            HistoryRecord record("DELETE FROM %@ WHERE sample < ?", *table);
            record.add(limit);
            history_.item->addItem(std::move(record));
        }
}

void StatCollector::runDatabaseQueue() {
    if (!databaseEnabled_)
        return;
    for (int index = 1; index < kLongTermIndex; ++index)
        removeOldSamplesAtIndex(index);
    for (HistoryDatabaseItem* const file : historyFiles())
        if (file != nullptr)
            file->commit();
}

std::optional<SampleFields> StatCollector::lastLongTermSample() {
    const auto table = tableAtIndex(kLongTermIndex);
    if (!table || !longHistory_.item)
        return std::nullopt;
    const std::string sql =
        historyStatement("SELECT * FROM %@ ORDER BY sample DESC LIMIT 1", *table);
    std::vector<SampleFields> last;
    longHistory_.item->queryDatabase(
        [&](SQLDatabase& database) { last = samplesOfQuery(database, sql, {}, config_); });
    return last.empty() ? std::nullopt : std::optional(std::move(last.front()));
}

}  // namespace vantor::inline VANTOR_MODULE
