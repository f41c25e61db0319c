// What an SQLDatabase can say of its tables.

#include <fmt/format.h>
#include <sqlite3.h>

#include "Shared/External/SQLite/SQLDatabase.h"
#include "Shared/External/SQLite/SQLNames.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr std::size_t kCodeBytes = 4;

}  // namespace

bool SQLDatabase::tableExists(std::string_view name) {
    const auto rows =
        executeQuery("select [sql] from sqlite_master where [type] = 'table' and lower(name) = ?",
                     lowerCased(name));
    return rows && rows->next();
}

std::unique_ptr<SQLResultSet> SQLDatabase::getSchema() {
    return executeQuery(
        "SELECT type, name, tbl_name, rootpage, sql FROM (SELECT * FROM sqlite_master UNION ALL "
        "SELECT * FROM sqlite_temp_master) WHERE type != 'meta' AND name NOT LIKE 'sqlite_%' "
        "ORDER BY tbl_name, type DESC, name");
}

std::unique_ptr<SQLResultSet> SQLDatabase::getTableSchema(std::string_view tableName) {
    return executeQuery(fmt::format("pragma table_info('{}')", tableName));
}

bool SQLDatabase::columnExists(std::string_view columnName, std::string_view inTableWithName) {
    const std::string wanted = lowerCased(columnName);
    const auto columns = getTableSchema(lowerCased(inTableWithName));
    while (columns && columns->next())
        if (lowerCased(columns->stringForColumn("name").value_or("")) == wanted)
            return true;
    return false;
}

bool SQLDatabase::columnExistsColumnName(std::string_view tableName, std::string_view columnName) {
    return columnExists(columnName, tableName);
}

/// The figure that a pragma answers, or 0. One that sets a figure may answer none.
std::uint32_t SQLDatabase::integerPragma(std::string_view sql) {
    const auto rows = executeQuery(sql);
    return rows && rows->next() ? static_cast<std::uint32_t>(rows->longLongIntForColumnIndex(0))
                                : 0;
}

// SQLite reads these two as signed.

std::uint32_t SQLDatabase::applicationID() { return integerPragma("pragma application_id"); }

void SQLDatabase::setApplicationID(std::uint32_t id) {
    integerPragma(fmt::format("pragma application_id={}", static_cast<std::int32_t>(id)));
}

std::uint32_t SQLDatabase::userVersion() { return integerPragma("pragma user_version"); }

void SQLDatabase::setUserVersion(std::uint32_t version) {
    integerPragma(fmt::format("pragma user_version = {}", static_cast<std::int32_t>(version)));
}

std::string SQLDatabase::applicationIDString() {
    const std::uint32_t id = applicationID();
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8)
        text += static_cast<char>(id >> shift & 0xFF);
    return text;
}

void SQLDatabase::setApplicationIDString(std::string_view text) {
    std::uint32_t id = 0;
    for (const char character : text)
        id = id << 8 | static_cast<unsigned char>(character);
    setApplicationID(text.size() == kCodeBytes ? id : 0);
}

bool SQLDatabase::validateSQL(std::string_view sql, Error* error) {
    const std::string text(sql);
    sqlite3_stmt* statement = nullptr;
    const bool isValid =
        sqlite3_prepare_v2(db_, text.c_str(), -1, &statement, nullptr) == SQLITE_OK;
    if (!isValid && error != nullptr)
        *error = SQLError{"NSCocoaErrorDomain", lastErrorCode(), lastErrorMessage()};
    sqlite3_finalize(statement);
    return isValid;
}

}  // namespace vantor::inline VANTOR_MODULE
