#include "Shared/External/SQLite/SQLDatabaseVerification.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include "Platform/SystemLog.h"
#include "Shared/External/SQLite/SQLDatabase.h"
#include "Shared/External/SQLite/SQLNames.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

std::string_view trimmed(std::string_view text) noexcept {
    constexpr std::string_view kBlanks = " \t\n\v\f\r";
    const auto first = text.find_first_not_of(kBlanks);
    if (first == text.npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// By the row that `check` stands on.
bool isReportOK(sqlite3_stmt* check, SystemLog& systemLog) {
    const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(check, 0));
    const std::string_view report = text == nullptr ? "" : text;
    const bool isOK = isIntegrityReportOK(report);
    if (!isOK)
        systemLog.write(fmt::format("ATTENTION: integrity_check response {}", report));
    return isOK;
}

/// Whether the reason is the machine's, not the file's.
bool mayPass(int answer) noexcept {
    switch (answer & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_NOMEM:
    case SQLITE_READONLY:
    case SQLITE_INTERRUPT:
    case SQLITE_IOERR:
    case SQLITE_FULL:
    case SQLITE_CANTOPEN:
        return true;
    default:
        return false;
    }
}

}  // namespace

bool isIntegrityReportOK(std::string_view report) { return lowerCased(trimmed(report)) == "ok"; }

bool SQLDatabase::lastFailureMayPass() const noexcept {
    return db_ != nullptr && mayPass(lastErrorCode());
}

bool SQLDatabase::isDatabaseValid() {
    sqlite3_stmt* handle = nullptr;
    int answer = sqlite3_prepare_v2(db_, "PRAGMA integrity_check", -1, &handle, nullptr);
    const SQLStatement check(handle);
    // The first look into a file reads its schema and takes back a write that was cut short: a
    // lock held elsewhere or a disk that fails for a while is met there already.
    if (answer != SQLITE_OK && !mayPass(answer))
        return false;
    if (answer == SQLITE_OK)
        answer = sqlite3_step(handle);  // only the first line of the report counts
    const auto write = [this](std::string_view words) { environment_.systemLog.write(words); };
    switch (answer) {
    case SQLITE_ROW:
        return isReportOK(handle, environment_.systemLog);
    case SQLITE_ERROR:
    case SQLITE_CORRUPT:
        return false;
    case SQLITE_BUSY:
        write("Result is simple BUSY of the sqllite3 on isDatabaseCorrupted");
        return true;
    case SQLITE_MISUSE:
        write("Bad utilization of the sqllite3 on isDatabaseCorrupted");
        return true;
    case SQLITE_DONE:
        write("Result is simple DONE of the sqllite3 on isDatabaseCorrupted");
        return true;
    default:
        return true;
    }
}

}  // namespace vantor::inline VANTOR_MODULE
