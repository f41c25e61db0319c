#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/PropertyValue.h"
#include "Shared/External/SQLite/SQLArguments.h"
#include "Shared/External/SQLite/SQLDateFormat.h"
#include "Shared/External/SQLite/SQLEnvironment.h"
#include "Shared/External/SQLite/SQLError.h"
#include "Shared/External/SQLite/SQLResultSet.h"
#include "Shared/External/SQLite/SQLStatementCache.h"

struct sqlite3;
struct sqlite3_context;
struct sqlite3_value;

namespace vantor::inline VANTOR_MODULE {

enum class BoundBytes;

/// One connection, its prepared statements and its open cursors. A file is opened with SQLite's
/// defaults: no pragma is set.
/// Errors: silent. A failure shows in the result and in `lastErrorCode` and `lastErrorMessage`,
///         which are about the last call of SQLite; a closed connection has the ones that SQLite
///         gives for none. An execution on a closed connection, or while another is running,
///         fails. With `crashOnErrors` these and texts that SQLite refuses end the process.
///         A text that gives rows to an update always does.
/// Thread: one at a time; whoever owns the connection sees to that.
class SQLDatabase {
public:
    using Dictionary = PropertyValue::Dictionary;
    /// One row of texts by column name; other than 0 ends the run.
    using RowClosure = std::function<int(const Dictionary& row)>;
    using Function = std::function<void(sqlite3_context*, int count, sqlite3_value** values)>;
    using SavePointClosure = std::function<void(bool& rollback)>;
    using Error = std::optional<SQLError>;

    static constexpr double kMaxBusyRetrySeconds = 2;

    /// Without a path the database is in memory, with an empty one it is a temporary file.
    explicit SQLDatabase(SQLEnvironment& environment,
                         std::optional<std::filesystem::path> path = std::nullopt);
    ~SQLDatabase();
    SQLDatabase(const SQLDatabase&) = delete;
    SQLDatabase& operator=(const SQLDatabase&) = delete;

    static std::shared_ptr<SQLDatabase> databaseWithPath(SQLEnvironment& environment,
                                                         std::optional<std::filesystem::path> path);

    static std::string_view SQLLayerUserVersion() noexcept;
    /// The version's digits, read as hexadecimal.
    static std::int32_t SQLLayerVersion() noexcept;
    static std::string_view sqliteLibVersion() noexcept;
    static bool isSQLiteThreadSafe() noexcept;

    // The connection

    /// True at once where it is open.
    bool open();
    /// `flags` are those of SQLite's second way to open a file.
    bool openWithFlags(int flags);
    /// Closes every statement and cursor, then the connection. Always true, even where SQLite
    /// refused: the connection is given up then.
    bool close();
    bool databaseExists();
    bool goodConnection();
    sqlite3* sqliteHandle() const noexcept { return db_; }
    const std::optional<std::filesystem::path>& databasePath() const noexcept { return path_; }
    /// What SQLite is told to open.
    std::string sqlitePath() const;
    std::string description() const;
    SQLEnvironment& environment() const noexcept { return environment_; }

    // Settings

    bool logsErrors() const noexcept { return logsErrors_; }  // nothing hangs on it
    void setLogsErrors(bool logsErrors) noexcept { logsErrors_ = logsErrors; }
    bool crashOnErrors() const noexcept { return crashOnErrors_; }
    void setCrashOnErrors(bool crashes) noexcept { crashOnErrors_ = crashes; }
    bool traceExecution() const noexcept { return traceExecution_; }  // nor on this
    void setTraceExecution(bool traces) noexcept { traceExecution_ = traces; }
    bool checkedOut() const noexcept { return checkedOut_; }
    void setCheckedOut(bool checkedOut) noexcept { checkedOut_ = checkedOut; }
    bool shouldCacheStatements() const noexcept { return cachedStatements_.has_value(); }
    void setShouldCacheStatements(bool caches);
    double maxBusyRetryTimeInterval() const noexcept { return maxBusyRetrySeconds_; }
    /// How long a statement waits for a lock, in seconds; 0 or less fails at once.
    void setMaxBusyRetryTimeInterval(double seconds);
    int busyRetryTimeout() const noexcept { return -1; }  // an old name of the above
    void setBusyRetryTimeout(int) noexcept {}
    // There is no encryption: these fail.
    bool setKey(std::string_view key);
    bool rekey(std::string_view key);
    bool setKeyWithData(std::span<const std::byte> key);
    bool rekeyWithData(std::span<const std::byte> key);

    // Queries: a cursor before the first row, or null. A cursor keeps its own copies of the values.

