// How an SQLDatabase runs queries and updates.

#include <algorithm>
#include <limits>
#include <utility>

#include <fmt/format.h>
#include <sqlite3.h>

#include "Shared/Assertion.h"
#include "Shared/External/SQLite/SQLBinding.h"
#include "Shared/External/SQLite/SQLDatabase.h"
#include "Shared/External/SQLite/SQLFormat.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

int lengthOf(std::string_view sql) noexcept {
    return static_cast<int>(
        std::min(sql.size(), static_cast<std::size_t>(std::numeric_limits<int>::max())));
}

}  // namespace

/// Holds the flag that catches an execution inside another.
class SQLDatabase::Execution {
public:
    explicit Execution(SQLDatabase& database) : database_(database) {
        if (database_.isExecutingStatement_)
            database_.warnInUse();
        else
            mayRun_ = database_.isExecutingStatement_ = true;
    }
    ~Execution() {
        if (mayRun_)
            database_.isExecutingStatement_ = false;
    }
    Execution(const Execution&) = delete;
    Execution& operator=(const Execution&) = delete;

    explicit operator bool() const noexcept { return mayRun_; }

private:
    SQLDatabase& database_;
    bool mayRun_ = false;
};

void SQLDatabase::warnInUse() {
    if (crashOnErrors_)
        failAssertion(environment_.systemLog,
                      fmt::format("The SQLDatabase {} is currently in use.", description()));
}

/// One from the cache, made ready, or one prepared now; null where SQLite refuses the text.
std::shared_ptr<SQLStatement> SQLDatabase::statementFor(std::string_view sql) {
    if (auto cached = cachedStatementForQuery(sql)) {
        cached->reset();
        return cached;
    }
    sqlite3_stmt* handle = nullptr;
    const int answer = sqlite3_prepare_v2(db_, sql.data(), lengthOf(sql), &handle, nullptr);
    auto statement = std::make_shared<SQLStatement>(handle);
    if (answer == SQLITE_OK)
        return statement;
    if (crashOnErrors_)
        failAssertion(environment_.systemLog,
                      fmt::format("DB Error: {} \"{}\"", lastErrorCode(), lastErrorMessage()));
    return nullptr;
}

/// Where a value is missing, the statement is closed.
bool SQLDatabase::bind(SQLStatement& statement, const SQLArguments& arguments, BoundBytes bytes) {
    const SQLDateFormat* const dates = dateFormat_ ? &*dateFormat_ : nullptr;
    const int bound = bindArguments(arguments, statement.statement(), bytes, dates);
    if (bound == sqlite3_bind_parameter_count(statement.statement()))
        return true;
    statement.close();
    if (cachedStatements_)
        cachedStatements_->remove(statement);
    return false;
}

/// One that came from the cache has its text already.
void SQLDatabase::keepStatement(const std::shared_ptr<SQLStatement>& statement,
                                std::string_view sql) {
    if (statement->query().empty() && !sql.empty())
        setCachedStatement(statement, sql);
}

std::unique_ptr<SQLResultSet>
SQLDatabase::executeQuery(std::string_view sql, std::span<const PropertyValue> withArgumentsInArray,
                          const Dictionary* orDictionary, SQLArgumentList orVAList) {
    if (!databaseExists())
        return nullptr;
    const Execution execution(*this);
    if (!execution)
        return nullptr;
    auto statement = statementFor(sql);
    // The rows are read when the caller's values may be gone: SQLite keeps copies.
    if (!statement || !bind(*statement, {withArgumentsInArray, orDictionary, orVAList.values},
                            BoundBytes::copied))
        return nullptr;
    keepStatement(statement, sql);
    auto resultSet = SQLResultSet::resultSetWithStatement(statement, *this);
    resultSet->setQuery(sql);
    openResultSets_.push_back(resultSet.get());
    statement->setUseCount(statement->useCount() + 1);
    return resultSet;
}

bool SQLDatabase::executeUpdate(std::string_view sql, Error* error,
                                std::span<const PropertyValue> withArgumentsInArray,
                                const Dictionary* orDictionary, SQLArgumentList orVAList) {
    if (!databaseExists())
        return false;
    const Execution execution(*this);
    if (!execution)
        return false;
    const auto statement = statementFor(sql);
    if (!statement && error != nullptr)
        *error = lastError();
    if (!statement || !bind(*statement, {withArgumentsInArray, orDictionary, orVAList.values},
                            BoundBytes::inPlace))
        return false;
    const bool done = stepOnce(*statement, sql);
    keepStatement(statement, sql);
    statement->setUseCount(statement->useCount() + 1);
    statement->reset();
    return done;
}

