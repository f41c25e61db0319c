#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Programs/Common/HistorySource.h"

namespace vantor {

/// Why a history file can't be read, as a line for people.
class HistoryFileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One sample, or one thing's share of it.
struct HistoryRow {
    double sampleID = 0, time = 0;
    bool empty = false;  // a gap
    std::string uuid;    // which thing the figures are of, where a table holds several
    std::vector<std::optional<double>> figures;  // one a column; none in a gap
};

/// The samples of one scale.
struct HistoryTable {
    std::vector<std::string> columns;  // the names of the figures
    std::vector<HistoryRow> rows;      // oldest first
    bool isCut = false;                // there were more than are read at once
};

/// Reads a history file beside a program that is writing it.
/// Shape:  each operation opens the file, asks one thing, keeps copies and closes it, so that a
///         commit waits for one read of a table at most. Of a table the newest kMostRows are read,
///         many times what the program keeps.
/// Errors: HistoryFileError. Nothing is ever written, repaired or made.
class HistoryFileReader {
public:
    static constexpr std::size_t kMostRows = 20000;

    explicit HistoryFileReader(std::filesystem::path file) : file_(std::move(file)) {}

    const std::filesystem::path& file() const noexcept { return file_; }
    /// Nothing where the file has no such table.
    std::optional<HistoryTable> table(const HistorySource& source, int index) const;
    /// The first line of SQLite's report on the whole file.
    std::string integrity() const;

private:
    std::filesystem::path file_;
};

}  // namespace vantor
