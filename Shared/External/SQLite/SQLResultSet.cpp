#include "Shared/External/SQLite/SQLResultSet.h"

#include <utility>

#include <sqlite3.h>

#include "Shared/Assertion.h"
#include "Shared/External/SQLite/SQLDatabase.h"
#include "Shared/External/SQLite/SQLNames.h"
#include "Shared/External/SQLite/SQLStatement.h"

namespace vantor::inline VANTOR_MODULE {

std::unique_ptr<SQLResultSet>
SQLResultSet::resultSetWithStatement(std::shared_ptr<SQLStatement> statement,
                                     SQLDatabase& usingParentDatabase) {
    if (statement->inUse())
        failAssertion(usingParentDatabase.environment().systemLog,
                      "Invalid parameter not satisfying: ![statement inUse]");
    return std::unique_ptr<SQLResultSet>(
        new SQLResultSet(std::move(statement), usingParentDatabase));
}

SQLResultSet::SQLResultSet(std::shared_ptr<SQLStatement> statement, SQLDatabase& parent)
    : parentDB_(&parent), statement_(std::move(statement)) {
    statement_->setInUse(true);
}

SQLResultSet::~SQLResultSet() { close(); }

void SQLResultSet::close() {
    if (statement_)
        statement_->reset();
    statement_.reset();
    if (parentDB_ != nullptr)
        std::exchange(parentDB_, nullptr)->resultSetDidClose(*this);
}

bool SQLResultSet::next() { return nextWithError(nullptr); }

bool SQLResultSet::nextWithError(Error* error) {
    const int answer = sqlite3_step(handle());
    if (answer == SQLITE_ROW)
        return true;
    if (answer != SQLITE_DONE && error != nullptr)
        *error = stepError(answer);
    close();
    return false;
}

SQLError SQLResultSet::stepError(int answer) const {
    if (parentDB_ != nullptr)
        return parentDB_->lastError();
    return {"SQLDatabase", answer, "parentDB does not exist"};
}

bool SQLResultSet::hasAnotherRow() const {
    return parentDB_ != nullptr && parentDB_->lastErrorCode() == SQLITE_ROW;
}

sqlite3_stmt* SQLResultSet::handle() const noexcept {
    return statement_ ? statement_->statement() : nullptr;
}

int SQLResultSet::columnCount() const { return sqlite3_column_count(handle()); }

const SQLResultSet::ColumnMap& SQLResultSet::columnNameToIndexMap() const {
    if (!columnNameToIndexMap_) {
        columnNameToIndexMap_.emplace();
        for (int index = 0; index < columnCount(); ++index)
            columnNameToIndexMap_->insert_or_assign(
                lowerCased(columnNameForIndex(index).value_or("")), index);
    }
    return *columnNameToIndexMap_;
}

int SQLResultSet::columnIndexForName(std::string_view name) const {
    const ColumnMap& map = columnNameToIndexMap();
    const auto found = map.find(lowerCased(name));
    return found == map.end() ? -1 : found->second;
}

std::optional<std::string> SQLResultSet::columnNameForIndex(int index) const {
    // SQLite looks into the statement without asking whether there is one.
    const char* const name = handle() == nullptr ? nullptr : sqlite3_column_name(handle(), index);
    return name == nullptr ? std::nullopt : std::optional<std::string>(name);
}

std::optional<PropertyValue::Dictionary> SQLResultSet::resultDictionary() const {
    const int columns = sqlite3_data_count(handle());
    if (columns == 0)
        return std::nullopt;
    PropertyValue::Dictionary row;
    for (int index = 0; index < columns; ++index)
        row.insert_or_assign(columnNameForIndex(index).value_or(""), objectForColumnIndex(index));
    return row;
}

std::optional<PropertyValue::Dictionary> SQLResultSet::resultDict() const {
    if (sqlite3_data_count(handle()) == 0)
        return std::nullopt;
    PropertyValue::Dictionary row;
    for (const auto& [name, index] : columnNameToIndexMap())
        row.insert_or_assign(name, objectForColumnIndex(index));
    return row;
}

void SQLResultSet::kvcMagic(
    const std::function<void(std::string_view key, PropertyValue value)>& set) const {
    const int columns = sqlite3_data_count(handle());
    for (int index = 0; index < columns; ++index)
        if (!columnIndexIsNull(index))
            set(columnNameForIndex(index).value_or(""), objectForColumnIndex(index));
}

int SQLResultSet::intForColumnIndex(int index) const { return sqlite3_column_int(handle(), index); }

long SQLResultSet::longForColumnIndex(int index) const {
    return static_cast<long>(sqlite3_column_int64(handle(), index));
}

std::int64_t SQLResultSet::longLongIntForColumnIndex(int index) const {
    return sqlite3_column_int64(handle(), index);
}

std::uint64_t SQLResultSet::unsignedLongLongIntForColumnIndex(int index) const {
    return static_cast<std::uint64_t>(longLongIntForColumnIndex(index));
}

bool SQLResultSet::boolForColumnIndex(int index) const { return intForColumnIndex(index) != 0; }

double SQLResultSet::doubleForColumnIndex(int index) const {
    return sqlite3_column_double(handle(), index);
}

std::optional<std::string> SQLResultSet::stringForColumnIndex(int index) const {
    const char* const text = UTF8StringForColumnIndex(index);
    return text == nullptr ? std::nullopt : std::optional<std::string>(text);
}

std::optional<PropertyValue::Date> SQLResultSet::dateForColumnIndex(int index) const {
    if (columnIndexIsNull(index))
        return std::nullopt;
    if (parentDB_ != nullptr && parentDB_->hasDateFormatter())
        return parentDB_->dateFromString(stringForColumnIndex(index).value_or(""));
    return PropertyValue::Date{doubleForColumnIndex(index)};
}

std::optional<PropertyValue::Data> SQLResultSet::dataForColumnIndex(int index) const {
    const auto bytes = dataNoCopyForColumnIndex(index);
    if (!bytes)
        return std::nullopt;
    return PropertyValue::Data(bytes->begin(), bytes->end());
}

std::optional<std::span<const std::byte>> SQLResultSet::dataNoCopyForColumnIndex(int index) const {
    if (columnIndexIsNull(index))
        return std::nullopt;
    // The bytes first: asking for them may turn a number into a text and change their count.
    const auto* const bytes = static_cast<const std::byte*>(sqlite3_column_blob(handle(), index));
    const auto count = static_cast<std::size_t>(sqlite3_column_bytes(handle(), index));
    return std::span(bytes, bytes == nullptr ? 0 : count);
}

bool SQLResultSet::columnIndexIsNull(int index) const {
    return sqlite3_column_type(handle(), index) == SQLITE_NULL;
}

const char* SQLResultSet::UTF8StringForColumnIndex(int index) const {
    return reinterpret_cast<const char*>(sqlite3_column_text(handle(), index));
}

PropertyValue SQLResultSet::objectForColumnIndex(int index) const {
    switch (sqlite3_column_type(handle(), index)) {
    case SQLITE_INTEGER:
        return {longLongIntForColumnIndex(index)};
    case SQLITE_FLOAT:
        return {doubleForColumnIndex(index)};
    case SQLITE_BLOB:
        return {dataForColumnIndex(index).value_or(PropertyValue::Data{})};
    case SQLITE_TEXT:
        return {stringForColumnIndex(index).value_or("")};
    default:
        return {};
    }
}

}  // namespace vantor::inline VANTOR_MODULE
