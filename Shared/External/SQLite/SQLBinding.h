#pragma once

#include "Foundation/PropertyValue.h"
#include "Shared/External/SQLite/SQLArguments.h"

struct sqlite3_stmt;

namespace vantor::inline VANTOR_MODULE {

class SQLDateFormat;

/// Whether SQLite copies bound texts and data, or reads them where the caller has them. They must
/// then stay there until the statement was stepped.
enum class BoundBytes { copied, inPlace };

/// Binds one value to the parameter `toColumn`, counted from 1. Dates are texts of `dates`, or
/// seconds since 1970 where that is null.
void bindObject(const PropertyValue& value, int toColumn, sqlite3_stmt* inStatement,
                BoundBytes bytes, const SQLDateFormat* dates);

/// Answers how many values were bound: values behind the last parameter and keys without one are
/// left out.
int bindArguments(const SQLArguments& arguments, sqlite3_stmt* inStatement, BoundBytes bytes,
                  const SQLDateFormat* dates);

}  // namespace vantor::inline VANTOR_MODULE