    std::unique_ptr<SQLResultSet> executeQuery(std::string_view sql,
                                               std::span<const PropertyValue> arguments = {});
    std::unique_ptr<SQLResultSet> executeQuery(std::string_view sql,
                                               const Dictionary& withParameterDictionary);
    std::unique_ptr<SQLResultSet> executeQuery(std::string_view sql, SQLArgumentList withVAList);
    std::unique_ptr<SQLResultSet> executeQuery(std::string_view sql,
                                               std::span<const PropertyValue> withArgumentsInArray,
                                               const Dictionary* orDictionary,
                                               SQLArgumentList orVAList);
    template <SQLArgument... Values>
    requires(sizeof...(Values) >
             0) std::unique_ptr<SQLResultSet> executeQuery(std::string_view sql,
                                                           const Values&... values) {
        const PropertyValue list[]{PropertyValue(values)...};
        return executeQuery(sql, SQLArgumentList{list});
    }
    std::unique_ptr<SQLResultSet> executeQueryWithFormat(std::string_view format,
                                                         SQLArgumentList arguments);
    template <SQLArgument... Values>
    std::unique_ptr<SQLResultSet> executeQueryWithFormat(std::string_view format,
                                                         const Values&... values) {
        const std::vector<PropertyValue> list{PropertyValue(values)...};
        return executeQueryWithFormat(format, SQLArgumentList{list});
    }

    // Updates: whether the statement ran to its end. `error` is set where SQLite refused the text.

    bool executeUpdate(std::string_view sql, std::span<const PropertyValue> arguments = {});
    bool executeUpdate(std::string_view sql, const Dictionary& withParameterDictionary);
    bool executeUpdate(std::string_view sql, SQLArgumentList withVAList);
    bool executeUpdate(std::string_view sql, Error* error,
                       std::span<const PropertyValue> withArgumentsInArray,
                       const Dictionary* orDictionary, SQLArgumentList orVAList);
    template <SQLArgument... Values>
    requires(sizeof...(Values) > 0) bool executeUpdate(std::string_view sql,
                                                       const Values&... values) {
        const PropertyValue list[]{PropertyValue(values)...};
        return executeUpdate(sql, SQLArgumentList{list});
    }
    template <SQLArgument... Values>
    bool executeUpdate(std::string_view sql, Error& withError, const Values&... andBindings) {
        const std::vector<PropertyValue> list{PropertyValue(andBindings)...};
        return executeUpdate(sql, &withError, {}, nullptr, SQLArgumentList{list});
    }
    template <SQLArgument... Values>
    bool update(std::string_view sql, Error& withError, const Values&... andBindings) {
        return executeUpdate(sql, withError, andBindings...);
    }
    bool executeUpdateWithFormat(std::string_view format, SQLArgumentList arguments);
    template <SQLArgument... Values>
    bool executeUpdateWithFormat(std::string_view format, const Values&... values) {
        const std::vector<PropertyValue> list{PropertyValue(values)...};
        return executeUpdateWithFormat(format, SQLArgumentList{list});
    }
    /// All statements of one text, up to the first that fails.
    bool executeStatements(const std::string& sql, const RowClosure& withResultBlock = nullptr);

    // Transactions

    /// Takes the lock for writing at once.
    bool beginTransaction();
    bool beginDeferredTransaction();
    bool commit();
    bool rollback();
    bool inTransaction() const noexcept { return inTransaction_; }
    /// What SQLite says: it takes a transaction back by itself where the disk fails or is full.
    bool isTransactionOpen() const noexcept;
    // A savepoint without a name ends the process.
    bool startSavePointWithName(std::optional<std::string_view> name, Error* error = nullptr);
    bool releaseSavePointWithName(std::optional<std::string_view> name, Error* error = nullptr);
    bool rollbackToSavePointWithName(std::optional<std::string_view> name, Error* error = nullptr);
    /// Runs `closure` in a savepoint that is undone where the closure says so. Answers why it
    /// couldn't start.
    Error inSavePoint(const SavePointClosure& closure);

    // Errors

    int lastErrorCode() const noexcept;
    std::string lastErrorMessage() const;
    bool hadError() const noexcept;
    /// Whether the last call failed for a reason of the machine's, which may pass and says nothing
    /// of what is in the file: a lock held elsewhere, a disk that fails or is full.
    bool lastFailureMayPass() const noexcept;
    SQLError errorWithMessage(std::string message) const;
    SQLError lastError() const;
    std::int64_t lastInsertRowId();
    int changes();

    // Dates

    static SQLDateFormat storeableDateFormat(std::string_view format);
    void setDateFormat(std::optional<SQLDateFormat> format) { dateFormat_ = std::move(format); }
    bool hasDateFormatter() const noexcept { return dateFormat_.has_value(); }
    std::optional<PropertyValue::Date> dateFromString(std::string_view text) const;
    std::optional<std::string> stringFromDate(PropertyValue::Date date) const;

    // Statements and cursors

