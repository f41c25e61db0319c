#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "Foundation/PropertyValue.h"
#include "Shared/External/SQLite/SQLError.h"

struct sqlite3_stmt;

namespace vantor::inline VANTOR_MODULE {

class SQLDatabase;
class SQLStatement;

/// A cursor over the rows of a query. Its end closes it, and so does its connection's.
/// Errors: a column that isn't there reads as NULL, and NULL as nothing, false or 0.
/// Thread: that of its connection.
class SQLResultSet {
public:
    using Error = std::optional<SQLError>;
    using ColumnMap = std::map<std::string, int, std::less<>>;

    /// A statement that is in use ends the process.
    static std::unique_ptr<SQLResultSet>
    resultSetWithStatement(std::shared_ptr<SQLStatement> statement,
                           SQLDatabase& usingParentDatabase);
    ~SQLResultSet();
    SQLResultSet(const SQLResultSet&) = delete;
    SQLResultSet& operator=(const SQLResultSet&) = delete;

    /// Whether there is another row; the cursor stands on it. A finished query and a failed one
    /// end alike, and both close the cursor.
    bool next();
    /// Tells the two apart: a failed query sets `error`.
    bool nextWithError(Error* error);
    /// Closing twice is harmless.
    void close();
    /// Whether the connection's last step gave a row.
    bool hasAnotherRow() const;

    int columnCount() const;
    /// By lower-cased name.
    const ColumnMap& columnNameToIndexMap() const;
    /// -1 for an unknown name; the case doesn't matter.
    int columnIndexForName(std::string_view name) const;
    std::optional<std::string> columnNameForIndex(int index) const;

    /// The row by column name, in the case that the query gave; nothing where there is no row.
    std::optional<PropertyValue::Dictionary> resultDictionary() const;
    /// The same by lower-cased name.
    std::optional<PropertyValue::Dictionary> resultDict() const;
    /// Hands each column that isn't NULL to `set`.
    void kvcMagic(const std::function<void(std::string_view key, PropertyValue value)>& set) const;

    int intForColumnIndex(int index) const;
    long longForColumnIndex(int index) const;
    std::int64_t longLongIntForColumnIndex(int index) const;
    std::uint64_t unsignedLongLongIntForColumnIndex(int index) const;
    bool boolForColumnIndex(int index) const;
    double doubleForColumnIndex(int index) const;
    std::optional<std::string> stringForColumnIndex(int index) const;
    std::optional<PropertyValue::Date> dateForColumnIndex(int index) const;
    std::optional<PropertyValue::Data> dataForColumnIndex(int index) const;
    /// Valid until the next step.
    std::optional<std::span<const std::byte>> dataNoCopyForColumnIndex(int index) const;
    bool columnIndexIsNull(int index) const;
    /// Valid until the next step; null for NULL.
    const char* UTF8StringForColumnIndex(int index) const;
    /// A number, a text or data, as the row has it.
    PropertyValue objectForColumnIndex(int index) const;
    PropertyValue operator[](int index) const { return objectForColumnIndex(index); }

    int intForColumn(std::string_view name) const { return intForColumnIndex(at(name)); }
    long longForColumn(std::string_view name) const { return longForColumnIndex(at(name)); }
    std::int64_t longLongIntForColumn(std::string_view name) const {
        return longLongIntForColumnIndex(at(name));
    }
    std::uint64_t unsignedLongLongIntForColumn(std::string_view name) const {
        return unsignedLongLongIntForColumnIndex(at(name));
    }
    bool boolForColumn(std::string_view name) const { return boolForColumnIndex(at(name)); }
    double doubleForColumn(std::string_view name) const { return doubleForColumnIndex(at(name)); }
    std::optional<std::string> stringForColumn(std::string_view name) const {
        return stringForColumnIndex(at(name));
    }
    std::optional<PropertyValue::Date> dateForColumn(std::string_view name) const {
        return dateForColumnIndex(at(name));
    }
    std::optional<PropertyValue::Data> dataForColumn(std::string_view name) const {
        return dataForColumnIndex(at(name));
    }
    std::optional<std::span<const std::byte>> dataNoCopyForColumn(std::string_view name) const {
        return dataNoCopyForColumnIndex(at(name));
    }
    bool columnIsNull(std::string_view name) const { return columnIndexIsNull(at(name)); }
    const char* UTF8StringForColumnName(std::string_view name) const {
        return UTF8StringForColumnIndex(at(name));
    }
    PropertyValue objectForColumnName(std::string_view name) const {
        return objectForColumnIndex(at(name));
    }
    PropertyValue operator[](std::string_view name) const { return objectForColumnName(name); }

    const std::string& query() const noexcept { return query_; }
    void setQuery(std::string_view query) { query_ = query; }
    /// Null once the cursor is closed.
    const SQLStatement* statement() const noexcept { return statement_.get(); }
    void setParentDB(SQLDatabase* parent) noexcept { parentDB_ = parent; }

private:
    SQLResultSet(std::shared_ptr<SQLStatement> statement, SQLDatabase& parent);

    int at(std::string_view name) const { return columnIndexForName(name); }
    sqlite3_stmt* handle() const noexcept;
    SQLError stepError(int answer) const;

    SQLDatabase* parentDB_;
    std::shared_ptr<SQLStatement> statement_;
    std::string query_;
    mutable std::optional<ColumnMap> columnNameToIndexMap_;  // built when first wanted
};

}  // namespace vantor::inline VANTOR_MODULE
