#include "Programs/Common/HistoryTool.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <ostream>
#include <utility>

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "Programs/Common/HistoryGaps.h"
#include "Shared/External/SQLite/SQLDatabaseVerification.h"

namespace vantor {
namespace {

constexpr int kFine = 0, kFailed = 1;
constexpr double kFarthestTime = 1e11;  // what a date still says something about

using Json = nlohmann::ordered_json;

std::string dateText(double time) {
    if (!(std::abs(time) < kFarthestTime))
        return fmt::format("{}", time);
    return fmt::format("{:%Y-%m-%dT%H:%M:%SZ}",
                       fmt::gmtime(static_cast<std::time_t>(std::floor(time))));
}

double intervalOf(const HistoryScale& scale) {
    return kScaleIntervals[static_cast<std::size_t>(scale.index)];
}

/// What `list` says of one table.
struct Summary {
    std::string file, table;
    std::vector<HistoryRow> rows;
    std::size_t gaps = 0;
};

Json jsonOf(const Summary& summary) {
    const auto timeOf = [&](const auto& end) {
        return summary.rows.empty() ? Json(nullptr) : Json((summary.rows.*end)().time);
    };
    using Rows = std::vector<HistoryRow>;
    using End = const HistoryRow& (Rows::*)() const noexcept;
    return {{"file", summary.file},
            {"table", summary.table},
            {"first", timeOf(static_cast<End>(&Rows::front))},
            {"last", timeOf(static_cast<End>(&Rows::back))},
            {"rows", summary.rows.size()},
            {"gaps", summary.gaps}};
}

std::string lineOf(const Summary& summary) {
    const bool isThere = !summary.rows.empty();
    return fmt::format("{:<16} {:<20} {:<20} {:<20} {:>5} {:>5}\n", summary.file, summary.table,
                       isThere ? dateText(summary.rows.front().time) : "-",
                       isThere ? dateText(summary.rows.back().time) : "-", summary.rows.size(),
                       summary.gaps);
}

/// A text with what means something in such a file is put in quotes.
std::string csvText(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == text.npos)
        return text;
    std::string quoted = "\"";
    for (const char letter : text)
        quoted += letter == '"' ? "\"\"" : std::string(1, letter);
    return quoted + '"';
}

void writeCSV(const HistoryTable& table, bool hasItems, std::ostream& out) {
    std::string text = hasItems ? "time,sample,empty,uuid" : "time,sample,empty";
    for (const std::string& column : table.columns)
        (text += ',') += column;
    text += '\n';
    for (const HistoryRow& row : table.rows) {
        text += fmt::format("{},{},{}", row.time, row.sampleID, row.empty ? 1 : 0);
        if (hasItems)
            (text += ',') += csvText(row.uuid);
        for (const auto& figure : row.figures)
            text += figure ? fmt::format(",{}", *figure) : ",";
        text += '\n';
    }
    out << text;
}

Json jsonOf(const HistoryRow& row, const std::vector<std::string>& columns, bool hasItems) {
    Json object{{"time", row.time}, {"sample", row.sampleID}, {"empty", row.empty}};
    if (hasItems)
        object["uuid"] = row.uuid.empty() ? Json(nullptr) : Json(row.uuid);
    for (std::size_t column = 0; column < columns.size(); ++column)
        object[columns[column]] = row.figures[column] ? Json(*row.figures[column]) : Json(nullptr);
    return object;
}

std::string textOf(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

/// An array with one entry a line.
void writeArray(const std::vector<Json>& entries, std::ostream& out) {
    out << '[';
    for (std::size_t entry = 0; entry < entries.size(); ++entry)
        out << (entry == 0 ? "\n" : ",\n") << textOf(entries[entry]);
    out << "\n]\n";
}

void writeJSON(const HistoryTable& table, bool hasItems, std::ostream& out) {
    std::vector<Json> entries;
    for (const HistoryRow& row : table.rows)
        entries.push_back(jsonOf(row, table.columns, hasItems));
    writeArray(entries, out);
}

/// The first row whose ID doesn't follow on the one before it, and the first whose time doesn't.
/// Rows of one sample's things share both.
std::vector<std::string> findingsOf(const HistoryTable& table) {
    std::vector<std::string> found;
    bool gapInIDs = false, fallingTime = false;
    for (std::size_t place = 1; place < table.rows.size(); ++place) {
        const HistoryRow& before = table.rows[place - 1];
        const HistoryRow& row = table.rows[place];
        const bool isSame = row.sampleID == before.sampleID && !row.uuid.empty();
        if (!isSame && row.sampleID != before.sampleID + 1 && !std::exchange(gapInIDs, true))
            found.push_back(fmt::format("sample {} follows {}", row.sampleID, before.sampleID));
        if (!isSame && !(row.time > before.time) && !std::exchange(fallingTime, true))
            found.push_back(fmt::format("the time of sample {} isn't behind that of {}",
                                        row.sampleID, before.sampleID));
    }
    if (table.isCut)
        found.push_back(fmt::format("more than {} rows", HistoryFileReader::kMostRows));
    return found;
}

}  // namespace

std::string historyFileName(std::string_view source, bool combined) {
    return fmt::format("{}{}.db", combined ? "combined_" : "", source);
}

HistoryTool::HistoryTool(std::filesystem::path folder, std::ostream& out, std::ostream& err)
    : folder_(std::move(folder)), out_(out), err_(err) {}

/// Those that are there.
std::vector<HistoryTool::File> HistoryTool::files() const {
    std::vector<File> found;
    for (const bool combined : {false, true})
        for (const HistorySource& source : sources_) {
            auto path = folder_ / historyFileName(source.name, combined);
            std::error_code ignored;  // what can't be looked at isn't there for us
            if (std::filesystem::exists(path, ignored))
                found.push_back({source, HistoryFileReader(std::move(path))});
        }
    return found;
}

/// One file that can't be read doesn't keep the others from being shown.
int HistoryTool::forEachFile(const auto& work) const {
    const std::vector<File> all = files();
    if (all.empty())
        return complain(fmt::format("{}: there is no history", folder_.string()));
    int status = kFine;
    for (const File& file : all) {
        try {
            status = std::max(status, work(file));
        } catch (const HistoryFileError& error) {
            status = complain(error.what());
        }
    }
    return status;
}

int HistoryTool::list(HistoryListFormat format) const {
    std::vector<Summary> summaries;
    const int status = forEachFile([&](const File& file) {
        for (const HistoryScale& scale : kHistoryScales)
            if (auto table = file.reader.table(file.source, scale.index)) {
                const std::size_t gaps = gapsOf(table->rows, intervalOf(scale)).size();
                summaries.push_back({file.name(),
                                     std::string(*file.source.tables.tableAtIndex(scale.index)),
                                     std::move(table->rows), gaps});
            }
        return kFine;
    });
    if (format == HistoryListFormat::json) {
        std::vector<Json> entries;
        std::ranges::transform(summaries, std::back_inserter(entries),
                               [](const Summary& summary) { return jsonOf(summary); });
        writeArray(entries, out_);
        return status;
    }
    if (!summaries.empty())
        out_ << fmt::format("{:<16} {:<20} {:<20} {:<20} {:>5} {:>5}\n", "file", "table", "first",
                            "last", "rows", "gaps");
    for (const Summary& summary : summaries)
        out_ << lineOf(summary);
    return status;
}

int HistoryTool::exportSamples(const HistoryExport& wanted) const {
    const auto source = std::ranges::find(sources_, wanted.source, &HistorySource::name);
    const auto scale = std::ranges::find(kHistoryScales, wanted.scale, &HistoryScale::name);
    if (source == sources_.end() || scale == std::ranges::end(kHistoryScales))
        return complain(fmt::format("there is no {} of {}", wanted.scale, wanted.source));
    try {
        const HistoryFileReader reader(folder_ / historyFileName(source->name, wanted.combined));
        auto table = reader.table(*source, scale->index);
        if (!table)
            return complain(fmt::format("{}: has no table {}", reader.file().string(),
                                        *source->tables.tableAtIndex(scale->index)));
        if (table->isCut)
            complain(fmt::format("{}: only the newest {} rows are exported", reader.file().string(),
                                 HistoryFileReader::kMostRows));
        std::erase_if(table->rows, [&](const HistoryRow& row) { return row.time < wanted.since; });
        const bool hasItems = source->kind == StorageKind::items;
        (wanted.format == HistoryExportFormat::csv ? writeCSV : writeJSON)(*table, hasItems, out_);
        return kFine;
    } catch (const HistoryFileError& error) {
        return complain(error.what());
    }
}

std::vector<std::string> HistoryTool::findings(const File& file) const {
    const std::string report = file.reader.integrity();
    if (!isIntegrityReportOK(report))
        return {report};
    std::vector<std::string> all;
    for (const HistoryScale& scale : kHistoryScales)
        if (const auto table = file.reader.table(file.source, scale.index))
            for (const std::string& finding : findingsOf(*table))
                all.push_back(
                    fmt::format("{}: {}", *file.source.tables.tableAtIndex(scale.index), finding));
    return all;
}

int HistoryTool::check() const {
    return forEachFile([this](const File& file) {
        const std::vector<std::string> all = findings(file);
        for (const std::string& finding : all)
            complain(fmt::format("{}: {}", file.reader.file().string(), finding));
        if (all.empty())
            out_ << file.name() << ": sound\n";
        return all.empty() ? kFine : kFailed;
    });
}

int HistoryTool::complain(std::string_view complaint) const {
    err_ << "vantorbar: " << complaint << '\n';
    return kFailed;
}

}  // namespace vantor
