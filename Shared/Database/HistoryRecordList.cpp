#include "Shared/Database/HistoryRecordList.h"

#include <utility>

namespace vantor::inline VANTOR_MODULE {

bool HistoryRecordList::push(HistoryRecord record) {
    if (records_.size() < kMostRecords) {
        records_.push_back(std::move(record));
        return true;
    }
    records_[first_] = std::move(record);
    first_ = (first_ + 1) % kMostRecords;
    return false;
}

void HistoryRecordList::clear() noexcept {
    records_.clear();
    first_ = 0;
    if (records_.capacity() > kKeptRecords)
        records_ = std::vector<HistoryRecord>();  // "{}" would keep the room
}

}  // namespace vantor::inline VANTOR_MODULE
