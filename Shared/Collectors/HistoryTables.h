#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "Shared/Collectors/StorageType.h"

namespace vantor::inline VANTOR_MODULE {

/// The names of a collector's history tables, by index of the schedule's rows: "hour_cpuhistory"
/// to "year_cpuhistory", and "cpuhistory" for the long term.
/// Shape:  all made at once, so that a tick makes none.
/// Errors: the row of now has no table, and neither has an index past the rows.
class HistoryTables {
public:
    /// `prefix` is the collector's word in the names. With storage type 2 the table of samples has
    /// IDs alone and says so in its name; the plain name is that of the items.
    HistoryTables(std::string_view prefix, StorageKind kind);

    std::optional<std::string_view> tableAtIndex(int index) const noexcept {
        return nameAtIndex(tables_, index);
    }
    std::optional<std::string_view> itemTableAtIndex(int index) const noexcept {
        return nameAtIndex(itemTables_, index);
    }

private:
    using Names = std::array<std::string, kScaleCount>;

    static std::optional<std::string_view> nameAtIndex(const Names& names, int index) noexcept;

    Names tables_, itemTables_;
};

}  // namespace vantor::inline VANTOR_MODULE
