#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "Shared/External/SQLite/SQLError.h"

namespace vantor::inline VANTOR_MODULE {

class SQLDatabase;

/// Whether the lock for writing is taken at once, or by the first write.
enum class SQLTransaction { exclusive, deferred };

/// What runs between the beginning and the end; the end undoes it where `rollback` came back set.
using SQLTransactionClosure = std::function<void(SQLDatabase* database, bool& rollback)>;

// Without a connection there is nothing to begin or end.

/// The closure runs whether or not the transaction could begin.
void runTransaction(SQLDatabase* database, SQLTransaction kind,
                    const SQLTransactionClosure& closure);
/// The closure runs in a savepoint of that name, if one could be started. Answers what failed.
std::optional<SQLError> runSavePoint(SQLDatabase* database, std::string_view name,
                                     const SQLTransactionClosure& closure);

}  // namespace vantor::inline VANTOR_MODULE
