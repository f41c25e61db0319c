#pragma once

#include <cstddef>
#include <iosfwd>
#include <map>
#include <memory>
#include <string>

#include "Programs/Common/HistoryFileReader.h"
#include "Programs/Common/HistorySource.h"
#include "Shared/Collectors/StatCollectorItem.h"

namespace vantor {

/// Prints what a history has that it hasn't printed yet, a line of JSON for each sample, in the
/// form in which a collector's item exports its samples. A table with several things has lines
/// for each, which name it.
class HistoryFollower {
public:
    /// With the ID -1 it begins with the newest sample, which it shows under that ID; else with
    /// the samples behind `sinceID`.
    HistoryFollower(const HistorySource& source, int index, double sinceID, std::ostream& out);
    ~HistoryFollower();

    /// Answers how many lines were printed, `most` at most. IDs that begin anew, because a damaged
    /// file was replaced, are all new.
    std::size_t print(const HistoryTable& table, std::size_t most);

private:
    using Items = std::map<std::string, std::unique_ptr<StatCollectorItem>>;

    Items itemsOf(const HistoryTable& table) const;
    void add(const HistoryRow& row, const std::vector<std::string>& columns,
             StatCollectorItem& item) const;

    const HistorySource& source_;
    StorageType type_;
    double lastID_;
    double newestSeen_ = 0;
    std::ostream& out_;
};

}  // namespace vantor