bool SQLDatabase::stepOnce(const SQLStatement& statement, std::string_view sql) {
    const int answer = sqlite3_step(statement.statement());
    if (answer == SQLITE_ROW)
        failAssertion(environment_.systemLog,
                      fmt::format("A executeUpdate is being called with a query string '{}'", sql));
    return answer == SQLITE_DONE || answer == SQLITE_OK;
}

std::unique_ptr<SQLResultSet> SQLDatabase::executeQuery(std::string_view sql,
                                                        std::span<const PropertyValue> arguments) {
    return executeQuery(sql, arguments, nullptr, {});
}
std::unique_ptr<SQLResultSet> SQLDatabase::executeQuery(std::string_view sql,
                                                        const Dictionary& withParameterDictionary) {
    return executeQuery(sql, {}, &withParameterDictionary, {});
}
std::unique_ptr<SQLResultSet> SQLDatabase::executeQuery(std::string_view sql,
                                                        SQLArgumentList withVAList) {
    return executeQuery(sql, {}, nullptr, withVAList);
}
std::unique_ptr<SQLResultSet> SQLDatabase::executeQueryWithFormat(std::string_view format,
                                                                  SQLArgumentList arguments) {
    std::string sql;
    std::vector<PropertyValue> values;
    extractSQL(format, arguments, sql, values);
    return executeQuery(sql, std::span<const PropertyValue>(values));
}

bool SQLDatabase::executeUpdate(std::string_view sql, std::span<const PropertyValue> arguments) {
    return executeUpdate(sql, nullptr, arguments, nullptr, {});
}
bool SQLDatabase::executeUpdate(std::string_view sql, const Dictionary& withParameterDictionary) {
    return executeUpdate(sql, nullptr, {}, &withParameterDictionary, {});
}
bool SQLDatabase::executeUpdate(std::string_view sql, SQLArgumentList withVAList) {
    return executeUpdate(sql, nullptr, {}, nullptr, withVAList);
}
bool SQLDatabase::executeUpdateWithFormat(std::string_view format, SQLArgumentList arguments) {
    std::string sql;
    std::vector<PropertyValue> values;
    extractSQL(format, arguments, sql, values);
    return executeUpdate(sql, std::span<const PropertyValue>(values));
}

namespace {

int SQLExecuteBulkCallback(void* closure, int columns, char** values, char** names) noexcept {
    PropertyValue::Dictionary row;
    for (int index = 0; index < columns; ++index)
        row.insert_or_assign(names[index], values[index] == nullptr ? PropertyValue{}
                                                                    : PropertyValue(values[index]));
    return (*static_cast<const SQLDatabase::RowClosure*>(closure))(row);
}

void SQLBlockCallBackFunction(sqlite3_context* context, int count,
                              sqlite3_value** values) noexcept {
    (*static_cast<SQLDatabase::Function*>(sqlite3_user_data(context)))(context, count, values);
}

}  // namespace

bool SQLDatabase::executeStatements(const std::string& sql, const RowClosure& withResultBlock) {
    RowClosure closure = withResultBlock;
    return sqlite3_exec(db_, sql.c_str(), closure ? &SQLExecuteBulkCallback : nullptr, &closure,
                        nullptr) == SQLITE_OK;
}

void SQLDatabase::makeFunctionNamed(const std::string& name, int maximumArguments,
                                    Function withBlock) {
    if (!databaseExists())
        return;
    openFunctions_.push_back(std::move(withBlock));
    // Where SQLite refuses the name, statements that use it fail.
    sqlite3_create_function(db_, name.c_str(), maximumArguments, SQLITE_UTF8,
                            &openFunctions_.back(), &SQLBlockCallBackFunction, nullptr, nullptr);
}

std::int64_t SQLDatabase::lastInsertRowId() {
    const Execution execution(*this);
    return execution && db_ != nullptr ? sqlite3_last_insert_rowid(db_) : 0;
}

int SQLDatabase::changes() {
    const Execution execution(*this);
    return execution && db_ != nullptr ? sqlite3_changes(db_) : 0;
}

}  // namespace vantor::inline VANTOR_MODULE
