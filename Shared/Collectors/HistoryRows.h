#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/PropertyValue.h"
#include "Shared/Collectors/SampleConfig.h"
#include "Shared/Collectors/SampleFields.h"
#include "Shared/External/SQLite/SQLDatabase.h"

// A history file's tables and rows as samples. On the queue of the file.

namespace vantor::inline VANTOR_MODULE {

/// `format` with the table's name in place of "%@".
std::string historyStatement(std::string_view format, std::string_view table);

/// A file that gives more rows at a time than this isn't ours.
inline constexpr std::size_t kMostRows = 32'768;

/// The rows, kMostRows at most, each with those figures that a sample of this collector can have;
/// without any where the query fails.
std::vector<SampleFields> samplesOfQuery(SQLDatabase& database, std::string_view sql,
                                         std::span<const PropertyValue> arguments,
                                         const SampleConfig& config);

/// The newest rows of a table, a ring and one at most, the oldest first.
std::vector<SampleFields> newestSamples(SQLDatabase& database, std::string_view table,
                                        const SampleConfig& config);
/// Those up to `identifier` and at most 602 IDs before it, the oldest first.
std::vector<SampleFields> samplesUpTo(SQLDatabase& database, std::string_view table,
                                      double identifier, const SampleConfig& config);

/// Whether a run of ours can have written the row: one that can't mustn't stop the IDs from
/// growing or the time from passing.
bool isBelievable(const SampleFields& row) noexcept;

/// True when the table had to be made, else `result`.
bool checkTable(SQLDatabase& database, std::optional<std::string_view> table,
                std::string_view createFormat, bool result);

}  // namespace vantor::inline VANTOR_MODULE