    std::shared_ptr<SQLStatement> cachedStatementForQuery(std::string_view query) const;
    void setCachedStatement(std::shared_ptr<SQLStatement> statement, std::string_view forQuery);
    void clearCachedStatements() noexcept;
    bool hasOpenResultSets() const noexcept { return !openResultSets_.empty(); }
    void closeOpenResultSets();
    void resultSetDidClose(const SQLResultSet& resultSet) noexcept;
    /// `closure` is kept for as long as the connection; it throws nothing.
    void makeFunctionNamed(const std::string& name, int maximumArguments, Function withBlock);

    // What is asked of the tables

    /// Whatever the case of the name.
    bool tableExists(std::string_view name);
    /// Whether the first column that SQLite's check of the whole file gives is "ok". A file that
    /// is busy counts as valid: nothing may delete history for a reason that passes. Doesn't ask
    /// whether an execution is running.
    bool isDatabaseValid();
    std::unique_ptr<SQLResultSet> getSchema();
    std::unique_ptr<SQLResultSet> getTableSchema(std::string_view tableName);
    bool columnExists(std::string_view columnName, std::string_view inTableWithName);
    /// The same with the arguments the other way round.
    bool columnExistsColumnName(std::string_view tableName, std::string_view columnName);
    std::uint32_t applicationID();
    void setApplicationID(std::uint32_t id);
    /// The four bytes of the ID, as characters.
    std::string applicationIDString();
    /// A text of other than four bytes is the ID 0.
    void setApplicationIDString(std::string_view text);
    std::uint32_t userVersion();
    void setUserVersion(std::uint32_t version);
    /// Whether SQLite can prepare the text.
    bool validateSQL(std::string_view sql, Error* error = nullptr);

    // Column 0 of the first row; nothing, false or 0 without a row.

    template <SQLArgument... Values>
    std::optional<std::string> stringForQuery(std::string_view sql, const Values&... values) {
        return firstOf(sql, &SQLResultSet::stringForColumnIndex, values...);
    }
    template <SQLArgument... Values>
    int intForQuery(std::string_view sql, const Values&... values) {
        return firstOf(sql, &SQLResultSet::intForColumnIndex, values...);
    }
    template <SQLArgument... Values>
    long longForQuery(std::string_view sql, const Values&... values) {
        return firstOf(sql, &SQLResultSet::longForColumnIndex, values...);
    }
    template <SQLArgument... Values>
    bool boolForQuery(std::string_view sql, const Values&... values) {
        return firstOf(sql, &SQLResultSet::boolForColumnIndex, values...);
    }
    template <SQLArgument... Values>
    double doubleForQuery(std::string_view sql, const Values&... values) {
        return firstOf(sql, &SQLResultSet::doubleForColumnIndex, values...);
    }
    template <SQLArgument... Values>
    std::optional<PropertyValue::Data> dataForQuery(std::string_view sql, const Values&... values) {
        return firstOf(sql, &SQLResultSet::dataForColumnIndex, values...);
    }
    template <SQLArgument... Values>
    std::optional<PropertyValue::Date> dateForQuery(std::string_view sql, const Values&... values) {
        return firstOf(sql, &SQLResultSet::dateForColumnIndex, values...);
    }

private:
    class Execution;

    template <class Kind, class... Values>
    Kind firstOf(std::string_view sql, Kind (SQLResultSet::*getter)(int) const,
                 const Values&... values) {
        const std::vector<PropertyValue> list{PropertyValue(values)...};
        const auto rows = executeQuery(sql, SQLArgumentList{list});
        return rows && rows->next() ? (*rows.*getter)(0) : Kind{};
    }

    bool opened(int answer);
    static int SQLDatabaseBusyHandler(void* database, int count) noexcept;
    bool mayRetry(int count) noexcept;
    void warnInUse();
    std::shared_ptr<SQLStatement> statementFor(std::string_view sql);
    bool bind(SQLStatement& statement, const SQLArguments& arguments, BoundBytes bytes);
    void keepStatement(const std::shared_ptr<SQLStatement>& statement, std::string_view sql);
    bool stepOnce(const SQLStatement& statement, std::string_view sql);
    bool executeSavePoint(std::string_view before, std::optional<std::string_view> name,
                          std::string_view behind, Error* error);
    std::uint32_t integerPragma(std::string_view sql);

    SQLEnvironment& environment_;
    sqlite3* db_ = nullptr;
    std::optional<std::filesystem::path> path_;
    bool logsErrors_ = true, crashOnErrors_ = false, traceExecution_ = false;
    bool checkedOut_ = false, isExecutingStatement_ = false, inTransaction_ = false;
    double maxBusyRetrySeconds_ = kMaxBusyRetrySeconds;
    double startBusyRetryTime_ = 0;
    std::optional<SQLStatementCache> cachedStatements_;  // where caching is on
    std::vector<SQLResultSet*> openResultSets_;
    std::list<Function> openFunctions_;  // SQLite has their addresses
    std::optional<SQLDateFormat> dateFormat_;
};

}  // namespace vantor::inline VANTOR_MODULE
