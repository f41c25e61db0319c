#include "Programs/Common/HistoryFileReader.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <fmt/format.h>

#include "Platform/SystemLog.h"
#include "Shared/External/SQLite/SQLDatabase.h"
#include "Shared/External/SQLite/SQLOpenFlags.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

class SilentLog final : public SystemLog {
public:
    void write(std::string_view) noexcept override {}
};

/// The file, open for one question.
class OpenFile {
public:
    explicit OpenFile(const fs::path& path) : path_(path), database_(environment_, path) {
        std::error_code ignored;  // what can't be looked at isn't there for us
        if (!fs::exists(path, ignored))
            throw HistoryFileError(fmt::format("{}: there is no such file", path.string()));
        if (!fs::is_regular_file(path, ignored))
            throw HistoryFileError(fmt::format("{}: isn't a file", path.string()));
        if (!database_.openWithFlags(kSQLOpenReadOnly))
            throw HistoryFileError(fmt::format("{}: can't be opened", path.string()));
    }

    std::unique_ptr<SQLResultSet> ask(const std::string& sql) {
        auto rows = database_.executeQuery(sql);
        if (!rows)
            fail(database_.lastErrorMessage());
        return rows;
    }
    /// Whether there is another row.
    bool next(SQLResultSet& rows) {
        SQLDatabase::Error error;
        const bool isThere = rows.nextWithError(&error);
        if (error)
            fail(database_.lastErrorMessage());
        return isThere;
    }
    bool has(std::string_view table) {
        const auto rows = ask(
            fmt::format("SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = '{}'", table));
        return next(*rows);
    }

private:
    [[noreturn]] void fail(std::string_view reason) const {
        std::error_code ignored;  // only for a better reason
        const bool wasCut = fs::exists(path_.string() + "-journal", ignored);
        throw HistoryFileError(fmt::format(
            "{}: {}", path_.string(),
            wasCut ? "is being written, or its last write was cut short, which the program's next "
                     "start puts right"
                   : reason));
    }

    const fs::path& path_;
    SilentLog log_;
    SQLEnvironment environment_{log_};
    SQLDatabase database_;
};

/// Names of tables are our own: nothing in them wants quoting.
std::string newestSamples(std::string_view table) {
    return fmt::format("SELECT * FROM {} ORDER BY sample DESC LIMIT {}", table,
                       HistoryFileReader::kMostRows + 1);
}

/// The figures of the things stand in a table of their own, which has no rows for a gap.
std::string newestItems(std::string_view samples, std::string_view items) {
    return fmt::format("SELECT i.sample AS sample, i.time AS time, i.empty AS empty, "
                       "t.uuid AS uuid, t.processor AS processor, t.memory AS memory "
                       "FROM ({}) i LEFT JOIN {} t ON t.sample = i.sample "
                       "ORDER BY i.sample DESC, t.uuid DESC LIMIT {}",
                       newestSamples(samples), items, HistoryFileReader::kMostRows + 1);
}

/// Where a query has what.
struct Columns {
    explicit Columns(const SQLResultSet& rows) {
        for (int index = 0; index < rows.columnCount(); ++index) {
            const std::string name = rows.columnNameForIndex(index).value_or("");
            if (name == "uuid")
                uuid = index;
            else if (name != "sample" && name != "time" && name != "empty")
                figures.emplace_back(name, index);
        }
    }

    HistoryRow read(const SQLResultSet& row) const {
        HistoryRow read{.sampleID = row.doubleForColumn("sample"),
                        .time = row.doubleForColumn("time"),
                        .empty =
                            row.boolForColumn("empty") || (uuid && row.columnIndexIsNull(*uuid)),
                        .uuid = uuid ? row.stringForColumnIndex(*uuid).value_or("") : "",
                        .figures = {}};
        for (const auto& [name, index] : figures) {
            const double figure = row.doubleForColumnIndex(index);
            const bool isThere =
                !read.empty && !row.columnIndexIsNull(index) && std::isfinite(figure);
            read.figures.push_back(isThere ? std::optional(figure) : std::nullopt);
        }
        return read;
    }

    std::vector<std::pair<std::string, int>> figures;
    std::optional<int> uuid;
};

}  // namespace

std::optional<HistoryTable> HistoryFileReader::table(const HistorySource& source, int index) const {
    OpenFile file(file_);
    const bool hasItems = source.kind == StorageKind::items;
    const auto samples = source.tables.tableAtIndex(index);
    const auto items = source.tables.itemTableAtIndex(index);
    if (!samples || !items || !file.has(*samples) || (hasItems && !file.has(*items)))
        return std::nullopt;
    const auto rows = file.ask(hasItems ? newestItems(*samples, *items) : newestSamples(*samples));
    const Columns columns(*rows);
    HistoryTable table;
    for (const auto& [name, place] : columns.figures)
        table.columns.push_back(name);
    while (!table.isCut && file.next(*rows)) {
        table.isCut = table.rows.size() == kMostRows;
        if (!table.isCut)
            table.rows.push_back(columns.read(*rows));
    }
    std::ranges::reverse(table.rows);
    return table;
}

std::string HistoryFileReader::integrity() const {
    OpenFile file(file_);
    const auto report = file.ask("PRAGMA integrity_check");
    const std::string text =
        file.next(*report) ? report->stringForColumnIndex(0).value_or("") : "no report";
    return text.substr(0, text.find('\n'));
}

}  // namespace vantor
