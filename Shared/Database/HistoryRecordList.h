#pragma once

#include <cstddef>
#include <vector>

#include "Shared/Database/HistoryRecord.h"

namespace vantor::inline VANTOR_MODULE {

/// The writes that wait for a commit, oldest first.
/// Shape:  at most kMostRecords, about 5 MB of them; past that the oldest goes. A file gets some
///         25 rows in 144 seconds, so that the list holds what comes in 13 hours without a commit.
///         Room for kKeptRecords is kept when the list is emptied.
/// Thread: one at a time.
class HistoryRecordList {
public:
    static constexpr std::size_t kMostRecords = 8192, kKeptRecords = 256;

    /// Whether there was room, so that nothing was dropped.
    bool push(HistoryRecord record);
    void clear() noexcept;

    std::size_t size() const noexcept { return records_.size(); }
    const HistoryRecord& operator[](std::size_t index) const noexcept {
        return records_[(first_ + index) % records_.size()];
    }

private:
    std::vector<HistoryRecord> records_;  // a ring once it is full
    std::size_t first_ = 0;
};

}  // namespace vantor::inline VANTOR_MODULE
