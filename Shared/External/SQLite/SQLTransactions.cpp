// How an SQLDatabase begins and ends transactions and savepoints.

#include <fmt/format.h>

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

bool SQLDatabase::runSavePoint(std::string_view before, std::optional<std::string_view> name,
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
    return runSavePoint("savepoint '", name, "';", error);
}

bool SQLDatabase::releaseSavePointWithName(std::optional<std::string_view> name, Error* error) {
    return runSavePoint("release savepoint '", name, "';", error);
}

bool SQLDatabase::rollbackToSavePointWithName(std::optional<std::string_view> name, Error* error) {
    return runSavePoint("rollback transaction to savepoint '", name, "';", error);
}

SQLDatabase::Error SQLDatabase::inSavePoint(const SavePointClosure& closure) {
    const std::string name = fmt::format("dbSavePoint{}", environment_.databaseSavePoints++);
    Error error;
    if (!startSavePointWithName(name, &error))
        return error;
    bool rollback = false;
    closure(rollback);
    if (rollback)
        rollbackToSavePointWithName(name);
    releaseSavePointWithName(name);
    return std::nullopt;
}

}  // namespace vantor::inline VANTOR_MODULE
