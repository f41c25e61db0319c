#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Shared/External/SQLite/SQLStatement.h"

namespace vantor::inline VANTOR_MODULE {

/// Prepared statements by their exact text. A text may have several, because one query may be
/// running twice at once. Nothing is ever evicted, so callers keep texts stable and bind values.
/// Thread: that of its connection.
class SQLStatementCache {
public:
    /// A statement of that text that nobody uses, or null.
    std::shared_ptr<SQLStatement> cachedStatementForQuery(std::string_view query) const;
    void setCachedStatement(std::shared_ptr<SQLStatement> statement, std::string_view forQuery);
    void remove(const SQLStatement& statement);
    /// Closes every statement, those in use as well, and forgets them.
    void clear() noexcept;

private:
    std::map<std::string, std::vector<std::shared_ptr<SQLStatement>>, std::less<>> statements_;
};

}  // namespace vantor::inline VANTOR_MODULE
