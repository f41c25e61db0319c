#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "Foundation/PropertyValue.h"
#include "Shared/External/SQLite/SQLResultSet.h"

namespace vantor::inline VANTOR_MODULE {

/// One connection, its prepared statements and its open cursors.
/// Errors: silent. A failure shows in the result and in `lastErrorCode` and `lastErrorMessage`.
/// Thread: one at a time; whoever owns the connection sees to that.
class SQLDatabase {
public:
    ~SQLDatabase();

    /// The statement is prepared once and kept, where caching is on; null on failure.
    std::unique_ptr<SQLResultSet> executeQuery(std::string_view sql,
                                               std::span<const PropertyValue> arguments = {});
    bool executeUpdate(std::string_view sql, std::span<const PropertyValue> arguments = {});
    bool tableExists(std::string_view name);
    bool isDatabaseValid();
};

}  // namespace vantor::inline VANTOR_MODULE
