#include "Shared/External/SQLite/SQLOpenFlags.h"

#include <sqlite3.h>

namespace vantor::inline VANTOR_MODULE {

static_assert(kSQLOpenReadOnly == SQLITE_OPEN_READONLY);

}  // namespace vantor::inline VANTOR_MODULE
