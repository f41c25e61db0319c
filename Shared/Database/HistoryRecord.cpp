#include "Shared/Database/HistoryRecord.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace vantor::inline VANTOR_MODULE {

HistoryRecord::HistoryRecord(std::string_view statementFormat, std::string_view tableName) noexcept
    : format_(statementFormat), tableSize_(std::min(tableName.size(), kLongestTableName)) {
    std::ranges::copy_n(tableName.data(), static_cast<std::ptrdiff_t>(tableSize_), table_.begin());
}

void HistoryRecord::add(PropertyValue value) {
    if (count_ == kInlineValues && many_.empty())
        many_.assign(std::make_move_iterator(few_.begin()), std::make_move_iterator(few_.end()));
    if (count_ < kInlineValues)
        few_[count_] = std::move(value);
    else
        many_.push_back(std::move(value));
    ++count_;
}

std::span<const PropertyValue> HistoryRecord::args() const noexcept {
    if (!many_.empty())
        return many_;
    return std::span(few_).first(count_);
}

}  // namespace vantor::inline VANTOR_MODULE
