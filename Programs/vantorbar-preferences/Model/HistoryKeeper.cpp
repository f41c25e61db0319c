#include "Programs/vantorbar-preferences/Model/HistoryKeeper.h"

#include <fstream>
#include <sstream>
#include <system_error>

#include <fmt/format.h>

#include "Platform/SystemLog.h"
#include "Programs/Common/HistorySource.h"
#include "Programs/Common/HistoryTool.h"
#include "Shared/External/SQLite/SQLDatabase.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

class SilentLog final : public SystemLog {
public:
    void write(std::string_view) noexcept override {}
};

std::vector<std::string> tablesOf(SQLDatabase& database) {
    std::vector<std::string> tables;
    const auto rows = database.executeQuery("SELECT name FROM sqlite_master WHERE type = 'table'");
    while (rows && rows->next())
        tables.push_back(rows->stringForColumnIndex(0).value_or(""));
    return tables;
}

bool isHistoryTable(std::string_view name) noexcept { return name.ends_with("history"); }

/// In one transaction, so that a program beside us finds all or nothing.
bool emptyTables(SQLDatabase& database) {
    if (!database.beginTransaction())
        return false;
    for (const std::string& table : tablesOf(database))
        if (isHistoryTable(table) &&
            !database.executeUpdate(fmt::format("DELETE FROM {}", table))) {
            database.rollback();
            return false;
        }
    return database.commit();
}

/// Why the file couldn't be emptied, or "".
std::string emptyFile(const fs::path& file) {
    SilentLog log;
    SQLEnvironment environment(log);
    SQLDatabase database(environment, file);
    if (!database.open() || !emptyTables(database))
        return fmt::format("{}: {}", file.string(), database.lastErrorMessage());
    // What is deleted goes from the disk, too. Where somebody reads just now, the space is used
    // again by what comes.
    static_cast<void>(database.executeUpdate("VACUUM"));
    return {};
}

/// All lines but the last, empty one.
void addLines(const std::string& text, std::vector<std::string>& lines) {
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
}

}  // namespace

/// Those that are there.
std::vector<fs::path> HistoryKeeper::files() const {
    std::vector<fs::path> found;
    for (const bool combined : {false, true})
        for (const HistorySource& source : historySources()) {
            const fs::path file = folder_ / historyFileName(source.name, combined);
            std::error_code ignored;  // what can't be looked at isn't there for us
            if (fs::is_regular_file(file, ignored))
                found.push_back(file);
        }
    return found;
}

HistoryFacts HistoryKeeper::facts() const {
    HistoryFacts facts;
    for (const fs::path& file : files()) {
        std::error_code unknown;
        const std::uintmax_t bytes = fs::file_size(file, unknown);
        ++facts.files;
        facts.bytes += unknown ? 0 : bytes;
    }
    return facts;
}

HistoryKeeper::Complaints HistoryKeeper::exportTo(const fs::path& target) const {
    Complaints complaints;
    for (const fs::path& file : files())
        for (const HistoryScale& scale : kHistoryScales) {
            const std::string name = file.stem().string();
            const bool combined = name.starts_with("combined_");
            std::ostringstream rows, errors;
            const HistoryTool tool(folder_, rows, errors);
            const int status = tool.exportSamples({.source = combined ? name.substr(9) : name,
                                                   .scale = std::string(scale.name),
                                                   .combined = combined});
            addLines(errors.str(), complaints);
            if (status != 0)
                continue;
            const fs::path copy = target / fmt::format("{}-{}.csv", name, scale.name);
            std::ofstream stream(copy, std::ios::binary);
            stream << rows.str() << std::flush;
            if (!stream)
                complaints.push_back(fmt::format("{}: can't be written", copy.string()));
        }
    return complaints;
}

HistoryKeeper::Complaints HistoryKeeper::clear() const {
    Complaints complaints;
    for (const fs::path& file : files())
        if (std::string complaint = emptyFile(file); !complaint.empty())
            complaints.push_back(std::move(complaint));
    return complaints;
}

}  // namespace vantor
