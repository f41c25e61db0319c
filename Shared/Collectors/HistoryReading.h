#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Shared/Collectors/SampleConfig.h"
#include "Shared/Collectors/SampleFields.h"
#include "Shared/Collectors/StorageType.h"

namespace vantor::inline VANTOR_MODULE {

class SQLDatabase;

/// The newest rows of one scale, the oldest first: the collector's and its items'.
struct HistoryScale {
    std::vector<SampleFields> samples, items;
};
using HistoryScales = std::array<HistoryScale, kStorageCount>;  // that of now stays empty

/// What a start asks of a collector's history file, as a value: for a file that can't be read at
/// the start and is asked again later, on its own queue, beside the collector at work.
struct HistoryReading {
    struct Table {
        std::string name;
        std::string_view createFormat;
    };
    std::vector<Table> tables;                       // which there must be
    std::array<std::string, kStorageCount> samples;  // the names of those that are read
    std::array<std::string, kStorageCount> items;    // none with storage type 1
    SampleConfig config;

    /// Makes the tables that are missing and reads. Nothing where one of that fails for a reason
    /// that may pass, or where the file is damaged, which the next start takes care of.
    std::optional<HistoryScales> read(SQLDatabase& database) const;

private:
    bool readScale(SQLDatabase& database, std::size_t index, HistoryScale& into) const;
};

}  // namespace vantor::inline VANTOR_MODULE
