#include "Shared/Collectors/HistoryTables.h"

#include <fmt/format.h>

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr std::array<std::string_view, kScaleCount> kScaleWords{
    "", "hour_", "day_", "week_", "month_", "threemonth_", "sixmonth_", "year_", ""};

}  // namespace

HistoryTables::HistoryTables(std::string_view prefix, StorageKind kind) {
    const std::string_view ending = kind == StorageKind::items ? "idhistory" : "history";
    for (std::size_t index = 1; index < kScaleCount; ++index) {
        tables_[index] = fmt::format("{}{}{}", kScaleWords[index], prefix, ending);
        itemTables_[index] = fmt::format("{}{}history", kScaleWords[index], prefix);
    }
}

std::optional<std::string_view> HistoryTables::nameAtIndex(const Names& names, int index) noexcept {
    if (index < 1 || index >= static_cast<int>(kScaleCount))
        return std::nullopt;
    return names[static_cast<std::size_t>(index)];
}

}  // namespace vantor::inline VANTOR_MODULE
