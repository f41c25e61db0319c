#include "Shared/External/SQLite/SQLDatabase.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>
#include <sqlite3.h>

#include "Shared/Assertion.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr std::string_view kUserVersion = "2.3";
constexpr int kBusySleepMilliseconds = 50;

/// Padded with ".0" up to three components, without the points, as hexadecimal.
constexpr std::int32_t versionNumber(std::string_view version) {
    std::int32_t number = 0;
    int components = 1;
    for (const char character : version) {
        if (character == '.')
            ++components;
        else
            number = number * 16 + (character - '0');
    }
    for (; components < 3; ++components)
        number *= 16;
    return number;
}
static_assert(versionNumber(kUserVersion) == 0x230);

}  // namespace

SQLDatabase::SQLDatabase(SQLEnvironment& environment, std::optional<std::filesystem::path> path)
    : environment_(environment), path_(std::move(path)) {
    if (!isSQLiteThreadSafe())
        failAssertion(environment_.systemLog, "sqlite3_threadsafe()");
}

SQLDatabase::~SQLDatabase() { close(); }

std::shared_ptr<SQLDatabase>
SQLDatabase::databaseWithPath(SQLEnvironment& environment,
                              std::optional<std::filesystem::path> path) {
    return std::make_shared<SQLDatabase>(environment, std::move(path));
}

std::string_view SQLDatabase::SQLLayerUserVersion() noexcept { return kUserVersion; }
std::int32_t SQLDatabase::SQLLayerVersion() noexcept { return versionNumber(kUserVersion); }
std::string_view SQLDatabase::sqliteLibVersion() noexcept { return sqlite3_libversion(); }
bool SQLDatabase::isSQLiteThreadSafe() noexcept { return sqlite3_threadsafe() != 0; }

std::string SQLDatabase::sqlitePath() const { return path_ ? path_->string() : ":memory:"; }

std::string SQLDatabase::description() const {
    return fmt::format("<SQLDatabase: {}>", fmt::ptr(this));
}

bool SQLDatabase::open() {
    return db_ != nullptr || opened(sqlite3_open(sqlitePath().c_str(), &db_));
}

bool SQLDatabase::openWithFlags(int flags) {
    return db_ != nullptr || opened(sqlite3_open_v2(sqlitePath().c_str(), &db_, flags, nullptr));
}

bool SQLDatabase::opened(int answer) {
    if (answer != SQLITE_OK) {
        sqlite3_close(std::exchange(db_, nullptr));  // SQLite makes one for failures, too
        return false;
    }
    if (maxBusyRetrySeconds_ > 0)
        setMaxBusyRetryTimeInterval(maxBusyRetrySeconds_);
    return true;
}

bool SQLDatabase::close() {
    clearCachedStatements();
    closeOpenResultSets();
    if (db_ == nullptr)
        return true;
    const int answer = sqlite3_close(db_);
    if (answer == SQLITE_BUSY || answer == SQLITE_LOCKED) {
        bool hadLeaked = false;
        while (sqlite3_stmt* const leaked = sqlite3_next_stmt(db_, nullptr)) {
            sqlite3_finalize(leaked);
            hadLeaked = true;
        }
        if (hadLeaked)
            sqlite3_close(db_);
    }
    db_ = nullptr;
    inTransaction_ = false;
    return true;
}

bool SQLDatabase::databaseExists() {
    if (db_ == nullptr && crashOnErrors_)
        failAssertion(environment_.systemLog,
                      fmt::format("The SQLDatabase {} is not open.", description()));
    return db_ != nullptr;
}

bool SQLDatabase::goodConnection() {
    return db_ != nullptr && executeQuery("select name from sqlite_master where type='table'");
}

void SQLDatabase::setMaxBusyRetryTimeInterval(double seconds) {
    maxBusyRetrySeconds_ = seconds;
    if (db_ != nullptr)
        sqlite3_busy_handler(db_, seconds > 0 ? &SQLDatabaseBusyHandler : nullptr, this);
}

int SQLDatabase::SQLDatabaseBusyHandler(void* database, int count) noexcept {
    return static_cast<SQLDatabase*>(database)->mayRetry(count) ? 1 : 0;
}

bool SQLDatabase::mayRetry(int count) noexcept {
    const SQLBusyWait& wait = environment_.busyWait;
    if (count == 0) {
        startBusyRetryTime_ = wait.now();
        return true;
    }
    if (wait.now() - startBusyRetryTime_ >= maxBusyRetrySeconds_)
        return false;
    wait.sleep(kBusySleepMilliseconds);
    return true;
}

bool SQLDatabase::setKey(std::string_view key) {
    return setKeyWithData(std::as_bytes(std::span(key)));
}
bool SQLDatabase::rekey(std::string_view key) {
    return rekeyWithData(std::as_bytes(std::span(key)));
}
bool SQLDatabase::setKeyWithData(std::span<const std::byte>) { return false; }
bool SQLDatabase::rekeyWithData(std::span<const std::byte>) { return false; }

void SQLDatabase::setShouldCacheStatements(bool caches) {
    if (!caches)
        cachedStatements_.reset();
    else if (!cachedStatements_)
        cachedStatements_.emplace();
}

std::shared_ptr<SQLStatement> SQLDatabase::cachedStatementForQuery(std::string_view query) const {
    return cachedStatements_ ? cachedStatements_->cachedStatementForQuery(query) : nullptr;
}

void SQLDatabase::setCachedStatement(std::shared_ptr<SQLStatement> statement,
                                     std::string_view forQuery) {
    if (cachedStatements_)
        cachedStatements_->setCachedStatement(std::move(statement), forQuery);
}

void SQLDatabase::clearCachedStatements() noexcept {
    if (cachedStatements_)
        cachedStatements_->clear();
}

void SQLDatabase::closeOpenResultSets() {
    // Without its parent a cursor that closes doesn't call back into the list being walked.
    for (SQLResultSet* const resultSet : std::exchange(openResultSets_, {})) {
        resultSet->setParentDB(nullptr);
        resultSet->close();
    }
}

void SQLDatabase::resultSetDidClose(const SQLResultSet& resultSet) noexcept {
    std::erase(openResultSets_, &resultSet);
}

int SQLDatabase::lastErrorCode() const noexcept { return sqlite3_errcode(db_); }
std::string SQLDatabase::lastErrorMessage() const { return sqlite3_errmsg(db_); }

bool SQLDatabase::hadError() const noexcept {
    const int code = lastErrorCode();
    return code > SQLITE_OK && code < SQLITE_ROW;
}

SQLError SQLDatabase::errorWithMessage(std::string message) const {
    return {"SQLDatabase", lastErrorCode(), std::move(message)};
}

SQLError SQLDatabase::lastError() const { return errorWithMessage(lastErrorMessage()); }

SQLDateFormat SQLDatabase::storeableDateFormat(std::string_view format) {
    return SQLDateFormat(format);
}

std::optional<PropertyValue::Date> SQLDatabase::dateFromString(std::string_view text) const {
    return dateFormat_ ? dateFormat_->dateFromString(text) : std::nullopt;
}

std::optional<std::string> SQLDatabase::stringFromDate(PropertyValue::Date date) const {
    return dateFormat_ ? std::optional(dateFormat_->stringFromDate(date)) : std::nullopt;
}

}  // namespace vantor::inline VANTOR_MODULE
