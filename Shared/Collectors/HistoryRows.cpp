#include "Shared/Collectors/HistoryRows.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "Shared/Collectors/SampleRing.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

/// IDs past this have no successor, and no run of ours gets there.
constexpr double kHighestID = 9007199254740992;
constexpr double kFarthestTime = 1e12;

/// `name` as a key that outlives the row, where a sample can have a figure of that name.
std::optional<std::string_view> sampleKeyNamed(std::string_view name, const SampleConfig& config) {
    for (const std::string_view key : {"sample", "time", "t", "empty"})
        if (key == name)
            return key;
    for (const std::string_view key : config.addSampleIDKeys)
        if (key == name)
            return key;
    for (const SampleKey& entry : config.addSampleMap)
        if (entry.key == name)
            return entry.key;
    return std::nullopt;
}

/// Which columns of a query are figures of a sample.
class SampleColumns {
public:
    SampleColumns(const SQLResultSet& rows, const SampleConfig& config) {
        for (int index = 0; index < rows.columnCount(); ++index) {
            const std::string name = rows.columnNameForIndex(index).value_or("");
            if (const auto key = sampleKeyNamed(name, config))
                figures_.push_back({*key, index});
            else if (name == "uuid")
                uuid_ = index;
        }
    }

    SampleFields read(const SQLResultSet& row) const {
        SampleFields sample;
        for (const auto& [key, index] : figures_)
            sample.set(key, row.doubleForColumnIndex(index));
        if (uuid_)
            sample.uuid = row.stringForColumnIndex(*uuid_).value_or("");
        return sample;
    }

private:
    struct Figure {
        std::string_view key;
        int index;
    };
    std::vector<Figure> figures_;
    std::optional<int> uuid_;
};

}  // namespace

std::string historyStatement(std::string_view format, std::string_view table) {
    constexpr std::string_view kTable = "%@";
    std::string sql(format);
    if (const auto place = sql.find(kTable); place != sql.npos)
        sql.replace(place, kTable.size(), table);
    return sql;
}

std::vector<SampleFields> samplesOfQuery(SQLDatabase& database, std::string_view sql,
                                         std::span<const PropertyValue> arguments,
                                         const SampleConfig& config) {
    std::vector<SampleFields> samples;
    const auto rows = database.executeQuery(sql, arguments);
    if (!rows)
        return samples;
    const SampleColumns columns(*rows, config);
    samples.reserve(SampleRing::kSlots + 1);
    while (samples.size() < kMostRows && rows->next())
        samples.push_back(columns.read(*rows));
    return samples;
}

std::vector<SampleFields> newestSamples(SQLDatabase& database, std::string_view table,
                                        const SampleConfig& config) {
    const std::string sql =
        historyStatement("SELECT * FROM %@ ORDER BY sample DESC LIMIT 603", table);
    std::vector<SampleFields> samples = samplesOfQuery(database, sql, {}, config);
    std::ranges::reverse(samples);
    return samples;
}

std::vector<SampleFields> samplesUpTo(SQLDatabase& database, std::string_view table,
                                      double identifier, const SampleConfig& config) {
    constexpr double kRetainedIDs = static_cast<double>(SampleRing::kSlots);
    const double lowest = std::clamp<double>(identifier - kRetainedIDs, 0, INT32_MAX);
    const PropertyValue arguments[] = {identifier, static_cast<std::int32_t>(lowest)};
    const std::string sql = historyStatement(
        "SELECT * FROM %@ WHERE sample <= ? AND sample >= ? ORDER BY sample ASC", table);
    return samplesOfQuery(database, sql, arguments, config);
}

bool isBelievable(const SampleFields& row) noexcept {
    return std::abs(row.value("sample").value_or(0)) < kHighestID &&
           std::abs(row.value("time").value_or(0)) < kFarthestTime;
}

bool checkTable(SQLDatabase& database, std::optional<std::string_view> table,
                std::string_view createFormat, bool result) {
    if (!table || database.tableExists(*table))
        return result;
    // A table that can't be made shows in that nothing is written to it.
    database.executeUpdate(historyStatement(createFormat, *table));
    return true;
}

}  // namespace vantor::inline VANTOR_MODULE
