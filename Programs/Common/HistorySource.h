#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Shared/Collectors/HistoryTables.h"
#include "Shared/Collectors/SampleConfig.h"
#include "Shared/Collectors/StorageType.h"

namespace vantor {

/// What keeps a history: the name of its file and how its tables are named and read.
struct HistorySource {
    std::string_view name;
    StorageKind kind;
    HistoryTables tables;
    std::vector<SampleKey> columns;   // where a column's figure stands among a sample's values
    std::vector<SampleKey> exported;  // under which keys the values are exported
};

/// In the order in which the program opens their files.
std::vector<HistorySource> historySources();

/// A scale that a history keeps.
struct HistoryScale {
    std::string_view name;
    int index;  // in the schedule
};
inline constexpr HistoryScale kHistoryScales[]{{"hour", 1}, {"day", 2}, {"week", 3}};

}  // namespace vantor
