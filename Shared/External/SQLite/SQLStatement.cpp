#include "Shared/External/SQLite/SQLStatement.h"

#include <utility>

#include <fmt/format.h>
#include <sqlite3.h>

namespace vantor::inline VANTOR_MODULE {

// What resetting and finalizing answer is the failure of the run before, which was read there.

void SQLStatement::close() noexcept {
    sqlite3_finalize(std::exchange(statement_, nullptr));
    inUse_ = false;
}

void SQLStatement::reset() noexcept {
    if (statement_ != nullptr)
        sqlite3_reset(statement_);
    inUse_ = false;
}

std::string SQLStatement::description() const {
    return fmt::format("<SQLStatement: {}> {} hit(s) for query {}", fmt::ptr(this), useCount_,
                       query_);
}

}  // namespace vantor::inline VANTOR_MODULE
