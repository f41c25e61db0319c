#pragma once

namespace vantor::inline VANTOR_MODULE {

/// For `openWithFlags`, in SQLite's own numbers: the file must be there, and nothing is written.
inline constexpr int kSQLOpenReadOnly = 1;

}  // namespace vantor::inline VANTOR_MODULE
