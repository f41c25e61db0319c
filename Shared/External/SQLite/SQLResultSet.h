#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Foundation/PropertyValue.h"

namespace vantor::inline VANTOR_MODULE {

class SQLDatabase;
class SQLStatement;

/// A cursor over the rows of a query. Its end closes it, and so does its connection's.
/// Thread: that of its connection.
class SQLResultSet {
public:
    ~SQLResultSet();

    /// Whether there is another row; the cursor stands on it. A finished query and a failed one
    /// end alike, and both close the cursor.
    bool next();
    void close();
    /// The row by column name, in the case that the query gave; nothing where there is no row.
    std::optional<PropertyValue::Dictionary> resultDictionary() const;
    /// -1 for an unknown name; the case doesn't matter.
    int columnIndexForName(std::string_view name) const;
    double doubleForColumnIndex(int index) const;
};

}  // namespace vantor::inline VANTOR_MODULE
