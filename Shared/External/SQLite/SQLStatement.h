#pragma once

#include <cstdint>
#include <string>
#include <string_view>

struct sqlite3_stmt;

namespace vantor::inline VANTOR_MODULE {

/// A prepared statement. It is in use while a cursor walks its rows.
/// Thread: that of its connection.
class SQLStatement {
public:
    /// Takes `statement` over; it may be null.
    explicit SQLStatement(sqlite3_stmt* statement) noexcept : statement_(statement) {}
    ~SQLStatement() { close(); }
    SQLStatement(const SQLStatement&) = delete;
    SQLStatement& operator=(const SQLStatement&) = delete;

    /// Ends the prepared statement.
    void close() noexcept;
    /// Makes it ready to run again.
    void reset() noexcept;

    /// Null once it is closed.
    sqlite3_stmt* statement() const noexcept { return statement_; }
    /// The text that it is cached under.
    const std::string& query() const noexcept { return query_; }
    void setQuery(std::string_view query) { query_ = query; }
    /// How often it was handed out.
    std::int64_t useCount() const noexcept { return useCount_; }
    void setUseCount(std::int64_t count) noexcept { useCount_ = count; }
    bool inUse() const noexcept { return inUse_; }
    void setInUse(bool inUse) noexcept { inUse_ = inUse; }
    std::string description() const;

private:
    sqlite3_stmt* statement_;
    std::string query_;
    std::int64_t useCount_ = 0;
    bool inUse_ = false;
};

}  // namespace vantor::inline VANTOR_MODULE
