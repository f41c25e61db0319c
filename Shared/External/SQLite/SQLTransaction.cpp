#include "Shared/External/SQLite/SQLTransaction.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include "Shared/Assertion.h"
#include "Shared/External/SQLite/SQLDatabase.h"
#include "Shared/External/SQLite/SQLNames.h"

namespace vantor::inline VANTOR_MODULE {

bool SQLDatabase::beginTransaction() {
    const bool began = executeUpdate("begin exclusive transaction");
    inTransaction_ = inTransaction_ || began;
    return began;
}

bool SQLDatabase::beginDeferredTransaction() {
    const bool began = executeUpdate("begin deferred transaction");
    inTransaction_ = inTransaction_ || began;
    return began;
}

bool SQLDatabase::commit() {
    const bool ended = executeUpdate("commit transaction");
    inTransaction_ = inTransaction_ && !ended;
    return ended;
}

bool SQLDatabase::rollback() {
    const bool ended = executeUpdate("rollback transaction");
    inTransaction_ = inTransaction_ && !ended;
    return ended;
}

bool SQLDatabase::isTransactionOpen() const noexcept {
    return db_ != nullptr && sqlite3_get_autocommit(db_) == 0;
}

bool SQLDatabase::executeSavePoint(std::string_view before, std::optional<std::string_view> name,
                                   std::string_view behind, Error* error) {
    if (!name)
        failAssertion(environment_.systemLog, "Invalid parameter not satisfying: name");
    const std::string sql = fmt::format("{}{}{}", before, quotesDoubled(*name), behind);
    const bool done = executeUpdate(sql);
    if (!done && error != nullptr)
        *error = lastError();
    return done;
}

bool SQLDatabase::startSavePointWithName(std::optional<std::string_view> name, Error* error) {
    return executeSavePoint("savepoint '", name, "';", error);
}

bool SQLDatabase::releaseSavePointWithName(std::optional<std::string_view> name, Error* error) {
    return executeSavePoint("release savepoint '", name, "';", error);
}

bool SQLDatabase::rollbackToSavePointWithName(std::optional<std::string_view> name, Error* error) {
    return executeSavePoint("rollback transaction to savepoint '", name, "';", error);
}

SQLDatabase::Error SQLDatabase::inSavePoint(const SavePointClosure& closure) {
    const std::string name = fmt::format("dbSavePoint{}", environment_.databaseSavePoints++);
    bool started = false;
    const auto run = [&](SQLDatabase*, bool& rollback) {
        started = true;
        closure(rollback);
    };
    const Error error = runSavePoint(this, name, run);
    return started ? std::nullopt : error;
}

void runTransaction(SQLDatabase* database, SQLTransaction kind,
                    const SQLTransactionClosure& closure) {
    if (database != nullptr && kind == SQLTransaction::exclusive)
        database->beginTransaction();
    else if (database != nullptr)
        database->beginDeferredTransaction();
    bool rollback = false;
    closure(database, rollback);
    if (database != nullptr && rollback)
        database->rollback();
    else if (database != nullptr)
        database->commit();
}

std::optional<SQLError> runSavePoint(SQLDatabase* database, std::string_view name,
                                     const SQLTransactionClosure& closure) {
    std::optional<SQLError> error;
    if (database == nullptr || !database->startSavePointWithName(name, &error))
        return error;
    bool rollback = false;
    closure(database, rollback);
    if (rollback)
        database->rollbackToSavePointWithName(name, &error);
    database->releaseSavePointWithName(name, &error);
    return error;
}

}  // namespace vantor::inline VANTOR_MODULE
