#include "Tests/CrashBench/KeptState.h"

#include <algorithm>
#include <functional>

#include <fmt/format.h>

#include "Platform/SystemLog.h"
#include "Shared/Collectors/SampleRing.h"
#include "Shared/External/SQLite/SQLDatabase.h"
#include "Shared/External/SQLite/SQLOpenFlags.h"

namespace vantor::test {
namespace {

constexpr double kRetained = static_cast<double>(SampleRing::kSlots);

class DeafLog final : public SystemLog {
public:
    void write(std::string_view) noexcept override {}
};

KeptState::Row rowOf(const SQLResultSet& row) {
    KeptState::Row kept{row.doubleForColumn("sample"), row.doubleForColumn("time"), {}};
    for (int column = 0; column < row.columnCount(); ++column)
        kept.text += row.stringForColumnIndex(column).value_or("null") + "|";
    return kept;
}

KeptState stateOf(SQLDatabase& database) {
    KeptState state;
    std::vector<std::string> names;
    const auto tables =
        database.executeQuery("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name");
    while (tables && tables->next())
        names.push_back(tables->stringForColumnIndex(0).value_or(""));
    for (const std::string& name : names) {
        auto& rows = state.tables[name];
        const auto kept = database.executeQuery("SELECT * FROM " + name + " ORDER BY sample");
        while (kept && kept->next())
            rows.push_back(rowOf(*kept));
    }
    return state;
}

}  // namespace

KeptState KeptState::of(const std::filesystem::path& file, std::string& integrity) {
    integrity = "ok";
    if (!std::filesystem::exists(file))
        return {};
    DeafLog log;
    SQLEnvironment environment(log);
    SQLDatabase database(environment, file);
    database.open();
    integrity = database.stringForQuery("PRAGMA integrity_check").value_or("no report");
    return stateOf(database);
}

KeptState KeptState::besideOthers(const std::filesystem::path& file) {
    DeafLog log;
    SQLEnvironment environment(log);
    SQLDatabase database(environment, file);
    database.openWithFlags(kSQLOpenReadOnly);
    return stateOf(database);
}

std::size_t KeptState::rows() const {
    std::size_t count = 0;
    for (const auto& [name, kept] : tables)
        count += kept.size();
    return count;
}

std::size_t KeptState::digest() const {
    std::string text;
    for (const auto& [name, kept] : tables) {
        text += name + ":";
        for (const Row& row : kept)
            text += row.text + ";";
    }
    return std::hash<std::string>{}(text);
}

std::string lossFrom(const KeptState& before, const KeptState& after) {
    for (const auto& [name, rows] : before.tables) {
        const auto found = after.tables.find(name);
        if (found == after.tables.end())
            return "the table " + name + " is gone";
        const auto& kept = found->second;
        const double oldest = kept.empty() ? 0 : kept.back().sampleID - kRetained;
        for (const KeptState::Row& row : rows)
            if (row.sampleID >= oldest && std::ranges::find(kept, row) == kept.end())
                return fmt::format("{} lost the sample {}", name, row.sampleID);
    }
    return "";
}

std::string disorderIn(const KeptState& state, IDs ids) {
    for (const auto& [name, rows] : state.tables)
        for (std::size_t place = 1; place < rows.size(); ++place) {
            const double step = rows[place].sampleID - rows[place - 1].sampleID;
            if (!(step > 0) || (ids == IDs::dense && step != 1) ||
                !(rows[place].time > rows[place - 1].time))
                return fmt::format("{}: sample {} at {} follows {} at {}", name,
                                   rows[place].sampleID, rows[place].time, rows[place - 1].sampleID,
                                   rows[place - 1].time);
        }
    return "";
}

}  // namespace vantor::test
