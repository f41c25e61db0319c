#include "Shared/External/SQLite/SQLStatementCache.h"

#include <algorithm>
#include <utility>

namespace vantor::inline VANTOR_MODULE {

std::shared_ptr<SQLStatement>
SQLStatementCache::cachedStatementForQuery(std::string_view query) const {
    const auto found = statements_.find(query);
    if (found == statements_.end())
        return nullptr;
    const auto& ofText = found->second;
    const auto free = std::ranges::find_if(ofText, [](const auto& one) { return !one->inUse(); });
    return free == ofText.end() ? nullptr : *free;
}

void SQLStatementCache::setCachedStatement(std::shared_ptr<SQLStatement> statement,
                                           std::string_view forQuery) {
    statement->setQuery(forQuery);
    statements_[std::string(forQuery)].push_back(std::move(statement));
}

void SQLStatementCache::remove(const SQLStatement& statement) {
    const auto found = statements_.find(statement.query());
    if (found != statements_.end())
        std::erase_if(found->second, [&](const auto& one) { return one.get() == &statement; });
}

void SQLStatementCache::clear() noexcept {
    for (auto& [query, ofText] : statements_)
        for (const auto& statement : ofText)
            statement->close();
    statements_.clear();
}

}  // namespace vantor::inline VANTOR_MODULE
