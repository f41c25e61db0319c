#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Shared/External/SQLite/SQLArguments.h"

namespace vantor::inline VANTOR_MODULE {

/// Turns a printf-like `sql` into a text with "?" for each conversion, put behind `intoString`,
/// and the values behind `arguments`. Conversions: @ c s d D i u U hi hu qi qu ld lu lld llu f g.
/// An object that is nothing becomes the word NULL. Other characters behind a "%" stand for
/// themselves, without it.
/// Errors: none. A conversion without a value leaves its "?" alone, so that running the text fails.
void extractSQL(std::string_view sql, SQLArgumentList argumentsList, std::string& intoString,
                std::vector<PropertyValue>& arguments);

}  // namespace vantor::inline VANTOR_MODULE
